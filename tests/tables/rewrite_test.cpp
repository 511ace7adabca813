// SPDX-License-Identifier: MIT
// What every rewriting of a table does, whatever the edit.
#include "tables/rewrite.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <signal.h>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "files/lock.h"
#include "tests/tables/edits.h"

namespace korvel {
namespace {

using test::actes;
using test::becomeNobody;
using test::content;
using test::deleteLine;
using test::Fault;
using test::Files;
using test::flushLine;
using test::inChild;
using test::insertLine;
using test::lines;
using test::modeOf;
using test::replaceCode;
using test::replaceColumn;
using test::ReplaceStep;
using test::State;
using test::state;

// Rewrites without changing a line.
int rewriteOnly(const char *table = "actes") {
  ZRV_Libelle_NC_set_ligne(0);
  return deleteLine(table);
}

class Rewrite : public test::Edits {
 protected:
  std::string temporary() const { return folder() + "/actes.ta_"; }
  void leaveOver(std::string_view text) const { volumes_.file("tables/actes.ta_", text); }
};

// --- Line ends ---------------------------------------------------------------------------------

TEST_F(Rewrite, EveryLineEndsWithCrLfAfterwards) {
  using namespace std::string_view_literals;
  const struct {
    std::string_view before;
    std::string_view after;
  } kCases[] = {
      {"", ""},
      {"a\r\nb\r\n", "a\r\nb\r\n"},
      {"a\rb\r", "a\r\nb\r\n"},
      // The last line gains an end.
      {"a\r\nb", "a\r\nb\r\n"},
      {"a", "a\r\n"},
      // A line feed is not part of a line, wherever it is.
      {"a\nb\nc", "abc\r\n"},
      {"\n\na\r\n", "a\r\n"},
      {"a\r\n\nb\r\n", "a\r\nb\r\n"},
      {"a\n\rb\n\r", "a\r\nb\r\n"},
      {"a\nb\r\nc\r\n", "ab\r\nc\r\n"},
      // Empty lines are lines.
      {"\r\n\r\n", "\r\n\r\n"},
      {"\r\r\r", "\r\n\r\n\r\n"},
      {"a\r\r\nb", "a\r\n\r\nb\r\n"},
      // Text before a lone line feed at the end is a line, a line feed alone is not.
      {"a\r\nb\n", "a\r\nb\r\n"},
      {"a\r\n\n", "a\r\n"},
      {"\n", ""},
      {"\n\n\n", ""},
      // NULs are characters as long as a line is only copied.
      {"a\0b\r\n\0\0\r\n"sv, "a\0b\r\n\0\0\r\n"sv},
      {"a\0b\r\0"sv, "a\0b\r\n\0\r\n"sv},
  };
  for (const std::size_t block : {1U, 2U, 3U, 5U, 262144U}) {
    tables::TableReader::blockSize = block;
    for (const auto &row : kCases) {
      table("actes", row.before);
      EXPECT_EQ(rewriteOnly(), 0);
      EXPECT_EQ(tableText(), row.after) << row.before << " by " << block;
    }
  }
}

TEST_F(Rewrite, CopiedLinesKeep1023Characters) {
  for (const std::size_t block : {1U, 1000U, 1024U, 1025U, 1026U, 262144U}) {
    tables::TableReader::blockSize = block;
    for (const std::size_t length : {1022U, 1023U, 1024U, 1025U, 1500U, 100000U}) {
      const std::string text = std::string(length, 'a');
      for (const std::string_view end : {"\r\n", "\r", ""}) {
        table("actes", "b\r\n" + text + std::string(end));
        EXPECT_EQ(rewriteOnly(), 0);
        EXPECT_TRUE(tableText() == "b\r\n" + text.substr(0, 1023) + "\r\n") << length;
      }
    }
  }
}

TEST_F(Rewrite, ALargeTableComesWhole) {
  std::string before;
  std::string after;
  for (int i = 0; i < 60000; ++i) {
    const std::string line = std::to_string(i) + ",Commune num\xE9ro " + std::to_string(i * 7);
    // Some stretches with plain ends, some without, over many blocks.
    const bool plain = (i / 5000) % 3 != 1;
    before += line + (plain ? "\r\n" : "\r");
    after += line + "\r\n";
  }
  ASSERT_GT(before.size(), 6 * tables::TableReader::kLargestBlock);
  table("actes", before);
  ZRV_Libelle_NC_set_ligne(54321);
  EXPECT_EQ(replaceCode("x"), 1);
  const std::size_t at = after.find("\r\n54320,") + 2;
  after.replace(at, 5, "x");
  EXPECT_TRUE(tableText() == after);
}

TEST_F(Rewrite, ASeamBetweenBlocksMayStandAnywhere) {
  const std::string before = actes() + "a\rb\n\r\r\nc,d\r\n" + std::string(40, 'e');
  table("actes", before);
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 1);
  const std::string expected = tableText();
  for (std::size_t block = 1; block <= before.size() + 1; ++block) {
    tables::TableReader::blockSize = block;
    table("actes", before);
    EXPECT_EQ(replaceColumn(1, "x"), 1);
    EXPECT_EQ(tableText(), expected) << block;
  }
}

// --- The temporary file ------------------------------------------------------------------------

// Kept: bytes of the old temporary beyond the new content end up in the table.
TEST_F(Rewrite, WhatALeftOverFileHoldsBehindTheNewTableEndsUpInIt) {
  const std::string longer = actes() + "99,Rest\r\nmore";
  leaveOver(longer);
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 1);
  std::string expected = actes();
  expected.replace(expected.find("Visite"), 6, "x");
  EXPECT_EQ(tableText(), expected + longer.substr(expected.size()));
  EXPECT_EQ(test::entries(folder()), std::vector<std::string>{"actes.tab"});
}

