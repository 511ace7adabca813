// SPDX-License-Identifier: MIT
// Colon paths: their POSIX form, what they name, and which function uses which conversion.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>
#include <korvel/strings.h>

#include "tests/files/faults.h"
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
      // A link that leads nowhere is an entry, and not a folder.
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

// Which of the two conversions a function uses shows where the volume is a file (MAC2UNIX takes the
// path from the root) and where it is missing (BSDMAC2UNIX does).
class Conversions : public Paths {
 protected:
  // Something in the folder Data of the volumes, by its path from the root.
  std::string fromRoot(const std::string &volume, const std::string &name) const {
    std::string path = volumes_.posix(name);
    std::replace(path.begin(), path.end(), '/', ':');
    return volume + path;
  }
  std::string onFile(const std::string &name) const { return fromRoot("Plain", name); }
  std::string onMissing(const std::string &name) const { return fromRoot("Absent", name); }
};

TEST_F(Conversions, OpeningAndExistenceUseMac2Unix) {
  volumes_.file("a", "text");
  volumes_.file("large", "22");
  for (const int read : {0, 1}) {
    const int handle = File_Open(onFile("a").c_str(), read, 1);
    EXPECT_GE(handle, 0) << read;
    File_Close(handle);
    EXPECT_EQ(File_Open(onMissing("a").c_str(), read, 1), -2) << read;
    const int descriptor = xFile_Open(onFile("a").c_str(), 1, read);
    EXPECT_GE(descriptor, 0) << read;
    xFile_Close(descriptor);
    EXPECT_EQ(xFile_Open(onMissing("a").c_str(), 1, read), -1) << read;
  }
  const int handle = File_Open(onFile("a").c_str(), 1, 0);
  EXPECT_GE(handle, 0);
  File_Close(handle);
  EXPECT_EQ(File_Open(onMissing("a").c_str(), 1, 0), -2);
  const int descriptor = xFile_Open(onFile("new").c_str(), 0, 1);
  EXPECT_GE(descriptor, 0);
  xFile_Close(descriptor);
  EXPECT_EQ(xFile_Open(onMissing("new").c_str(), 0, 1), -1);
  EXPECT_EQ(File_Is_Existing(onFile("a").c_str()), 1);
  EXPECT_EQ(File_Is_Existing(onMissing("a").c_str()), 0);
  EXPECT_EQ(Dir_Is_Existing(onFile("").c_str()), 1);
  EXPECT_EQ(Dir_Is_Existing(onMissing("").c_str()), 0);
  char rows[512] = "";
  std::strcpy(rows, onMissing("large").c_str());
  std::strcpy(rows + 256, onFile("a").c_str());
  EXPECT_EQ(Dir_SortSizeFiles(rows, 2), 1);
  char item[256] = "a";
  char *missing = nullptr;
  EXPECT_EQ(ChCh_Detect_Missing_File(onFile("").c_str(), item, &missing), 0);
  EXPECT_EQ(ChCh_Detect_Missing_File(onMissing("").c_str(), item, &missing), 1);
}

TEST_F(Conversions, RemovingAndRenamingUseBsdMac2Unix) {
  volumes_.file("a", "text");
  EXPECT_EQ(MACRename(onFile("a").c_str(), onMissing("b").c_str()), -1);
  EXPECT_EQ(MACRename(onMissing("a").c_str(), onFile("b").c_str()), -1);
  EXPECT_EQ(MACRename(onMissing("a").c_str(), onMissing("b").c_str()), 0);
  EXPECT_EQ(content(volumes_.posix("b")), "text");
  EXPECT_EQ(MACRemove(onFile("b").c_str()), -1);
  EXPECT_EQ(MACRemove(onMissing("b").c_str()), 0);
  EXPECT_NE(access(volumes_.posix("b").c_str(), F_OK), 0);
}

TEST_F(Conversions, ListingsUseBsdMac2Unix) {
  volumes_.file("a", "text");
  char row[256] = "";
  EXPECT_EQ(Dir_FindFiles(row, onFile("").c_str(), 1, "a"), 0);
  EXPECT_EQ(Dir_FindFiles(row, onMissing("").c_str(), 1, "a"), 1);
  EXPECT_EQ(row, onMissing("") + ":a");
  const test::Restored<int> result(BSDcr);
  BSDcr = 0;
  const FileVisit_t seven = [](const char *) { return 7; };
  EXPECT_EQ(Dir_ProcessFiles(onFile("").c_str(), "a", seven), 0);
  EXPECT_EQ(Dir_ProcessFiles(onMissing("").c_str(), "a", seven), 7);
}

// A folder or file is made through MAC2UNIX, and its mode changed through BSDMAC2UNIX, which may
// lead elsewhere.
TEST_F(Conversions, MakingUsesMac2UnixAndTheModeBsdMac2Unix) {
  const mode_t mask = umask(022);
  EXPECT_EQ(MakeDir(onFile("folder").c_str()), 1);
  EXPECT_EQ(MakeDir(onMissing("folder2").c_str()), 0);
  const int handle = File_Open(onFile("file").c_str(), 0, 1);
  umask(mask);
  EXPECT_GE(handle, 0);
  EXPECT_EQ(modeOf(volumes_.posix("folder")), 0755u);
  EXPECT_EQ(modeOf(volumes_.posix("file")), 0666u);
}

