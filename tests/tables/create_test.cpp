// SPDX-License-Identifier: MIT
// A table's beginning, its end and its back-up.
#include <cerrno>
#include <signal.h>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>

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

class Create : public test::Edits {};

TEST_F(Create, WritesTheFourLines) {
  EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 1);
  EXPECT_EQ(tableText("new"), "Actes\r\nVersion: 2\r\n#DEBUT\r\n#FIN\r\n");
  EXPECT_EQ(test::entries(folder()), (std::vector<std::string>{"actes.tab", "new.tab"}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_FILE_ID, -1);
}

TEST_F(Create, LeavesATableThatExistsUntouched) {
  EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 1);
  EXPECT_EQ(ZRV_Table_create("new", "3", "Autres"), 1);
  EXPECT_EQ(tableText("new"), "Actes\r\nVersion: 2\r\n#DEBUT\r\n#FIN\r\n");
  EXPECT_EQ(ZRV_Table_create("actes", "3", "Autres"), 1);
  EXPECT_EQ(tableText(), actes());
}

TEST_F(Create, TakesEmptyTextsAndLongOnes) {
  EXPECT_EQ(ZRV_Table_create("empty", "", ""), 1);
  EXPECT_EQ(tableText("empty"), "\r\nVersion: \r\n#DEBUT\r\n#FIN\r\n");
  const std::string text(3000, 't');
  EXPECT_EQ(ZRV_Table_create("long", text.c_str(), text.c_str()), 1);
  EXPECT_EQ(tableText("long"), lines({text, "Version: " + text, "#DEBUT", "#FIN"}));
}

TEST_F(Create, TheTableIsOpenToAll) {
  const mode_t mask = umask(077);
  EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 1);
  umask(mask);
  EXPECT_EQ(modeOf(posixPath("new")), 0777U);
}

TEST_F(Create, WhereNoFileCanBeTheResultIsZero) {
  mkdir(posixPath("sub").c_str(), 0777);
  EXPECT_EQ(ZRV_Table_create("sub", "2", "Actes"), 0);
  EXPECT_EQ(ZRV_Table_create("none:new", "2", "Actes"), 0);
  EXPECT_EQ(ZRV_Table_create(nullptr, "2", "Actes"), 0);
  EXPECT_EQ(ZRV_Table_create("new", nullptr, "Actes"), 0);
  EXPECT_EQ(ZRV_Table_create("new", "2", nullptr), 0);
  EXPECT_EQ(ZRV_Table_create(std::string(300, 'n').c_str(), "2", "Actes"), 0);
  setText(szDirTables, "Data:none");
  EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}, {"sub.tab", "(folder)"}}));
  EXPECT_EQ(openHandles(), std::vector<int>{});
}

TEST_F(Create, WithoutAFreeHandleTheResultIsZero) {
  for (int i = 0; i < 5; ++i) ASSERT_EQ(File_Open("Data:tables:actes.tab", 1, 0), i);
  EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 0);
  EXPECT_EQ(ZRV_Table_create("actes", "2", "Actes"), 1) << "existence needs no handle";
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
  closeHandles();
}

TEST_F(Create, TheNameIsThatOfTheFileInAChosenDirectory) {
  setDirTables("Data:tables");
  EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 1);
  EXPECT_EQ(test::entries(folder()), (std::vector<std::string>{"actes.tab", "new"}));
}

TEST_F(Create, AKillLeavesNoTableOrAWholeOne) {
  const std::string whole = "Actes\r\nVersion: 2\r\n#DEBUT\r\n#FIN\r\n";
  for (const ReplaceStep step : {ReplaceStep::Open, ReplaceStep::Temporary, ReplaceStep::Write,
                                 ReplaceStep::Adopt, ReplaceStep::Sync, ReplaceStep::Link}) {
    EXPECT_EQ(inChild([&] {
                Fault fault(step, 1, [] { return raise(SIGKILL); });
                return ZRV_Table_create("new", "2", "Actes");
              }),
              -1);
    EXPECT_EQ(files(), (Files{{"actes.tab", actes()}})) << static_cast<int>(step);
  }
  EXPECT_EQ(inChild([&] {
              Fault fault(ReplaceStep::Folder, 1, [] { return raise(SIGKILL); });
              return ZRV_Table_create("new", "2", "Actes");
            }),
            -1);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}, {"new.tab", whole}}));
}

// Kept: the result of the writing does not count, so a full disk leaves the beginning of a table.
TEST_F(Create, OnAFullDiskTheTableBeginsAsFarAsItGoes) {
  EXPECT_EQ(inChild([&] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit limit = {10, 10};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
              return ZRV_Table_create("new", "2", "Actes");
            }),
            1);
  EXPECT_EQ(tableText("new"), "Actes\r\nVer");
}