TEST_F(Rewrite, ALeftOverFileThatIsNotLongerIsOverwritten) {
  for (const std::size_t shorter : {0U, 1U, 50U}) {
    leaveOver(std::string(actes().size() - shorter, '!'));
    EXPECT_EQ(rewriteOnly(), 0);
    EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
  }
  leaveOver("");
  EXPECT_EQ(rewriteOnly(), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
}

TEST_F(Rewrite, ALargeLeftOverFileKeepsItsWholeTail) {
  const std::string large(500000, '!');
  leaveOver(large);
  EXPECT_EQ(rewriteOnly(), 0);
  EXPECT_TRUE(tableText() == actes() + large.substr(actes().size()));
}

// Kept: the rewriting uses up the old temporary.
TEST_F(Rewrite, ALeftOverFileIsUsedUpByAWriteThatFails) {
  leaveOver("left");
  ZRV_Libelle_NC_set_ligne(6);
  {
    Fault fault(ReplaceStep::Write, 1, ENOSPC);
    EXPECT_EQ(replaceColumn(1, "x"), 0);
  }
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
}

// A file that another user put there is not taken for the user's own data.
TEST_F(Rewrite, AStrangersLeftOverFileIsNotTakenOver) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  const std::string longer = actes() + "99,Rest\r\n";
  leaveOver(longer);
  ASSERT_EQ(chown(temporary().c_str(), 12, static_cast<gid_t>(-1)), 0);
  for (const mode_t mode : {0666U, 0600U}) {
    table("actes", actes());
    chmod(temporary().c_str(), mode);
    ZRV_Libelle_NC_set_ligne(6);
    EXPECT_EQ(deleteLine(), 1);
    std::string expected = actes();
    expected.erase(expected.find("07,"), 20);
    EXPECT_EQ(files(), (Files{{"actes.ta_", longer}, {"actes.tab", expected}}));
    EXPECT_EQ(openHandles(), std::vector<int>{});
  }
}

TEST_F(Rewrite, WhereTheTemporaryCannotStandNothingIsRewritten) {
  mkdir(temporary().c_str(), 0777);
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  EXPECT_EQ(files(), (Files{{"actes.ta_", "(folder)"}, {"actes.tab", actes()}}));
  rmdir(temporary().c_str());
  symlink("elsewhere", temporary().c_str());
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  EXPECT_EQ(tableText(), actes());
  unlink(temporary().c_str());
  mkfifo(temporary().c_str(), 0666);
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  EXPECT_EQ(tableText(), actes());
}

