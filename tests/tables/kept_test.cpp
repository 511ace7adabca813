// SPDX-License-Identifier: MIT
// Tests of the tables that stay in memory: when they do, and that no change of a file is missed.
#include "tables/kept.h"

#include <random>

#include <fcntl.h>
#include <unistd.h>

#include "tests/power/mounts.h"
#include "tests/tables/edits.h"

namespace korvel {
namespace {

using test::Answer;
using test::lookUp;

constexpr std::int64_t kSecond = 1'000'000'000;

// Clocks that a test moves. They go on by themselves as well.
struct Moved {
  static inline tables::Clocks *real = tables::currentMoment;
  static inline tables::Moment by;

  Moved() {
    by = {};
    tables::currentMoment = [] {
      const tables::Moment now = real();
      return tables::Moment{now.wall + by.wall, now.steady + by.steady};
    };
  }
  ~Moved() { tables::currentMoment = real; }
  Moved(const Moved &) = delete;
  Moved &operator=(const Moved &) = delete;

  static void pass(std::int64_t time) {
    by.wall += time;
    by.steady += time;
  }
};

// A table with that label of the code 07, among others.
std::string with(const std::string &label) {
  return test::lines({"Actes", "Version: 1", "#DEBUT", "01,Visite de contr\xF4le,01/01/95",
                      "07," + label + ",01/01/95,31/12/99", "09,Autre chose encore", "#FIN"});
}

class Kept : private test::MemoryDisk, public test::Tables {
 protected:
  static Answer label(const std::string &name = "t") { return lookUp("07", 1, name.c_str()); }

  // Whether the next lookup reads no file; it counts as one itself.
  static bool isKept(const std::string &name = "t") {
    tables::TableReader reader;
    return reader.openTable(name.c_str(), tables::Slots::FileAndMemory) &&
           reader.index() != nullptr;
  }
  // Has a table of that name that is kept, changed long ago by the moved clocks. Nothing follows
  // its lines up to the size, if there is one.
  void keep(const std::string &name, const std::string &bytes, off_t size = 0) {
    table(name, bytes);
    if (size > 0) lengthen(name, size);
    aTickLater();
    Moved::pass(10 * kSecond);
    for (int i = 0; i < 3; ++i) label(name);
    EXPECT_TRUE(isKept(name));
  }

