// SPDX-License-Identifier: MIT
// Memory files and memory blocks, beside a model on strings.
#include <climits>
#include <cstring>
#include <random>
#include <string>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>

#include "tests/files/volumes.h"
#include "tests/support/poisoned_buffer.h"
#include "tests/support/sanitizer.h"

namespace korvel {
namespace {

using test::PoisonedBuffer;
using test::Volumes;

class MemoryFiles : public testing::Test {
 protected:
  static std::string read(int handle, int count) {
    PoisonedBuffer buffer(static_cast<std::size_t>(std::max(count, 0)));
    const int got = MFil_Read(handle, buffer.data(), count);
    EXPECT_TRUE(buffer.guardsIntact());
    EXPECT_TRUE(buffer.untouchedFrom(static_cast<std::size_t>(got)));
    return {buffer.data(), static_cast<std::size_t>(got)};
  }
  static int write(int handle, std::string_view text) {
    return MFil_Write(handle, text.data(), static_cast<int>(text.size()));
  }

  Volumes volumes_;
};

TEST_F(MemoryFiles, AClosingGivesTheBlockBack) {
  constexpr int kMapped = 1 << 25;  // more than the allocator keeps
  const std::size_t before = mallinfo2().hblkhd;
  ASSERT_EQ(MFil_Open("", kMapped, 0), 0);
  if (!test::kUnderSanitizer) {
    EXPECT_GT(mallinfo2().hblkhd, before);
  }
  EXPECT_EQ(MFil_Close(0), 0);
  EXPECT_EQ(mallinfo2().hblkhd, before);
}

TEST_F(MemoryFiles, CapacityIs4096OrTheWishOrTheMinimum) {
  const struct {
    int wish;
    int minimum;
    int capacity;
  } kCases[] = {
      {1, 10000, 10000}, {1, 0, 4096},        {-1, -1, 4096},        {4096, 0, 4096},
      {4097, 0, 4097},   {5000, 5001, 5001},  {5001, 5000, 5001},    {0, 4096, 4096},
      {0, 4097, 4097},   {INT_MIN, 10, 4096}, {1 << 20, 0, 1 << 20},
  };
  for (const auto &row : kCases) {
    const int handle = MFil_Open("", row.wish, row.minimum);
    ASSERT_EQ(handle, 0) << row.wish << ' ' << row.minimum;
    EXPECT_EQ(DATA_MFIL_TAB[0].capacity, row.capacity) << row.wish << ' ' << row.minimum;
    EXPECT_EQ(DATA_MFIL_TAB[0].mode, 2);
    EXPECT_EQ(DATA_MFIL_TAB[0].size, 0);
    EXPECT_EQ(DATA_MFIL_TAB[0].position, 0);
    EXPECT_EQ(MFil_Close(handle), 0);
  }
}

TEST_F(MemoryFiles, TheNameIsNotUsed) { EXPECT_EQ(MFil_Open(nullptr, 0, 0), 0); }

TEST_F(MemoryFiles, HandlesAreGivenAsThoseOfFiles) {
  for (int handle = 0; handle < 5; ++handle) EXPECT_EQ(MFil_Open("", 0, 0), handle);
  EXPECT_EQ(MFil_Open("", 0, 0), -1);
  EXPECT_EQ(MFil_Close(1), 0);
  EXPECT_EQ(DATA_MFIL_ID, 4);
  EXPECT_EQ(MFil_Open("", 0, 0), 1);
  EXPECT_EQ(MFil_Close(4), 0);
  EXPECT_EQ(DATA_MFIL_ID, 3);
  EXPECT_EQ(MFil_Close(4), 0) << "closing what is closed changes nothing";
  EXPECT_EQ(DATA_MFIL_ID, 3);
  EXPECT_EQ(MFil_Open("", 0, 0), 4);
}

TEST_F(MemoryFiles, ReadingAfterWriting) {
  const int handle = MFil_Open("", 0, 0);
  std::mt19937 random(5);
  const std::string text = test::randomBytes(random, 5000);
  EXPECT_EQ(write(handle, text), 5000);
  EXPECT_EQ(MFil_Lseek(handle, 0), 0);
  EXPECT_EQ(read(handle, 8192), text);
  EXPECT_EQ(read(handle, 8192), "");
  EXPECT_EQ(MFil_GetPos(handle), 5000);
  EXPECT_EQ(MFil_Size(handle), 5000);
}

TEST_F(MemoryFiles, SeekingEndsAtTheSize) {
  const int handle = MFil_Open("", 0, 0);
  EXPECT_EQ(MFil_Lseek(handle, 0), 0);
  EXPECT_EQ(MFil_Lseek(handle, 1), -1);
  write(handle, "0123456789");
  EXPECT_EQ(MFil_Lseek(handle, 4), 0);
  EXPECT_EQ(MFil_Lseek(handle, 11), -1);
  EXPECT_EQ(MFil_GetPos(handle), 4);
  EXPECT_EQ(MFil_Lseek(handle, -1), -1);
  EXPECT_EQ(MFil_GetPos(handle), 4);
  EXPECT_EQ(MFil_Lseek(handle, 10), 0);
}

TEST_F(MemoryFiles, LockedBytesLieBelowTheSize) {
  const int handle = MFil_Open("", 0, 0);
  EXPECT_EQ(MFil_LockPtr(handle, 0), nullptr);
  write(handle, "0123456789");
  EXPECT_EQ(MFil_LockPtr(handle, 0), DATA_MFIL_TAB[handle].block);
  EXPECT_EQ(*MFil_LockPtr(handle, 9), '9');
  EXPECT_EQ(MFil_LockPtr(handle, 10), nullptr);
  EXPECT_EQ(MFil_LockPtr(handle, -1), nullptr);
  EXPECT_EQ(MFil_LockPtr(handle, INT_MAX), nullptr);
  EXPECT_EQ(MFil_UnLockPtr(handle), 0);
  DATA_MFIL_TAB[handle].mode = 3;
  EXPECT_EQ(MFil_LockPtr(handle, 0), nullptr) << "the mode is wrong";
}

TEST_F(MemoryFiles, ReReadGivesTheBytesBeforeThePosition) {
  const int handle = MFil_Open("", 0, 0);
  write(handle, "0123456789");
  MFil_Lseek(handle, 6);
  char bytes[16] = "";
  EXPECT_EQ(MFil_Re_Read(handle, bytes, 2), 2);
  EXPECT_EQ(std::string(bytes, 2), "45");
  EXPECT_EQ(MFil_Re_Read(handle, bytes, 16), 6);
  EXPECT_EQ(std::string(bytes, 6), "012345");
  EXPECT_EQ(MFil_Re_Read(handle, bytes, -1), 0);
  EXPECT_EQ(MFil_GetPos(handle), 6);
}

TEST_F(MemoryFiles, CapacityGrowsByTheWriteOrBy4096) {
  const int handle = MFil_Open("", 0, 0);
  const MFilSlot &slot = DATA_MFIL_TAB[handle];
  const std::string text(20000, 'x');
  const struct {
    int position;
    int count;
    int capacity;
  } kCases[] = {
      {0, 4096, 4096},      {4096, 1, 8192},       {4097, 4095, 8192},   {8192, 4095, 12288},
      {12287, 1, 12288},    {12000, 300, 16096},   {12300, 3796, 16096}, {16096, 4096, 20192},
      {20192, 4097, 24289}, {10000, 20000, 30000}, {29999, 1, 30000},
  };
  for (const auto &row : kCases) {
    ASSERT_EQ(MFil_Lseek(handle, row.position), 0) << row.position;
    ASSERT_EQ(MFil_Write(handle, text.data(), row.count), row.count);
    EXPECT_EQ(slot.capacity, row.capacity) << row.position << ' ' << row.count;
  }
}

TEST_F(MemoryFiles, AHandleThatIsNoneOrFreeChangesNothing) {
  ASSERT_EQ(MFil_Open("", 0, 0), 0);
  char bytes[4] = "xyz";
  for (const int handle : {INT_MIN, -1, 1, 4, 5, INT_MAX}) {
    EXPECT_EQ(MFil_Read(handle, bytes, 3), 0) << handle;
    EXPECT_EQ(MFil_Re_Read(handle, bytes, 3), 0) << handle;
    EXPECT_EQ(MFil_Write(handle, bytes, 3), 0) << handle;
    EXPECT_EQ(MFil_Lseek(handle, 0), -1) << handle;
    // The fields of a free slot are 0.
    const int expected = handle == 1 || handle == 4 ? 0 : -1;
    EXPECT_EQ(MFil_GetPos(handle), expected) << handle;
    EXPECT_EQ(MFil_Size(handle), expected) << handle;
    EXPECT_EQ(MFil_LockPtr(handle, 0), nullptr) << handle;
    EXPECT_EQ(MFil_UnLockPtr(handle), 0) << handle;
    EXPECT_EQ(MFil_Close(handle), 0) << handle;
  }
  EXPECT_EQ(DATA_MFIL_ID, 0);
  EXPECT_STREQ(bytes, "xyz");
}

TEST_F(MemoryFiles, NumbersThatLieReachNoByteOutside) {
  const int handle = MFil_Open("", 0, 0);
  write(handle, "0123456789");
  char bytes[16];
  EXPECT_EQ(MFil_Write(handle, bytes, -1), 0);
  EXPECT_EQ(MFil_Write(handle, bytes, INT_MAX), 0) << "the data would reach 2 GiB";
  EXPECT_EQ(MFil_Write(handle, nullptr, 1), 0);
  EXPECT_EQ(MFil_Read(handle, nullptr, 1), 0);
  EXPECT_EQ(MFil_Size(handle), 10);
  MFilSlot &slot = DATA_MFIL_TAB[handle];
  for (const int position : {-1, INT_MIN, 5000, INT_MAX}) {
    slot.position = position;
    EXPECT_EQ(MFil_Write(handle, "x", 1), 0);
    EXPECT_EQ(MFil_Read(handle, bytes, 16), 0);
    EXPECT_EQ(MFil_Re_Read(handle, bytes, 16), 0);
  }
  slot.position = 0;
  slot.size = 5000;
  EXPECT_EQ(MFil_Read(handle, bytes, 16), 0);
}

// Kept: the slot is in use even if there is no memory for its block.
// Kept: the old block is lost.
TEST_F(MemoryFiles, WithoutMemory) {
  if (test::kUnderSanitizer) GTEST_SKIP() << "the sanitizer needs all the address space";
  const pid_t child = fork();
  if (child == 0) {
    const int handle = MFil_Open("", 0, 0);
    write(handle, "text");
    const rlimit limit = {1 << 28, 1 << 28};
    if (setrlimit(RLIMIT_AS, &limit) != 0) _exit(1);
    if (MFil_Open("", INT_MAX, 0) != -1) _exit(2);
    if (DATA_MFIL_ID != 1 || DATA_MFIL_TAB[1].mode != 2) _exit(3);
    if (MFil_Write(1, "x", 1) != 0 || MFil_LockPtr(1, 0) != nullptr) _exit(4);
    if (GlobalAlloc(0, INT_MAX) != nullptr) _exit(5);
    static char large[1 << 27];
    int written = 0;
    while (MFil_Write(handle, large, sizeof large) != 0) ++written;
    if (written > 2) _exit(6);
    if (DATA_MFIL_TAB[handle].block != nullptr || DATA_MFIL_TAB[handle].mode != 2) _exit(7);
    if (read(handle, 4) != "" || MFil_Close(handle) != 0) _exit(8);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(MemoryFiles, ReadingTakesTheModes0And2AndWritingTheModes1And2) {
  const int handle = MFil_Open("", 0, 0);
  const struct {
    int mode;
    bool reads;
    bool writes;
  } kCases[] = {{-2, false, false}, {-1, false, false}, {0, true, false},
                {1, false, true},   {2, true, true},    {3, false, false}};
  for (const auto &row : kCases) {
    MFilSlot &slot = DATA_MFIL_TAB[handle];
    slot.mode = 2;
    MFil_Lseek(handle, 0);
    ASSERT_EQ(write(handle, "0123456789"), 10);
    ASSERT_EQ(MFil_Lseek(handle, 4), 0);
    slot.mode = row.mode;
    char bytes[4] = "xyz";
    EXPECT_EQ(MFil_Re_Read(handle, bytes, 2), row.reads ? 2 : 0) << row.mode;
    EXPECT_STREQ(bytes, row.reads ? "23z" : "xyz") << row.mode;
    EXPECT_EQ(MFil_Read(handle, bytes, 2), row.reads ? 2 : 0) << row.mode;
    EXPECT_STREQ(bytes, row.reads ? "45z" : "xyz") << row.mode;
    EXPECT_EQ(slot.position, row.reads ? 6 : 4) << row.mode;
    EXPECT_EQ(MFil_LockPtr(handle, 0) != nullptr, row.reads) << row.mode;
    slot.position = 4;
    EXPECT_EQ(MFil_Write(handle, "ab", 2), row.writes ? 2 : 0) << row.mode;
    EXPECT_EQ(slot.position, row.writes ? 6 : 4) << row.mode;
    EXPECT_EQ(std::string(slot.block, 10), row.writes ? "0123ab6789" : "0123456789") << row.mode;
  }
  DATA_MFIL_TAB[handle].mode = 2;
}

TEST_F(MemoryFiles, ABlockThatTheApplicationResizedServesOn) {
  const int handle = MFil_Open("", 0, 0);
  write(handle, "0123456789");
  MFilSlot &slot = DATA_MFIL_TAB[handle];
  slot.block = static_cast<char *>(GlobalReAlloc(slot.block, 10));
  slot.capacity = 10;
  EXPECT_EQ(write(handle, "abc"), 3);
  EXPECT_EQ(slot.capacity, 10 + 4096);
  MFil_Lseek(handle, 0);
  EXPECT_EQ(read(handle, 100), "0123456789abc");
}

TEST(MemoryHandles, AHandleIsTheAddressOfItsBlock) {
  auto *block = static_cast<char *>(GlobalAlloc(0x42, 10));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(GlobalLock(block), block);
  EXPECT_EQ(GlobalUnlock(block), 0);
  std::memcpy(block, "012345678", 10);
  block = static_cast<char *>(GlobalReAlloc(block, 1000000));
  ASSERT_NE(block, nullptr);
  EXPECT_STREQ(block, "012345678");
  block[999999] = 'x';
  EXPECT_EQ(GlobalReAlloc(block, -1), nullptr);
  EXPECT_STREQ(block, "012345678");
  block = static_cast<char *>(GlobalReAlloc(block, 0));
  EXPECT_NE(block, nullptr) << "a block of no bytes is a block";
  EXPECT_EQ(GlobalFree(block), 0);
  EXPECT_EQ(GlobalFree(nullptr), 0);
  EXPECT_EQ(GlobalLock(nullptr), nullptr);
  EXPECT_EQ(GlobalAlloc(0, -1), nullptr);
  void *none = GlobalAlloc(0, 0);
  EXPECT_NE(none, nullptr);
  GlobalFree(none);
  void *made = GlobalReAlloc(nullptr, 5);
  EXPECT_NE(made, nullptr);
  GlobalFree(made);
}

// A model of the table, with the data as strings.
class Model {
 public:
  struct Slot {
    std::string data;
    int capacity = 0;
    int mode = -1;
    int position = 0;
  };
  Slot table[5];
  int highest = -1;

  int open(int wish, int minimum) {
    int handle = -1;
    if (highest + 1 <= 4) {
      handle = ++highest;
    } else {
      for (int i = 4; i >= 0; --i) {
        if (table[i].mode == -1) handle = i;
      }
      if (handle == -1) return -1;
    }
    int capacity = 4096;
    if (wish > 4096) capacity = wish;
    if (minimum > capacity) capacity = minimum;
    table[handle] = {"", capacity, 2, 0};
    return handle;
  }
  int close(int handle) {
    if (!isOpen(handle)) return 0;
    table[handle] = {};
    if (handle == highest) highest = handle - 1;
    return 0;
  }
  std::string read(int handle, int count) {
    if (!isOpen(handle)) return "";
    Slot &slot = table[handle];
    const std::string got = slot.data.substr(static_cast<std::size_t>(slot.position),
                                             static_cast<std::size_t>(std::max(count, 0)));
    slot.position += static_cast<int>(got.size());
    return got;
  }
  std::string reRead(int handle, int count) {
    if (!isOpen(handle)) return "";
    const Slot &slot = table[handle];
    const int k = std::max(0, std::min(count, slot.position));
    return slot.data.substr(static_cast<std::size_t>(slot.position - k),
                            static_cast<std::size_t>(k));
  }
  int write(int handle, const std::string &text) {
    if (!isOpen(handle)) return 0;
    Slot &slot = table[handle];
    const int count = static_cast<int>(text.size());
    if (slot.position + count > slot.capacity)
      slot.capacity = count < 4096 ? slot.position + 4096 : slot.position + count;
    slot.data.replace(static_cast<std::size_t>(slot.position), text.size(), text);
    slot.position += count;
    return count;
  }
  int seek(int handle, int offset) {
    if (!isOpen(handle) || offset < 0 || offset > size(handle)) return -1;
    table[handle].position = offset;
    return 0;
  }
  bool isOpen(int handle) const { return handle >= 0 && handle <= 4 && table[handle].mode != -1; }
  int size(int handle) const {
    return isOpen(handle) ? static_cast<int>(table[handle].data.size()) : 0;
  }
};

TEST_F(MemoryFiles, LongSequencesOfCallsDoWhatTheRulesSay) {
  Model model;
  std::mt19937 random(12);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int step = 0; step < 30000; ++step) {
    const int handle = below(8) - 1;
    const int count = below(20) == 0 ? below(9000) : below(600);
    switch (below(9)) {
      case 0: {
        const int wish = below(3) == 0 ? below(10000) : -1;
        const int minimum = below(3) == 0 ? below(10000) : 0;
        ASSERT_EQ(MFil_Open("", wish, minimum), model.open(wish, minimum)) << "step " << step;
        break;
      }
      case 1:
        if (below(4) == 0) {
          ASSERT_EQ(MFil_Close(handle), model.close(handle)) << "step " << step;
        }
        break;
      case 2:
        ASSERT_TRUE(read(handle, count) == model.read(handle, count)) << "step " << step;
        break;
      case 3: {
        PoisonedBuffer buffer(static_cast<std::size_t>(count));
        const int got = MFil_Re_Read(handle, buffer.data(), count);
        ASSERT_TRUE(std::string(buffer.data(), static_cast<std::size_t>(got)) ==
                    model.reRead(handle, count))
            << "step " << step;
        ASSERT_TRUE(buffer.guardsIntact());
        break;
      }
      case 4:
      case 5: {
        const int size = model.size(handle);
        const int offset = below(size + 3) - 1;
        ASSERT_EQ(MFil_Lseek(handle, offset), model.seek(handle, offset)) << "step " << step;
        break;
      }
      default: {
        const std::string text = test::randomBytes(random, static_cast<std::size_t>(count));
        ASSERT_EQ(write(handle, text), model.write(handle, text)) << "step " << step;
        break;
      }
    }
    ASSERT_EQ(DATA_MFIL_ID, model.highest) << "step " << step;
    for (int i = 0; i < 5; ++i) {
      const MFilSlot &slot = DATA_MFIL_TAB[i];
      ASSERT_EQ(slot.mode, model.table[i].mode) << "step " << step;
      ASSERT_EQ(slot.capacity, model.table[i].capacity) << "step " << step;
      ASSERT_EQ(slot.position, model.table[i].position) << "step " << step;
      ASSERT_EQ(MFil_Size(i), model.size(i)) << "step " << step;
      ASSERT_EQ(slot.block == nullptr, slot.mode == -1) << "step " << step;
      if (model.isOpen(i) && step % 20 == 0) {
        ASSERT_EQ(std::memcmp(slot.block, model.table[i].data.data(), model.table[i].data.size()),
                  0)
            << "step " << step;
      }
    }
  }
}

}  // namespace
}  // namespace korvel
