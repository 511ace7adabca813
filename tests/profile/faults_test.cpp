// SPDX-License-Identifier: MIT
// After a full disk, a kill or missing rights a profile is the old one or the new one, whole.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/profile.h>

#include "files/lock.h"
#include "files/replace.h"
#include "tests/files/processes.h"
#include "tests/files/volumes.h"
#include "tests/profile/literal_profile.h"
#include "tests/support/sanitizer.h"

namespace {

using korvel::test::content;
using korvel::test::entries;
using korvel::test::inChild;
using korvel::test::inChildOfAUser;
using korvel::test::kUnderSanitizer;
using korvel::test::literalWriteKey;
using korvel::test::literalWriteSection;
using korvel::test::Volumes;

constexpr char kPath[] = "Data:p.ini";

std::string profileOf(int keys) {
  std::string text = "[Main]\r\n";
  for (int i = 0; i < keys; ++i)
    text += "key" + std::to_string(i) + "=value " + std::to_string(i) + "\r\n";
  return text;
}

// A way to write, and what it makes of a content.
struct Writer {
  const char *name;
  std::function<int()> write;
  std::function<std::string(const std::string &)> result;
};

const Writer kWriters[] = {
    {"replace a key", [] { return WritePrivateProfileString("Main", "key1", "new", kPath); },
     [](const std::string &old) { return literalWriteKey(old, "Main", "key1", "new"); }},
    {"add a section", [] { return WritePrivateProfileString("More", "key", "new", kPath); },
     [](const std::string &old) { return literalWriteKey(old, "More", "key", "new"); }},
    {"replace a section", [] { return WritePrivateProfileSection("Main", "a=1\r\nb=2", kPath); },
     [](const std::string &old) { return literalWriteSection(old, "Main", "a=1\r\nb=2"); }},
};

// A program that takes no lock puts another file there just before the new content.
TEST(Exchanged, AProfileIsWrittenAnewFromWhatStandsThereNow) {
  static const std::string other = "[Other]\r\nkept=1\r\n";
  static std::string from;
  static std::string to;
  for (const Writer &writer : kWriters) {
    Volumes volumes;
    volumes.file("p.ini", profileOf(3));
    volumes.file("other.ini", other);
    from = volumes.posix("other.ini");
    to = volumes.posix("p.ini");
    korvel::files::replaceFault = [](korvel::files::ReplaceStep step) {
      if (step == korvel::files::ReplaceStep::Sync) rename(from.c_str(), to.c_str());
      return 0;
    };
    EXPECT_EQ(writer.write(), 1) << writer.name;
    korvel::files::replaceFault = nullptr;
    EXPECT_EQ(content(volumes.posix("p.ini")), writer.result(other)) << writer.name;
    EXPECT_EQ(entries(volumes.folder()), std::vector<std::string>{"p.ini"});
  }
}

TEST(FullDisk, FileSizeLimitLeavesTheOldProfile) {
  const std::string old = profileOf(400);
  for (const Writer &writer : kWriters) {
    const std::string changed = writer.result(old);
    for (const std::size_t limit :
         {std::size_t{0}, std::size_t{1}, changed.size() / 2, changed.size() - 1, changed.size()}) {
      Volumes volumes;
      volumes.file("p.ini", old);
      const bool fits = limit == changed.size();
      const int result = inChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit size = {limit, limit};
        return setrlimit(RLIMIT_FSIZE, &size) == 0 ? writer.write() : 99;
      });
      EXPECT_EQ(result, fits ? 1 : 0) << writer.name << ", limit " << limit;
      EXPECT_EQ(content(volumes.posix("p.ini")), fits ? changed : old) << writer.name;
      EXPECT_EQ(entries(volumes.folder()), std::vector<std::string>{"p.ini"});
    }
  }
}

TEST(FullDisk, LeavesTheOldProfileAndNoNewOne) {
  Volumes volumes;
  const std::string disk = volumes.folder();
  if (mount("none", disk.c_str(), "tmpfs", 0, "size=65536,mode=0777") != 0)
    GTEST_SKIP() << "may not mount a small disk";
  const std::string old = profileOf(1000);
  volumes.file("p.ini", old);
  volumes.file("ballast", std::string(32768, 'b'));
  ASSERT_LT(65536 - 32768, 2 * static_cast<int>(old.size()));
  for (const Writer &writer : {kWriters[0], kWriters[1]}) {
    EXPECT_EQ(writer.write(), 0) << writer.name;
    EXPECT_EQ(content(volumes.posix("p.ini")), old) << writer.name;
  }
  EXPECT_EQ(WritePrivateProfileSection("A", std::string(40000, 'v').c_str(), "Data:new.ini"), 0);
  EXPECT_EQ(entries(disk), (std::vector<std::string>{"ballast", "p.ini"}));
  std::filesystem::remove(volumes.posix("ballast"));
  EXPECT_EQ(kWriters[0].write(), 1);
  EXPECT_EQ(content(volumes.posix("p.ini")), kWriters[0].result(old));
  EXPECT_EQ(umount2(disk.c_str(), MNT_DETACH), 0);
}

