// SPDX-License-Identifier: MIT
// The heading lines of a table and its name.
#include <cerrno>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "files/lock.h"
#include "tests/tables/edits.h"

namespace korvel {
namespace {

using test::actes;
using test::becomeNobody;
using test::content;
using test::Fault;
using test::Files;
using test::inChild;
using test::lines;
using test::modeOf;
using test::ReplaceStep;

constexpr std::string_view kData = "#DEBUT\r\n01,A\r\n#FIN\r\n";

class Header : public test::Edits {
 protected:
  Header() { table("actes", "Actes\r\nVersion: 2\r\n" + std::string(kData)); }
  static std::string changed() { return "Titre\r\nVersion: 3\r\n" + std::string(kData); }
  static std::string unchanged() { return "Actes\r\nVersion: 2\r\n" + std::string(kData); }
};

TEST_F(Header, ModifyChangesHeadingAndName) {
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 1);
  EXPECT_EQ(files(), (Files{{"new.tab", changed()}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_FILE_ID, -1);
}

TEST_F(Header, ModifyWithTheOldNameChangesTheHeadingOnly) {
  EXPECT_EQ(ZRV_Table_modify("actes", "actes", "3", "Titre"), 1);
  EXPECT_EQ(files(), (Files{{"actes.tab", changed()}}));
}

TEST_F(Header, ModifyChangesTheLinesThatThereAre) {
  constexpr struct {
    std::string_view before;
    int result;
    std::string_view after;
  } kCases[] = {
      // Kept: a table without a line gets its new name, too. The result is 0.
      {"", 0, ""},
      {"\n", 0, ""},
      {"a", 1, "Titre\r\n"},
      {"\r", 1, "Titre\r\n"},
      {"a\rb", 1, "Titre\r\nVersion: 3\r\n"},
      {"a\r\nb\r\nc\rd", 1, "Titre\r\nVersion: 3\r\nc\r\nd\r\n"},
      {"#DEBUT\r\n#FIN\r\n", 1, "Titre\r\nVersion: 3\r\n"},
  };
  for (const auto &row : kCases) {
    for (const char *name : {"actes", "new"}) {
      table("actes", row.before);
      EXPECT_EQ(ZRV_Table_modify("actes", name, "3", "Titre"), row.result) << row.before;
      EXPECT_EQ(files(), (Files{{name + std::string(".tab"), std::string(row.after)}}));
      unlink(posixPath("new").c_str());
    }
  }
}

TEST_F(Header, ANewNameOfAnotherTableReplacesThatOne) {
  chmod(posixPath("actes").c_str(), 0640);
  table("new", "other");
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 1);
  EXPECT_EQ(files(), (Files{{"new.tab", changed()}}));
  EXPECT_EQ(modeOf(posixPath("new")), 0640U);
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_FILE_ID, -1);
}

TEST_F(Header, AnotherSpellingOfTheNameKeepsTheTable) {
  for (const char *name : {":actes", ".:actes"}) {
    table("actes", unchanged());
    EXPECT_EQ(ZRV_Table_modify("actes", name, "3", "Titre"), 1) << name;
    EXPECT_EQ(files(), (Files{{"actes.tab", changed()}})) << name;
  }
  volumes_.file("shared.tab", unchanged());
  ASSERT_EQ(symlink("../shared.tab", posixPath("linked").c_str()), 0);
  EXPECT_EQ(ZRV_Table_modify("linked", ":linked", "3", "Titre"), 1);
  EXPECT_TRUE(std::filesystem::is_symlink(posixPath("linked")));
  EXPECT_EQ(content(volumes_.posix("shared.tab")), changed());
}

// As a renaming does: the link goes, what it leads to stays.
TEST_F(Header, ANewNameOfALinkReplacesTheLink) {
  table("other", "other");
  for (const char *target : {"other.tab", "nowhere", "actes.tab", "new.tab"}) {
    table("actes", unchanged());
    symlink(target, posixPath("new").c_str());
    EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 1) << target;
    EXPECT_EQ(files(), (Files{{"new.tab", changed()}, {"other.tab", "other"}})) << target;
    EXPECT_FALSE(std::filesystem::is_symlink(posixPath("new")));
    unlink(posixPath("new").c_str());
  }
}

