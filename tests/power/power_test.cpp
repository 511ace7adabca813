// SPDX-License-Identifier: MIT
// What is left of tables and profiles after a loss of power at any moment.
//
// The files are on ext4 and on xfs, loop-mounted on a disk that records, one after the other, all
// the sectors that it was told to write and all the flushes. From the recording the disk is made
// anew as it was at a moment, the file system mounted there, its journal played back, the files
// read. So one run is cut off at many moments, and nothing goes on while a copy is taken.
//
// Such a disk is the most forgetful one that a file system can be used on: what was written since
// the last flush is in its cache, and is lost. So it is at the moment of each answer: the answer
// counts only if everything was flushed before it. A copy of the image file, which has all that was
// written, would not show a flush that is missing. At random moments any part of the cache has
// reached the disk, in any order, as a disk may write when it likes: none of it at times, and at
// times all of it, as in a copy of the image file.
//
// It does not stand for a disk that loses what it was told to flush, that writes half of a sector
// (of 4,096 bytes here) or breaks others when its power goes: no program could help there. ext4 is
// mounted so that it writes no data of its own accord before a rename or its journal.
#include "tests/power/power.h"

#include <string>

#include <sys/mount.h>
#include <unistd.h>

#include <korvel/profile.h>

#include "tests/files/faults.h"