TEST_F(Rewrite, ATableCalledLikeItsTemporaryIsNotItsOwnLeftOver) {
  setDirTables("Data:tables");
  volumes_.file("tables/actes_", actes());
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(deleteLine("actes_"), 1);
  std::string expected = actes();
  expected.erase(expected.find("07,"), 20);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}, {"actes_", expected}}));
}

TEST_F(Rewrite, NoNameLeadsToTheNewContentWhileItIsWritten) {
  ZRV_Libelle_NC_set_ligne(6);
  std::vector<std::string> names;
  {
    Fault fault(ReplaceStep::Sync, 1, [&] {
      names = test::entries(folder());
      return 0;
    });
    EXPECT_EQ(replaceColumn(1, "x"), 1);
  }
  EXPECT_EQ(names, std::vector<std::string>{"actes.tab"});
}

// --- Handles -----------------------------------------------------------------------------------

TEST_F(Rewrite, HandlesAreGivenBack) {
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 1);
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_FILE_ID, -1);
  EXPECT_STREQ(DATA_FILE_TAB[0].name, "Data:tables:actes.tab");
  EXPECT_STREQ(DATA_FILE_TAB[1].name, "Data:tables:actes.ta_");
  EXPECT_EQ(DATA_FILE_TAB[1].size, 0);
  EXPECT_EQ(DATA_FILE_TAB[1].position, 0);
}

TEST_F(Rewrite, NeedsTwoFreeHandles) {
  for (int handle = 0; handle < 3; ++handle) {
    ASSERT_EQ(File_Open("Data:tables:actes.tab", 1, 0), handle);
  }
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 1);
  EXPECT_EQ(openHandles(), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(DATA_FILE_ID, 2);
  const std::string before = tableText();
  ASSERT_EQ(File_Open("Data:tables:actes.tab", 1, 0), 3);
  EXPECT_EQ(replaceColumn(1, "y"), 0);
  EXPECT_EQ(tableText(), before);
  // Kept: the table stays open.
  EXPECT_EQ(openHandles(), (std::vector<int>{0, 1, 2, 3, 4}));
  EXPECT_EQ(replaceColumn(1, "y"), 0);
  EXPECT_EQ(tableText(), before);
  closeHandles();
}

// Kept: the table stays open when it cannot be rewritten.
TEST_F(Rewrite, TheTableStaysOpenWithoutATemporary) {
  mkdir(temporary().c_str(), 0777);
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  EXPECT_EQ(openHandles(), std::vector<int>{0});
  EXPECT_EQ(DATA_FILE_ID, 1);
  EXPECT_STREQ(DATA_FILE_TAB[0].name, "Data:tables:actes.tab");
  char text[6] = "";
  EXPECT_EQ(File_Read(0, text, 5), 5);
  EXPECT_STREQ(text, "Actes");
  closeHandles();
}

TEST_F(Rewrite, ATableThatDoesNotOpenLeavesTheCounterRaised) {
  EXPECT_EQ(replaceColumn(1, "x", "none"), 0);
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_FILE_ID, 0);
}

TEST_F(Rewrite, NoDescriptorIsLeftOpen) {
  const int before = dup(0);
  close(before);
  mkdir((folder() + "/sub.tab").c_str(), 0777);
  ZRV_Libelle_NC_set_ligne(6);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(replaceColumn(1, "x"), 1);
    EXPECT_EQ(insertLine(1), 1);
    EXPECT_EQ(replaceColumn(1, "x", "none"), 0);
    EXPECT_EQ(replaceColumn(1, "x", "sub"), 0);
    Fault fault(ReplaceStep::Rename, 1, EIO);
    EXPECT_EQ(replaceColumn(1, "x"), 0);
  }
  const int after = dup(0);
  close(after);
  EXPECT_EQ(after, before);
}

// --- What the table is ---------------------------------------------------------------------------

TEST_F(Rewrite, ModeIsKept) {
  for (const mode_t mode : {0600, 0640, 0666, 0777}) {
    chmod(posixPath("actes").c_str(), mode);
    EXPECT_EQ(rewriteOnly(), 0);
    EXPECT_EQ(modeOf(posixPath("actes")), mode);
  }
}