// Only then does a new content survive a loss of power.
TEST(Power, TheFolderReachesTheDiskBeforeTheAnswer) {
  using korvel::files::ReplaceStep;
  static int synced = 0;
  for (const Writer &writer : kWriters) {
    for (const bool isThere : {true, false}) {
      Volumes volumes;
      if (isThere) volumes.file("p.ini", profileOf(3));
      synced = 0;
      korvel::files::replaceFault = [](ReplaceStep step) {
        if (step == ReplaceStep::Folder) ++synced;
        return 0;
      };
      EXPECT_EQ(writer.write(), 1) << writer.name;
      korvel::files::replaceFault = nullptr;
      EXPECT_EQ(synced, isThere || entries(volumes.folder()).size() == 1 ? 1 : 0)
          << writer.name << (isThere ? ", there" : ", new");
    }
  }
}

// A profile in a folder of these modes, written by a user who is not its owner.
class Rights : public testing::Test {
 protected:
  Rights() {
    volumes_.file("p.ini", kOld);
    chmod(volumes_.root().c_str(), 0755);
  }
  ~Rights() override { chmod(volumes_.folder().c_str(), 0777); }

  void give(mode_t folder, mode_t file) {
    chmod(volumes_.folder().c_str(), folder);
    chmod(volumes_.posix("p.ini").c_str(), file);
  }
  void expectRefusal() {
    for (const Writer &writer : kWriters) EXPECT_EQ(inChildOfAUser(writer.write), 0) << writer.name;
    chmod(volumes_.folder().c_str(), 0777);
    EXPECT_EQ(content(volumes_.posix("p.ini")), kOld);
    EXPECT_EQ(entries(volumes_.folder()), std::vector<std::string>{"p.ini"});
  }

  static constexpr char kOld[] = "[Main]\r\nkey1=old\r\n";
  Volumes volumes_;
};

TEST_F(Rights, ReadOnlyFileIsLeftAlone) {
  give(0777, 0444);
  expectRefusal();
}

TEST_F(Rights, FileInAFolderThatMayNotBeSearchedIsLeftAlone) {
  give(0666, 0666);
  expectRefusal();
}

TEST_F(Rights, ReadOnlyFileInAReadOnlyFolderIsLeftAlone) {
  give(0555, 0444);
  expectRefusal();
}

TEST_F(Rights, NothingIsCreatedInAReadOnlyFolder) {
  give(0555, 0666);
  EXPECT_EQ(inChildOfAUser([] { return WritePrivateProfileString("A", "x", "1", "Data:n.ini"); }),
            0);
  EXPECT_EQ(entries(volumes_.folder()), std::vector<std::string>{"p.ini"});
}

TEST_F(Rights, FileAndFolderOpenToAllAreWritten) {
  give(0777, 0666);
  EXPECT_EQ(inChildOfAUser(kWriters[0].write), 1);
  EXPECT_EQ(content(volumes_.posix("p.ini")), "[Main]\r\nkey1=new\r\n");
}

// A writable profile in a folder that does not admit the exchange.
class InPlace : public Rights {
 protected:
  ~InPlace() override { korvel::files::replaceFault = nullptr; }

  void expectOverwriting(const std::function<int(const std::function<int()> &)> &run) {
    struct stat before = {};
    struct stat after = {};
    stat(volumes_.posix("p.ini").c_str(), &before);
    for (const Writer &writer : kWriters) {
      const std::string old = content(volumes_.posix("p.ini"));
      EXPECT_EQ(run(writer.write), 1) << writer.name;
      EXPECT_EQ(content(volumes_.posix("p.ini")), writer.result(old)) << writer.name;
    }
    stat(volumes_.posix("p.ini").c_str(), &after);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(entries(volumes_.folder()), std::vector<std::string>{"p.ini"});
  }
};

TEST_F(InPlace, InAReadOnlyFolder) {
  give(0555, 0666);
  expectOverwriting(inChildOfAUser);
}

TEST_F(InPlace, InAStickyFolderASomeoneElsesFile) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  give(01777, 0666);
  expectOverwriting(inChildOfAUser);
}

