// SPDX-License-Identifier: MIT
// What is told of handles that are not open, of counts and of paths.
#include "files/misuse.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include <korvel/files.h>

#include "tests/files/volumes.h"
#include "tests/support/told.h"

namespace korvel::test {
namespace {

class FilesMisuse : public testing::Test {
 protected:
  // The handle of a new file, open as these flags say.
  int opened(int read, int write) {
    const int handle = File_Open(volumes_.file("a.txt", "abc").c_str(), read, write);
    EXPECT_EQ(handle, 0);
    return handle;
  }
  static int openedMemory(std::string_view text) {
    const int handle = MFil_Open("", 0, 0);
    MFil_Write(handle, text.data(), static_cast<int>(text.size()));
    return handle;
  }

  Volumes volumes_;
  char buffer_[512] = "";
};

TEST_F(FilesMisuse, AHandleThatThereIsNot) {
  EXPECT_FAILS(File_Close(5), -1, "File_Close(5): there is no handle 5: handles are from 0 to 4");
  EXPECT_FAILS(File_Size(-1), -1, "File_Size(-1): there is no handle -1: handles are from 0 to 4");
  EXPECT_FAILS(File_GetPos(5), -1, "File_GetPos(5): there is no handle 5: handles are from 0 to 4");
  EXPECT_FAILS(File_Read(5, buffer_, 1), -1,
               "File_Read(5, ..., 1): there is no handle 5: handles are from 0 to 4");
  EXPECT_FAILS(File_Re_Read(5, buffer_, 1), -1,
               "File_Re_Read(5, ..., 1): there is no handle 5: handles are from 0 to 4");
  EXPECT_FAILS(File_Write(5, buffer_, 1), -1,
               "File_Write(5, ..., 1): there is no handle 5: handles are from 0 to 4");
  EXPECT_FAILS(MFil_GetPos(5), -1, "MFil_GetPos(5): there is no handle 5: handles are from 0 to 4");
  EXPECT_FAILS(MFil_Size(-1), -1, "MFil_Size(-1): there is no handle -1: handles are from 0 to 4");
}

TEST_F(FilesMisuse, AHandleThatIsNotOpen) {
  EXPECT_FAILS(File_Close(0), -1, "File_Close(0): handle 0 is not open: File_Open gives handles");
  EXPECT_FAILS(File_Read(1, buffer_, 1), 0,
               "File_Read(1, ..., 1): handle 1 is not open: File_Open gives handles");
  EXPECT_FAILS(File_Lseek(2, 0), -1,
               "File_Lseek(2, 0): handle 2 is not open: File_Open gives handles");
  EXPECT_FAILS(File_SetEOF(3, 0), -1,
               "File_SetEOF(3, 0): handle 3 is not open: File_Open gives handles");
  EXPECT_TOLD(MFil_Close(0), "MFil_Close(0): handle 0 is not open: MFil_Open gives handles");
  EXPECT_FAILS(MFil_Read(0, buffer_, 1), 0,
               "MFil_Read(0, ..., 1): handle 0 is not open: MFil_Open gives handles");
  EXPECT_FAILS(MFil_Re_Read(0, buffer_, 1), 0,
               "MFil_Re_Read(0, ..., 1): handle 0 is not open: MFil_Open gives handles");
  EXPECT_FAILS(MFil_Write(0, buffer_, 1), 0,
               "MFil_Write(0, ..., 1): handle 0 is not open: MFil_Open gives handles");
  EXPECT_FAILS(MFil_Lseek(0, 0), -1,
               "MFil_Lseek(0, 0): handle 0 is not open: MFil_Open gives handles");
  EXPECT_FAILS(MFil_LockPtr(0, 0), nullptr,
               "MFil_LockPtr(0, 0): handle 0 is not open: MFil_Open gives handles");
  EXPECT_TOLD(File_Size(0), "");
}

TEST_F(FilesMisuse, AnotherUseOfAHandle) {
  const int reading = opened(1, 0);
  EXPECT_FAILS(File_Write(reading, "x", 1), 0,
               "File_Write(0, ..., 1): handle 0 is open for reading only");
  EXPECT_FAILS(File_Read(reading, buffer_, -1), 0,
               "File_Read(0, ..., -1): the count is -1, and 0 is the least");
  EXPECT_FAILS(File_Read(reading, nullptr, 1), -1, "File_Read(0, null, 1): argument 2 is null");
  EXPECT_FAILS(File_Lseek(reading, -1), -1,
               "File_Lseek(0, -1): the offset is -1, and 0 is the least");
  EXPECT_FAILS(File_SetEOF(reading, -1), -1,
               "File_SetEOF(0, -1): the length is -1, and 0 is the least");
  EXPECT_FAILS(File_SetEOF(reading, 1), -1,
               "File_SetEOF(0, 1): the system refuses: Invalid argument");
  EXPECT_TOLD(File_Read(reading, buffer_, 512), "");
  File_Close(reading);
  const int writing = opened(0, 1);
  EXPECT_FAILS(File_Re_Read(writing, buffer_, 1), 0,
               "File_Re_Read(0, ..., 1): handle 0 is open for writing only");
  EXPECT_FAILS(File_Write(writing, "x", -1), 0,
               "File_Write(0, ..., -1): the count is -1, and 0 is the least");
}

TEST_F(FilesMisuse, WhatTheSystemRefuses) {
  const int handle = opened(1, 1);
  FileSlot &slot = DATA_FILE_TAB[handle];
  const short open = slot.reference;
  slot.reference = 20000;  // no descriptor of anybody's
  EXPECT_FAILS(File_Read(handle, buffer_, 1), -1,
               "File_Read(0, ..., 1): the system refuses: Bad file descriptor");
  EXPECT_TOLD(File_Re_Read(handle, buffer_, 1), "");
  EXPECT_FAILS(File_Write(handle, buffer_, 1), -1,
               "File_Write(0, ..., 1): the system refuses: Bad file descriptor");
  EXPECT_FAILS(File_Lseek(handle, 0), -1,
               "File_Lseek(0, 0): the system refuses: Bad file descriptor");
  EXPECT_FAILS(File_Close(handle), -1, "File_Close(0): the system refuses: Bad file descriptor");
  slot.reference = open;
}

// What an earlier call left in errno is no reason.
TEST_F(FilesMisuse, ATransferThatEndsEarly) {
  const int handle = opened(1, 1);
  EXPECT_EQ(File_Read(handle, buffer_, 2), 2);
  ASSERT_EQ(truncate(volumes_.posix("a.txt").c_str(), 1), 0);
  EXPECT_FAILS((errno = ENOENT, File_Read(handle, buffer_, 1)), -1,
               "File_Read(0, ..., 1): not all of it is done: the file has changed, or is full");
  EXPECT_FAILS((errno = ENOENT, File_Re_Read(handle, buffer_, 2)), -1,
               "File_Re_Read(0, ..., 2): not all of it is done: the file has changed, or is full");
  EXPECT_EQ(told([handle] {
              errno = ENOENT;
              EXPECT_EQ(File_Write(handle, "bc", 2), 2);
              EXPECT_EQ(errno, ENOENT);
            }),
            "");
  EXPECT_FAILS(File_Write(handle, "x", INT_MAX), -1,
               "File_Write(0, ..., 2147483647): the file would have more than 2147483647 bytes");
  File_Close(handle);
}

// An application may have left a number that no error has.
TEST_F(FilesMisuse, AnUnknownErrorIsNoReason) {
  const int handle = opened(1, 1);
  EXPECT_TOLD((errno = 12345, File_Lseek(handle, 1)), "");
  EXPECT_TOLD((errno = 12345, File_Close(handle)), "");
}

TEST_F(FilesMisuse, AFullDisk) {
  symlink("/dev/full", volumes_.posix("full").c_str());
  const int handle = File_Open("Data:full", 1, 1);
  ASSERT_EQ(handle, 0);
  EXPECT_FAILS(File_Write(handle, "x", 1), -1,
               "File_Write(0, ..., 1): the system refuses: No space left on device");
  File_Close(handle);
}

TEST_F(FilesMisuse, AFileThatDoesNotOpen) {
  EXPECT_FAILS(File_Open(nullptr, 1, 0), -2, "File_Open(null, 1, 0): argument 1 is null");
  EXPECT_FAILS(File_Open("Data:a", 0, 0), -3,
               "File_Open(\"Data:a\", 0, 0): neither reading nor writing is asked for");
  DATA_FILE_ID = -1;
  EXPECT_FAILS(
      File_Open("/srv/a", 1, 0), -2,
      "File_Open(\"/srv/a\", 1, 0): \"/srv/a\" is a path of the system, and a colon path is "
      "meant: \"Volume:folder:file\"");
  DATA_FILE_ID = -1;
  EXPECT_FAILS(File_Open("", 1, 0), -2, "File_Open(\"\", 1, 0): an empty path names nothing");
  DATA_FILE_ID = -1;
  EXPECT_FAILS(File_Open("Data:none:a", 1, 0), -2,
               "File_Open(\"Data:none:a\", 1, 0): there is no folder \"Data:none\"");
  DATA_FILE_ID = -1;
  // Opening it is how to find out that a file is there.
  EXPECT_TOLD(File_Open("Data:none", 1, 0), "");
  DATA_FILE_ID = -1;
  EXPECT_FAILS(File_Open("Data", 1, 0), -2, "File_Open(\"Data\", 1, 0): \"Data\" is a folder");
  DATA_FILE_ID = -1;
  const std::string path = "Data:" + std::string(140, 'a');
  EXPECT_NE(told([&] { File_Open(path.c_str(), 1, 0); }).find("does not fit into a slot"),
            std::string::npos);
  DATA_FILE_ID = -1;
  const std::string longer = "Data:" + std::string(600, 'a');
  EXPECT_NE(told([&] { File_Open(longer.c_str(), 1, 0); }).find("is too long to name anything"),
            std::string::npos);
  DATA_FILE_ID = -1;
  mkfifo(volumes_.posix("pipe").c_str(), 0600);
  EXPECT_FAILS(File_Open("Data:pipe", 1, 0), -2,
               "File_Open(\"Data:pipe\", 1, 0): \"Data:pipe\" cannot be opened so: its rights, its "
               "size or its kind forbid it");
}

TEST_F(FilesMisuse, MoreFilesThanSlots) {
  const std::string path = volumes_.file("a.txt", "abc");
  for (int i = 0; i < 5; ++i) {
    EXPECT_TOLD(File_Open(path.c_str(), 1, 0), "");
    EXPECT_TOLD(MFil_Open(nullptr, 0, 0), "");
  }
  EXPECT_FAILS(File_Open("Data:a.txt", 1, 0), -1,
               "File_Open(\"Data:a.txt\", 1, 0): all 5 file handles are open: close one with "
               "File_Close");
  EXPECT_FAILS(MFil_Open("name", 0, 0), -1,
               "MFil_Open(\"name\", 0, 0): all 5 memory files are open: close one with MFil_Close");
}

TEST_F(FilesMisuse, AMemoryFile) {
  const int handle = openedMemory("abc");
  EXPECT_FAILS(MFil_Read(handle, buffer_, -1), 0,
               "MFil_Read(0, ..., -1): the count is -1, and 0 is the least");
  EXPECT_FAILS(MFil_Write(handle, nullptr, 1), 0, "MFil_Write(0, null, 1): argument 2 is null");
  EXPECT_FAILS(MFil_Lseek(handle, 4), -1,
               "MFil_Lseek(0, 4): there is no offset 4: the last one is 3");
  EXPECT_TOLD(MFil_Lseek(handle, 3), "");
  EXPECT_FAILS(MFil_LockPtr(handle, 3), nullptr,
               "MFil_LockPtr(0, 3): there is no offset 3: the last one is 2");
  EXPECT_FAILS(MFil_LockPtr(handle, -1), nullptr,
               "MFil_LockPtr(0, -1): there is no offset -1: the last one is 2");
  EXPECT_TOLD(MFil_LockPtr(handle, 2), "");
  EXPECT_FAILS(MFil_Write(handle, buffer_, 2147483647), 0,
               "MFil_Write(0, ..., 2147483647): the file would have more than 2147483647 bytes");
}

// Several of its arguments may be wrong.
TEST_F(FilesMisuse, OneLineIsToldOfACallOfAMemoryFile) {
  const auto linesOf = [](const std::string &lines) {
    return lines.empty() ? 0 : std::max<long>(1, std::count(lines.begin(), lines.end(), '\n'));
  };
  const int open = openedMemory("abc");
  for (const int handle : {INT_MIN, -1, open, 1, 5, INT_MAX}) {
    for (const int number : {INT_MIN, -1, 4, INT_MAX}) {
      EXPECT_EQ(linesOf(told([&] { MFil_Read(handle, nullptr, number); })), 1);
      EXPECT_EQ(linesOf(told([&] { MFil_Re_Read(handle, nullptr, number); })), 1);
      EXPECT_EQ(linesOf(told([&] { MFil_Write(handle, nullptr, number); })), 1);
      EXPECT_EQ(linesOf(told([&] { MFil_Lseek(handle, number); })), 1);
      EXPECT_EQ(linesOf(told([&] { MFil_LockPtr(handle, number); })), 1);
    }
    EXPECT_EQ(linesOf(told([&] { MFil_Close(handle); })), handle == open ? 0 : 1);
  }
}

TEST_F(FilesMisuse, ADescriptorThatIsNotOpen) {
  EXPECT_FAILS(xFile_Close(-1), -1, "xFile_Close(-1): descriptor -1 is not open");
  EXPECT_FAILS(xFile_Read(-1, buffer_, 1), 0, "xFile_Read(-1, ..., 1): descriptor -1 is not open");
  EXPECT_FAILS(xFile_Write(-1, buffer_, 1), -1,
               "xFile_Write(-1, ..., 1): descriptor -1 is not open");
  EXPECT_FAILS(xFile_Lseek(-1, 0), -1, "xFile_Lseek(-1, 0): descriptor -1 is not open");
  EXPECT_FAILS(xFile_GetPos(-1), -1, "xFile_GetPos(-1): descriptor -1 is not open");
  EXPECT_FAILS(xFile_Size(-1), -1, "xFile_Size(-1): descriptor -1 is not open");
  EXPECT_FAILS(xFile_SetEOF(-1, 0), -1, "xFile_SetEOF(-1, 0): descriptor -1 is not open");
}

TEST_F(FilesMisuse, AFileThatCannotBeMade) {
  const std::string name(256, 'a');
  const std::string path = "Data:" + name;
  const std::string shown = "Data:" + std::string(55, 'a');
  const std::string line = "\"" + shown + "\"... cannot be made: its folder or the disk forbids it";
  EXPECT_EQ(told([&] { EXPECT_EQ(xFile_Open(path.c_str(), 0, 1), -1); }),
            "xFile_Open(\"" + shown + "\"..., 0, 1): " + line);
  Restored<char[256]> volumes(szVolumes);
  std::strcpy(szVolumes, "/proc");
  EXPECT_FAILS(File_Open("sys:none", 0, 1), -2,
               "File_Open(\"sys:none\", 0, 1): \"sys:none\" cannot be made: its folder or the disk "
               "forbids it");
  EXPECT_TOLD(xFile_Open("sys:none", 1, 1), "");
}

TEST_F(FilesMisuse, ADescriptorOfAPipe) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const std::string in = std::to_string(ends[0]), out = std::to_string(ends[1]);
  EXPECT_FAILS(
      xFile_GetPos(ends[0]), -1,
      "xFile_GetPos(" + in + "): descriptor " + in + " has no position: it is a pipe or the like");
  EXPECT_FAILS(
      xFile_Size(ends[0]), -1,
      "xFile_Size(" + in + "): descriptor " + in + " has no position: it is a pipe or the like");
  EXPECT_FAILS(xFile_Read(ends[1], buffer_, 1), 0,
               "xFile_Read(" + out + ", ..., 1): descriptor " + out + " is open for writing only");
  close(ends[0]);
  close(ends[1]);
}

TEST_F(FilesMisuse, ADescriptor) {
  EXPECT_TOLD(xFile_Open("Data:none", 1, 0), "");
  EXPECT_TOLD(xFile_Open(("Data:" + std::string(150, 'a')).c_str(), 1, 0), "");
  EXPECT_FAILS(xFile_Open(nullptr, 1, 0), -1, "xFile_Open(null, 1, 0): argument 1 is null");
  EXPECT_TOLD(xFile_Open("Data:none", 0, 0),
              "xFile_Open(\"Data:none\", 0, 0): neither reading nor writing is asked for");
  const int file = xFile_Open(volumes_.file("a.txt", "abc").c_str(), 1, 0);
  const std::string name = std::to_string(file);
  EXPECT_FAILS(xFile_Read(file, buffer_, -1), 0,
               "xFile_Read(" + name + ", ..., -1): the count is -1, and 0 is the least");
  EXPECT_FAILS(xFile_Write(file, buffer_, 1), -1,
               "xFile_Write(" + name + ", ..., 1): the system refuses: Bad file descriptor");
  EXPECT_FAILS(xFile_Lseek(file, -1), -1,
               "xFile_Lseek(" + name + ", -1): the offset is -1, and 0 is the least");
  EXPECT_FAILS(xFile_SetEOF(file, -1), -1,
               "xFile_SetEOF(" + name + ", -1): the length is -1, and 0 is the least");
  EXPECT_FAILS(xFile_SetEOF(file, 1), -1,
               "xFile_SetEOF(" + name + ", 1): the system refuses: Invalid argument");
  EXPECT_TOLD(xFile_Read(file, buffer_, 3), "");
  xFile_Close(file);
}

TEST_F(FilesMisuse, APathThatNamesNothing) {
  EXPECT_FAILS(File_Is_Existing("/srv/a:b"), 0,
               "File_Is_Existing(\"/srv/a:b\"): \"/srv/a:b\" is a path of the system, and a colon "
               "path is meant: \"Volume:folder:file\"");
  EXPECT_FAILS(Dir_Is_Existing(nullptr), 0, "Dir_Is_Existing(null): argument 1 is null");
  EXPECT_TOLD(Dir_Is_Existing("Data:none"), "");
  EXPECT_FAILS(MakeDir("Data:none:folder"), 0,
               "MakeDir(\"Data:none:folder\"): there is no folder \"Data:none\"");
  EXPECT_TOLD(MakeDir("Data"), "");
  volumes_.file("a.txt", "");
  EXPECT_TOLD(MACRemove("Data:none"), "");
  EXPECT_FAILS(MACRemove("Data"), -1,
               "MACRemove(\"Data\"): the system refuses: Directory not empty");
  EXPECT_FAILS(MACRename("Data:a.txt", "Data:none:b.txt"), -1,
               "MACRename(\"Data:a.txt\", \"Data:none:b.txt\"): there is no folder \"Data:none\"");
  EXPECT_FAILS(MACRename("Data:b.txt", "Data:a.txt"), -1,
               "MACRename(\"Data:b.txt\", \"Data:a.txt\"): the system refuses: No such file or "
               "directory");
  EXPECT_TOLD(MACRename("Data:a.txt", "Data:b.txt"), "");
  const std::string path = "Data:" + std::string(255, 'a');
  EXPECT_NE(told([&] { MAC2UNIX(path.c_str(), buffer_); }).find("more than 255 characters"),
            std::string::npos);
  EXPECT_FAILS(MAC2UNIX("Data:a", nullptr), 0, "MAC2UNIX(\"Data:a\", null): argument 2 is null");
}

// Such a volume is dropped from the path, and the rest is taken from the root.
TEST_F(FilesMisuse, AVolumeThatIsNotThere) {
  std::string path = "Foo" + volumes_.posix("folder");
  std::replace(path.begin(), path.end(), '/', ':');
  const std::string file = path + ":a", other = path + ":b";
  ASSERT_EQ(mkdir(volumes_.posix("folder").c_str(), 0777), 0);
  volumes_.file("folder/a", "");
  char list[512];
  EXPECT_TOLD(Dir_FindFiles(list, path.c_str(), 2, "a"), "");
  EXPECT_TOLD(Dir_ProcessFiles(path.c_str(), "a", [](const char *) { return 1; }), "");
  EXPECT_EQ(told([&] { EXPECT_EQ(MACRename(file.c_str(), other.c_str()), 0); }), "");
  EXPECT_EQ(told([&] { EXPECT_EQ(MACRemove(other.c_str()), 0); }), "");
  EXPECT_TOLD(MACRemove("Foo:none:a"),
              "MACRemove(\"Foo:none:a\"): there is no folder \"Foo:none\"");
  EXPECT_TOLD(Dir_FindFiles(list, "Foo", 2, "a"),
              "Dir_FindFiles(..., \"Foo\", 2, \"a\"): the volume \"Foo\" is dropped from the path, "
              "and nothing is left");
}

TEST_F(FilesMisuse, AVolumeThatIsAFile) {
  std::fclose(std::fopen((volumes_.root() + "/File").c_str(), "w"));
  EXPECT_TOLD(MAC2UNIX("File", buffer_),
              "MAC2UNIX(\"File\", ...): the volume \"File\" is dropped from the path, and nothing "
              "is left");
  EXPECT_TOLD(MAC2UNIX("File:a", buffer_), "");
}

TEST_F(FilesMisuse, ALengthOfABlock) {
  EXPECT_FAILS(GlobalAlloc(0, -1), nullptr,
               "GlobalAlloc(0, -1): the size is -1, and 0 is the least");
  EXPECT_FAILS(GlobalReAlloc(nullptr, -1), nullptr,
               "GlobalReAlloc(null, -1): the size is -1, and 0 is the least");
}

TEST_F(FilesMisuse, AListing) {
  volumes_.file("a.txt", "");
  volumes_.file("b.txt", "");
  char list[512];
  const auto stop = [](const char *) { return 1; };
  EXPECT_FAILS(Dir_FindFiles(list, "Data:none", 2, "a"), 0,
               "Dir_FindFiles(..., \"Data:none\", 2, \"a\"): there is no folder \"Data:none\"");
  EXPECT_FAILS(Dir_FindFiles(list, "Data", -1, "a"), 0,
               "Dir_FindFiles(..., \"Data\", -1, \"a\"): the number of rows is -1, and 0 is the "
               "least");
  EXPECT_FAILS(Dir_FindFiles(nullptr, "Data", 1, "a"), 0,
               "Dir_FindFiles(null, \"Data\", 1, \"a\"): there is no list of 1 rows");
  EXPECT_TOLD(Dir_FindFiles(list, "Data", 1, ".txt"),
              "Dir_FindFiles(..., \"Data\", 1, \".txt\"): 2 files are found, and the list has 1 "
              "rows");
  EXPECT_TOLD(Dir_FindFiles(nullptr, "Data", 0, ".txt"), "");
  EXPECT_TOLD(Dir_FindFiles(list, "Data", 2, ".txt"), "");
  EXPECT_FAILS(Dir_ProcessFiles("Data:none", "a", stop), 0,
               "Dir_ProcessFiles(\"Data:none\", \"a\", ...): there is no folder \"Data:none\"");
  EXPECT_FAILS(Dir_ProcessFiles("Data", "a", nullptr), 0,
               "Dir_ProcessFiles(\"Data\", \"a\", null): argument 3 is null");
  EXPECT_FAILS(Dir_SortFiles(list, -1), 0,
               "Dir_SortFiles(..., -1): the number of rows is -1, and 0 is the least");
  EXPECT_FAILS(Dir_SortSizeFiles(nullptr, 2), 0,
               "Dir_SortSizeFiles(null, 2): there is no list of 2 rows");
  EXPECT_TOLD(Dir_SortFiles(list, 1), "");
}

TEST_F(FilesMisuse, AListOfFiles) {
  char list[8] = "a\0";
  char *item = nullptr;
  EXPECT_TOLD(ChCh_Detect_Missing_File("Data:none", list, &item),
              "ChCh_Detect_Missing_File(\"Data:none\", \"a\", ...): there is no folder "
              "\"Data:none\"");
  EXPECT_FAILS(ChCh_Detect_Missing_File("Data", nullptr, &item), 0,
               "ChCh_Detect_Missing_File(\"Data\", null, ...): argument 2 is null");
  char removed[8] = "a\0";
  EXPECT_FAILS(ChCh_Remove_Missing_File("Data:none", removed), 0,
               "ChCh_Remove_Missing_File(\"Data:none\", \"a\"): there is no folder "
               "\"Data:none\"");
  EXPECT_TOLD(ChCh_Remove_Missing_File("Data", nullptr),
              "ChCh_Remove_Missing_File(\"Data\", null): argument 2 is null");
  EXPECT_TOLD(ChCh_Detect_Missing_File("Data", list, &item), "");
  EXPECT_TOLD(ChCh_Detect_Missing_File("", list, &item), "");
}

TEST_F(FilesMisuse, ErrnoIsAsWithoutLines) {
  const auto errorOf = [](base::Telling telling) {
    int error = 0;
    told(
        [&] {
          errno = 0;
          File_Open("Data:none", 1, 0);
          error = errno;
        },
        telling);
    DATA_FILE_ID = -1;
    return error;
  };
  EXPECT_EQ(errorOf(base::Telling::Yes), errorOf(base::Telling::No));
}

}  // namespace
}  // namespace korvel::test
