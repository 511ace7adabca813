// SPDX-License-Identifier: MIT
// Edits, back-ups, lookups and walks where all requests of a kind are refused, or something happens
// between two of them: a size that the system does not tell, a left-over file that is replaced
// meanwhile.
#include <algorithm>
#include <cerrno>
#include <chrono>

#include <unistd.h>

#include "tests/faults/requests.h"
#include "tests/tables/edits.h"

namespace korvel {
namespace {

using faults::Instead;
using faults::kShort;
using faults::Request;
using test::Files;

// The file that an edit by another program left.
bool isLeftOver(const Request &opening) { return std::string_view(opening.path).ends_with(".ta_"); }

struct Editing {
  const char *name;
  int (*edit)();
};

constexpr Editing kEditings[] = {
    {"replace", [] { return test::replaceColumn(1, "x"); }},
    {"insert", [] { return test::insertLine(2); }},
    {"delete", [] { return test::deleteLine(); }},
    {"flush", [] { return test::flushLine(); }},
    {"modify", [] { return ZRV_Table_modify("actes", "actes", "3", "Titre"); }},
    {"rename", [] { return ZRV_Table_modify("actes", "new", "3", "Titre"); }},
    {"repair", [] { return ZRV_Table_repair("actes", "3", "Titre"); }},
    {"back up", [] { return 1 + ZRV_Table_sauvegarde("actes", 1); }},
};

// Kept: a table that cannot be repaired counts as sound, and a back-up always answers 0.
bool saysOneAnyhow(const Editing &editing) {
  return editing.name == std::string("repair") || editing.name == std::string("back up");
}

// What finds a line of the example table, and what it leaves of the current line 5 if it cannot.
struct Finding {
  const char *name;
  test::Answer (*find)();
  int line;
  int read;
};

constexpr Finding kFindings[] = {
    {"look up", [] { return test::lookUp("07", 1, "actes"); }, 0, 0},
    {"look up on a day", [] { return test::lookUpDate("07", 1, "actes", 2, 20010101); }, 0, 0},
    {"look up the next", [] { return test::lookUpNext("07", 1, "actes"); }, 5, 1},
    {"read again", [] { return test::idem0(2, 1, "actes"); }, 5, 0},
    {"search", [] { return test::search(ZRV_Code_NC, "Visite", 1, "actes"); }, 0, 0},
    {"search in any case", [] { return test::search(ZRV_CodeNCS_NC, "visite", 1, "actes"); }, 0, 0},
    {"search the next", [] { return test::search(ZRV_Code_NC_next, "Visite", 1, "actes"); }, 5, 1},
    {"search by criteria",
     [] {
       return test::search(ZRV_Code_NC_ex, {{"Visite", 1}}, "actes");
     },
     0, 0},
    {"search the next by criteria",
     [] {
       return test::search(ZRV_Code_NC_ex_next, {{"Visite", 1}}, "actes");
     },
     5, 1},
};

class ReadFaults : public test::Edits {
 protected:
  void reset() {
    closeHandles();
    for (const std::string &name : test::entries(folder())) unlink((folder() + "/" + name).c_str());
    table("actes", table_);
    volumes_.file("tables/actes.bak", "old back-up");
    ZRV_Libelle_NC_set_ligne(6);
    std::snprintf(ZRV_Libelle_NC_szBuffer, sizeof ZRV_Libelle_NC_szBuffer, "99");
  }