  // Changes from now on bear another time than those before.
  static void aTickLater() { usleep(25'000); }

  // Writes into the file as it is, without giving it another length.
  void overwrite(const std::string &name, std::string_view bytes, off_t at = 0) const {
    const int file = open(posixPath(name).c_str(), O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(pwrite(file, bytes.data(), bytes.size(), at), static_cast<ssize_t>(bytes.size()));
    close(file);
  }
  void lengthen(const std::string &name, off_t size) const {
    EXPECT_EQ(truncate(posixPath(name).c_str(), size), 0);
  }
  // Gives a file the content time of another moment.
  static void setContentTime(const std::string &path, const timespec &time) {
    const timespec times[] = {{0, UTIME_OMIT}, time};
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }
  static struct stat statusOf(const std::string &path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status;
  }

  // The ways to change the label of a table to another one of five letters.
  struct Change {
    const char *name;
    std::function<void(const std::string &table, const std::string &label)> make;
  };
  const std::vector<Change> changes_ = {
      {"written over",
       [this](const std::string &name, const std::string &to) { overwrite(name, with(to)); }},
      {"one byte written over",
       [this](const std::string &name, const std::string &to) {
         overwrite(name, to, static_cast<off_t>(with(to).find(to)));
       }},
      {"written over, with the old time",
       [this](const std::string &name, const std::string &to) {
         const struct stat before = statusOf(posixPath(name));
         overwrite(name, with(to));
         setContentTime(posixPath(name), before.st_mtim);
       }},
      {"another file put in its place, with the old time",
       [this](const std::string &name, const std::string &to) {
         const struct stat before = statusOf(posixPath(name));
         table("new", with(to));
         setContentTime(posixPath("new"), before.st_mtim);
         EXPECT_EQ(rename(posixPath("new").c_str(), posixPath(name).c_str()), 0);
       }},
      {"removed and made again",
       [this](const std::string &name, const std::string &to) {
         EXPECT_EQ(unlink(posixPath(name).c_str()), 0);
         table(name, with(to));
       }},
      {"appended to",
       [this](const std::string &name, const std::string &to) {
         overwrite(name, with("xxxxx"));
         overwrite(name, "08,Ajout,31/12/99\r\n",
                   static_cast<off_t>(test::content(posixPath(name)).size()));
         overwrite(name, with(to));
       }},
      {"cut short",
       [this](const std::string &name, const std::string &to) {
         overwrite(name, with(to));
         EXPECT_EQ(truncate(posixPath(name).c_str(), static_cast<off_t>(with(to).size() - 3)), 0);
       }},
      {"edited",
       [](const std::string &name, const std::string &to) {
         ZRV_Libelle_NC_set_ligne(5);
         EXPECT_EQ(test::replaceColumn(1, to.c_str(), name.c_str()), 1);
       }},
  };

  Moved clocks_;
};

std::string fiveLetters(std::mt19937 &random) {
  std::string text;
  for (int i = 0; i < 5; ++i) text += static_cast<char>('a' + random() % 26);
  return text;
}

TEST_F(Kept, IsATableAtTheThirdAsking) {
  table("t", with("label"));
  Moved::pass(10 * kSecond);
  EXPECT_FALSE(isKept());
  EXPECT_FALSE(isKept());
  EXPECT_TRUE(isKept());
  EXPECT_EQ(label(), (Answer{1, "label"}));
  EXPECT_TRUE(isKept());
}

TEST_F(Kept, IsNoTableThatWasChangedInTheLastTwoSeconds) {
  table("t", with("label"));
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(isKept());
  Moved::pass(kSecond * 12 / 10);
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(isKept());
  Moved::pass(kSecond * 9 / 10);
  EXPECT_TRUE(isKept());
  // Nor one whose content has a time to come.
  timespec later = statusOf(posixPath("t")).st_mtim;
  later.tv_sec += 3600;
  setContentTime(posixPath("t"), later);
  Moved::pass(10 * kSecond);
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(isKept());
}

TEST_F(Kept, IsNoCopyOnceTheClockWasSetBack) {
  keep("t", with("label"));
  Moved::by.wall -= kSecond / 2;
  EXPECT_TRUE(isKept());
  // From here on a change might bear the time that the file bears now.
  Moved::by.wall -= kSecond;
  EXPECT_FALSE(isKept());
  Moved::by.wall -= 60 * kSecond;
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(isKept());
  Moved::pass(120 * kSecond);
  EXPECT_TRUE(isKept());
}

TEST_F(Kept, GivesTheNewLabelAfterAnyChange) {
  std::mt19937 random(7);
  for (const Change &change : changes_) {
    SCOPED_TRACE(change.name);
    keep("t", with("first"));
    for (int i = 0; i < 3; ++i) {
      aTickLater();
      const std::string to = fiveLetters(random);
      change.make("t", to);
      EXPECT_EQ(label(), (Answer{1, to}));
      EXPECT_EQ(lookUp("08", 1, "t").result,
                test::content(posixPath("t")).find("\n08,") == std::string::npos ? 0 : 1);
      Moved::pass(10 * kSecond);
      for (int j = 0; j < 4; ++j) EXPECT_EQ(label(), (Answer{1, to}));
    }
    EXPECT_TRUE(isKept());
    KorvelForgetTables();
  }
}

// By the real clock, and without a pause: changes in one tick bear one time.
TEST_F(Kept, GivesTheNewLabelInTheSameTick) {
  std::mt19937 random(11);
  table("t", with("first"));
  for (int i = 0; i < 400; ++i) {
    for (const Change &change : {changes_[0], changes_[1], changes_[2]}) {
      const std::string to = fiveLetters(random);
      change.make("t", to);
      for (int j = 0; j < 4; ++j) ASSERT_EQ(label(), (Answer{1, to})) << change.name << ' ' << i;
    }
  }
}

// By the real clock: each table is at rest, is kept, and is then changed in another way.
TEST_F(Kept, GivesTheNewLabelAfterARealRest) {
  std::mt19937 random(13);
  const auto nameOf = [](std::size_t i) { return "t" + std::to_string(i); };
  for (std::size_t i = 0; i < changes_.size(); ++i) table(nameOf(i), with("first"));
  usleep(2'100'000);
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    for (int j = 0; j < 3; ++j) EXPECT_EQ(label(nameOf(i)), (Answer{1, "first"}));
  }
  for (std::size_t i = 0; i < changes_.size(); ++i) {
    EXPECT_TRUE(isKept(nameOf(i))) << changes_[i].name;
    const std::string to = fiveLetters(random);
    changes_[i].make(nameOf(i), to);
    EXPECT_EQ(label(nameOf(i)), (Answer{1, to})) << changes_[i].name;
  }
}

// As on a volume of another machine whose file system knows no smaller times.
TEST_F(Kept, GivesTheNewLabelWhereTimesAreWholeSeconds) {
  const test::FileSystem kWholeSeconds = {"ext4", 4 << 20,
                                          "mkfs.ext4 -q -F -I 128 -b 4096 -O ^has_journal", "", ""};
  if (!test::canFormat(kWholeSeconds)) GTEST_SKIP() << "needs mkfs.ext4";
  const test::PrivateMounts mounts;
  if (!mounts.obstacle().empty()) GTEST_SKIP() << mounts.obstacle();
  const test::Image image(kWholeSeconds.size);
  ASSERT_TRUE(test::writeTo(image.file(), test::formatted(kWholeSeconds)));
  ASSERT_TRUE(mounts.mountFile(image.file(), "ext4", 0, "", "coarse"));
  ASSERT_EQ(unlink(volumes_.posix("coarse").c_str()), -1);
  ASSERT_EQ(symlink(mounts.path("coarse").c_str(), volumes_.posix("coarse").c_str()), 0);
  setText(szDirTables, "Data:coarse");
  const std::string path = mounts.path("coarse") + "/t.tab";

  std::mt19937 random(17);
  int sameTimes = 0;
  const auto write = [&](const std::string &label) {
    std::ofstream(path, std::ios::binary | std::ios::in | std::ios::out) << with(label);
    EXPECT_EQ(statusOf(path).st_ctim.tv_nsec, 0);
  };
  std::ofstream(path, std::ios::binary) << with("first");
  const time_t begin = statusOf(path).st_ctim.tv_sec;
  while (statusOf(path).st_ctim.tv_sec < begin + 2) {
    const struct stat before = statusOf(path);
    const std::string to = fiveLetters(random);
    write(to);
    sameTimes += before.st_ctim.tv_sec == statusOf(path).st_ctim.tv_sec;
    for (int j = 0; j < 4; ++j) ASSERT_EQ(label(), (Answer{1, to}));
    usleep(1000);
  }
  EXPECT_GT(sameTimes, 10);
  Moved::pass(10 * kSecond);
  // The time tells nothing here: it may be of a clock that is behind.
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(isKept());
}

// --- Bounds --------------------------------------------------------------------------------------

std::string nameOf(int i) { return "t" + std::to_string(i); }

TEST_F(Kept, AreEightTables) {
  for (int i = 0; i < 8; ++i) keep(nameOf(i), with("label"));
  for (int i = 0; i < 8; ++i) EXPECT_TRUE(isKept(nameOf(i)));
  EXPECT_TRUE(isKept(nameOf(0)));
  // Now number 1 is the one that was asked the longest ago.
  keep("new", with("label"));
  for (int i = 7; i > 1; --i) EXPECT_TRUE(isKept(nameOf(i)));
  EXPECT_TRUE(isKept(nameOf(0)));
  EXPECT_TRUE(isKept("new"));
}

TEST_F(Kept, AreNotPushedOutByTablesThatAreAskedOnce) {
  keep("t", with("label"));
  for (int i = 0; i < 40; ++i) {
    table(nameOf(i), with("label"));
    label(nameOf(i));
  }
  EXPECT_TRUE(isKept("t"));
}

// One more than there is room for, asked in turn: the others stay.
TEST_F(Kept, DoNotPushEachOtherOutInTurn) {
  for (int i = 0; i < 9; ++i) table(nameOf(i), with("label"));
  Moved::pass(10 * kSecond);
  int kept = 0;
  for (int round = 0; round < 10; ++round) {
    kept = 0;
    for (int i = 0; i < 9; ++i) kept += isKept(nameOf(i)) ? 1 : 0;
  }
  EXPECT_EQ(kept, 8);
  // Once the last one is asked alone, the one that was asked the longest ago gives way.
  for (int i = 0; i < 4; ++i) label(nameOf(8));
  EXPECT_TRUE(isKept(nameOf(8)));
}

TEST_F(Kept, AreNotLargerThanTheBounds) {
  constexpr off_t kMegabyte = 1 << 20;
  keep("t0", with("label"), 20 * kMegabyte);
  keep("t1", with("label"), 20 * kMegabyte);
  EXPECT_TRUE(isKept("t0"));
  // No room for a third one beside two others and their indexes.
  keep("t2", with("label"), 20 * kMegabyte);
  EXPECT_TRUE(isKept("t0"));
  EXPECT_FALSE(isKept("t1"));
  KorvelForgetTables();
  keep("t3", with("label"), 32 * kMegabyte);
  table("t4", with("label"));
  lengthen("t4", 32 * kMegabyte + 1);
  Moved::pass(10 * kSecond);
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(isKept("t4"));
  EXPECT_EQ(label("t4"), (Answer{1, "label"}));
  EXPECT_TRUE(isKept("t3"));
}

TEST_F(Kept, AreNoneAfterForgetting) {
  keep("t", with("label"));
  KorvelForgetTables();
  EXPECT_FALSE(isKept());
  EXPECT_FALSE(isKept());
  EXPECT_TRUE(isKept());
  KorvelForgetTables();
  KorvelForgetTables();
  EXPECT_EQ(label(), (Answer{1, "label"}));
}

TEST_F(Kept, IsNothingWithoutLines) {
  table("empty", "");
  table("feeds", "\n\n\n");
  Moved::pass(10 * kSecond);
  for (int i = 0; i < 5; ++i) {
    EXPECT_FALSE(isKept("empty"));
    EXPECT_FALSE(isKept("feeds"));
  }
}

// The slots that an application sees taken are the same.
TEST_F(Kept, TakesTheSlotsOfAReading) {
  keep("t", with("label"));
  for (int i = 0; i < 5; ++i) ASSERT_EQ(MFil_Open("", 0, 0), i);
  EXPECT_EQ(label(), (Answer{0, test::kUntouched}));
  MFil_Close(4);
  EXPECT_EQ(label(), (Answer{1, "label"}));
  EXPECT_EQ(DATA_MFIL_ID, 3);
  EXPECT_EQ(DATA_FILE_ID, -1);
}

}  // namespace
}  // namespace korvel
