#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include <korvel/files.h>
#include "tests/files/volumes.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel {
namespace {

using test::content;
using test::modeOf;
using test::PoisonedBuffer;
using test::Volumes;

class Paths : public testing::Test {
 protected:
  Paths() { std::ofstream(volumes_.root() + "/Plain") << "a volume that is a file"; }
  std::string converted(const std::string &mac) {
    PoisonedBuffer out(256);
    const int length = MAC2UNIX(mac.c_str(), out.data());
    EXPECT_TRUE(out.guardsIntact());
    EXPECT_EQ(static_cast<std::size_t>(length), out.text().size()) << mac;
    return std::string(out.text());
  }
  Volumes volumes_;
};

TEST_F(Paths, ConversionPutsThePathUnderTheVolumes) {
  const std::string root = volumes_.root();
  EXPECT_EQ(converted("Data:tables:a.tab"), root + "/Data/tables/a.tab");
  EXPECT_EQ(converted("Absent:tables:a.tab"), root + "/Absent/tables/a.tab");
  EXPECT_EQ(converted("Plain:tables:a.tab"), "/tables/a.tab") << "the volume is a regular file";
  EXPECT_EQ(converted("Data"), root + "/Data");
  EXPECT_EQ(converted("Plain"), "");
  EXPECT_EQ(converted("Data:"), root + "/Data/");
  EXPECT_EQ(converted("Plain:"), "/");
  EXPECT_EQ(converted(""), root + "/");
  EXPECT_EQ(converted(":a"), root + "//a");
  EXPECT_EQ(converted("Data:a/b:c"), root + "/Data/a:b/c") << "a slash in a name is a colon";
  EXPECT_EQ(converted("Data:\xE9t\xE9"), root + "/Data/\xE9t\xE9");
}

TEST_F(Paths, TheDefaultVolumesAreTheSystems) {
  std::strcpy(szVolumes, "/Volumes");
  EXPECT_EQ(converted("NoSuchVolume:tables:a.tab"), "/Volumes/NoSuchVolume/tables/a.tab");
}

TEST_F(Paths, ALinkToAFileIsAVolumeThatIsAFile) {
  symlink("Plain", (volumes_.root() + "/Link").c_str());
  symlink("Data", (volumes_.root() + "/Other").c_str());
  EXPECT_EQ(converted("Link:a"), "/a");
  EXPECT_EQ(converted("Other:a"), volumes_.root() + "/Other/a");
}

// Kept: the volume is looked for under its name as written, also where that contains a "/".
TEST_F(Paths, AVolumeNameWithASlashIsLookedForAsWritten) {
  volumes_.file("b", "a file");
  EXPECT_EQ(converted("Data/b:c"), "/c");
  EXPECT_EQ(converted("Data/x:c"), volumes_.root() + "/Data:x/c");
}

TEST_F(Paths, TheVolumesFolderIsTakenAsItIs) {
  std::strcpy(szVolumes, "/a:b//");
  EXPECT_EQ(converted("Data:c"), "/a:b/Data/c");
  std::strcpy(szVolumes, "");
  EXPECT_EQ(converted("Data:c"), "/Data/c");
  std::memset(szVolumes, 'v', sizeof szVolumes);
  EXPECT_EQ(converted("Data:c"), "") << "without a terminator, and so too long";
}

TEST_F(Paths, AResultThatDoesNotFitIsRefusedAndNotCut) {
  const std::size_t room = 255 - volumes_.root().size() - 1;
  EXPECT_EQ(converted(std::string(room, 'n')), volumes_.root() + "/" + std::string(room, 'n'));
  EXPECT_EQ(converted(std::string(room + 1, 'n')), "");
  EXPECT_EQ(converted(std::string(600, 'n')), "");
  EXPECT_EQ(converted("Plain:" + std::string(254, 'n')), std::string("/") + std::string(254, 'n'));
  EXPECT_EQ(converted("Plain:" + std::string(255, 'n')), "");
  EXPECT_EQ(converted(std::string(100000, 'n')), "");
}

TEST_F(Paths, NullsAreRefusedAndOneBufferMayServeForBoth) {
  char both[256] = "Data:a/b";
  const int length = static_cast<int>(volumes_.root().size()) + 9;
  EXPECT_EQ(MAC2UNIX(both, both), length);
  EXPECT_EQ(both, volumes_.root() + "/Data/a:b");
  EXPECT_EQ(MAC2UNIX(nullptr, both), 0);
  EXPECT_STREQ(both, "");
  EXPECT_EQ(MAC2UNIX("Data", nullptr), 0);
  EXPECT_EQ(File_Is_Existing(nullptr), 0);
  EXPECT_EQ(Dir_Is_Existing(nullptr), 0);
  EXPECT_EQ(MakeDir(nullptr), 0);
  EXPECT_EQ(MACRemove(nullptr), -1);
  EXPECT_EQ(MACRename(nullptr, "Data:x"), -1);
  EXPECT_EQ(MACRename("Data:x", nullptr), -1);
}

TEST_F(Paths, ExistenceOfFilesAndFolders) {
  volumes_.file("file", "text");
  mkdir(volumes_.posix("folder").c_str(), 0777);
  mkfifo(volumes_.posix("pipe").c_str(), 0666);
  symlink("file", volumes_.posix("to file").c_str());
  symlink("folder", volumes_.posix("to folder").c_str());
  symlink("nowhere", volumes_.posix("dangling").c_str());
  symlink("loop", volumes_.posix("loop").c_str());
  symlink("Data", (volumes_.root() + "/Linked").c_str());
  const struct {
    const char *path;
    int file;
    int folder;
  } kCases[] = {
      {"Data:file", 1, 0},
      {"Data:folder", 0, 1},
      {"Data:folder:", 0, 1},
      {"Data", 0, 1},
      {"Linked", 0, 1},
      {"Linked:folder", 0, 1},
      {"Data:pipe", 1, 0},
      {"Data:to file", 1, 0},
      {"Data:to folder", 0, 1},
      // An entry that leads nowhere is an entry, and no folder.
      {"Data:dangling", 1, 0},
      {"Data:loop", 1, 0},
      {"Data:missing", 0, 0},
      {"Data:file:", 0, 0},
      {"Data:file:x", 0, 0},
      {"Absent:file", 0, 0},
      {"Plain", 0, 0},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(File_Is_Existing(row.path), row.file) << row.path;
    EXPECT_EQ(Dir_Is_Existing(row.path), row.folder) << row.path;
  }
  EXPECT_EQ(File_Is_Existing(("Data:" + std::string(1000, 'n')).c_str()), 0);
}

TEST_F(Paths, ANewFolderIsOpenToAll) {
  const mode_t mask = umask(077);
  EXPECT_EQ(MakeDir("Data:new"), 1);
  EXPECT_EQ(umask(mask), 077u);
  EXPECT_EQ(modeOf(volumes_.posix("new")), 0777u);
  EXPECT_EQ(MakeDir("Data:new"), 0);
  EXPECT_EQ(MakeDir("Data:new:deeper:still"), 0);
  EXPECT_EQ(MakeDir("Data:new:inner:"), 1);
  volumes_.file("file", "text");
  chmod(volumes_.posix("file").c_str(), 0600);
  EXPECT_EQ(MakeDir("Data:file"), 0);
  EXPECT_EQ(modeOf(volumes_.posix("file")), 0600u) << "what was there keeps its mode";
}

TEST_F(Paths, RemovingAndRenaming) {
  const std::string a = volumes_.file("a", "a");
  const std::string b = volumes_.file("b", "b");
  EXPECT_EQ(MACRename(a.c_str(), b.c_str()), 0);
  EXPECT_EQ(content(volumes_.posix("b")), "a");
  EXPECT_EQ(MACRename(a.c_str(), b.c_str()), -1);
  EXPECT_EQ(MACRemove(b.c_str()), 0);
  EXPECT_EQ(MACRemove(b.c_str()), -1);
  EXPECT_EQ(File_Is_Existing(b.c_str()), 0);
  mkdir(volumes_.posix("folder").c_str(), 0777);
  volumes_.file("folder/x", "x");
  EXPECT_EQ(MACRemove("Data:folder"), -1) << "not empty";
  EXPECT_EQ(MACRemove("Data:folder:x"), 0);
  EXPECT_EQ(MACRemove("Data:folder"), 0);
}

}  // namespace
}  // namespace korvel