// Also where the table could only be made in place.
TEST_F(Create, ItsFolderReachesTheDiskBeforeTheAnswer) {
  static int synced;
  synced = 0;
  files::replaceFault = [](ReplaceStep step) {
    if (step == ReplaceStep::Folder) ++synced;
    return step == ReplaceStep::Open ? EIO : 0;
  };
  EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 1);
  EXPECT_EQ(synced, 1);
  EXPECT_EQ(ZRV_Table_remove("new"), 1);
  EXPECT_EQ(synced, 2);
  files::replaceFault = nullptr;
}

// Made as a whole, and in place.
TEST_F(Create, OneThatSomebodyRemovesAtOnceWasCreated) {
  for (const int error : {0, EIO}) {
    Fault removed(ReplaceStep::Folder, 1, [&] { return unlink(posixPath("new").c_str()); });
    Fault::also(ReplaceStep::Open, error);
    EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 1) << error;
    EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
  }
}

TEST_F(Create, OneThatComesTooLateLeavesTheOther) {
  Fault fault(ReplaceStep::Sync, 1, [&] {
    table("new", "other");
    return 0;
  });
  EXPECT_EQ(ZRV_Table_create("new", "2", "Actes"), 1);
  EXPECT_EQ(tableText("new"), "other");
}

TEST_F(Create, InAReadOnlyFolderTheResultIsZero) {
  chmod(volumes_.root().c_str(), 0755);
  chmod(folder().c_str(), 0555);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              return ZRV_Table_create("new", "2", "Actes");
            }),
            0);
  chmod(folder().c_str(), 0755);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
}

// --- Removing ----------------------------------------------------------------------------------

TEST_F(Create, RemovingATable) {
  EXPECT_EQ(ZRV_Table_remove("actes"), 1);
  EXPECT_EQ(files(), Files{});
  EXPECT_EQ(ZRV_Table_remove("actes"), 0);
  EXPECT_EQ(ZRV_Table_remove(nullptr), 0);
}

TEST_F(Create, RemovingWhatIsAFolderGivesZero) {
  mkdir(posixPath("sub").c_str(), 0777);
  EXPECT_EQ(ZRV_Table_remove("sub"), 0);
  EXPECT_EQ(test::entries(folder()), (std::vector<std::string>{"actes.tab", "sub.tab"}));
}

TEST_F(Create, RemovingWaitsForWhoeverHasTheTable) {
  const int other = open(posixPath("actes").c_str(), O_RDWR);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  Files seen;
  std::thread releasing([&] {
    usleep(50000);
    seen = files();
    close(other);
  });
  EXPECT_EQ(ZRV_Table_remove("actes"), 1);
  releasing.join();
  EXPECT_EQ(seen, (Files{{"actes.tab", actes()}}));
  EXPECT_EQ(files(), Files{});
}

// Kept: the removal's own result does not count.
TEST_F(Create, RemovingInAReadOnlyFolderGivesOneAllTheSame) {
  chmod(volumes_.root().c_str(), 0755);
  chmod(folder().c_str(), 0555);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              return ZRV_Table_remove("actes");
            }),
            1);
  chmod(folder().c_str(), 0755);
  EXPECT_EQ(tableText(), actes());
}

// --- Back-up -----------------------------------------------------------------------------------

// Kept: the result of a back-up is 0, success included.
TEST_F(Create, TheBackUpIsACopy) {
  const std::string text = "a\rb\nc" + std::string(20000, 'x');
  table("actes", text);
  for (const int overwrite : {0, 1}) {
    EXPECT_EQ(ZRV_Table_sauvegarde("actes", overwrite), 0);
    EXPECT_EQ(files(), (Files{{"actes.bak", text}, {"actes.tab", text}}));
    unlink((folder() + "/actes.bak").c_str());
  }
  EXPECT_EQ(openHandles(), std::vector<int>{});
  EXPECT_EQ(DATA_FILE_ID, -1);
}

TEST_F(Create, AnOldBackUpStaysUnlessItIsToBeOverwritten) {
  volumes_.file("tables/actes.bak", "old");
  EXPECT_EQ(ZRV_Table_sauvegarde("actes", 0), 0);
  EXPECT_EQ(content(folder() + "/actes.bak"), "old");
  EXPECT_EQ(ZRV_Table_sauvegarde("actes", 1), 0);
  EXPECT_EQ(content(folder() + "/actes.bak"), actes());
  volumes_.file("tables/actes.bak", "old");
  EXPECT_EQ(ZRV_Table_sauvegarde("actes", -1), 0);
  EXPECT_EQ(content(folder() + "/actes.bak"), actes());
}