TEST_F(Header, ANewNameOfAnotherLinkToTheTableReplacesThatLink) {
  ASSERT_EQ(link(posixPath("actes").c_str(), posixPath("new").c_str()), 0);
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 1);
  EXPECT_EQ(files(), (Files{{"new.tab", changed()}}));
}

TEST_F(Header, ANewNameOfAFolderIsRefused) {
  mkdir(posixPath("sub").c_str(), 0777);
  EXPECT_EQ(ZRV_Table_modify("actes", "sub", "3", "Titre"), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}, {"sub.tab", "(folder)"}}));
  volumes_.file("shared.tab", unchanged());
  symlink("../shared.tab", posixPath("linked").c_str());
  EXPECT_EQ(ZRV_Table_modify("linked", "sub", "3", "Titre"), 0);
  EXPECT_EQ(content(volumes_.posix("shared.tab")), unchanged());
  EXPECT_EQ(test::entries(folder()),
            (std::vector<std::string>{"actes.tab", "linked.tab", "sub.tab"}));
}

TEST_F(Header, AFaultAtAnyStepLeavesTheTableOfTheNewName) {
  for (const ReplaceStep step :
       {ReplaceStep::Open, ReplaceStep::Temporary, ReplaceStep::Write, ReplaceStep::Adopt,
        ReplaceStep::Sync, ReplaceStep::Link, ReplaceStep::Rename}) {
    table("new", "other");
    Fault fault(step, 1, ENOSPC);
    EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 0) << static_cast<int>(step);
    EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}, {"new.tab", "other"}}))
        << static_cast<int>(step);
    closeHandles();
  }
}

TEST_F(Header, ANewNameThatAppearsMeanwhileIsReplaced) {
  Fault fault(ReplaceStep::Link, 1, [&] {
    table("new", "other");
    return 0;
  });
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 1);
  EXPECT_EQ(files(), (Files{{"new.tab", changed()}}));
}

TEST_F(Header, TheTableOfTheNewNameIsWaitedFor) {
  table("new", "other");
  const int other = open(posixPath("new").c_str(), O_RDWR);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  Files seen;
  std::thread releasing([&] {
    usleep(100000);
    seen = files();
    close(other);
  });
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 1);
  releasing.join();
  EXPECT_EQ(seen, (Files{{"actes.tab", unchanged()}, {"new.tab", "other"}}));
  EXPECT_EQ(files(), (Files{{"new.tab", changed()}}));
}

TEST_F(Header, TheTableOfTheNewNameIsNobodyElsesMeanwhile) {
  table("new", "other");
  bool isTaken = false;
  Fault fault(ReplaceStep::Rename, 1, [&] {
    const int other = open(posixPath("new").c_str(), O_RDWR);
    isTaken = flock(other, LOCK_EX | LOCK_NB) != 0;
    close(other);
    return 0;
  });
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 1);
  EXPECT_TRUE(isTaken);
}

TEST_F(Header, ATableOfTheNewNameThatIsWaitedForTooLongStays) {
  table("new", "other");
  const int other = open(posixPath("new").c_str(), O_RDWR);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  files::lockPatience = 50;
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 0);
  files::lockPatience = 5000;
  close(other);
  EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}, {"new.tab", "other"}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
}

TEST_F(Header, BothTablesOfARenamingAreWaitedForOnce) {
  table("new", "other");
  const int source = open(posixPath("actes").c_str(), O_RDWR);
  const int target = open(posixPath("new").c_str(), O_RDWR);
  ASSERT_EQ(flock(source, LOCK_EX), 0);
  ASSERT_EQ(flock(target, LOCK_EX), 0);
  std::thread releasing([&] {
    usleep(600000);
    close(source);
  });
  files::lockPatience = 1000;
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1500));
  files::lockPatience = 5000;
  releasing.join();
  close(target);
  EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}, {"new.tab", "other"}}));
}