TEST_F(Rewrite, OwnerIsKept) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
  ASSERT_EQ(chown(posixPath("actes").c_str(), 12, 34), 0);
  EXPECT_EQ(rewriteOnly(), 0);
  struct stat status = {};
  stat(posixPath("actes").c_str(), &status);
  EXPECT_EQ(status.st_uid, 12U);
  EXPECT_EQ(status.st_gid, 34U);
}

TEST_F(Rewrite, ASymbolicLinkStaysAndItsTableIsRewritten) {
  volumes_.file("shared.tab", actes());
  symlink("../shared.tab", posixPath("linked").c_str());
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x", "linked"), 1);
  struct stat status = {};
  lstat(posixPath("linked").c_str(), &status);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  std::string expected = actes();
  expected.replace(expected.find("Visite"), 6, "x");
  EXPECT_EQ(content(volumes_.posix("shared.tab")), expected);
}

TEST_F(Rewrite, AnotherHardLinkKeepsTheOldTable) {
  const std::string other = folder() + "/other";
  ASSERT_EQ(link(posixPath("actes").c_str(), other.c_str()), 0);
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 1);
  EXPECT_EQ(content(other), actes());
  EXPECT_NE(tableText(), actes());
}

TEST_F(Rewrite, WhatIsNoTableIsLeftAlone) {
  mkdir(posixPath("folder").c_str(), 0777);
  mkfifo(posixPath("pipe").c_str(), 0666);
  symlink("nowhere", posixPath("dangling").c_str());
  symlink("/dev/null", posixPath("device").c_str());
  const std::vector<std::string> before = test::entries(folder());
  ZRV_Libelle_NC_set_ligne(1);
  for (const char *name : {"folder", "pipe", "dangling", "device", "none"}) {
    EXPECT_EQ(replaceColumn(1, "x", name), 0) << name;
    EXPECT_EQ(insertLine(1, name), 0) << name;
    EXPECT_EQ(flushLine(name), 0) << name;
    EXPECT_EQ(deleteLine(name), 0) << name;
    EXPECT_EQ(openHandles(), std::vector<int>{}) << name;
    closeHandles();
  }
  EXPECT_EQ(test::entries(folder()), before);
}

// --- Failures ------------------------------------------------------------------------------------

TEST_F(Rewrite, AFaultAtAnyStepLeavesTableAndStateAsTheyWere) {
  constexpr ReplaceStep kSteps[] = {ReplaceStep::Open,  ReplaceStep::Temporary, ReplaceStep::Write,
                                    ReplaceStep::Adopt, ReplaceStep::Sync,      ReplaceStep::Link,
                                    ReplaceStep::Rename};
  ASSERT_EQ(test::lookUp("07", 1, "actes").result, 1);
  const State before = state();
  for (const ReplaceStep step : kSteps) {
    for (const auto &edit : {+[] { return replaceColumn(1, "x"); }, +[] { return insertLine(2); },
                             +[] { return deleteLine(); }, +[] { return flushLine(); }}) {
      Fault fault(step, 1, ENOSPC);
      EXPECT_EQ(edit(), 0) << static_cast<int>(step);
      EXPECT_EQ(state(), before) << static_cast<int>(step);
      EXPECT_EQ(files(), (Files{{"actes.tab", actes()}})) << static_cast<int>(step);
      closeHandles();
    }
  }
}

TEST_F(Rewrite, TheNthWriteFailingLeavesTheTable) {
  std::string large;
  for (int i = 0; i < 30000; ++i)
    large += std::to_string(i) + ",a rather long label to fill blocks\r";
  table("actes", large);
  ZRV_Libelle_NC_set_ligne(15000);
  int writes = 0;
  for (int nth = 1;; ++nth) {
    Fault fault(ReplaceStep::Write, nth, ENOSPC);
    if (replaceColumn(1, "x") == 1) break;
    ++writes;
    ASSERT_TRUE(tableText() == large) << nth;
    ASSERT_EQ(test::entries(folder()), std::vector<std::string>{"actes.tab"});
  }
  EXPECT_GE(writes, 20);
}

