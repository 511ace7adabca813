// SPDX-License-Identifier: MIT
// Insertion and deletion in place, at every position and capacity.
#include <algorithm>
#include <climits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"
#include "tests/support/poisoned_buffer.h"

namespace {

using korvel::test::GuardedPages;
using korvel::test::PoisonedBuffer;
using korvel::test::RandomText;

struct Deletion {
  std::string_view text;
  int n;
  int p;
  std::string_view left;
};

constexpr Deletion kDeletions[] = {
    {"abcde", 1, 0, "bcde"},
    {"abcde", 2, 1, "ade"},
    {"abcde", 5, 0, ""},
    // n is cut to the characters from p on.
    {"abcde", 4, 3, "abc"},
    {"abcde", 5, 4, "abcd"},
    // p is brought into the text.
    {"abcde", 2, -7, "cde"},
    {"abcde", 2, INT_MIN, "cde"},
    {"abc", 1, 3, "ab"},
    {"abc", 1, 100, "ab"},
    {"abc", 1, INT_MAX, "ab"},
    {"abc", 3, 100, "ab"},
    // Nothing to delete.
    {"", 1, 0, ""},
    {"", 0, 0, ""},
    {"abc", 0, 0, "abc"},
    {"abc", -1, 0, "abc"},
    {"abc", INT_MIN, 0, "abc"},
    // Kept: more than the whole length is refused even where cutting it would make it harmless.
    {"abc", 4, 0, "abc"},
    {"abc", 4, 2, "abc"},
    {"abc", INT_MAX, 100, "abc"},
};

void expectDeleted(const Deletion &row) {
  PoisonedBuffer buffer(8, row.text);
  chdelch(buffer.data(), row.n, row.p);
  EXPECT_EQ(buffer.text(), row.left) << '"' << row.text << "\", " << row.n << " at " << row.p;
  EXPECT_TRUE(buffer.untouchedFrom(row.text.size() + 1));
}

TEST(Chdelch, DeletesFromThePositionOn) {
  for (const Deletion &row : kDeletions) expectDeleted(row);
}

TEST(Chdelch, MoreThanTheWholeLengthDeletesNothing) {
  // Kept: more than the whole length is refused even where cutting it would make it harmless.
  expectDeleted({"abc", 4, 2, "abc"});
}

TEST(Chdelch, APositionFarPastTheEndDeletesTheLastCharacter) {
  expectDeleted({"abc", 1, 100, "ab"});
}

std::string modelDelete(std::string s, long n, long p) {
  const long length = static_cast<long>(s.size());
  if (length == 0) return s;
  if (p < 0) p = 0;
  if (p >= length) p = length - 1;
  if (n < 1 || n > length) return s;
  if (p + n > length) n = length - p;
  return s.erase(static_cast<std::size_t>(p), static_cast<std::size_t>(n));
}

TEST(Chdelch, AgreesWithTheModel) {
  RandomText random(3);
  GuardedPages pages;
  for (int i = 0; i < 20000; ++i) {
    const std::string text = random.anyText(random.number(0, 40));
    const int n = random.number(-2, 43);
    const int p = random.number(-2, 43);
    char *s = i % 2 == 0 ? pages.textAtEnd(text) : pages.textAtStart(text);
    chdelch(s, n, p);
    ASSERT_EQ(std::string(s), modelDelete(text, n, p)) << text << ", " << n << " at " << p;
  }
}

TEST(Chinsch, InsertsTheWholeTextBeforeThePosition) {
  constexpr struct {
    std::string_view d;
    const char *s;
    int p;
    std::string_view result;
  } kRows[] = {
      {"ad", "bc", 1, "abcd"},
      {"cd", "ab", 0, "abcd"},
      {"cd", "ab", -5, "abcd"},
      {"cd", "ab", INT_MIN, "abcd"},
      // At or past the end it appends.
      {"ab", "cd", 2, "abcd"},
      {"ab", "cd", 3, "abcd"},
      {"ab", "cd", INT_MAX, "abcd"},
      {"", "ab", 0, "ab"},
      {"", "ab", 7, "ab"},
  };
  for (const auto &[d, s, p, result] : kRows) {
    PoisonedBuffer buffer(result.size() + 1, d);
    const int count = static_cast<int>(result.size() - d.size());
    EXPECT_EQ(chinsch(buffer.data(), buffer.capacity(), s, p), count);
    EXPECT_EQ(buffer.text(), result) << s << " into \"" << d << "\" at " << p;
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

TEST(Chinsch, RefusesWhatDoesNotFitAtEveryCapacity) {
  for (int capacity = -1; capacity <= 10; ++capacity) {
    PoisonedBuffer buffer(10, "abc");
    const bool fits = capacity >= 6;
    EXPECT_EQ(chinsch(buffer.data(), capacity, "xy", 1), fits ? 2 : 0) << capacity;
    EXPECT_EQ(buffer.text(), fits ? "axybc" : "abc") << capacity;
    EXPECT_TRUE(buffer.untouchedFrom(fits ? 6 : 4)) << capacity;
  }
}

TEST(Chinsch, AnEmptyTextGives0) {
  PoisonedBuffer buffer(8, "abc");
  EXPECT_EQ(chinsch(buffer.data(), buffer.capacity(), "", 1), 0);
  EXPECT_EQ(buffer.text(), "abc");
}

TEST(Chinsch, AgreesWithTheModel) {
  RandomText random(4);
  for (int i = 0; i < 20000; ++i) {
    const std::string d = random.anyText(random.number(0, 40));
    const std::string s = random.anyText(random.number(0, 40));
    const int p = random.number(-2, 43);
    const int capacity = static_cast<int>(d.size() + s.size()) + random.number(0, 2);
    std::string expected = d;
    int count = 0;
    if (static_cast<int>(d.size() + s.size()) <= capacity - 1) {
      const std::size_t place =
          p < 0 ? 0 : std::min<std::size_t>(static_cast<std::size_t>(p), d.size());
      expected.insert(place, s);
      count = static_cast<int>(s.size());
    }
    PoisonedBuffer buffer(static_cast<std::size_t>(capacity) + 1, d);
    ASSERT_EQ(chinsch(buffer.data(), capacity, s.c_str(), p), count);
    ASSERT_EQ(buffer.text(), expected);
    ASSERT_TRUE(buffer.untouchedFrom(expected.size() + 1));
    ASSERT_TRUE(buffer.guardsIntact());
  }
}

TEST(ChinschC, InsertsOneCharacterBeforeThePosition) {
  constexpr struct {
    std::string_view d;
    int p;
    std::string_view result;
  } kRows[] = {
      {"ab", 0, "xab"}, {"ab", -1, "xab"},      {"ab", 1, "axb"}, {"ab", 2, "abx"},
      {"ab", 9, "abx"}, {"ab", INT_MAX, "abx"}, {"", 0, "x"},     {"", 5, "x"},
  };
  for (const auto &[d, p, result] : kRows) {
    PoisonedBuffer buffer(result.size() + 1, d);
    EXPECT_EQ(chinsch_c(buffer.data(), buffer.capacity(), 'x', p), 1);
    EXPECT_EQ(buffer.text(), result) << '"' << d << "\" at " << p;
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

TEST(ChinschC, ACapacityOf4TakesAThirdCharacterAndNoFourth) {
  PoisonedBuffer two(4, "ab");
  EXPECT_EQ(chinsch_c(two.data(), 4, 'x', 0), 1);
  EXPECT_EQ(two.text(), "xab");
  EXPECT_TRUE(two.guardsIntact());
  PoisonedBuffer three(4, "abc");
  EXPECT_EQ(chinsch_c(three.data(), 4, 'x', 0), 0);
  EXPECT_EQ(three.text(), "abc");
  EXPECT_TRUE(three.guardsIntact());
}

TEST(ChinschC, RefusesWhatDoesNotFitAtEveryCapacity) {
  for (int capacity : {INT_MIN, -1, 0, 1, 2, 3, 4}) {
    PoisonedBuffer buffer(6, "abc");
    EXPECT_EQ(chinsch_c(buffer.data(), capacity, 'x', 1), 0) << capacity;
    EXPECT_EQ(buffer.text(), "abc");
    EXPECT_TRUE(buffer.untouchedFrom(4));
  }
}

TEST(ChinschC, ACharacterOf0EndsTheText) {
  for (int c : {0, 256}) {
    PoisonedBuffer buffer(6, "abc");
    EXPECT_EQ(chinsch_c(buffer.data(), buffer.capacity(), c, 1), 1);
    EXPECT_EQ(std::string_view(buffer.data(), 5), std::string_view("a\0bc\0", 5));
  }
}

TEST(ChinschC, TakesAccentedLettersHoweverTheyAreExtended) {
  for (int c : {-23, 0xE9}) {
    PoisonedBuffer buffer(4, "t");
    EXPECT_EQ(chinsch_c(buffer.data(), buffer.capacity(), c, 1), 1);
    EXPECT_EQ(buffer.text(), "t\xE9");
  }
}

}  // namespace