  std::string table_ = test::actes();
};

TEST_F(ReadFaults, WithoutAnyStatusTheEditGivesZero) {
  for (const Editing &editing : kEditings) {
    reset();
    const Files before = files();
    const Instead untold("fstat", EIO);
    EXPECT_EQ(editing.edit(), saysOneAnyhow(editing) ? 1 : 0) << editing.name;
    EXPECT_EQ(files(), before) << editing.name;
  }
}

// Neither a piece of a line nor one that was not the last is taken for a line found, or for the
// last.
TEST_F(ReadFaults, AReadingThatBreaksOffIsAsATableThatCannotBeOpened) {
  tables::TableReader::blockSize = 16;
  for (const Finding &finding : kFindings) {
    int answered = 0;
    for (bool breaksOff = true; breaksOff; ++answered) {
      reset();
      test::lookUp("02", 1, "actes");
      int readings = 0;
      const Instead broken("pread",
                           [&](const Request &) { return ++readings <= answered ? 0 : EIO; });
      const test::Answer answer = finding.find();
      breaksOff = readings > answered;
      EXPECT_EQ(answer.result, breaksOff ? 0 : 1) << finding.name << ' ' << answered;
      if (breaksOff) {
        EXPECT_EQ(answer.out, test::kUntouched) << finding.name << ' ' << answered;
        EXPECT_EQ(test::state(), (test::State{finding.line, finding.read, "02|Garde"}))
            << finding.name << ' ' << answered;
      }
    }
    EXPECT_GT(answered, 3) << finding.name;
  }
}

// The codes that were read are not taken for all of them.
TEST_F(ReadFaults, AListOfATableThatIsNotReadToItsEndIsEmpty) {
  tables::TableReader::blockSize = 16;
  reset();
  int answered = 0;
  for (bool breaksOff = true; breaksOff; ++answered) {
    int readings = 0;
    const Instead broken("pread",
                         [&](const Request &) { return ++readings <= answered ? 0 : EIO; });
    const test::Answer answer =
        test::answerOf([](char *out, int size) { return ZRV_Table_liste("actes", out, size); });
    breaksOff = readings > answered;
    EXPECT_EQ(answer, breaksOff ? (test::Answer{0, ""}) : (test::Answer{1, "01+02+07"}))
        << answered;
  }
  EXPECT_GT(answered, 3);
}

TEST_F(ReadFaults, AWalkOverWhatCannotBeReadCallsNobody) {
  reset();
  static int called;
  called = 0;
  int readings = 0;
  const Instead broken("pread", [&](const Request &) { return ++readings <= 3 ? kShort : EIO; });
  int first = 0;
  int last = -7;
  EXPECT_EQ(ZRV_Table_scan("actes", &first, &last, [](char *) { ++called; }), 0);
  EXPECT_GT(readings, 3);
  EXPECT_EQ(called, 0);
  EXPECT_EQ(last, -7);
}

TEST_F(ReadFaults, ReadingsThatGiveLessThanAskedForAreGoneOnWith) {
  for (const Editing &editing : kEditings) {
    reset();
    ASSERT_EQ(editing.edit(), 1) << editing.name;
    const Files after = files();
    reset();
    const Instead shortly("pread", kShort);
    const Instead shortlyToo("read", kShort);
    EXPECT_EQ(editing.edit(), 1) << editing.name;
    EXPECT_EQ(files(), after) << editing.name;
  }
}

// The file is written over in place while it is read: what is walked is the one or the other.
TEST_F(ReadFaults, AWalkIsNotOverHalfOfAnOldTableAndHalfOfANewOne) {
  static std::string path;
  static std::string other;
  static std::string codes;
  path = posixPath("actes");
  for (const bool longer : {false, true}) {
    other = table_;
    std::replace(other.begin(), other.end(), '0', '9');
    if (longer) other += "98,Ajout\r\n";
    for (const int nth : {1, 2, 4}) {
      reset();
      // Two changes within one tick of the clock bear the same time.
      std::filesystem::last_write_time(
          path, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
      codes.clear();
      int readings = 0;
      const Instead shortly("pread", [&](const Request &) {
        if (readings++ != nth) return kShort;
        std::FILE *file = std::fopen(path.c_str(), "r+b");
        std::fputs(other.c_str(), file);
        std::fclose(file);
        return kShort;
      });
      EXPECT_EQ(ZRV_Table_scan("actes", nullptr, nullptr,
                               [](char *fields) { codes.append(fields).append("+"); }),
                1);
      EXPECT_GT(readings, nth);
      EXPECT_EQ(codes, "91+92+97+") << nth;
    }
  }
}

// Neither is a copy that stays in memory.
TEST_F(ReadFaults, ATableThatChangesWhileItIsCopiedIsNotKept) {
  tables::keeping = tables::Keeping::Always;
  for (const bool changes : {false, true}) {
    reset();
    usleep(25'000);  // to another tick of the clock
    int readings = 0;
    const Instead shortly("pread", [&](const Request &) {
      if (readings++ == 1 && changes) table("actes", table_);
      return kShort;
    });
    tables::TableReader reader;
    ASSERT_TRUE(reader.openTable("actes", tables::Slots::FileAndMemory));
    EXPECT_GT(readings, 1);
    EXPECT_EQ(reader.index() == nullptr, changes);
  }
}

// A clock by which every file is at rest, and tables that nobody has asked.
class KeepFaults : public ReadFaults {
 protected:
  KeepFaults() {
    tables::keeping = tables::Keeping::WhenAskedAgain;
    tables::currentMoment = [] {
      constexpr std::int64_t kLater = 10'000'000'000;
      const tables::Moment now = real_();
      return tables::Moment{now.wall + kLater, now.steady + kLater};
    };
    KorvelForgetTables();
    reset();
  }
  ~KeepFaults() override { tables::currentMoment = real_; }

  // Whether the next lookup reads no file; it counts as one itself.
  static bool isKept(const std::string &name) {
    tables::TableReader reader;
    return reader.openTable(name.c_str(), tables::Slots::FileAndMemory) &&
           reader.index() != nullptr;
  }
  static bool isKeptWithoutMemory(const std::string &name) {
    const Instead full("calloc", ENOMEM);
    return isKept(name);
  }

 private:
  static inline tables::Clocks *real_ = tables::currentMoment;
};

TEST_F(KeepFaults, ATableThatDoesNotFitIsTriedAgainOnceItWasAskedTwiceMore) {
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(isKeptWithoutMemory("actes"));
  EXPECT_FALSE(isKept("actes"));
  EXPECT_TRUE(isKept("actes"));
}

// Of 17 tables the one that was asked the longest ago is forgotten.
TEST_F(KeepFaults, ATableThatDoesNotFitIsOneThatWasAsked) {
  const auto other = [this](int i) {
    const std::string name = "other" + std::to_string(i);
    table(name, table_);
    return isKept(name);
  };
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(isKept("actes"));
  other(0);
  EXPECT_FALSE(isKeptWithoutMemory("actes"));
  for (int i = 1; i < 16; ++i) other(i);
  EXPECT_FALSE(isKept("actes"));
  EXPECT_TRUE(isKept("actes"));
}

// What is looked at is what is opened: a name may lead elsewhere a moment later.
TEST_F(ReadFaults, ALeftOverFileThatIsReplacedWhileItIsOpenedIsNotUsedUp) {
  reset();
  volumes_.file("tables/actes.ta_", "left");
  int openings = 0;
  const Instead replaced("open", [&](const Request &opening) {
    if (!isLeftOver(opening) || openings++ > 0) return 0;
    unlink(opening.path);
    return mkfifo(opening.path, 0666);
  });
  EXPECT_EQ(test::deleteLine(), 0);
  EXPECT_EQ(openings, 1);
  EXPECT_EQ(tableText(), table_);
  struct stat status;
  EXPECT_EQ(lstat((folder() + "/actes.ta_").c_str(), &status), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(ReadFaults, AnotherUsersLeftOverFileNeedNotBeReadable) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  for (const uid_t owner : {0U, 12U}) {
    reset();
    volumes_.file("tables/actes.ta_", "left");
    ASSERT_EQ(chown((folder() + "/actes.ta_").c_str(), owner, static_cast<gid_t>(-1)), 0);
    const Instead unreadable(
        "open", [](const Request &opening) { return isLeftOver(opening) ? EACCES : 0; });
    EXPECT_EQ(test::deleteLine(), owner == 0 ? 0 : 1);
    EXPECT_EQ(files().at("actes.ta_"), "left");
  }
}

}  // namespace
}  // namespace korvel