TEST_F(Rewrite, AFileSizeLimitLeavesTheTable) {
  EXPECT_EQ(inChild([&] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit limit = {actes().size(), actes().size()};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
              ZRV_Libelle_NC_set_ligne(6);
              if (replaceColumn(1, "longer than before") != 0) return 3;
              if (insertLine(0) != 0) return 4;
              if (files() != Files{{"actes.tab", actes()}}) return 5;
              if (!openHandles().empty()) return 6;
              return replaceColumn(1, "x") == 1 ? 0 : 7;
            }),
            0);
  EXPECT_NE(tableText(), actes());
}

TEST_F(Rewrite, AFullDiskLeavesTheTable) {
  const std::string disk = volumes_.folder() + "/disk";
  test::SmallDisk mounted(disk, "size=65536,mode=0777");
  if (!mounted.mounted()) GTEST_SKIP() << "may not mount";
  setText(szDirTables, "Data:disk");
  const std::string large(39000, 'a');
  std::string text;
  for (std::size_t i = 0; i < large.size(); i += 100) text += large.substr(i, 100) + "\r\n";
  volumes_.file("disk/actes.tab", text);
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceCode("x"), 0);
  EXPECT_EQ(deleteLine(), 0);
  EXPECT_EQ(test::filesIn(disk), (Files{{"actes.tab", text}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
  volumes_.file("disk/actes.tab", text.substr(0, 20400));
  EXPECT_EQ(deleteLine(), 1);
  EXPECT_EQ(content(disk + "/actes.tab").size(), 20400U - 102);
}

// A folder of a user's own that this user closes and opens again.
TEST_F(Rewrite, AFolderThatLosesItsWritePermissionLeavesTheTable) {
  chmod(volumes_.root().c_str(), 0755);
  chmod(volumes_.folder().c_str(), 0777);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              const std::string own = volumes_.posix("own");
              if (mkdir(own.c_str(), 0755) != 0) return 3;
              volumes_.file("own/actes.tab", actes());
              setText(szDirTables, "Data:own");
              ZRV_Libelle_NC_set_ligne(6);
              if (replaceColumn(1, "x") != 1) return 4;
              const Files before = test::filesIn(own);
              if (chmod(own.c_str(), 0555) != 0) return 5;
              if (replaceColumn(1, "y") != 0 || deleteLine() != 0) return 6;
              // Kept: the table stays open each time.
              if (openHandles() != std::vector<int>{0, 2}) return 7;
              closeHandles();
              if (test::filesIn(own) != before) return 8;
              if (chmod(own.c_str(), 0755) != 0) return 9;
              {
                Fault fault(ReplaceStep::Link, 1,
                            [&] { return chmod(own.c_str(), 0555) == 0 ? 0 : EIO; });
                if (replaceColumn(1, "y") != 0) return 10;
              }
              if (test::filesIn(own) != before || !openHandles().empty()) return 11;
              if (chmod(own.c_str(), 0755) != 0) return 12;
              return replaceColumn(1, "y") == 1 ? 0 : 13;
            }),
            0);
}

TEST_F(Rewrite, AReadOnlyTableIsLeftAlone) {
  chmod(volumes_.root().c_str(), 0755);
  chmod(folder().c_str(), 0777);
  chmod(posixPath("actes").c_str(), 0444);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              ZRV_Libelle_NC_set_ligne(6);
              if (replaceColumn(1, "x") != 0) return 3;
              return openHandles().empty() ? 0 : 4;
            }),
            0);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
}

