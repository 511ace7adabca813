// SPDX-License-Identifier: MIT
// What is told of handles that are not open, of counts and of paths.
#include "files/misuse.h"

#include <cerrno>
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
  EXPECT_TOLD(File_Close(5), "File_Close(5): there is no handle 5: handles are from 0 to 4");
  EXPECT_TOLD(File_Size(-1), "File_Size(-1): there is no handle -1: handles are from 0 to 4");
  EXPECT_TOLD(File_GetPos(5), "File_GetPos(5): there is no handle 5: handles are from 0 to 4");
  EXPECT_TOLD(File_Read(5, buffer_, 1),
              "File_Read(5, ..., 1): there is no handle 5: handles are from 0 to 4");
  EXPECT_TOLD(File_Re_Read(5, buffer_, 1),
              "File_Re_Read(5, ..., 1): there is no handle 5: handles are from 0 to 4");
  EXPECT_TOLD(File_Write(5, buffer_, 1),
              "File_Write(5, ..., 1): there is no handle 5: handles are from 0 to 4");
  EXPECT_TOLD(MFil_GetPos(5), "MFil_GetPos(5): there is no handle 5: handles are from 0 to 4");
  EXPECT_TOLD(MFil_Size(-1), "MFil_Size(-1): there is no handle -1: handles are from 0 to 4");
}

TEST_F(FilesMisuse, AHandleThatIsNotOpen) {
  EXPECT_TOLD(File_Close(0), "File_Close(0): handle 0 is not open: File_Open gives handles");
  EXPECT_TOLD(File_Read(1, buffer_, 1),
              "File_Read(1, ..., 1): handle 1 is not open: File_Open gives handles");
  EXPECT_TOLD(File_Lseek(2, 0), "File_Lseek(2, 0): handle 2 is not open: File_Open gives handles");
  EXPECT_TOLD(File_SetEOF(3, 0),
              "File_SetEOF(3, 0): handle 3 is not open: File_Open gives handles");
  EXPECT_TOLD(MFil_Close(0), "MFil_Close(0): handle 0 is not open: MFil_Open gives handles");
  EXPECT_TOLD(MFil_Read(0, buffer_, 1),
              "MFil_Read(0, ..., 1): handle 0 is not open: MFil_Open gives handles");
  EXPECT_TOLD(MFil_Re_Read(0, buffer_, 1),
              "MFil_Re_Read(0, ..., 1): handle 0 is not open: MFil_Open gives handles");
  EXPECT_TOLD(MFil_Write(0, buffer_, 1),
              "MFil_Write(0, ..., 1): handle 0 is not open: MFil_Open gives handles");
  EXPECT_TOLD(MFil_Lseek(0, 0), "MFil_Lseek(0, 0): handle 0 is not open: MFil_Open gives handles");
  EXPECT_TOLD(MFil_LockPtr(0, 0),
              "MFil_LockPtr(0, 0): handle 0 is not open: MFil_Open gives handles");
  EXPECT_TOLD(File_Size(0), "");
}

TEST_F(FilesMisuse, AnotherUseOfAHandle) {
  const int reading = opened(1, 0);
  EXPECT_TOLD(File_Write(reading, "x", 1),
              "File_Write(0, ..., 1): handle 0 is open for reading only");
  EXPECT_TOLD(File_Read(reading, buffer_, -1),
              "File_Read(0, ..., -1): the count is -1, and 0 is the least");
  EXPECT_TOLD(File_Read(reading, nullptr, 1), "File_Read(0, null, 1): argument 2 is null");
  EXPECT_TOLD(File_Lseek(reading, -1), "File_Lseek(0, -1): the offset is -1, and 0 is the least");
  EXPECT_TOLD(File_SetEOF(reading, -1), "File_SetEOF(0, -1): the length is -1, and 0 is the least");
  EXPECT_TOLD(File_SetEOF(reading, 1), "File_SetEOF(0, 1): the system refuses: Invalid argument");
  EXPECT_TOLD(File_Read(reading, buffer_, 512), "");
  File_Close(reading);
  const int writing = opened(0, 1);
  EXPECT_TOLD(File_Re_Read(writing, buffer_, 1),
              "File_Re_Read(0, ..., 1): handle 0 is open for writing only");
  EXPECT_TOLD(File_Write(writing, "x", -1),
              "File_Write(0, ..., -1): the count is -1, and 0 is the least");
}