TEST_F(InPlace, WhereAnotherFileIsMounted) {
  const std::string file = volumes_.posix("p.ini");
  if (mount(file.c_str(), file.c_str(), nullptr, MS_BIND, nullptr) != 0)
    GTEST_SKIP() << "may not mount";
  expectOverwriting(inChild);
  EXPECT_EQ(umount2(file.c_str(), MNT_DETACH), 0);
}

TEST_F(InPlace, AFullDiskLeavesTheOldProfile) {
  const std::string disk = volumes_.folder();
  if (mount("none", disk.c_str(), "tmpfs", 0, "size=65536,mode=0777") != 0)
    GTEST_SKIP() << "may not mount a small disk";
  const std::string old = profileOf(1000);
  volumes_.file("p.ini", old);
  volumes_.file("ballast", std::string(32768, 'b'));
  give(0555, 0666);
  const std::string more(40000, 'v');
  EXPECT_EQ(inChildOfAUser([&] { return WritePrivateProfileSection("More", more.c_str(), kPath); }),
            0);
  EXPECT_TRUE(content(volumes_.posix("p.ini")) == old);
  for (const Writer &writer : kWriters) {
    const std::string before = content(volumes_.posix("p.ini"));
    EXPECT_EQ(inChildOfAUser(writer.write), 1) << writer.name;
    EXPECT_TRUE(content(volumes_.posix("p.ini")) == writer.result(before)) << writer.name;
  }
  EXPECT_EQ(umount2(disk.c_str(), MNT_DETACH), 0);
}

int overwritings;

TEST_F(InPlace, AFaultInTheMidstOfTheOverwritingLeavesTheOldProfile) {
  const std::string old = profileOf(60000);
  give(0555, 0666);
  volumes_.file("p.ini", old);
  for (int nth = 1; nth <= 4; ++nth) {
    overwritings = nth;
    korvel::files::replaceFault = [](korvel::files::ReplaceStep step) {
      return step == korvel::files::ReplaceStep::Overwrite && --overwritings == 0 ? ENOSPC : 0;
    };
    for (const Writer &writer : {kWriters[0], kWriters[1]}) {
      EXPECT_EQ(inChildOfAUser(writer.write), 0) << writer.name << ' ' << nth;
      EXPECT_TRUE(content(volumes_.posix("p.ini")) == old) << writer.name << ' ' << nth;
    }
  }
}

// --- What is no missing file -------------------------------------------------------------------

using Errors = Rights;

TEST_F(Errors, ProcessWithoutDescriptorsLeavesTheProfile) {
  for (const Writer &writer : kWriters) {
    EXPECT_EQ(inChild([&] {
                const rlimit none = {0, 0};
                return setrlimit(RLIMIT_NOFILE, &none) == 0 ? writer.write() : 99;
              }),
              0)
        << writer.name;
  }
  EXPECT_EQ(content(volumes_.posix("p.ini")), kOld);
}

TEST_F(Errors, ProcessWithoutMemoryLeavesTheProfile) {
  if (kUnderSanitizer) GTEST_SKIP() << "the sanitizer needs all the address space";
  for (const Writer &writer : kWriters) {
    for (const char *path : {kPath, "Data:new.ini"}) {
      EXPECT_EQ(inChild([&] {
                  const rlimit none = {0, 0};
                  if (setrlimit(RLIMIT_AS, &none) != 0) return 99;
                  void *volatile kept;
                  do kept = std::malloc(4096);
                  while (kept != nullptr);
                  const int written = WritePrivateProfileString("Main", "key1", "new", path);
                  return written + 2 * writer.write();
                }),
                0)
          << writer.name << ' ' << path;
    }
  }
  EXPECT_EQ(content(volumes_.posix("p.ini")), kOld);
  EXPECT_EQ(entries(volumes_.folder()), std::vector<std::string>{"p.ini"});
}

// --- Several at once ---------------------------------------------------------------------------

class AtOnce : public testing::Test {
 protected:
  static constexpr int kProcesses = 16;

  ~AtOnce() override { korvel::files::lockPatience = 5000; }

