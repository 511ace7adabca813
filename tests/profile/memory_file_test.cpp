// SPDX-License-Identifier: MIT
// Files loaded into memory files while they change.
#include "profile/memory_file.h"

#include <fstream>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>

#include "tests/files/volumes.h"

namespace {

using korvel::profile::InputFile;
using korvel::profile::MemoryFile;
using korvel::test::Volumes;

TEST(MemoryFile, TakesAFileThatGrowsMeanwhile) {
  for (const std::size_t growth : {1U, 4095U, 4096U, 20000U, 100000U}) {
    Volumes volumes;
    const std::string path = volumes.file("f", "at first");
    InputFile file;
    ASSERT_TRUE(file.open(path.c_str()));
    std::ofstream(volumes.posix("f"), std::ios::app) << std::string(growth, 'g');
    MemoryFile memory(file.size() + 1);
    ASSERT_TRUE(memory.load(file.descriptor(), file.size()));
    EXPECT_EQ(memory.bytes(), "at first" + std::string(growth, 'g'));
  }
}

TEST(MemoryFile, TakesAFileThatShrinksMeanwhile) {
  Volumes volumes;
  const std::string path = volumes.file("f", std::string(10000, 'x'));
  InputFile file;
  ASSERT_TRUE(file.open(path.c_str()));
  ASSERT_EQ(truncate(volumes.posix("f").c_str(), 5), 0);
  MemoryFile memory(file.size() + 1);
  ASSERT_TRUE(memory.load(file.descriptor(), file.size()));
  EXPECT_EQ(memory.bytes(), "xxxxx");
}

TEST(MemoryFile, RefusesAFileThatNoMemoryFileCanHold) {
  Volumes volumes;
  const std::string path = volumes.file("f", "");
  ASSERT_EQ(truncate(volumes.posix("f").c_str(), 0x7FFFFFFF), 0);
  InputFile file;
  ASSERT_TRUE(file.open(path.c_str()));
  MemoryFile memory(1);
  EXPECT_FALSE(memory.load(file.descriptor(), file.size()));
}

// Not the few bytes either that an int would make of its size.
TEST(MemoryFile, RefusesAPieceThatNoMemoryFileCanHold) {
  constexpr std::size_t kSize = (std::size_t{1} << 32) + 5;
  void *const zeros =
      mmap(nullptr, kSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(zeros, MAP_FAILED);
  Volumes volumes;
  MemoryFile memory(10);
  EXPECT_FALSE(memory.append(std::string_view(static_cast<const char *>(zeros), kSize)));
  EXPECT_EQ(memory.bytes(), "");
  munmap(zeros, kSize);
}

TEST(MemoryFile, GathersPiecesUntilItIsCleared) {
  Volumes volumes;
  MemoryFile memory(10);
  EXPECT_TRUE(memory.append("one "));
  EXPECT_TRUE(memory.append(std::string(9000, 't')));
  EXPECT_EQ(memory.bytes(), "one " + std::string(9000, 't'));
  memory.clear();
  EXPECT_EQ(memory.bytes(), "");
  EXPECT_TRUE(memory.append("two"));
  EXPECT_EQ(memory.bytes(), "two");
}

TEST(MemoryFile, IsClosedWhenThereIsNoneLeft) {
  Volumes volumes;
  for (int handle = 0; handle < 5; ++handle) MFil_Open("", 0, 0);
  EXPECT_FALSE(MemoryFile(10).isOpen());
  EXPECT_EQ(DATA_MFIL_ID, 4);
}

}  // namespace