TEST_F(Create, TheBackUpReplacesTheLastFourCharactersWhateverTheyAre) {
  setDirTables("Data:tables");
  volumes_.file("tables/practice", "p");
  volumes_.file("tables/four", "f");
  EXPECT_EQ(ZRV_Table_sauvegarde("practice", 0), 0);
  EXPECT_EQ(ZRV_Table_sauvegarde("four", 0), 0);
  EXPECT_EQ(files(), (Files{{".bak", "f"},
                            {"actes.tab", actes()},
                            {"four", "f"},
                            {"prac.bak", "p"},
                            {"practice", "p"}}));
}

TEST_F(Create, ATableThatIsItsOwnBackUpIsLeftAlone) {
  setDirTables("Data:tables");
  volumes_.file("tables/old.bak", "old");
  EXPECT_EQ(ZRV_Table_sauvegarde("old.bak", 1), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}, {"old.bak", "old"}}));
}

TEST_F(Create, WithoutATableTheOldBackUpStays) {
  volumes_.file("tables/none.bak", "old");
  EXPECT_EQ(ZRV_Table_sauvegarde("none", 1), 0);
  EXPECT_EQ(ZRV_Table_sauvegarde(nullptr, 1), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}, {"none.bak", "old"}}));
}

TEST_F(Create, ABackUpThatCannotBeWrittenLeavesTheOldOne) {
  volumes_.file("tables/actes.bak", "old");
  for (const ReplaceStep step :
       {ReplaceStep::Open, ReplaceStep::Temporary, ReplaceStep::Write, ReplaceStep::Adopt,
        ReplaceStep::Sync, ReplaceStep::Link, ReplaceStep::Rename}) {
    Fault fault(step, 1, ENOSPC);
    EXPECT_EQ(ZRV_Table_sauvegarde("actes", 1), 0);
    EXPECT_EQ(files(), (Files{{"actes.bak", "old"}, {"actes.tab", actes()}}));
  }
}

TEST_F(Create, ATableThatIsCutShortMeanwhileLeavesTheOldBackUp) {
  volumes_.file("tables/actes.bak", "old");
  tables::TableReader::blockSize = 16;
  Fault fault(ReplaceStep::Open, 1, [&] {
    EXPECT_EQ(truncate(posixPath("actes").c_str(), 40), 0);
    return 0;
  });
  EXPECT_EQ(ZRV_Table_sauvegarde("actes", 1), 0);
  EXPECT_EQ(content(folder() + "/actes.bak"), "old");
}

TEST_F(Create, AnOldBackUpThatMayNotBeWrittenGivesWay) {
  volumes_.file("tables/actes.bak", "old");
  chmod((folder() + "/actes.bak").c_str(), 0444);
  chmod(volumes_.root().c_str(), 0755);
  chmod(folder().c_str(), 0777);
  const auto backUpAsNobody = [&](int overwrite) {
    return inChild([&] {
      if (geteuid() == 0 && !becomeNobody()) return 2;
      return ZRV_Table_sauvegarde("actes", overwrite);
    });
  };
  EXPECT_EQ(backUpAsNobody(0), 0);
  EXPECT_EQ(content(folder() + "/actes.bak"), "old");
  EXPECT_EQ(backUpAsNobody(1), 0);
  EXPECT_EQ(files(), (Files{{"actes.bak", actes()}, {"actes.tab", actes()}}));
  EXPECT_EQ(modeOf(folder() + "/actes.bak"), modeOf(posixPath("actes")));
}

TEST_F(Create, AnOldBackUpThatIsALinkGivesWayAndItsTargetStays) {
  const std::string backUp = folder() + "/actes.bak";
  volumes_.file("tables/elsewhere", "precious");
  for (const char *target : {"elsewhere", "nowhere", "actes.tab", "actes.bak"}) {
    symlink(target, backUp.c_str());
    EXPECT_EQ(ZRV_Table_sauvegarde("actes", 0), 0);
    EXPECT_EQ(std::filesystem::read_symlink(backUp), target);
    EXPECT_EQ(ZRV_Table_sauvegarde("actes", 1), 0);
    EXPECT_FALSE(std::filesystem::is_symlink(backUp)) << target;
    EXPECT_EQ(files(),
              (Files{{"actes.bak", actes()}, {"actes.tab", actes()}, {"elsewhere", "precious"}}));
    EXPECT_EQ(modeOf(backUp), modeOf(posixPath("actes")));
    unlink(backUp.c_str());
  }
}

