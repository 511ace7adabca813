// SPDX-License-Identifier: MIT
// The growing buffer: its sizes, and what is left when memory runs out.
#include "strings/growable.h"

#include <climits>
#include <cstdlib>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "tests/strings/random_text.h"

namespace {

using korvel::strings::appendGrowing;
using korvel::test::RandomText;

// The caller's side: the buffer, its capacity and the used length, which the caller counts.
class Growing {
 public:
  Growing() = default;
  ~Growing() { std::free(buf); }
  Growing(const Growing &) = delete;
  Growing &operator=(const Growing &) = delete;

  int append(std::string_view bytes, korvel::strings::Allocate allocate = std::malloc) {
    const int n = static_cast<int>(bytes.size());
    const int status = appendGrowing(&buf, &capacity, used, bytes.data(), n, allocate);
    if (status == 1) used += n;
    return status;
  }
  std::string_view content() const { return {buf, static_cast<std::size_t>(used)}; }

  char *buf = nullptr;
  int capacity = 0;
  int used = 0;
};

void *noMemory(std::size_t /*size*/) { return nullptr; }

TEST(Szcopyex, DoublesWhatIsNeeded) {
  Growing g;
  // The first block is exactly as large as what comes in.
  EXPECT_EQ(g.append("abc"), 1);
  EXPECT_EQ(g.capacity, 3);
  // (3 + 2) * 2
  EXPECT_EQ(g.append("de"), 1);
  EXPECT_EQ(g.capacity, 10);
  EXPECT_EQ(g.content(), "abcde");
  // What fits exactly stays in place.
  const char *block = g.buf;
  EXPECT_EQ(g.append("fghij"), 1);
  EXPECT_EQ(g.capacity, 10);
  EXPECT_EQ(g.buf, block);
  // (10 + 1) * 2
  EXPECT_EQ(g.append("k"), 1);
  EXPECT_EQ(g.capacity, 22);
  EXPECT_EQ(g.content(), "abcdefghijk");
}

TEST(Szcopyex, AnUnusedBufferIsReplacedByOneOfExactlyTheLength) {
  Growing g;
  EXPECT_EQ(g.append("abc"), 1);
  g.used = 0;
  EXPECT_EQ(g.append("abcdefg"), 1);
  EXPECT_EQ(g.capacity, 7);
  EXPECT_EQ(g.content(), "abcdefg");
}

TEST(Szcopyex, AnUnusedBufferThatIsLargeEnoughIsTakenAgain) {
  Growing g;
  EXPECT_EQ(g.append("abcdefg"), 1);
  g.used = 0;
  EXPECT_EQ(g.append("xyz"), 1);
  EXPECT_EQ(g.capacity, 7);
  EXPECT_EQ(std::string_view(g.buf, 7), "xyzdefg");
}

TEST(Szcopyex, NothingFitsIntoNothing) {
  Growing g;
  EXPECT_EQ(g.append(std::string_view("", 0)), 1);
  EXPECT_EQ(g.buf, nullptr);
  EXPECT_EQ(g.capacity, 0);
}

TEST(Szcopyex, TheExportedNameUsesTheHeap) {
  char *buf = nullptr;
  int capacity = 0;
  EXPECT_EQ(szcopyex(&buf, &capacity, 0, "abc", 3), 1);
  EXPECT_EQ(szcopyex(&buf, &capacity, 3, "def", 3), 1);
  EXPECT_EQ(capacity, 12);
  EXPECT_EQ(std::string_view(buf, 6), "abcdef");
  std::free(buf);
}

TEST(Szcopyex, AFailedFirstAllocationLeavesNoBuffer) {
  Growing g;
  EXPECT_EQ(g.append("abc", noMemory), 0);
  EXPECT_EQ(g.buf, nullptr);
  EXPECT_EQ(g.capacity, 3);
  // The next call finds no buffer, whatever the capacity says.
  EXPECT_EQ(g.append("ab"), 1);
  EXPECT_EQ(g.capacity, 2);
  EXPECT_EQ(g.content(), "ab");
}

TEST(Szcopyex, AFailedFirstAllocationReleasesTheOldBuffer) {
  Growing g;
  EXPECT_EQ(g.append("abc"), 1);
  g.used = 0;
  EXPECT_EQ(g.append("abcdefg", noMemory), 0);
  EXPECT_EQ(g.buf, nullptr);
  EXPECT_EQ(g.capacity, 7);
}

TEST(Szcopyex, AFailedLaterAllocationLeavesEverythingAsItWas) {
  Growing g;
  EXPECT_EQ(g.append("abc"), 1);
  const char *block = g.buf;
  EXPECT_EQ(g.append("de", noMemory), 0);
  EXPECT_EQ(g.buf, block);
  EXPECT_EQ(g.capacity, 3);
  EXPECT_EQ(g.content(), "abc");
}

TEST(Szcopyex, TheSourceMayBePartOfTheBuffer) {
  Growing g;
  EXPECT_EQ(g.append("abcd"), 1);
  EXPECT_EQ(g.append(g.content()), 1);
  EXPECT_EQ(g.content(), "abcdabcd");
}

TEST(Szcopyex, RefusesImpossibleLengthsAndSizes) {
  char bytes[] = "abc";
  const struct {
    char *buf;
    int capacity;
    int used;
    int n;
  } kRows[] = {
      {bytes, 3, -1, 1},
      {bytes, 3, INT_MIN, 1},
      {bytes, 3, 0, -1},
      {bytes, 3, 3, INT_MIN},
      // More used than there is.
      {bytes, 3, 4, 1},
      {bytes, -1, 0, 1},
      {bytes, -1, 1, 1},
      {nullptr, 3, 1, 1},
      // The new size does not fit an int.
      {bytes, INT_MAX, INT_MAX, 1},
      {bytes, 3, 3, INT_MAX},
      {bytes, 3, 3, INT_MAX / 2 - 2},
  };
  for (const auto &[buf, capacity, used, n] : kRows) {
    SCOPED_TRACE(testing::Message() << capacity << ", " << used << ", " << n);
    char *b = buf;
    int c = capacity;
    EXPECT_EQ(szcopyex(&b, &c, used, "x", n), 0);
    EXPECT_EQ(b, buf);
    EXPECT_EQ(c, capacity);
    EXPECT_STREQ(bytes, "abc");
  }
}

TEST(Szcopyex, AgreesWithTheModelOnLongSequences) {
  RandomText random(7);
  for (int round = 0; round < 300; ++round) {
    Growing g;
    std::string model;
    int capacity = 0;
    for (int i = 0; i < 60; ++i) {
      const std::string bytes = random.anyText(random.number(1, 40));
      const int n = static_cast<int>(bytes.size());
      if (random.number(0, 9) == 0) {
        g.used = 0;
        model.clear();
      }
      const int used = static_cast<int>(model.size());
      if (capacity - used < n) capacity = used == 0 ? n : (capacity + n) * 2;
      model += bytes;
      ASSERT_EQ(g.append(bytes), 1);
      ASSERT_EQ(g.capacity, capacity);
      ASSERT_EQ(g.content(), model);
    }
  }
}

}  // namespace