// A volume that a plain user may search but not list.
class UnlistableVolume : public Paths {
 protected:
  UnlistableVolume() {
    chmod(volumes_.root().c_str(), 0755);
    for (const std::string &folder : {volumes_.posix("folder"), twin()}) {
      std::filesystem::create_directories(folder);
      std::ofstream(folder + "/a") << folder;
      for (const std::string &path : {folder, folder + "/a"}) {
        if (geteuid() == 0) {
          EXPECT_EQ(chown(path.c_str(), kNobody, kNobody), 0);
        }
        chmod(path.c_str(), 0755);
      }
    }
    chmod(volumes_.folder().c_str(), 0711);
  }
  // What the colon path Data<twin> would be without its volume.
  std::string twin() const { return volumes_.root() + "/twin"; }
  std::string twinOnVolume(const std::string &name) const {
    std::string path = twin() + name;
    std::replace(path.begin(), path.end(), '/', ':');
    return "Data" + path;
  }
  static constexpr id_t kNobody = 65534;
};

TEST_F(UnlistableVolume, IsAVolumeAllTheSame) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
  EXPECT_EQ(test::inChild([&] {
              if (!test::becomeNobody() || opendir(volumes_.folder().c_str()) != nullptr) return 1;
              umask(077);
              char posix[256];
              BSDMAC2UNIX("Data:folder:a", posix);
              if (posix != volumes_.posix("folder/a")) return 2;
              if (MakeDir("Data:folder:new") != 1) return 3;
              if (modeOf(volumes_.posix("folder/new")) != 0777) return 4;
              if (File_Open("Data:folder:b", 0, 1) != 0) return 5;
              if (modeOf(volumes_.posix("folder/b")) != 0777) return 6;
              if (MACRename("Data:folder:b", "Data:folder:c") != 0) return 7;
              if (MACRemove("Data:folder:c") != 0) return 8;
              char row[256];
              if (Dir_FindFiles(row, "Data:folder", 1, "a") != 1) return 9;
              if (std::strcmp(row, "Data:folder:a") != 0) return 10;
              return BSDMACchmodrwx("Data:folder:a") == 0 ? 0 : 11;
            }),
            0);
  EXPECT_EQ(modeOf(volumes_.posix("folder/a")), 0777u);
}

TEST_F(UnlistableVolume, NoPathOnItLeadsToTheSamePathFromTheRoot) {
  if (geteuid() != 0) GTEST_SKIP() << "only root may give files away";
  EXPECT_EQ(test::inChild([&] {
              if (!test::becomeNobody()) return 1;
              char row[256];
              const std::string folder = twinOnVolume("");
              const std::string a = twinOnVolume("/a");
              if (Dir_FindFiles(row, folder.c_str(), 1, "a") != 0) return 2;
              if (BSDMACchmodrwx(a.c_str()) != -1) return 3;
              if (MACRename(a.c_str(), "Data:folder:b") != -1) return 4;
              if (MACRename("Data:folder:a", a.c_str()) != -1) return 5;
              if (MACRemove(a.c_str()) != -1) return 6;
              if (File_Open(a.c_str(), 0, 1) != -2) return 7;
              return MakeDir(twinOnVolume("/new").c_str()) == 0 ? 0 : 8;
            }),
            0);
  EXPECT_EQ(content(twin() + "/a"), twin());
  EXPECT_EQ(modeOf(twin() + "/a"), 0755u);
  EXPECT_EQ(test::entries(twin()), std::vector<std::string>{"a"});
}

TEST_F(Paths, AVolumeMayHaveAnApostropheInItsName) {
  mkdir((volumes_.root() + "/l'\xE9t\xE9").c_str(), 0700);
  const std::string volume = "l'\xE9t\xE9:";
  EXPECT_EQ(MakeDir((volume + "d'une").c_str()), 1);
  EXPECT_EQ(modeOf(volumes_.root() + "/l'\xE9t\xE9/d'une"), 0777u);
  const int handle = File_Open((volume + "d'une:a").c_str(), 0, 1);
  ASSERT_GE(handle, 0);
  File_Close(handle);
  EXPECT_EQ(modeOf(volumes_.root() + "/l'\xE9t\xE9/d'une/a"), 0777u);
  EXPECT_EQ(MACRename((volume + "d'une:a").c_str(), (volume + "b").c_str()), 0);
  EXPECT_EQ(MACRemove((volume + "b").c_str()), 0);
}

TEST_F(Paths, APathOf511BytesIsRemovedAndRenamed) {
  std::string posix = volumes_.folder();
  std::string mac = "Data";
  while (posix.size() < 400) {
    posix += "/" + std::string(40, 'd');
    mac += ":" + std::string(40, 'd');
    ASSERT_EQ(mkdir(posix.c_str(), 0777), 0);
  }
  const std::string name(511 - posix.size() - 1, 'n');
  std::ofstream(posix + "/" + name) << "x";
  EXPECT_EQ(MACRename((mac + ":" + name).c_str(), (mac + ":n" + name).c_str()), -1) << "cut";
  EXPECT_EQ(MACRename((mac + ":" + name).c_str(), (mac + ":b").c_str()), 0);
  EXPECT_EQ(MACRename((mac + ":b").c_str(), (mac + ":" + name).c_str()), 0);
  EXPECT_EQ(MACRemove((mac + ":n" + name).c_str()), -1);
  EXPECT_EQ(MACRemove((mac + ":" + name).c_str()), 0);
  EXPECT_EQ(MakeDir((mac + ":" + name).c_str()), 1);
  EXPECT_EQ(modeOf(posix + "/" + name), 0777u);
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