TEST_F(Rewrite, AReadOnlyDiskLeavesTheTable) {
  const std::string disk = volumes_.folder() + "/disk";
  test::SmallDisk mounted(disk, "mode=0777");
  if (!mounted.mounted()) GTEST_SKIP() << "may not mount";
  volumes_.file("disk/actes.tab", actes());
  ASSERT_EQ(mount("none", disk.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
  setText(szDirTables, "Data:disk");
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  EXPECT_EQ(test::filesIn(disk), (Files{{"actes.tab", actes()}}));
}

// --- Several at once -----------------------------------------------------------------------------

TEST_F(Rewrite, AnEditWaitsForWhoeverHasTheTable) {
  const int other = open(posixPath("actes").c_str(), O_RDWR);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  std::string seen;
  std::thread releasing([&] {
    usleep(50000);
    seen = tableText();
    close(other);
  });
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 1);
  releasing.join();
  EXPECT_EQ(seen, actes());
}

// Whether the table at a path is locked.
bool isTaken(const std::string &path) {
  const int file = open(path.c_str(), O_RDWR);
  const bool taken = flock(file, LOCK_EX | LOCK_NB) != 0;
  close(file);
  return taken;
}

TEST_F(Rewrite, AnEditThatWaitedWorksOnWhatIsThereNow) {
  const int other = open(posixPath("actes").c_str(), O_RDWR);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  const std::string changed = lines({"Autre", "a,b"});
  std::string seen;
  std::thread replacing([&] {
    usleep(50000);
    seen = tableText();
    volumes_.file("tables/new", changed);
    std::rename((folder() + "/new").c_str(), posixPath("actes").c_str());
    close(other);
  });
  // What it has is the new table, from the first attempt on.
  int attempts = 0;
  bool hasTheNewOne = true;
  {
    Fault fault(ReplaceStep::Sync, 1, [&] {
      ++attempts;
      hasTheNewOne = isTaken(posixPath("actes"));
      return 0;
    });
    ZRV_Libelle_NC_set_ligne(2);
    EXPECT_EQ(replaceColumn(1, "x"), 1);
  }
  replacing.join();
  EXPECT_EQ(seen, actes()) << "it waited";
  EXPECT_EQ(attempts, 1);
  EXPECT_TRUE(hasTheNewOne);
  EXPECT_EQ(tableText(), lines({"Autre", "a,x"}));
}

TEST_F(Rewrite, AnEditThatWaitedTooLongGivesZero) {
  const int other = open(posixPath("actes").c_str(), O_RDWR);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  files::lockPatience = 50;
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
  files::lockPatience = 5000;
  close(other);
  EXPECT_EQ(replaceColumn(1, "x"), 1);
}

// Kept: the table stays open then. It is not kept from others.
TEST_F(Rewrite, ATableThatStaysOpenIsFree) {
  mkdir(temporary().c_str(), 0777);
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  EXPECT_EQ(openHandles(), std::vector<int>{0});
  EXPECT_FALSE(isTaken(posixPath("actes")));
  closeHandles();
}

TEST_F(Rewrite, AnEditThatWaitedForATableThatIsGoneGivesZero) {
  const int other = open(posixPath("actes").c_str(), O_RDWR);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  std::thread removing([&] {
    usleep(50000);
    unlink(posixPath("actes").c_str());
    close(other);
  });
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  removing.join();
  EXPECT_EQ(files(), Files{});
}

// --- Programs that take no lock ------------------------------------------------------------------

// Adds bytes to a file as a program does that knows nothing of edits.
void append(const std::string &path, std::string_view bytes) {
  const int file = open(path.c_str(), O_WRONLY | O_APPEND);
  EXPECT_EQ(write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  close(file);
}

// The table has changed between the reading and the renaming: the edit is made on the new one.
TEST_F(Rewrite, WhatIsAppendedDuringAnEditIsNotLost) {
  for (const ReplaceStep step : {ReplaceStep::Open, ReplaceStep::Write, ReplaceStep::Adopt,
                                 ReplaceStep::Sync, ReplaceStep::Link, ReplaceStep::Rename}) {
    table("actes", actes());
    Fault fault(step, 1, [&] {
      append(posixPath("actes"), "08,Ajout");
      return 0;
    });
    ZRV_Libelle_NC_set_ligne(6);
    EXPECT_EQ(replaceColumn(1, "x"), 1);
    std::string expected = actes();
    expected.replace(expected.find("Visite"), 6, "x");
    EXPECT_EQ(files(), (Files{{"actes.tab", expected + "08,Ajout\r\n"}}));
    EXPECT_EQ(openHandles(), std::vector<int>{});
    EXPECT_EQ(DATA_FILE_ID, -1);
  }
}

TEST_F(Rewrite, WhatReplacesTheTableDuringAnEditIsEdited) {
  const auto replace = [&](const std::string &text) {
    volumes_.file("tables/made", text);
    std::rename((folder() + "/made").c_str(), posixPath("actes").c_str());
    return 0;
  };
  // As long as the old one, too.
  std::string other = actes();
  other.replace(other.find("Garde"), 5, "Repas");
  Fault fault(ReplaceStep::Rename, 1, [&] { return replace(other); });
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(deleteLine(), 1);
  other.erase(other.find("07,"), 20);
  EXPECT_EQ(files(), (Files{{"actes.tab", other}}));
}

TEST_F(Rewrite, ATableThatIsCutShortDuringAnEditIsEditedAsItIsThen) {
  tables::TableReader::blockSize = 16;
  const std::string cut = actes().substr(0, actes().find("#FIN"));
  Fault fault(ReplaceStep::Open, 1,
              [&] { return truncate(posixPath("actes").c_str(), static_cast<off_t>(cut.size())); });
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 1);
  std::string expected = cut;
  expected.replace(expected.find("Visite"), 6, "x");
  EXPECT_EQ(files(), (Files{{"actes.tab", expected}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
}

TEST_F(Rewrite, AnEditGivesUpWhenTheTableIsCutShortThreeTimes) {
  tables::TableReader::blockSize = 16;
  const std::string text = actes();
  ZRV_Libelle_NC_set_ligne(1);
  test::EachTime fault(ReplaceStep::Open, [&](int nth) {
    EXPECT_EQ(truncate(posixPath("actes").c_str(), 80 - 16 * nth), 0);
  });
  EXPECT_EQ(deleteLine(), 0);
  EXPECT_EQ(fault.passages(), 3);
  EXPECT_EQ(files(), (Files{{"actes.tab", text.substr(0, 32)}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
}

TEST_F(Rewrite, ATableThatGoesDuringAnEditStaysGone) {
  Fault fault(ReplaceStep::Rename, 1, [&] { return unlink(posixPath("actes").c_str()); });
  ZRV_Libelle_NC_set_ligne(6);
  EXPECT_EQ(replaceColumn(1, "x"), 0);
  EXPECT_EQ(files(), Files{});
}

TEST_F(Rewrite, EveryEditStartsAgainOnAChangedTable) {
  const struct {
    const char *name;
    int (*edit)();
    std::string table;
    std::string expected;
  } kEdits[] = {
      {"insert", [] { return insertLine(0); }, lines({"a,b"}),
       lines({"a,b",
              "N\xE9"
              "ant,N\xE9"
              "ant",
              "c,d"})},
      {"delete", [] { return deleteLine(); }, lines({"a,b"}), lines({"c,d"})},
      {"flush", [] { return flushLine(); }, lines({"a,b"}), lines({"01,x", "c,d"})},
      {"modify", [] { return ZRV_Table_modify("actes", "actes", "2", "T"); }, lines({"a,b"}),
       lines({"T", "Version: 2"})},
      {"repair", [] { return ZRV_Table_repair("actes", "2", "T"); }, lines({"a,b"}),
       lines({"T", "Version: 2", "a,b", "c,d"})},
  };
  for (const auto &row : kEdits) {
    table("actes", row.table);
    ZRV_Libelle_NC_set_ligne(1);
    std::memcpy(ZRV_Libelle_NC_szBuffer, "01\0x\0", 6);
    Fault fault(ReplaceStep::Rename, 1, [&] {
      append(posixPath("actes"), "c,d");
      return 0;
    });
    EXPECT_EQ(row.edit(), 1) << row.name;
    EXPECT_EQ(files(), (Files{{"actes.tab", row.expected}})) << row.name;
  }
}

TEST_F(Rewrite, ARenamingStartsAgainOnAChangedTable) {
  table("new", "other");
  Fault fault(ReplaceStep::Rename, 1, [&] {
    append(posixPath("actes"), "c,d");
    return 0;
  });
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "2", "Actes"), 1);
  EXPECT_EQ(files(), (Files{{"new.tab", actes() + "c,d\r\n"}}));
}

// A left-over file gives its tail to the attempt that succeeds.
TEST_F(Rewrite, TheTailOfALeftOverFileIsThereAfterASecondAttempt) {
  leaveOver(actes() + "99,Rest\r\n99,Ende\r\n");
  Fault fault(ReplaceStep::Rename, 1, [&] {
    append(posixPath("actes"), "08,Ajout\r\n");
    return 0;
  });
  EXPECT_EQ(rewriteOnly(), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes() + "08,Ajout\r\n" + "9,Ende\r\n"}}));
}

TEST_F(Rewrite, AnEditGivesUpWhenTheTableChangesThreeTimes) {
  for (const int changes : {2, 3}) {
    table("actes", actes());
    ASSERT_EQ(test::lookUp("07", 1, "actes").result, 1);
    const State before = state();
    std::string appended;
    {
      test::EachTime fault(ReplaceStep::Rename, [&](int nth) {
        if (nth > changes) return;
        append(posixPath("actes"), "08,Ajout\r\n");
        appended += "08,Ajout\r\n";
      });
      EXPECT_EQ(deleteLine(), changes == 3 ? 0 : 1);
      EXPECT_EQ(fault.passages(), 3);
    }
    std::string expected = actes();
    if (changes == 2) expected.erase(expected.find("07,"), 20);
    EXPECT_EQ(files(), (Files{{"actes.tab", expected + appended}}));
    EXPECT_EQ(state(), before);
    EXPECT_EQ(openHandles(), std::vector<int>{});
    EXPECT_EQ(DATA_FILE_ID, -1);
  }
}

// Beside many edits, a program appends. What is lost was appended between an edit's last look at
// the table and its end.
TEST_F(Rewrite, AppendingForeignersLoseNothingButInTheLastInstantOfAnEdit) {
  using Clock = std::chrono::steady_clock;
  struct Span {
    Clock::time_point begin;
    Clock::time_point end;
    bool overlaps(const Span &other) const { return begin <= other.end && other.begin <= end; }
  };
  constexpr int kEdits = 300;
  std::string large = actes();
  for (int i = 0; i < 5000; ++i) large += std::to_string(i) + ",Libell\xE9\r\n";
  table("actes", large);

  std::atomic<bool> stop = false;
  std::vector<Span> appended;
  const auto lineOf = [](std::size_t number) { return std::to_string(number) + ",ajout\r\n"; };
  std::thread foreigner([&] {
    while (!stop) {
      const std::string line = lineOf(appended.size());
      Span span;
      span.begin = Clock::now();
      append(posixPath("actes"), line);
      span.end = Clock::now();
      appended.push_back(span);
      usleep(static_cast<useconds_t>(500 + appended.size() * 7919 % 2000));
    }
  });
  std::vector<Span> blind;
  int done = 0;
  {
    test::EachTime look(ReplaceStep::Rename, [&](int) { blind.push_back({Clock::now(), {}}); });
    for (int i = 0; i < kEdits; ++i) {
      const std::size_t before = blind.size();
      usleep(1000);
      ZRV_Libelle_NC_set_ligne(4);
      if (replaceColumn(1, std::to_string(i).c_str()) == 1) ++done;
      // Only the last attempt puts anything in the table's place.
      if (blind.size() > before)
        blind.erase(blind.begin() + static_cast<long>(before), blind.end() - 1);
      if (blind.size() > before) blind.back().end = Clock::now();
    }
  }
  stop = true;
  foreigner.join();

  EXPECT_GT(done, kEdits / 2);
  EXPECT_GT(appended.size(), 50U);
  const std::string now = "\r\n" + tableText();
  int unexplained = 0;
  for (std::size_t i = 0; i < appended.size(); ++i) {
    if (now.find(lineOf(i).insert(0, "\r\n")) != std::string::npos) continue;
    const bool explained = std::any_of(blind.begin(), blind.end(), [&](const Span &instant) {
      return instant.overlaps(appended[i]);
    });
    if (!explained) ++unexplained;
  }
  EXPECT_EQ(unexplained, 0) << "of " << appended.size();
}

}  // namespace
}  // namespace korvel
