// SPDX-License-Identifier: MIT
// The numbered file handles: opening, reading, writing and the table that applications see.
#include "files/handles.h"

#include <climits>
#include <cstring>
#include <map>
#include <random>
#include <signal.h>
#include <string>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>

#include "tests/files/volumes.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel {
namespace {

using test::content;
using test::modeOf;
using test::PoisonedBuffer;
using test::Volumes;

class FileHandles : public testing::Test {
 protected:
  int open(const std::string &path, int read, int write) {
    return File_Open(path.c_str(), read, write);
  }
  static off_t mark(int handle) { return lseek(DATA_FILE_TAB[handle].reference, 0, SEEK_CUR); }
  // The bytes that File_Read gives; checks that it stays inside the buffer.
  static std::string read(int handle, int count) {
    PoisonedBuffer buffer(static_cast<std::size_t>(std::max(count, 0)));
    const int got = File_Read(handle, buffer.data(), count);
    EXPECT_TRUE(buffer.guardsIntact());
    EXPECT_TRUE(buffer.untouchedFrom(static_cast<std::size_t>(std::max(got, 0))));
    return got < 0 ? "failed" : std::string(buffer.data(), static_cast<std::size_t>(got));
  }

  Volumes volumes_;
};

TEST_F(FileHandles, SixOpeningsWithoutAClosingGiveFiveHandles) {
  const std::string path = volumes_.file("a", "text");
  for (int handle = 0; handle < 5; ++handle) {
    EXPECT_EQ(open(path, 1, 0), handle);
    EXPECT_EQ(DATA_FILE_ID, handle);
  }
  EXPECT_EQ(open(path, 1, 0), -1);
  EXPECT_EQ(DATA_FILE_ID, 4);
}

TEST_F(FileHandles, TheCounterFallsOnlyWhenTheHighestHandleIsClosed) {
  const std::string path = volumes_.file("a", "text");
  EXPECT_EQ(open(path, 1, 0), 0);
  EXPECT_EQ(open(path, 1, 0), 1);
  EXPECT_EQ(File_Close(0), 0);
  EXPECT_EQ(DATA_FILE_ID, 1);
  EXPECT_EQ(open(path, 1, 0), 2);
  EXPECT_EQ(File_Close(2), 0);
  EXPECT_EQ(DATA_FILE_ID, 1);
}

TEST_F(FileHandles, OnceTheCounterIsAtTheTopTheFirstFreeSlotIsTaken) {
  const std::string path = volumes_.file("a", "text");
  for (int i = 0; i < 5; ++i) open(path, 1, 0);
  EXPECT_EQ(File_Close(1), 0);
  EXPECT_EQ(File_Close(3), 0);
  EXPECT_EQ(open(path, 1, 0), 1);
  EXPECT_EQ(DATA_FILE_ID, 4);
  EXPECT_EQ(open(path, 1, 0), 3);
  EXPECT_EQ(open(path, 1, 0), -1);
}

// Kept: the slot above the counter is used without a look at its mode.
TEST_F(FileHandles, ALoweredCounterHandsOutASlotInUse) {
  const std::string path = volumes_.file("a", "text");
  EXPECT_EQ(open(path, 1, 0), 0);
  const int forgotten = DATA_FILE_TAB[0].reference;
  DATA_FILE_ID = -1;
  EXPECT_EQ(open(path, 1, 0), 0);
  EXPECT_NE(DATA_FILE_TAB[0].reference, forgotten);
  EXPECT_NE(fcntl(forgotten, F_GETFD), -1) << "the descriptor is the application's now";
  ::close(forgotten);
}

TEST_F(FileHandles, ASlotInUseThatIsHandedOutToAFailedOpeningIsFree) {
  EXPECT_EQ(open(volumes_.file("a", "text"), 1, 0), 0);
  const int forgotten = DATA_FILE_TAB[0].reference;
  DATA_FILE_ID = -1;
  EXPECT_EQ(open("Data:missing", 1, 0), -2);
  EXPECT_EQ(DATA_FILE_TAB[0].mode, -1);
  ::close(forgotten);
}

TEST_F(FileHandles, ACounterFarBelowItsRangeStartsAtTheFirstSlot) {
  const std::string path = volumes_.file("a", "text");
  DATA_FILE_ID = INT_MIN;
  EXPECT_EQ(open(path, 1, 0), 0);
  File_Close(0);
  DATA_FILE_ID = INT_MAX;
  EXPECT_EQ(open(path, 1, 0), 0);
}

TEST_F(FileHandles, AFailedOpeningLeavesTheCounterRaisedAndTheSlotFree) {
  EXPECT_EQ(open("Data:missing", 1, 0), -2);
  EXPECT_EQ(DATA_FILE_ID, 0);
  EXPECT_EQ(DATA_FILE_TAB[0].mode, -1);
  EXPECT_STREQ(DATA_FILE_TAB[0].name, "Data:missing");
  EXPECT_EQ(open("Data:missing", 0, 0), -3);
  EXPECT_EQ(DATA_FILE_ID, 1);
  EXPECT_EQ(open("Data:missing", -1, -5), -3);
  EXPECT_EQ(DATA_FILE_ID, 2);
  EXPECT_EQ(open("Data:missing", 1, 1), -2) << "reading and writing creates nothing";
  EXPECT_EQ(open(volumes_.file("a", "text"), 1, 0), 4);
  EXPECT_EQ(open("Data:missing", 0, 0), -3) << "a free slot below is found";
  EXPECT_EQ(DATA_FILE_ID, 4);
}

TEST_F(FileHandles, TheTableTellsWhatIsOpen) {
  const std::string path = volumes_.file("a", "seven b");
  ASSERT_EQ(open(path, 1, 0), 0);
  ASSERT_EQ(open(path, 1, 1), 1);
  ASSERT_EQ(open(path, 0, 7), 2);
  const int kModes[] = {0, 2, 1};
  for (int handle = 0; handle < 3; ++handle) {
    const FileSlot &slot = DATA_FILE_TAB[handle];
    EXPECT_STREQ(slot.name, "Data:a");
    EXPECT_EQ(slot.mode, kModes[handle]);
    EXPECT_EQ(slot.size, 7);
    EXPECT_EQ(slot.position, 0);
    EXPECT_NE(fcntl(slot.reference, F_GETFD) & FD_CLOEXEC, 0) << "tools do not inherit it";
  }
  EXPECT_EQ(read(0, 3), "sev");
  EXPECT_EQ(DATA_FILE_TAB[0].position, 3);
  const int reference = DATA_FILE_TAB[0].reference;
  EXPECT_EQ(File_Close(0), 0);
  EXPECT_EQ(DATA_FILE_TAB[0].mode, -1);
  EXPECT_EQ(DATA_FILE_TAB[0].size, 0);
  EXPECT_EQ(DATA_FILE_TAB[0].position, 0);
  EXPECT_EQ(fcntl(reference, F_GETFD), -1);
}

TEST_F(FileHandles, WhatTheApplicationWritesIntoTheTableHolds) {
  ASSERT_EQ(open(volumes_.file("a", "0123456789"), 1, 0), 0);
  DATA_FILE_TAB[0].size = 4;
  EXPECT_EQ(File_Size(0), 4);
  EXPECT_EQ(read(0, 100), "0123");
  DATA_FILE_TAB[0].mode = 1;
  EXPECT_EQ(read(0, 100), "");
}

TEST_F(FileHandles, AHandleThatIsNoneOrFreeChangesNothing) {
  const std::string path = volumes_.file("a", "text");
  ASSERT_EQ(open(path, 1, 1), 0);
  ASSERT_EQ(open(path, 1, 1), 1);
  ASSERT_EQ(File_Close(0), 0);
  const test::Restored<FileSlot[5]> before(DATA_FILE_TAB);
  char bytes[4] = "xyz";
  for (const int handle : {INT_MIN, -1, 5, 6, INT_MAX}) {
    EXPECT_EQ(File_Read(handle, bytes, 3), -1) << handle;
    EXPECT_EQ(File_Re_Read(handle, bytes, 3), -1) << handle;
    EXPECT_EQ(File_Write(handle, bytes, 3), -1) << handle;
  }
  for (const int handle : {0, 2, 4}) {
    EXPECT_EQ(File_Read(handle, bytes, 3), 0) << handle;
    EXPECT_EQ(File_Re_Read(handle, bytes, 3), 0) << handle;
    EXPECT_EQ(File_Write(handle, bytes, 3), 0) << handle;
  }
  for (const int handle : {INT_MIN, -1, 0, 2, 4, 5, INT_MAX}) {
    EXPECT_EQ(File_Close(handle), -1) << handle;
    const int field = handle < 0 || handle > 4 ? -1 : 0;
    EXPECT_EQ(File_Size(handle), field) << handle;
    EXPECT_EQ(File_GetPos(handle), field) << handle;
    EXPECT_EQ(File_Lseek(handle, 1), -1) << handle;
    EXPECT_EQ(File_SetEOF(handle, 1), -1) << handle;
  }
  EXPECT_STREQ(bytes, "xyz");
  EXPECT_EQ(DATA_FILE_ID, 1);
  EXPECT_EQ(content(volumes_.posix("a")), "text");
}

TEST_F(FileHandles, SizeAndPositionAreTheFieldsOfAnySlot) {
  ASSERT_EQ(open(volumes_.file("a", "text"), 1, 0), 0);
  EXPECT_EQ(read(0, 3), "tex");
  EXPECT_EQ(File_Size(0), 4);
  EXPECT_EQ(File_GetPos(0), 3);
  EXPECT_EQ(File_Close(0), 0);
  EXPECT_EQ(File_Size(0), 0);
  EXPECT_EQ(File_GetPos(0), 0);
  DATA_FILE_TAB[4].size = 12;
  DATA_FILE_TAB[4].position = 7;
  EXPECT_EQ(File_Size(4), 12);
  EXPECT_EQ(File_GetPos(4), 7);
}

TEST_F(FileHandles, ClosingTwiceLowersTheCounterOnce) {
  const std::string path = volumes_.file("a", "text");
  for (int i = 0; i < 3; ++i) open(path, 1, 0);
  EXPECT_EQ(File_Close(2), 0);
  EXPECT_EQ(File_Close(2), -1);
  DATA_FILE_ID = 2;
  EXPECT_EQ(File_Close(2), -1);
  EXPECT_EQ(DATA_FILE_ID, 2);
}

TEST_F(FileHandles, AClosingThatIsRefusedLeavesTheSlotOccupied) {
  ASSERT_EQ(open(volumes_.file("a", "text"), 1, 0), 0);
  ::close(DATA_FILE_TAB[0].reference);
  EXPECT_EQ(File_Close(0), -1);
  EXPECT_EQ(DATA_FILE_TAB[0].mode, 0);
  EXPECT_EQ(DATA_FILE_TAB[0].size, 4);
  EXPECT_EQ(DATA_FILE_ID, 0);
  EXPECT_EQ(File_Close(0), -1) << "nobody else's descriptor is closed in its place";
  DATA_FILE_TAB[0].mode = -1;
}

TEST_F(FileHandles, ANameThatDoesNotFitItsFieldIsRefused) {
  // The last one that fits: 143 bytes.
  const std::string fits = "Data:" + std::string(138, 'n');
  for (const int tooMuch : {1, 2, 200, 5000}) {
    const FileSlot next = DATA_FILE_TAB[DATA_FILE_ID + 2 > 4 ? 4 : DATA_FILE_ID + 2];
    EXPECT_EQ(open(fits + std::string(static_cast<std::size_t>(tooMuch), 'n'), 0, 1), -2);
    if (DATA_FILE_ID < 4) {
      EXPECT_EQ(std::memcmp(&next, &DATA_FILE_TAB[DATA_FILE_ID + 1], sizeof next), 0);
    }
  }
  const int handle = open(fits, 0, 1);
  ASSERT_GE(handle, 0);
  EXPECT_EQ(DATA_FILE_TAB[handle].name, fits);
  EXPECT_EQ(File_Open(nullptr, 1, 0), -2);
}

TEST_F(FileHandles, WhatIsNoFileIsRefused) {
  mkdir(volumes_.posix("folder").c_str(), 0750);
  mkfifo(volumes_.posix("pipe").c_str(), 0666);
  symlink("loop", volumes_.posix("loop").c_str());
  for (const char *path : {"Data:folder", "Data:folder:", "Data", "Data:pipe", "Data:loop",
                           "Nowhere:a", "Data:missing:a", ""}) {
    DATA_FILE_ID = -1;
    EXPECT_EQ(File_Open(path, 1, 0), -2) << path;
    EXPECT_EQ(File_Open(path, 1, 1), -2) << path;
    EXPECT_EQ(File_Open(path, 0, 1), -2) << path;
  }
  EXPECT_EQ(modeOf(volumes_.posix("folder")), 0750u) << "a refused folder keeps its mode";
}

TEST_F(FileHandles, WhatCannotBeOpenedForWritingKeepsItsMode) {
  mkfifo(volumes_.posix("pipe").c_str(), 0640);
  EXPECT_EQ(File_Open("Data:pipe", 0, 1), -2);
  EXPECT_EQ(modeOf(volumes_.posix("pipe")), 0640u);
  // The volume is missing: the change of mode would take the path from the root, where the opening
  // does not look.
  volumes_.file("a", "text");
  chmod(volumes_.posix("a").c_str(), 0640);
  std::string path = "Absent" + volumes_.posix("a");
  std::replace(path.begin() + 6, path.end(), '/', ':');
  EXPECT_EQ(open(path, 0, 1), -2);
  EXPECT_EQ(modeOf(volumes_.posix("a")), 0640u);
}

// Root may write in any mode; a plain user needs the change of mode first.
TEST_F(FileHandles, AReadOnlyFileOfTheUserIsOpenedForWriting) {
  const std::string path = volumes_.file("a", "text");
  const pid_t child = fork();
  if (child == 0) {
    constexpr id_t kNobody = 65534;
    if (geteuid() == 0) {
      if (chown(volumes_.root().c_str(), kNobody, kNobody) != 0) _exit(1);
      if (chown(volumes_.posix("a").c_str(), kNobody, kNobody) != 0) _exit(1);
      if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(1);
    }
    if (chmod(volumes_.posix("a").c_str(), 0400) != 0 || open(path, 1, 1) != -2) _exit(2);
    if (open(path, 0, 1) != 1 || File_Write(1, "T", 1) != 1) _exit(3);
    _exit(0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(content(volumes_.posix("a")), "Text");
  EXPECT_EQ(modeOf(volumes_.posix("a")), 0777u);
}

TEST_F(FileHandles, AFileOpensWhetherOrNotItsVolumeIsLookedAt) {
  volumes_.file("f.txt", "on Data");
  const auto sizeOf = [](const std::string &path) {
    const int handle = File_Open(path.c_str(), 1, 0);
    const int size = File_Size(handle);
    File_Close(handle);
    return size;
  };
  EXPECT_EQ(sizeOf("Data:f.txt"), 7);
  // A file in place of a volume: the rest of the path is taken from the root.
  std::ofstream(volumes_.root() + "/File") << "a file";
  std::string fromRoot = volumes_.posix("f.txt");
  std::replace(fromRoot.begin(), fromRoot.end(), '/', ':');
  EXPECT_EQ(sizeOf("File" + fromRoot), 7);
  EXPECT_EQ(sizeOf("File"), -1);
  EXPECT_EQ(Dir_Is_Existing(("File" + fromRoot.substr(0, fromRoot.rfind(':'))).c_str()), 1);
  // A volume whose name holds a "/" is looked for under that name as written.
  mkdir((volumes_.root() + "/a:b").c_str(), 0777);
  std::ofstream(volumes_.root() + "/a:b/f.txt") << "on a/b";
  EXPECT_EQ(sizeOf("a/b:f.txt"), 6);
  mkdir((volumes_.root() + "/a").c_str(), 0777);
  std::ofstream(volumes_.root() + "/a/b") << "";
  EXPECT_EQ(sizeOf("a/b:f.txt"), -1);
  EXPECT_EQ(sizeOf("a/b" + fromRoot), 7);
}

TEST_F(FileHandles, AFileInAFolderThatIsMissingTakesNoHandle) {
  const std::string file = volumes_.file("f.txt", "x");
  struct stat status = {};
  EXPECT_EQ(files::openInFolder("Data:no", "Data:no:f.txt", status), -1);
  EXPECT_EQ(DATA_FILE_ID, -1);
  EXPECT_EQ(files::openInFolder("Data", file.c_str(), status), 0);
  EXPECT_EQ(status.st_size, 1);
  EXPECT_STREQ(DATA_FILE_TAB[0].name, file.c_str());
  EXPECT_EQ(files::openInFolder("Data", "Data:no.txt", status), -2);
  EXPECT_EQ(DATA_FILE_ID, 1);
  EXPECT_EQ(files::openForReading(file.c_str(), status), 2);
  for (int i = 3; i < 5; ++i) EXPECT_EQ(files::openForReading(file.c_str(), status), i);
  EXPECT_EQ(files::openForReading("Data:no:f.txt", status), -2);
  EXPECT_EQ(files::openForReading(file.c_str(), status), 1);
  EXPECT_EQ(files::openForReading(file.c_str(), status), -1);
}

TEST_F(FileHandles, APathThatDoesNotFitTheNameIsCutThereOnly) {
  std::string folder = "Data:" + std::string(100, 'd');
  mkdir(volumes_.posix(std::string(100, 'd')).c_str(), 0777);
  const std::string file = folder + ":" + std::string(60, 'f');
  std::ofstream(volumes_.posix(std::string(100, 'd') + "/" + std::string(60, 'f'))) << "x";
  EXPECT_EQ(File_Open(file.c_str(), 1, 0), -2);
  struct stat status;
  EXPECT_EQ(files::openInFolder(folder.c_str(), file.c_str(), status), 1);
  EXPECT_EQ(std::string(DATA_FILE_TAB[1].name), file.substr(0, 143));
  EXPECT_EQ(files::openForReading(file.c_str(), status), 2);
}

TEST_F(FileHandles, AFileOf2GiBIsRefused) {
  const std::string path = volumes_.file("large", "");
  ASSERT_EQ(truncate(volumes_.posix("large").c_str(), 0x7FFFFFFF), 0);
  EXPECT_EQ(open(path, 1, 0), 0);
  EXPECT_EQ(File_Size(0), INT_MAX);
  ASSERT_EQ(truncate(volumes_.posix("large").c_str(), 0x80000000), 0);
  EXPECT_EQ(open(path, 1, 0), -2);
  EXPECT_EQ(open(path, 0, 1), -2);
}

TEST_F(FileHandles, AWriteThatWouldReach2GiBIsRefused) {
  const std::string path = volumes_.file("large", "");
  ASSERT_EQ(truncate(volumes_.posix("large").c_str(), 0x7FFFFFFE), 0);
  ASSERT_EQ(open(path, 1, 1), 0);
  ASSERT_EQ(File_Lseek(0, 0x7FFFFFFE), 0);
  EXPECT_EQ(File_Write(0, "ab", 2), -1);
  EXPECT_EQ(File_GetPos(0), 0x7FFFFFFE);
  EXPECT_EQ(File_Write(0, "a", 1), 1);
  EXPECT_EQ(File_Size(0), INT_MAX);
  EXPECT_EQ(File_Write(0, "a", 1), -1);
  EXPECT_EQ(File_Read(0, nullptr, 1), 0);
}

TEST_F(FileHandles, ADescriptorAbove32767IsRefused) {
  const std::string path = volumes_.file("a", "text");
  EXPECT_EQ(files::highestReference, 32767);
  const int next = dup(0);
  ::close(next);
  const test::Restored<int> limit(files::highestReference);
  files::highestReference = next;
  EXPECT_EQ(open(path, 1, 0), 0);
  EXPECT_EQ(DATA_FILE_TAB[0].reference, next);
  EXPECT_EQ(open(path, 1, 0), -2);
  EXPECT_EQ(DATA_FILE_TAB[1].mode, -1);
  EXPECT_EQ(fcntl(next + 1, F_GETFD), -1) << "what was refused is closed";
}

TEST_F(FileHandles, ANewFileIsReadableAndWritableByAll) {
  const mode_t mask = umask(077);
  const int handle = File_Open("Data:new", 0, 1);
  EXPECT_EQ(umask(mask), 077u) << "the process's mask is left alone";
  ASSERT_EQ(handle, 0);
  EXPECT_EQ(modeOf(volumes_.posix("new")), 0777u);
  EXPECT_EQ(File_Write(handle, "text", 4), 4);
  EXPECT_EQ(content(volumes_.posix("new")), "text");
}

TEST_F(FileHandles, ANewFileIsOpenToAllAlsoWhereTheVolumeIsDropped) {
  // The volume is a file: the path leads to the root, where the change of mode does not look.
  std::string path = "vol" + volumes_.root() + "/new";
  std::replace(path.begin() + 3, path.end(), '/', ':');
  std::ofstream(volumes_.root() + "/vol") << "a file";
  const mode_t mask = umask(077);
  const int handle = open(path, 0, 1);
  umask(mask);
  ASSERT_EQ(handle, 0);
  EXPECT_EQ(modeOf(volumes_.root() + "/new") & 0666, 0666u);
}

TEST_F(FileHandles, OpeningForWritingOpensAnExistingFileToAllAndKeepsItsContent) {
  const std::string path = volumes_.file("a", "old content");
  chmod(volumes_.posix("a").c_str(), 0400);
  ASSERT_EQ(open(path, 0, 1), 0);
  EXPECT_EQ(modeOf(volumes_.posix("a")), 0777u);
  EXPECT_EQ(File_Size(0), 11);
  EXPECT_EQ(File_Write(0, "NEW", 3), 3);
  EXPECT_EQ(content(volumes_.posix("a")), "NEW content");
  EXPECT_EQ(File_SetEOF(0, 3), 0);
  EXPECT_EQ(content(volumes_.posix("a")), "NEW");
}

TEST_F(FileHandles, ReadingLeavesTheModeAlone) {
  const std::string path = volumes_.file("a", "text");
  chmod(volumes_.posix("a").c_str(), 0640);
  ASSERT_EQ(open(path, 1, 0), 0);
  ASSERT_EQ(open(path, 1, 1), 1);
  EXPECT_EQ(modeOf(volumes_.posix("a")), 0640u);
}

TEST_F(FileHandles, WritingThroughADanglingLinkCreatesItsFile) {
  symlink("later", volumes_.posix("link").c_str());
  ASSERT_EQ(File_Open("Data:link", 0, 1), 0);
  EXPECT_EQ(modeOf(volumes_.posix("later")), 0777u);
}

TEST_F(FileHandles, ReadAtTheEndGivesNothingAndMoreThanRemainsGivesTheRest) {
  ASSERT_EQ(open(volumes_.file("a", "0123456789"), 1, 0), 0);
  EXPECT_EQ(read(0, 0), "");
  EXPECT_EQ(read(0, 4), "0123");
  EXPECT_EQ(read(0, -3), "");
  EXPECT_EQ(read(0, 100), "456789");
  EXPECT_EQ(File_GetPos(0), 10);
  EXPECT_EQ(read(0, 100), "");
  EXPECT_EQ(File_GetPos(0), 10);
}

TEST_F(FileHandles, ModesDecideWhatMayBeDone) {
  const std::string path = volumes_.file("a", "text");
  ASSERT_EQ(open(path, 1, 0), 0);
  ASSERT_EQ(open(path, 0, 1), 1);
  EXPECT_EQ(File_Write(0, "x", 1), 0);
  EXPECT_EQ(read(1, 3), "");
  char byte;
  ASSERT_EQ(File_Lseek(1, 2), 0);
  EXPECT_EQ(File_Re_Read(1, &byte, 1), 0);
  EXPECT_EQ(File_SetEOF(0, 1), -1) << "the system refuses";
  EXPECT_EQ(content(volumes_.posix("a")), "text");
}

TEST_F(FileHandles, ReReadGivesTheBytesBeforeThePosition) {
  ASSERT_EQ(open(volumes_.file("a", "0123456789"), 1, 0), 0);
  char bytes[16] = "";
  EXPECT_EQ(File_Re_Read(0, bytes, 5), 0) << "nothing stands before the start";
  ASSERT_EQ(read(0, 6), "012345");
  EXPECT_EQ(File_Re_Read(0, bytes, 2), 2);
  EXPECT_EQ(std::string(bytes, 2), "45");
  EXPECT_EQ(File_Re_Read(0, bytes, 6), 6);
  EXPECT_EQ(std::string(bytes, 6), "012345");
  EXPECT_EQ(File_Re_Read(0, bytes, 16), 6) << "a count larger than the position starts at 0";
  EXPECT_EQ(File_Re_Read(0, bytes, 0), 0);
  EXPECT_EQ(File_Re_Read(0, bytes, -1), 0);
  EXPECT_EQ(File_GetPos(0), 6);
  EXPECT_EQ(mark(0), 6);
  EXPECT_EQ(read(0, 2), "67");
}

TEST_F(FileHandles, WritingPastTheEndGrowsTheSizeAndSetEofDoesNotShrinkIt) {
  ASSERT_EQ(open(volumes_.file("a", "0123456789"), 1, 1), 0);
  EXPECT_EQ(File_Lseek(0, 8), 0);
  EXPECT_EQ(File_Write(0, "abcd", 4), 4);
  EXPECT_EQ(File_Size(0), 12);
  EXPECT_EQ(File_SetEOF(0, 5), 0);
  EXPECT_EQ(File_Size(0), 12) << "the size field is left alone";
  EXPECT_EQ(File_GetPos(0), 5);
  EXPECT_EQ(mark(0), 5);
  EXPECT_EQ(content(volumes_.posix("a")), "01234");
  EXPECT_EQ(read(0, 3), "failed") << "the size promises what the file does not have";
  EXPECT_EQ(File_GetPos(0), 5);
  EXPECT_EQ(mark(0), 5);
  EXPECT_EQ(File_SetEOF(0, 20), 0);
  EXPECT_EQ(File_GetPos(0), 20);
  EXPECT_EQ(read(0, 3), "") << "a count that clips below 0 reads nothing";
  EXPECT_EQ(content(volumes_.posix("a")), "01234" + std::string(15, '\0'));
  EXPECT_EQ(File_SetEOF(0, -1), -1);
  EXPECT_EQ(File_GetPos(0), 20);
}

TEST_F(FileHandles, SeekingBehindTheEndIsAllowedAndBeforeTheStartIsNot) {
  ASSERT_EQ(open(volumes_.file("a", "0123"), 1, 1), 0);
  EXPECT_EQ(File_Lseek(0, -1), -1);
  EXPECT_EQ(File_GetPos(0), 0);
  EXPECT_EQ(File_Lseek(0, 6), 0);
  EXPECT_EQ(read(0, 1), "");
  EXPECT_EQ(File_Write(0, "x", 1), 1);
  EXPECT_EQ(File_Size(0), 7);
  EXPECT_EQ(content(volumes_.posix("a")), std::string("0123\0\0x", 7));
}

TEST_F(FileHandles, WritingNothingBehindTheSizeMovesTheSizeThere) {
  ASSERT_EQ(open(volumes_.file("a", "0123"), 1, 1), 0);
  EXPECT_EQ(File_Write(0, "x", 0), 0);
  EXPECT_EQ(File_Size(0), 4);
  ASSERT_EQ(File_Lseek(0, 4), 0);
  EXPECT_EQ(File_Write(0, "x", 0), 0);
  EXPECT_EQ(File_Size(0), 4);
  ASSERT_EQ(File_Lseek(0, 9), 0);
  EXPECT_EQ(File_Write(0, "x", -1), 0);
  EXPECT_EQ(File_Size(0), 4) << "a negative count does nothing";
  EXPECT_EQ(File_Write(0, nullptr, 0), 0);
  EXPECT_EQ(File_Size(0), 9);
  EXPECT_EQ(File_GetPos(0), 9);
  EXPECT_EQ(mark(0), 9);
  EXPECT_EQ(content(volumes_.posix("a")), "0123") << "the file itself does not grow";
  ASSERT_EQ(open("Data:a", 1, 0), 1);
  ASSERT_EQ(File_Lseek(1, 9), 0);
  EXPECT_EQ(File_Write(1, "x", 0), 0);
  EXPECT_EQ(File_Size(1), 4) << "the mode is wrong";
}

TEST_F(FileHandles, ANullBufferIsAFailure) {
  ASSERT_EQ(open(volumes_.file("a", "0123"), 1, 1), 0);
  ASSERT_EQ(File_Lseek(0, 2), 0);
  EXPECT_EQ(File_Read(0, nullptr, 1), -1);
  EXPECT_EQ(File_Re_Read(0, nullptr, 1), -1);
  EXPECT_EQ(File_Write(0, nullptr, 1), -1);
  EXPECT_EQ(File_GetPos(0), 2);
  EXPECT_EQ(mark(0), 2);
}

TEST_F(FileHandles, AFullDiskFailsAWriteAndTheNumbersStayTrue) {
  const std::string path = volumes_.file("a", "0123456789");
  const pid_t child = fork();
  if (child == 0) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {100, 100};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(1);
    if (open(path, 1, 1) != 0 || File_Lseek(0, 5) != 0) _exit(2);
    const std::string text(200, 'x');
    if (File_Write(0, text.data(), 200) != -1) _exit(3);
    struct stat status = {};
    fstat(DATA_FILE_TAB[0].reference, &status);
    if (File_Size(0) != status.st_size || status.st_size != 100) _exit(4);
    if (File_GetPos(0) != 5 || mark(0) != 5) _exit(5);
    if (File_Write(0, text.data(), 95) != 95) _exit(6);
    _exit(File_GetPos(0) == 100 && File_Size(0) == 100 ? 0 : 7);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(FileHandles, ADeviceWithoutRoomFailsAWrite) {
  symlink("/dev/full", volumes_.posix("full").c_str());
  const int handle = File_Open("Data:full", 1, 1);
  ASSERT_EQ(handle, 0);
  EXPECT_EQ(File_Write(handle, "x", 1), -1);
  EXPECT_EQ(File_GetPos(handle), 0);
  EXPECT_EQ(File_Size(handle), 0);
}

TEST_F(FileHandles, NeitherReadingNorWritingNeedsATool) {
  const std::string path = volumes_.file("a", "text");
  const char *old = getenv("PATH");
  const std::string saved = old == nullptr ? "" : old;
  setenv("PATH", "/nonexistent", 1);
  EXPECT_EQ(open(path, 0, 1), 0);
  EXPECT_EQ(open(path, 1, 0), 1);
  EXPECT_EQ(MakeDir("Data:made"), 1);
  setenv("PATH", saved.c_str(), 1);
  EXPECT_EQ(modeOf(volumes_.posix("a")), 0777u);
  EXPECT_EQ(modeOf(volumes_.posix("made")), 0777u);
}

// A model of the table, with the files as strings.
class Model {
 public:
  struct Slot {
    std::string name;
    int mode = -1;
    int size = 0;
    int position = 0;
  };
  Slot table[5];
  int highest = -1;
  std::map<std::string, std::string> disk;  // by name; a folder is not in it

  int open(const std::string &path, int read, int write) {
    int handle = -1;
    if (highest + 1 <= 4) {
      handle = ++highest;
    } else {
      for (int i = 4; i >= 0; --i) {
        if (table[i].mode == -1) handle = i;
      }
      if (handle == -1) return -1;
    }
    Slot &slot = table[handle];
    slot.mode = -1;
    slot.position = 0;
    if (path.size() > 143) return -2;
    slot.name = path;
    if (read < 1 && write < 1) return -3;
    if (path == "Data:folder") return -2;
    if (read < 1) disk.try_emplace(path);
    if (disk.count(path) == 0) return -2;
    slot.mode = write < 1 ? 0 : read < 1 ? 1 : 2;
    slot.size = static_cast<int>(disk[path].size());
    return handle;
  }
  int close(int handle) {
    if (!isOpen(handle)) return -1;
    table[handle] = {table[handle].name, -1, 0, 0};
    if (handle == highest) highest = handle - 1;
    return 0;
  }
  int read(int handle, std::string &out, int count) {
    if (handle < 0 || handle > 4) return -1;
    Slot &slot = table[handle];
    if (slot.mode != 0 && slot.mode != 2) return 0;
    if (count > slot.size - slot.position) count = slot.size - slot.position;
    if (count <= 0) return 0;
    if (!has(slot, slot.position, count)) return -1;
    out = bytes(slot).substr(static_cast<std::size_t>(slot.position),
                             static_cast<std::size_t>(count));
    slot.position += count;
    return count;
  }
  int reRead(int handle, std::string &out, int count) {
    if (handle < 0 || handle > 4) return -1;
    Slot &slot = table[handle];
    if (slot.mode != 0 && slot.mode != 2) return 0;
    if (slot.position < count) count = slot.position;
    if (count <= 0) return 0;
    if (!has(slot, slot.position - count, count)) return -1;
    out = bytes(slot).substr(static_cast<std::size_t>(slot.position - count),
                             static_cast<std::size_t>(count));
    return count;
  }
  int write(int handle, const std::string &text, int count) {
    if (handle < 0 || handle > 4) return -1;
    Slot &slot = table[handle];
    if (slot.mode != 1 && slot.mode != 2) return 0;
    if (count < 0) return 0;
    if (count > 0) {
      std::string &file = bytes(slot);
      const auto end = static_cast<std::size_t>(slot.position + count);
      if (file.size() < end) file.resize(end);
      file.replace(static_cast<std::size_t>(slot.position), static_cast<std::size_t>(count),
                   text.substr(0, static_cast<std::size_t>(count)));
    }
    slot.position += count;
    if (slot.position > slot.size) slot.size = slot.position;
    return count;
  }
  int seek(int handle, int offset) {
    if (!isOpen(handle) || offset < 0) return -1;
    table[handle].position = offset;
    return 0;
  }
  int setEof(int handle, int length) {
    if (!isOpen(handle) || length < 0 || table[handle].mode == 0) return -1;
    bytes(table[handle]).resize(static_cast<std::size_t>(length));
    table[handle].position = length;
    return 0;
  }
  int size(int handle) { return isHandle(handle) ? table[handle].size : -1; }
  int position(int handle) { return isHandle(handle) ? table[handle].position : -1; }

 private:
  static bool isHandle(int handle) { return handle >= 0 && handle <= 4; }
  bool isOpen(int handle) const { return isHandle(handle) && table[handle].mode != -1; }
  std::string &bytes(const Slot &slot) { return disk[slot.name]; }
  bool has(const Slot &slot, int begin, int count) {
    return static_cast<std::size_t>(begin + count) <= bytes(slot).size();
  }
};

TEST_F(FileHandles, LongSequencesOfCallsDoWhatTheRulesSay) {
  mkdir(volumes_.posix("folder").c_str(), 0777);
  const std::vector<std::string> paths = {"Data:a", "Data:b", "Data:c", "Data:folder",
                                          "Data:" + std::string(140, 'n')};
  Model model;
  std::mt19937 random(11);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int step = 0; step < 40000; ++step) {
    const int handle = below(8) - 1;
    const int number = below(20) == 0 ? -below(3) : below(300);
    PoisonedBuffer buffer(300);
    std::string expected;
    const std::string text = test::randomBytes(random, 300);
    int result = 0;
    int told = 0;
    switch (below(12)) {
      case 0:
      case 1:
      case 2: {
        const std::string &path = paths[random() % paths.size()];
        const int read = below(3) - 1;
        const int write = below(3) - 1;
        told = model.open(path, read, write);
        result = File_Open(path.c_str(), read, write);
        break;
      }
      case 3:
      case 4:
        told = model.close(handle);
        result = File_Close(handle);
        break;
      case 5:
        told = model.reRead(handle, expected, number);
        result = File_Re_Read(handle, buffer.data(), number);
        break;
      case 6:
      case 7:
        told = model.read(handle, expected, number);
        result = File_Read(handle, buffer.data(), number);
        break;
      case 8:
      case 9:
        told = model.write(handle, text, number);
        result = File_Write(handle, text.data(), number);
        break;
      case 10:
        told = model.seek(handle, number);
        result = File_Lseek(handle, number);
        break;
      default:
        told = model.setEof(handle, number);
        result = File_SetEOF(handle, number);
        break;
    }
    ASSERT_EQ(result, told) << "step " << step;
    ASSERT_EQ(std::string(buffer.data(), expected.size()), expected) << "step " << step;
    ASSERT_TRUE(buffer.guardsIntact());
    ASSERT_EQ(DATA_FILE_ID, model.highest) << "step " << step;
    for (int i = -1; i < 6; ++i) {
      ASSERT_EQ(File_Size(i), model.size(i)) << "step " << step;
      ASSERT_EQ(File_GetPos(i), model.position(i)) << "step " << step;
    }
    for (int i = 0; i < 5; ++i) {
      const FileSlot &slot = DATA_FILE_TAB[i];
      ASSERT_EQ(slot.name, model.table[i].name) << "step " << step;
      ASSERT_EQ(slot.mode, model.table[i].mode) << "step " << step;
      if (slot.mode != -1) {
        ASSERT_EQ(mark(i), slot.position) << "step " << step;
      }
    }
    if (step % 50 != 0) continue;
    for (const auto &[name, bytes] : model.disk)
      ASSERT_TRUE(content(volumes_.posix(name.substr(5))) == bytes) << name << " step " << step;
  }
}

}  // namespace
}  // namespace korvel