TEST_F(Create, ALinkThatTheNewBackUpCannotReplaceStays) {
  const std::string backUp = folder() + "/actes.bak";
  volumes_.file("tables/elsewhere", "precious");
  symlink("elsewhere", backUp.c_str());
  for (const ReplaceStep step :
       {ReplaceStep::Open, ReplaceStep::Temporary, ReplaceStep::Write, ReplaceStep::Adopt,
        ReplaceStep::Sync, ReplaceStep::Link, ReplaceStep::Rename}) {
    Fault fault(step, 1, ENOSPC);
    EXPECT_EQ(ZRV_Table_sauvegarde("actes", 1), 0);
    EXPECT_EQ(std::filesystem::read_symlink(backUp), "elsewhere");
    EXPECT_EQ(content(backUp), "precious");
  }
}

TEST_F(Create, AFirstBackUpHasModeAndGroupOfItsTable) {
  const std::string backUp = folder() + "/actes.bak";
  for (const mode_t mask : {0U, 077U}) {
    for (const mode_t mode : {0600U, 0640U, 0644U, 0666U, 0777U}) {
      chmod(posixPath("actes").c_str(), mode);
      const mode_t before = umask(mask);
      EXPECT_EQ(ZRV_Table_sauvegarde("actes", 0), 0);
      umask(before);
      EXPECT_EQ(modeOf(backUp), mode);
      unlink(backUp.c_str());
    }
  }
  if (geteuid() != 0) GTEST_SKIP() << "only root may give files to any group";
  ASSERT_EQ(chown(posixPath("actes").c_str(), static_cast<uid_t>(-1), 34), 0);
  EXPECT_EQ(ZRV_Table_sauvegarde("actes", 0), 0);
  struct stat status = {};
  ASSERT_EQ(stat(backUp.c_str(), &status), 0);
  EXPECT_EQ(status.st_gid, 34U);
}

// Where the group cannot be given, it gets no more than everyone has.
TEST_F(Create, AFirstBackUpOfAnotherGroupsTableIsNotOpenToOnesOwn) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  chmod(volumes_.root().c_str(), 0755);
  chmod(folder().c_str(), 0777);
  ASSERT_EQ(chown(posixPath("actes").c_str(), 65534, 34), 0);
  chmod(posixPath("actes").c_str(), 0660);
  EXPECT_EQ(inChild([&] {
              if (!becomeNobody()) return 2;
              return ZRV_Table_sauvegarde("actes", 0);
            }),
            0);
  EXPECT_EQ(modeOf(folder() + "/actes.bak"), 0600U);
}

// Nothing is removed before the new one is whole.
TEST_F(Create, AnOldBackUpThatMayNotBeWrittenStaysOnAFullDisk) {
  volumes_.file("tables/actes.bak", "old");
  chmod((folder() + "/actes.bak").c_str(), 0444);
  chmod(volumes_.root().c_str(), 0755);
  chmod(folder().c_str(), 0777);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              Fault fault(ReplaceStep::Write, 1, ENOSPC);
              return ZRV_Table_sauvegarde("actes", 1);
            }),
            0);
  EXPECT_EQ(files(), (Files{{"actes.bak", "old"}, {"actes.tab", actes()}}));
}

TEST_F(Create, InAReadOnlyFolderTheOldBackUpStays) {
  volumes_.file("tables/actes.bak", "old");
  chmod((folder() + "/actes.bak").c_str(), 0666);
  chmod(volumes_.root().c_str(), 0755);
  chmod(folder().c_str(), 0555);
  EXPECT_EQ(inChild([&] {
              if (geteuid() == 0 && !becomeNobody()) return 2;
              return ZRV_Table_sauvegarde("actes", 1);
            }),
            0);
  chmod(folder().c_str(), 0755);
  EXPECT_EQ(files(), (Files{{"actes.bak", "old"}, {"actes.tab", actes()}}));
}

TEST_F(Create, AFolderInTheBackUpsPlaceStays) {
  mkdir((folder() + "/actes.bak").c_str(), 0777);
  for (const int overwrite : {0, 1}) {
    EXPECT_EQ(ZRV_Table_sauvegarde("actes", overwrite), 0);
    EXPECT_EQ(files(), (Files{{"actes.bak", "(folder)"}, {"actes.tab", actes()}}));
  }
  EXPECT_EQ(openHandles(), std::vector<int>{});
}

TEST_F(Create, TheBackUpNeedsTwoFreeHandles) {
  for (int i = 0; i < 4; ++i) ASSERT_EQ(File_Open("Data:tables:actes.tab", 1, 0), i);
  EXPECT_EQ(ZRV_Table_sauvegarde("actes", 1), 0);
  EXPECT_EQ(files(), (Files{{"actes.tab", actes()}}));
  EXPECT_EQ(openHandles(), (std::vector<int>{0, 1, 2, 3}));
  closeHandles();
}

}  // namespace
}  // namespace korvel