TEST_F(Header, WhatCannotBeRenamedStaysAsItWas) {
  mkdir(posixPath("sub").c_str(), 0777);
  EXPECT_EQ(ZRV_Table_modify("sub", "new", "3", "Titre"), 0);
  EXPECT_EQ(ZRV_Table_modify("none", "new", "3", "Titre"), 0);
  EXPECT_EQ(ZRV_Table_modify("actes", "none:new", "3", "Titre"), 0);
  EXPECT_EQ(ZRV_Table_modify("actes", std::string(250, 'n').c_str(), "3", "Titre"), 0);
  EXPECT_EQ(ZRV_Table_modify(nullptr, "new", "3", "Titre"), 0);
  EXPECT_EQ(ZRV_Table_modify("actes", nullptr, "3", "Titre"), 0);
  EXPECT_EQ(ZRV_Table_modify("actes", "new", nullptr, "Titre"), 0);
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", nullptr), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}, {"sub.tab", "(folder)"}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
}

TEST_F(Header, AFaultAtAnyStepLeavesTheTableUnderItsName) {
  for (const ReplaceStep step : {ReplaceStep::Open, ReplaceStep::Temporary, ReplaceStep::Write,
                                 ReplaceStep::Adopt, ReplaceStep::Sync, ReplaceStep::Link}) {
    for (const char *name : {"actes", "new"}) {
      Fault fault(step, 1, ENOSPC);
      EXPECT_EQ(ZRV_Table_modify("actes", name, "3", "Titre"), 0) << static_cast<int>(step);
      EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}})) << static_cast<int>(step);
      closeHandles();
    }
  }
}

TEST_F(Header, InAReadOnlyFolderNothingIsRenamed) {
  chmod(volumes_.root().c_str(), 0755);
  chmod(posixPath("actes").c_str(), 0666);
  chmod(folder().c_str(), 0555);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              if (ZRV_Table_modify("actes", "new", "3", "Titre") != 0) return 3;
              return ZRV_Table_modify("actes", "actes", "3", "Titre");
            }),
            0);
  chmod(folder().c_str(), 0755);
  EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}}));
}

// The new table could be put there, but the old one could not be removed.
TEST_F(Header, SomeoneElsesTableInAStickyFolderKeepsItsName) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  chmod(volumes_.root().c_str(), 0755);
  chmod(posixPath("actes").c_str(), 0666);
  chmod(folder().c_str(), 01777);
  EXPECT_EQ(inChild([&] {
              if (!becomeNobody()) return 2;
              return ZRV_Table_modify("actes", "new", "3", "Titre");
            }),
            0);
  EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}}));
}