TEST_F(FilesMisuse, WhatTheSystemRefuses) {
  const int handle = opened(1, 1);
  FileSlot &slot = DATA_FILE_TAB[handle];
  const short open = slot.reference;
  slot.reference = 20000;  // no descriptor of anybody's
  EXPECT_TOLD(File_Read(handle, buffer_, 1),
              "File_Read(0, ..., 1): the system refuses: Bad file descriptor");
  EXPECT_TOLD(File_Re_Read(handle, buffer_, 1), "");
  EXPECT_TOLD(File_Write(handle, buffer_, 1),
              "File_Write(0, ..., 1): the system refuses: Bad file descriptor");
  EXPECT_TOLD(File_Lseek(handle, 0), "File_Lseek(0, 0): the system refuses: Bad file descriptor");
  EXPECT_TOLD(File_Close(handle), "File_Close(0): the system refuses: Bad file descriptor");
  slot.reference = open;
}

TEST_F(FilesMisuse, AFileThatDoesNotOpen) {
  EXPECT_TOLD(File_Open(nullptr, 1, 0), "File_Open(null, 1, 0): argument 1 is null");
  EXPECT_TOLD(File_Open("Data:a", 0, 0),
              "File_Open(\"Data:a\", 0, 0): neither reading nor writing is asked for");
  DATA_FILE_ID = -1;
  EXPECT_TOLD(
      File_Open("/srv/a", 1, 0),
      "File_Open(\"/srv/a\", 1, 0): \"/srv/a\" is a path of the system, and a colon path is "
      "meant: \"Volume:folder:file\"");
  DATA_FILE_ID = -1;
  EXPECT_TOLD(File_Open("", 1, 0), "File_Open(\"\", 1, 0): an empty path names nothing");
  DATA_FILE_ID = -1;
  EXPECT_TOLD(File_Open("Data:none:a", 1, 0),
              "File_Open(\"Data:none:a\", 1, 0): there is no folder \"Data:none\"");
  DATA_FILE_ID = -1;
  // Opening it is how to find out that a file is there.
  EXPECT_TOLD(File_Open("Data:none", 1, 0), "");
  DATA_FILE_ID = -1;
  EXPECT_TOLD(File_Open("Data", 1, 0), "File_Open(\"Data\", 1, 0): \"Data\" is a folder");
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
  EXPECT_TOLD(File_Open("Data:pipe", 1, 0),
              "File_Open(\"Data:pipe\", 1, 0): \"Data:pipe\" cannot be opened so: its rights, its "
              "size or its kind forbid it");
}

TEST_F(FilesMisuse, MoreFilesThanSlots) {
  const std::string path = volumes_.file("a.txt", "abc");
  for (int i = 0; i < 5; ++i) {
    EXPECT_TOLD(File_Open(path.c_str(), 1, 0), "");
    EXPECT_TOLD(MFil_Open(nullptr, 0, 0), "");
  }
  EXPECT_TOLD(File_Open("Data:a.txt", 1, 0),
              "File_Open(\"Data:a.txt\", 1, 0): all 5 file handles are open: close one with "
              "File_Close");
  EXPECT_TOLD(MFil_Open("name", 0, 0),
              "MFil_Open(\"name\", 0, 0): all 5 memory files are open: close one with MFil_Close");
}