  // Runs body(process) in that many processes at once; returns the number that returned 0.
  static int run(const std::function<int(int process)> &body) {
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
      const pid_t child = fork();
      if (child == 0) _exit(body(process));
      children.push_back(child);
    }
    int succeeded = 0;
    for (const pid_t child : children) {
      int status = 0;
      waitpid(child, &status, 0);
      if (WIFEXITED(status) && WEXITSTATUS(status) == 0) ++succeeded;
    }
    return succeeded;
  }

  // Each process writes a key of its own again and again, and finds what it wrote each time.
  static int writeOften(int process) {
    const std::string key = "key" + std::to_string(process);
    for (int i = 1; i <= 50; ++i) {
      if (WritePrivateProfileString("Main", key.c_str(), std::to_string(i).c_str(), kPath) != 1)
        return 1;
      if (GetPrivateProfileInt("Main", key.c_str(), -1, kPath) != i) return 2;
    }
    return 0;
  }
  void expectAllWritten() const {
    for (int process = 0; process < kProcesses; ++process) {
      const std::string key = "key" + std::to_string(process);
      EXPECT_EQ(GetPrivateProfileInt("Main", key.c_str(), -1, kPath), 50) << key;
    }
    EXPECT_EQ(entries(volumes_.folder()), std::vector<std::string>{"p.ini"});
  }

  korvel::test::MemoryDisk inMemory_;
  Volumes volumes_;
};

TEST_F(AtOnce, SixteenProcessesLoseNothing) {
  EXPECT_EQ(run(writeOften), kProcesses);
  expectAllWritten();
}

TEST_F(AtOnce, NorWhereTheFileIsOverwritten) {
  volumes_.file("p.ini", "");
  chmod(volumes_.root().c_str(), 0755);
  chmod(volumes_.folder().c_str(), 0555);
  chmod(volumes_.posix("p.ini").c_str(), 0666);
  EXPECT_EQ(run([](int process) {
              return inChildOfAUser([&] {
                const std::string key = "key" + std::to_string(process);
                for (int i = 1; i <= 50; ++i) {
                  const std::string value = std::to_string(i);
                  if (WritePrivateProfileString("Main", key.c_str(), value.c_str(), kPath) != 1)
                    return 1;
                }
                return 0;
              });
            }),
            kProcesses);
  chmod(volumes_.folder().c_str(), 0777);
  expectAllWritten();
}

TEST_F(AtOnce, NorWhenAllCreateTheFile) {
  for (int round = 0; round < 20; ++round) {
    std::filesystem::remove(volumes_.posix("p.ini"));
    for (const bool named : {false, true}) {
      if (named) {
        korvel::files::replaceFault = [](korvel::files::ReplaceStep step) {
          return step == korvel::files::ReplaceStep::Temporary ? EOPNOTSUPP : 0;
        };
      }
      const std::string section = named ? "Named" : "Main";
      EXPECT_EQ(run([&](int process) {
                  const std::string key = "key" + std::to_string(process);
                  return WritePrivateProfileString(section.c_str(), key.c_str(), "7", kPath) - 1;
                }),
                kProcesses);
      korvel::files::replaceFault = nullptr;
      for (int process = 0; process < kProcesses; ++process) {
        const std::string key = "key" + std::to_string(process);
        EXPECT_EQ(GetPrivateProfileInt(section.c_str(), key.c_str(), -1, kPath), 7) << round;
      }
      EXPECT_EQ(entries(volumes_.folder()), std::vector<std::string>{"p.ini"});
      if (!named) std::filesystem::remove(volumes_.posix("p.ini"));
    }
  }
}

TEST_F(AtOnce, AWriterThatWaitedTooLongGivesZero) {
  volumes_.file("p.ini", "[Main]\r\nkey1=old\r\n");
  const int other = open(volumes_.posix("p.ini").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  korvel::files::lockPatience = 30;
  for (const Writer &writer : kWriters) EXPECT_EQ(writer.write(), 0) << writer.name;
  EXPECT_EQ(content(volumes_.posix("p.ini")), "[Main]\r\nkey1=old\r\n");
  close(other);
  EXPECT_EQ(kWriters[0].write(), 1);
  EXPECT_EQ(content(volumes_.posix("p.ini")), "[Main]\r\nkey1=new\r\n");
}

TEST_F(AtOnce, AWriterThatWaitedWorksOnWhatIsThereNow) {
  volumes_.file("p.ini", "[Main]\r\nkey1=old\r\n");
  const int other = open(volumes_.posix("p.ini").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  std::thread replacing([&] {
    usleep(30000);
    volumes_.file("new", "[Main]\r\nkey1=other\r\nmore=1\r\n");
    std::filesystem::rename(volumes_.posix("new"), volumes_.posix("p.ini"));
    close(other);
  });
  EXPECT_EQ(kWriters[0].write(), 1);
  replacing.join();
  EXPECT_EQ(content(volumes_.posix("p.ini")), "[Main]\r\nkey1=new\r\nmore=1\r\n");
}

}  // namespace