TEST_F(Header, InAStickyFolderOnesOwnTableAndInOnesOwnEveryTableGetsItsName) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  constexpr uid_t kNobody = 65534;
  chmod(volumes_.root().c_str(), 0755);
  chmod(folder().c_str(), 01777);
  for (const std::string &own : {posixPath("actes"), folder()}) {
    chmod(posixPath("actes").c_str(), 0666);
    ASSERT_EQ(chown(own.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(inChild([&] {
                if (!becomeNobody()) return 2;
                return ZRV_Table_modify("actes", "new", "3", "Titre");
              }),
              1)
        << own;
    EXPECT_EQ(files(), (Files{{"new.tab", changed()}})) << own;
    unlink(posixPath("new").c_str());
    table("actes", unchanged());
  }
}

TEST_F(Header, ModeGoesWithTheNewName) {
  chmod(posixPath("actes").c_str(), 0640);
  EXPECT_EQ(ZRV_Table_modify("actes", "new", "3", "Titre"), 1);
  EXPECT_EQ(modeOf(posixPath("new")), 0640U);
}

TEST_F(Header, ASymbolicLinkIsRenamedAndItsTableChanged) {
  volumes_.file("shared.tab", unchanged());
  symlink("../shared.tab", posixPath("linked").c_str());
  EXPECT_EQ(ZRV_Table_modify("linked", "new", "3", "Titre"), 1);
  EXPECT_EQ(content(volumes_.posix("shared.tab")), changed());
  struct stat status = {};
  ASSERT_EQ(lstat(posixPath("new").c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  EXPECT_EQ(lstat(posixPath("linked").c_str(), &status), -1);
  EXPECT_EQ(tableText("new"), changed());
}

TEST_F(Header, ASymbolicLinkThatGetsTheNameOfAnotherTableReplacesThatOne) {
  volumes_.file("shared.tab", unchanged());
  symlink("../shared.tab", posixPath("linked").c_str());
  table("new", "other");
  EXPECT_EQ(ZRV_Table_modify("linked", "new", "3", "Titre"), 1);
  EXPECT_EQ(content(volumes_.posix("shared.tab")), changed());
  EXPECT_EQ(std::filesystem::read_symlink(posixPath("new")), "../shared.tab");
  EXPECT_EQ(test::entries(folder()), (std::vector<std::string>{"actes.tab", "new.tab"}));
}

// The folder of the table, and both of the link.
TEST_F(Header, AfterARenamingEveryFolderReachesTheDisk) {
  volumes_.file("shared.tab", unchanged());
  mkdir((folder() + "/sub").c_str(), 0777);
  mkdir((folder() + "/far").c_str(), 0777);
  symlink("../../shared.tab", posixPath("sub/linked").c_str());
  test::EachTime folders(ReplaceStep::Folder, [](int) {});
  EXPECT_EQ(ZRV_Table_modify("sub:linked", "far:new", "3", "Titre"), 1);
  EXPECT_EQ(content(posixPath("far/new")), changed());
  EXPECT_EQ(folders.passages(), 3);
  EXPECT_EQ(ZRV_Table_modify("actes", "sub:actes", "3", "Titre"), 1);
  EXPECT_EQ(folders.passages(), 5);
}

// Only the link goes then.
TEST_F(Header, ASymbolicLinkThatGetsANameOfItsTable) {
  for (const char *name : {"shared", "second"}) {
    table("shared", unchanged());
    symlink("shared.tab", posixPath("second").c_str());
    symlink("second.tab", posixPath("linked").c_str());
    EXPECT_EQ(ZRV_Table_modify("linked", name, "3", "Titre"), 1);
    EXPECT_EQ(tableText("shared"), changed());
    EXPECT_EQ(tableText("second"), changed());
    EXPECT_EQ(test::entries(folder()),
              (std::vector<std::string>{"actes.tab", "second.tab", "shared.tab"}));
    unlink(posixPath("second").c_str());
  }
}

TEST_F(Header, ALinkThatWouldLeadElsewhereIsNotRenamed) {
  volumes_.file("shared.tab", unchanged());
  symlink("../shared.tab", posixPath("linked").c_str());
  mkdir((folder() + "/sub").c_str(), 0777);
  EXPECT_EQ(ZRV_Table_modify("linked", "sub:new", "3", "Titre"), 0);
  EXPECT_EQ(content(volumes_.posix("shared.tab")), unchanged());
  EXPECT_EQ(test::entries(folder()), (std::vector<std::string>{"actes.tab", "linked.tab", "sub"}));
  EXPECT_EQ(test::entries(folder() + "/sub"), std::vector<std::string>{});
}

TEST_F(Header, ALinkWhoseTableCannotBeWrittenKeepsItsName) {
  volumes_.file("shared.tab", unchanged());
  symlink("../shared.tab", posixPath("linked").c_str());
  Fault fault(ReplaceStep::Sync, 1, EIO);
  EXPECT_EQ(ZRV_Table_modify("linked", "new", "3", "Titre"), 0);
  EXPECT_EQ(content(volumes_.posix("shared.tab")), unchanged());
  EXPECT_EQ(test::entries(folder()), (std::vector<std::string>{"actes.tab", "linked.tab"}));
}

// --- Repair ------------------------------------------------------------------------------------

TEST_F(Header, RepairPutsBackAMissingHeading) {
  table("actes", kData);
  EXPECT_EQ(ZRV_Table_repair("actes", "2", "Actes"), 1);
  EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_FILE_ID, -1);
}

TEST_F(Header, RepairLooksAtLinesOneAndThree) {
  constexpr struct {
    std::string_view before;
    int result;
    std::string_view after;  // the same: the file is not touched
  } kCases[] = {
      {"Actes\rVersion: 2\r#DEBUT\r#FIN\r", 1, "Actes\rVersion: 2\r#DEBUT\r#FIN\r"},
      {"Actes\rwhatever\r#DEBUT", 1, "Actes\rwhatever\r#DEBUT"},
      {"Actes\rVersion: 2\r#debut\r", 0, "Actes\rVersion: 2\r#debut\r"},
      {"Actes\rVersion: 2\r#DEBUT \r", 0, "Actes\rVersion: 2\r#DEBUT \r"},
      {"Actes\rVersion: 2\r#DEBU?\r", 0, "Actes\rVersion: 2\r#DEBU?\r"},
      {"Actes\rVersion: 2\r\r", 0, "Actes\rVersion: 2\r\r"},
      // Too short to tell.
      {"", 1, ""},
      {"Actes", 1, "Actes"},
      {"Actes\rVersion: 2\r", 1, "Actes\rVersion: 2\r"},
      // Any other first line gets the heading before it.
      {"actes\r#DEBUT\r", 1, "Actes\r\nVersion: 2\r\nactes\r\n#DEBUT\r\n"},
      {"Actes ", 1, "Actes\r\nVersion: 2\r\nActes \r\n"},
      {"Act?s\r\nb", 1, "Actes\r\nVersion: 2\r\nAct?s\r\nb\r\n"},
      {"\r\n", 1, "Actes\r\nVersion: 2\r\n\r\n"},
      {"Version: 2\r#DEBUT\r", 1, "Actes\r\nVersion: 2\r\nVersion: 2\r\n#DEBUT\r\n"},
      // Line 3 does not count then.
      {"x\ry\rz\r", 1, "Actes\r\nVersion: 2\r\nx\r\ny\r\nz\r\n"},
  };
  for (const auto &row : kCases) {
    table("actes", row.before);
    EXPECT_EQ(ZRV_Table_repair("actes", "2", "Actes"), row.result) << row.before;
    EXPECT_EQ(files(), (Files{{"actes.tab", std::string(row.after)}})) << row.before;
    EXPECT_EQ(openHandles(), std::vector<int>{});
  }
}

TEST_F(Header, RepairOfASoundTableUsesUpALeftOverFileToo) {
  volumes_.file("tables/actes.ta_", "left");
  EXPECT_EQ(ZRV_Table_repair("actes", "2", "Actes"), 1);
  EXPECT_EQ(files(), (Files{{"actes.tab", unchanged()}}));
}

// Kept: where nothing can be read or rewritten, nothing counts as damaged.
TEST_F(Header, RepairOfWhatDoesNotOpenGivesOne) {
  mkdir(posixPath("sub").c_str(), 0777);
  EXPECT_EQ(ZRV_Table_repair("sub", "2", "Actes"), 1);
  EXPECT_EQ(ZRV_Table_repair("none", "2", "Actes"), 1);
  EXPECT_EQ(ZRV_Table_repair(nullptr, "2", "Actes"), 1);
  setText(szDirTables, "Data:none");
  EXPECT_EQ(ZRV_Table_repair("actes", "2", "Actes"), 1);
  setText(szDirTables, "Data:tables");
  closeHandles();
  mkdir((folder() + "/actes.ta_").c_str(), 0777);
  table("actes", kData);
  EXPECT_EQ(ZRV_Table_repair("actes", "2", "Actes"), 1);
  EXPECT_EQ(tableText(), kData);
  EXPECT_EQ(openHandles(), std::vector<int>{0});
  closeHandles();
}

TEST_F(Header, RepairInAReadOnlyFolderGivesOneWithTheTableUntouched) {
  table("actes", kData);
  chmod(volumes_.root().c_str(), 0755);
  chmod(posixPath("actes").c_str(), 0666);
  chmod(folder().c_str(), 0555);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              return ZRV_Table_repair("actes", "2", "Actes");
            }),
            1);
  chmod(folder().c_str(), 0755);
  EXPECT_EQ(files(), (Files{{"actes.tab", std::string(kData)}}));
}

TEST_F(Header, RepairWithoutATitleOrVersionDoesNothing) {
  table("actes", kData);
  EXPECT_EQ(ZRV_Table_repair("actes", nullptr, "Actes"), 0);
  EXPECT_EQ(ZRV_Table_repair("actes", "2", nullptr), 0);
  EXPECT_EQ(tableText(), kData);
}

TEST_F(Header, RepairThatCannotWriteGivesZeroWithTheTableUntouched) {
  table("actes", kData);
  for (const ReplaceStep step : {ReplaceStep::Write, ReplaceStep::Adopt, ReplaceStep::Sync,
                                 ReplaceStep::Link, ReplaceStep::Rename}) {
    Fault fault(step, 1, ENOSPC);
    EXPECT_EQ(ZRV_Table_repair("actes", "2", "Actes"), 0);
    EXPECT_EQ(files(), (Files{{"actes.tab", std::string(kData)}}));
  }
}

}  // namespace
}  // namespace korvel