TEST_F(FilesMisuse, AMemoryFile) {
  const int handle = openedMemory("abc");
  EXPECT_TOLD(MFil_Read(handle, buffer_, -1),
              "MFil_Read(0, ..., -1): the count is -1, and 0 is the least");
  EXPECT_TOLD(MFil_Write(handle, nullptr, 1), "MFil_Write(0, null, 1): argument 2 is null");
  EXPECT_TOLD(MFil_Lseek(handle, 4), "MFil_Lseek(0, 4): there is no offset 4: the last one is 3");
  EXPECT_TOLD(MFil_Lseek(handle, 3), "");
  EXPECT_TOLD(MFil_LockPtr(handle, 3),
              "MFil_LockPtr(0, 3): there is no offset 3: the last one is 2");
  EXPECT_TOLD(MFil_LockPtr(handle, -1),
              "MFil_LockPtr(0, -1): there is no offset -1: the last one is 2");
  EXPECT_TOLD(MFil_LockPtr(handle, 2), "");
}

TEST_F(FilesMisuse, ADescriptorThatIsNotOpen) {
  EXPECT_TOLD(xFile_Close(-1), "xFile_Close(-1): descriptor -1 is not open");
  EXPECT_TOLD(xFile_Read(-1, buffer_, 1), "xFile_Read(-1, ..., 1): descriptor -1 is not open");
  EXPECT_TOLD(xFile_Write(-1, buffer_, 1), "xFile_Write(-1, ..., 1): descriptor -1 is not open");
  EXPECT_TOLD(xFile_Lseek(-1, 0), "xFile_Lseek(-1, 0): descriptor -1 is not open");
  EXPECT_TOLD(xFile_GetPos(-1), "xFile_GetPos(-1): descriptor -1 is not open");
  EXPECT_TOLD(xFile_Size(-1), "xFile_Size(-1): descriptor -1 is not open");
  EXPECT_TOLD(xFile_SetEOF(-1, 0), "xFile_SetEOF(-1, 0): descriptor -1 is not open");
}

TEST_F(FilesMisuse, ADescriptor) {
  EXPECT_TOLD(xFile_Open("Data:none", 1, 0), "");
  EXPECT_TOLD(xFile_Open(nullptr, 1, 0), "xFile_Open(null, 1, 0): argument 1 is null");
  EXPECT_TOLD(xFile_Open("Data:none", 0, 0),
              "xFile_Open(\"Data:none\", 0, 0): neither reading nor writing is asked for");
  const int file = xFile_Open(volumes_.file("a.txt", "abc").c_str(), 1, 0);
  const std::string name = std::to_string(file);
  EXPECT_TOLD(xFile_Read(file, buffer_, -1),
              "xFile_Read(" + name + ", ..., -1): the count is -1, and 0 is the least");
  EXPECT_TOLD(xFile_Write(file, buffer_, 1),
              "xFile_Write(" + name + ", ..., 1): the system refuses: Bad file descriptor");
  EXPECT_TOLD(xFile_Lseek(file, -1),
              "xFile_Lseek(" + name + ", -1): the system refuses: Invalid argument");
  EXPECT_TOLD(xFile_SetEOF(file, 1),
              "xFile_SetEOF(" + name + ", 1): the system refuses: Invalid argument");
  EXPECT_TOLD(xFile_Read(file, buffer_, 3), "");
  xFile_Close(file);
}