namespace korvel {
namespace {

using test::Power;

constexpr test::FileSystem kFileSystems[] = {
    {"ext4", 16 << 20, "mkfs.ext4 -q -F -b 4096", "data=writeback,noauto_da_alloc",
     "data=writeback,noauto_da_alloc"},
    {"xfs", 300 << 20, "mkfs.xfs -q -f -s size=4096", "", "nouuid"}};

// --- Tables ------------------------------------------------------------------------------------

// Several blocks of writing, and sectors of the disk.
std::string longTable() {
  std::string text = test::actes();
  for (int i = 0; i < 3000; ++i) text += std::to_string(i) + ",Libell\xE9\r\n";
  return text;
}

int modify(const char *name, const char *newName, const char *title) {
  return ZRV_Table_modify(name, newName, "3", title);
}

TEST_P(Power, LeavesTheAnsweredEditsOfATable) {
  table("actes", longTable());
  ZRV_Libelle_NC_set_ligne(6);
  expectToSurvive({
      {"replace a column", [] { return test::replaceColumn(1, "Visite longue"); }},
      {"replace the code", [] { return test::replaceCode("08"); }},
      {"insert", [] { return test::insertLine(3); }},
      {"delete", [] { return test::deleteLine(); }},
      {"flush",
       [] {
         test::idem0(0, 0, "actes");
         test::setColumn(1, "Garde");
         return test::flushLine();
       }},
      {"modify", [] { return modify("actes", "actes", "Title"); }},
      {"repair", [] { return ZRV_Table_repair("actes", "4", "Actes"); }},
      {"replace by a file with a name",
       [] {
         const test::Fault named(test::ReplaceStep::Temporary, 1, EOPNOTSUPP);
         return test::replaceColumn(1, "Nuit");
       }},
  });
}

TEST_P(Power, LeavesTheTablesThatWereAnswered) {
  table("actes", longTable());
  table("other", "another table\r\n");
  volumes_.file("kept.tab", longTable());
  mkdir(volumes_.posix("tables/sub").c_str(), 0777);
  mkdir(volumes_.posix("tables/far").c_str(), 0777);
  ASSERT_EQ(symlink("../kept.tab", posixPath("link").c_str()), 0);
  ASSERT_EQ(symlink("../../kept.tab", posixPath("sub/link").c_str()), 0);
  ZRV_Libelle_NC_set_ligne(6);
  expectToSurvive({
      {"create", [] { return ZRV_Table_create("new", "1", "New"); }},
      {"create in place",
       [] {
         const test::Fault whole(test::ReplaceStep::Open, 1, EIO);
         return ZRV_Table_create("grown", "1", "New");
       },
       1, "grown.tab"},
      {"a first back-up", [] { return ZRV_Table_sauvegarde("actes", 0); }, 0},
      {"rename", [] { return modify("actes", "named", "Named"); }},
      {"rename to another table", [] { return modify("named", "other", "Other"); }},
      {"rename into another folder", [] { return modify("other", "sub:actes", "Sub"); }},
      {"back again", [] { return modify("sub:actes", "actes", "Actes"); }},
      {"a later back-up", [] { return ZRV_Table_sauvegarde("actes", 1); }, 0},
      {"edit through a link", [] { return test::replaceColumn(1, "Visite longue", "link"); }},
      {"rename a link", [] { return modify("link", "leading", "Leading"); }},
      {"rename a link into another folder", [] { return modify("sub:link", "far:link", "Far"); }},
      {"remove", [] { return ZRV_Table_remove("actes"); }},
  });
}

// --- Profiles ----------------------------------------------------------------------------------

constexpr char kPath[] = "Data:p.ini";

int writeKey(const char *key, const char *value, const char *path = kPath) {
  return WritePrivateProfileString("Main", key, value, path);
}

std::string longProfile() {
  std::string text = "[Main]\r\nkey=value\r\n";
  for (int i = 0; i < 3000; ++i) text += "key" + std::to_string(i) + "=value\r\n";
  return text;
}

TEST_P(Power, LeavesTheAnsweredWritesOfAProfile) {
  volumes_.file("p.ini", longProfile());
  volumes_.file("kept.ini", longProfile());
  ASSERT_EQ(symlink("../kept.ini", volumes_.posix("tables/link.ini").c_str()), 0);
  ASSERT_EQ(symlink("nothing.ini", volumes_.posix("tables/empty.ini").c_str()), 0);
  expectToSurvive({
      {"replace a key", [] { return writeKey("key", "another value"); }},
      {"add a key", [] { return writeKey("new", "value"); }},
      {"remove a key", [] { return writeKey("key7", nullptr); }},
      {"add a section", [] { return WritePrivateProfileString("More", "key", "value", kPath); }},
      {"replace a section", [] { return WritePrivateProfileSection("More", "a=1\r\nb=2", kPath); }},
      {"empty a section", [] { return WritePrivateProfileSection("More", nullptr, kPath); }},
      {"a new profile", [] { return writeKey("key", "value", "Data:new.ini"); }},
      {"through a link", [] { return writeKey("key", "new", "Data:tables:link.ini"); }},
      {"through a link to nothing", [] { return writeKey("key", "1", "Data:tables:empty.ini"); }},
      {"by a file with a name",
       [] {
         const test::Fault named(test::ReplaceStep::Temporary, 1, EOPNOTSUPP);
         return writeKey("key", "named");
       }},
  });
}

// A file with a mount on it cannot be exchanged.
TEST_P(Power, LeavesTheAnsweredWritesOfAProfileThatIsOverwritten) {
  volumes_.file("p.ini", longProfile());
  volumes_.file("other.ini", longProfile());
  const std::string file = volumes_.posix("p.ini");
  ASSERT_EQ(mount(file.c_str(), file.c_str(), nullptr, MS_BIND, nullptr), 0);
  expectToSurvive({
      {"overwrite", [] { return writeKey("key", "other"); }, 1, "p.ini"},
      {"grow", [] { return writeKey("more", std::string(1000, 'm').c_str()); }, 1, "p.ini"},
      {"shrink", [] { return writeKey("more", nullptr); }, 1, "p.ini"},
      {"replace another", [] { return writeKey("key", "other", "Data:other.ini"); }},
  });
  EXPECT_EQ(umount2(file.c_str(), MNT_DETACH), 0);
}

INSTANTIATE_TEST_SUITE_P(On, Power, testing::ValuesIn(kFileSystems),
                         [](const auto &chosen) { return std::string(chosen.param.name); });

}  // namespace
}  // namespace korvel
