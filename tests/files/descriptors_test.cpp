// SPDX-License-Identifier: MIT
// The thin layer over descriptors: flags, modes of new files, offsets and lengths.
#include <climits>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>

#include "tests/files/faults.h"
#include "tests/files/volumes.h"

namespace korvel {
namespace {

using test::content;
using test::modeOf;
using test::Volumes;

class Descriptors : public testing::Test {
 protected:
  ~Descriptors() override {
    if (fd_ > 2) close(fd_);
  }
  int open(const std::string &path, int read, int write) {
    return fd_ = xFile_Open(path.c_str(), read, write);
  }

  static mode_t mask() {
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
  }

  Volumes volumes_;
  int fd_ = -1;
};

// Kept: with neither flag set the result is the read flag itself.
TEST_F(Descriptors, NeitherFlagGivesTheReadFlag) {
  const std::string path = volumes_.file("a", "text");
  EXPECT_EQ(open(path, 0, 0), 0);
  EXPECT_EQ(open(path, -7, 0), -7);
  EXPECT_EQ(open("Data:missing", 0, -1), 0);
  EXPECT_EQ(xFile_Open(nullptr, 0, 0), 0);
  EXPECT_EQ(xFile_Open(nullptr, 1, 0), -1);
}

TEST_F(Descriptors, WritingCutsAnExistingFileAndKeepsItsMode) {
  const std::string path = volumes_.file("a", "old content");
  chmod(volumes_.posix("a").c_str(), 0640);
  ASSERT_GE(open(path, 0, 1), 0);
  EXPECT_EQ(content(volumes_.posix("a")), "");
  EXPECT_EQ(xFile_Write(fd_, "new", 3), 3);
  char byte;
  EXPECT_EQ(xFile_Read(fd_, &byte, 1), 0) << "opened for writing only";
  EXPECT_EQ(xFile_Close(fd_), 0);
  EXPECT_EQ(xFile_Close(fd_), -1);
  EXPECT_EQ(content(volumes_.posix("a")), "new");
  EXPECT_EQ(modeOf(volumes_.posix("a")), 0640u);
}

TEST_F(Descriptors, ANewFileIsOpenToAllAndTheMaskStays) {
  const mode_t mask = umask(077);
  open("Data:new", 0, 1);
  EXPECT_EQ(umask(mask), 077u);
  ASSERT_GE(fd_, 0);
  EXPECT_EQ(modeOf(volumes_.posix("new")), 0777u);
  EXPECT_NE(fcntl(fd_, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(Descriptors, ReadingNeedsAnExistingRegularFile) {
  mkdir(volumes_.posix("folder").c_str(), 0777);
  mkfifo(volumes_.posix("pipe").c_str(), 0666);
  EXPECT_EQ(open("Data:missing", 1, 0), -1);
  EXPECT_EQ(open("Data:folder", 1, 0), -1);
  EXPECT_EQ(open("Data:pipe", 1, 0), -1);
  EXPECT_EQ(open("Data:folder", 1, 1), -1);
  EXPECT_EQ(open("Data:folder", 0, 1), -1);
  EXPECT_EQ(open("Data:missing", 1, 1), -1) << "reading and writing creates nothing";
  EXPECT_NE(access(volumes_.posix("missing").c_str(), F_OK), 0);
  const std::string path = volumes_.file("a", "text");
  ASSERT_GE(open(path, 1, 0), 0);
  EXPECT_EQ(xFile_Write(fd_, "x", 1), -1);
  close(fd_);
  ASSERT_GE(open(path, 1, 1), 0);
  EXPECT_EQ(content(volumes_.posix("a")), "text") << "nothing is cut";
  EXPECT_EQ(xFile_Write(fd_, "T", 1), 1);
  EXPECT_EQ(content(volumes_.posix("a")), "Text");
}

TEST_F(Descriptors, WritingIntoAPipeWithoutAReaderFailsAtOnce) {
  mkfifo(volumes_.posix("pipe").c_str(), 0666);
  EXPECT_EQ(test::inChild([] {
              alarm(10);
              return xFile_Open("Data:pipe", 0, 1) == -1 ? 0 : 1;
            }),
            0);
  EXPECT_EQ(modeOf(volumes_.posix("pipe")), 0666u & ~mask());
}

TEST_F(Descriptors, APipeWithAReaderIsWrittenAndWaitsForRoom) {
  mkfifo(volumes_.posix("pipe").c_str(), 0666);
  const int reader = ::open(volumes_.posix("pipe").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(open("Data:pipe", 0, 1), 0);
  EXPECT_EQ(fcntl(fd_, F_GETFL) & O_NONBLOCK, 0);
  EXPECT_EQ(xFile_Write(fd_, "abc", 3), 3);
  char bytes[4] = "";
  EXPECT_EQ(xFile_Read(reader, bytes, 4), 3);
  EXPECT_STREQ(bytes, "abc");
  close(fd_);
  ASSERT_GE(open("Data:pipe", 1, 1), 0);
  EXPECT_EQ(fcntl(fd_, F_GETFL) & O_NONBLOCK, 0);
  close(reader);
}

TEST_F(Descriptors, NoneKeepsAFlagOfItsOpening) {
  const std::string path = volumes_.file("a", "text");
  const int kFlags[][2] = {{1, 0}, {0, 1}, {1, 1}};
  for (const auto &[read, write] : kFlags) {
    ASSERT_GE(open(path, read, write), 0);
    EXPECT_EQ(fcntl(fd_, F_GETFL) & (O_NONBLOCK | O_APPEND), 0);
    close(fd_);
  }
  fd_ = -1;
}

TEST_F(Descriptors, ReadingAndSeeking) {
  ASSERT_GE(open(volumes_.file("a", "0123456789"), 1, 0), 0);
  char bytes[16] = "";
  EXPECT_EQ(xFile_Read(fd_, bytes, 4), 4);
  EXPECT_EQ(std::string(bytes, 4), "0123");
  EXPECT_EQ(xFile_GetPos(fd_), 4);
  EXPECT_EQ(xFile_Lseek(fd_, 8), 8);
  EXPECT_EQ(xFile_Read(fd_, bytes, 16), 2);
  EXPECT_EQ(xFile_Read(fd_, bytes, 16), 0);
  EXPECT_EQ(xFile_Lseek(fd_, -1), -1);
  EXPECT_EQ(xFile_GetPos(fd_), 10);
  EXPECT_EQ(xFile_Lseek(fd_, INT_MAX), INT_MAX);
  EXPECT_EQ(xFile_Read(fd_, bytes, -1), 0);
  EXPECT_EQ(xFile_Read(fd_, nullptr, 1), 0);
  EXPECT_EQ(xFile_Read(-1, bytes, 1), 0);
  EXPECT_EQ(xFile_Write(fd_, bytes, -1), -1);
  EXPECT_EQ(xFile_Write(fd_, nullptr, 1), -1);
  EXPECT_EQ(xFile_GetPos(-1), -1);
}

// Kept: the result is the upper half of the length.
TEST_F(Descriptors, SizeIsTheUpperHalfOfTheLengthAndRewinds) {
  ASSERT_GE(open(volumes_.file("a", "0123456789"), 1, 1), 0);
  xFile_Lseek(fd_, 7);
  EXPECT_EQ(xFile_Size(fd_), 0);
  EXPECT_EQ(xFile_GetPos(fd_), 0);
  const struct {
    off_t length;
    int upper;
  } kCases[] = {{0xFFFFFFFF, 0}, {0x100000000, 1}, {0x2FFFFFFFF, 2}};
  for (const auto &row : kCases) {
    ASSERT_EQ(ftruncate(fd_, row.length), 0);
    EXPECT_EQ(xFile_Size(fd_), row.upper) << row.length;
    EXPECT_EQ(xFile_GetPos(fd_), 0);
  }
  EXPECT_EQ(xFile_Size(-1), -1);
}

TEST_F(Descriptors, SetEofCutsOrExtendsAndSeeksThere) {
  ASSERT_GE(open(volumes_.file("a", "0123456789"), 1, 1), 0);
  EXPECT_EQ(xFile_SetEOF(fd_, 4), 0);
  EXPECT_EQ(xFile_GetPos(fd_), 4);
  EXPECT_EQ(content(volumes_.posix("a")), "0123");
  EXPECT_EQ(xFile_SetEOF(fd_, 6), 0);
  EXPECT_EQ(xFile_GetPos(fd_), 6);
  EXPECT_EQ(content(volumes_.posix("a")), std::string("0123\0\0", 6));
  EXPECT_EQ(xFile_SetEOF(fd_, -1), -1);
  EXPECT_EQ(xFile_SetEOF(-1, 0), -1);
}

}  // namespace
}  // namespace korvel