TEST_F(FilesMisuse, APathThatNamesNothing) {
  EXPECT_TOLD(File_Is_Existing("/srv/a:b"),
              "File_Is_Existing(\"/srv/a:b\"): \"/srv/a:b\" is a path of the system, and a colon "
              "path is meant: \"Volume:folder:file\"");
  EXPECT_TOLD(Dir_Is_Existing(nullptr), "Dir_Is_Existing(null): argument 1 is null");
  EXPECT_TOLD(Dir_Is_Existing("Data:none"), "");
  EXPECT_TOLD(MakeDir("Data:none:folder"),
              "MakeDir(\"Data:none:folder\"): there is no folder \"Data:none\"");
  EXPECT_TOLD(MakeDir("Data"), "");
  volumes_.file("a.txt", "");
  EXPECT_TOLD(MACRemove("Data:none"), "");
  EXPECT_TOLD(MACRemove("Data"), "MACRemove(\"Data\"): the system refuses: Directory not empty");
  EXPECT_TOLD(MACRename("Data:a.txt", "Data:none:b.txt"),
              "MACRename(\"Data:a.txt\", \"Data:none:b.txt\"): there is no folder \"Data:none\"");
  EXPECT_TOLD(MACRename("Data:b.txt", "Data:a.txt"),
              "MACRename(\"Data:b.txt\", \"Data:a.txt\"): the system refuses: No such file or "
              "directory");
  EXPECT_TOLD(MACRename("Data:a.txt", "Data:b.txt"), "");
  const std::string path = "Data:" + std::string(255, 'a');
  EXPECT_NE(told([&] { MAC2UNIX(path.c_str(), buffer_); }).find("more than 255 characters"),
            std::string::npos);
  EXPECT_TOLD(MAC2UNIX("Data:a", nullptr), "MAC2UNIX(\"Data:a\", null): argument 2 is null");
}

TEST_F(FilesMisuse, ALengthOfABlock) {
  EXPECT_TOLD(GlobalAlloc(0, -1), "GlobalAlloc(0, -1): the size is -1, and 0 is the least");
  EXPECT_TOLD(GlobalReAlloc(nullptr, -1),
              "GlobalReAlloc(null, -1): the size is -1, and 0 is the least");
}

TEST_F(FilesMisuse, AListing) {
  volumes_.file("a.txt", "");
  volumes_.file("b.txt", "");
  char list[512];
  const auto stop = [](const char *) { return 1; };
  EXPECT_TOLD(Dir_FindFiles(list, "Data:none", 2, "a"),
              "Dir_FindFiles(..., \"Data:none\", 2, \"a\"): there is no folder \"Data:none\"");
  EXPECT_TOLD(Dir_FindFiles(list, "Data", -1, "a"),
              "Dir_FindFiles(..., \"Data\", -1, \"a\"): the number of rows is -1, and 0 is the "
              "least");
  EXPECT_TOLD(Dir_FindFiles(nullptr, "Data", 1, "a"),
              "Dir_FindFiles(null, \"Data\", 1, \"a\"): there is no list of 1 rows");
  EXPECT_TOLD(Dir_FindFiles(list, "Data", 1, ".txt"),
              "Dir_FindFiles(..., \"Data\", 1, \".txt\"): 2 files are found, and the list has 1 "
              "rows");
  EXPECT_TOLD(Dir_FindFiles(nullptr, "Data", 0, ".txt"), "");
  EXPECT_TOLD(Dir_FindFiles(list, "Data", 2, ".txt"), "");
  EXPECT_TOLD(Dir_ProcessFiles("Data:none", "a", stop),
              "Dir_ProcessFiles(\"Data:none\", \"a\", ...): there is no folder \"Data:none\"");
  EXPECT_TOLD(Dir_ProcessFiles("Data", "a", nullptr),
              "Dir_ProcessFiles(\"Data\", \"a\", null): argument 3 is null");
  EXPECT_TOLD(Dir_SortFiles(list, -1),
              "Dir_SortFiles(..., -1): the number of rows is -1, and 0 is the least");
  EXPECT_TOLD(Dir_SortSizeFiles(nullptr, 2),
              "Dir_SortSizeFiles(null, 2): there is no list of 2 rows");
  EXPECT_TOLD(Dir_SortFiles(list, 1), "");
}

TEST_F(FilesMisuse, AListOfFiles) {
  char list[8] = "a\0";
  char *item = nullptr;
  EXPECT_TOLD(ChCh_Detect_Missing_File("Data:none", list, &item),
              "ChCh_Detect_Missing_File(\"Data:none\", \"a\", ...): there is no folder "
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
