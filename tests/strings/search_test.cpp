// SPDX-License-Identifier: MIT
// Comparison of terminated texts, and search in them.
#include <string>

#include <gtest/gtest.h>

#include <korvel/strings.h>

#include "tests/strings/guarded_pages.h"
#include "tests/strings/random_text.h"

namespace {

using korvel::test::GuardedPages;
using korvel::test::RandomText;

TEST(Chcomp, GivesTheDifferenceOfTheFirstBytesThatDiffer) {
  constexpr struct {
    const char *a;
    const char *b;
    int difference;
  } kRows[] = {
      {"", "", 0},
      {"abc", "abc", 0},
      {"abc", "abd", -1},
      {"abd", "abc", 1},
      {"b", "abc", 1},
      {"ab", "abc", -'c'},
      {"abc", "ab", 'c'},
      // Bytes are signed: an accented letter comes before every ASCII byte, even before the end.
      {"\xE9", "a", -23 - 'a'},
      {"a", "\xE9", 'a' + 23},
      {"\xE9", "", -23},
      {"", "\xE9", 23},
      {"\x7F", "\x80", 127 + 128},
      {"\x80", "\x7F", -128 - 127},
      {"\xFF", "\x80", 127},
  };
  for (const auto &[a, b, difference] : kRows) {
    EXPECT_EQ(chcomp(a, b), difference) << '"' << a << "\" with \"" << b << '"';
  }
}

TEST(Chcomp, EAcuteIsBelowA) { EXPECT_LT(chcomp("\xE9", "a"), 0); }

TEST(Chcomp, ANullPointerComparesAsAnEmptyText) {
  EXPECT_EQ(chcomp(nullptr, nullptr), 0);
  EXPECT_EQ(chcomp(nullptr, "a"), -'a');
  EXPECT_EQ(chcomp("a", nullptr), 'a');
}

TEST(Chcher, GivesTheFirstPositionOfThePattern) {
  constexpr struct {
    const char *pattern;
    const char *s;
    int position;
  } kRows[] = {
      {"a", "abc", 0},
      {"c", "abc", 2},
      {"bc", "abcbc", 1},
      {"abc", "abc", 0},
      {"abcd", "abc", -1},
      {"x", "abc", -1},
      {"aab", "aaab", 1},
      {"\xE9", "t\xE9t\xE9", 1},
      {"?", "abc", -1},
      {"A", "abc", -1},
      // The pattern comes first.
      {"abc", "b", -1},
      // Kept: nothing is found in an empty text, not even the empty pattern.
      {"", "x", 0},
      {"", "", -1},
      {"x", "", -1},
  };
  for (const auto &[pattern, s, position] : kRows) {
    EXPECT_EQ(chcher(pattern, s), position) << '"' << pattern << "\" in \"" << s << '"';
  }
}

TEST(Chcher, TheEmptyPatternIsFoundInATextThatIsNotEmptyOnly) {
  // Kept: nothing is found in an empty text, not even the empty pattern.
  EXPECT_EQ(chcher("", ""), -1);
  EXPECT_EQ(chcher("", "x"), 0);
}

int modelChcher(const std::string &pattern, const std::string &s) {
  const std::size_t found = s.empty() ? std::string::npos : s.find(pattern);
  return found == std::string::npos ? -1 : static_cast<int>(found);
}

TEST(Chcher, AgreesWithTheModel) {
  RandomText random(2);
  GuardedPages pages;
  for (int i = 0; i < 20000; ++i) {
    const std::string pattern = random.text(random.number(0, 5), "ab\xE9");
    const std::string s = random.text(random.number(0, 80), "ab\xE9");
    ASSERT_EQ(chcher(pattern.c_str(), pages.textAtEnd(s)), modelChcher(pattern, s))
        << '"' << pattern << "\" in \"" << s << '"';
  }
}

TEST(ChcherC, GivesTheFirstPositionOfTheCharacter) {
  constexpr struct {
    int c;
    const char *s;
    int position;
  } kRows[] = {
      {'a', "abca", 0},
      {'c', "abca", 2},
      {'x', "abca", -1},
      {'a', "", -1},
      // The terminator is never found.
      {0, "abc", -1},
      {0, "", -1},
      // The character is compared with the signed byte.
      {-23, "t\xE9", 1},
      {0xE9, "t\xE9", -1},
      {'t' + 256, "t\xE9", -1},
      {'t' - 256, "t\xE9", -1},
      {-128, "\x7F\x80", 1},
      {127, "\x80\x7F", 1},
  };
  for (const auto &[c, s, position] : kRows) {
    EXPECT_EQ(chcher_c(c, s), position) << c << " in \"" << s << '"';
  }
}

}  // namespace
