// SPDX-License-Identifier: MIT
// Trimming at both ends, at the edges of pages.
#include <cstring>
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

constexpr int kSignedEAcute = -23;
constexpr int kUnsignedEAcute = 0xE9;

// Trims a copy of `text` in a buffer of exactly its size.
template <typename Trim>
void expectTrimmed(std::string_view text, std::string_view left, Trim trim) {
  SCOPED_TRACE('"' + std::string(text) + '"');
  PoisonedBuffer buffer(text.size() + 1, text);
  EXPECT_EQ(trim(buffer.data()), static_cast<int>(left.size()));
  EXPECT_EQ(buffer.text(), left);
  EXPECT_TRUE(buffer.guardsIntact());
}

struct Row {
  std::string_view text;
  std::string_view left;
};

constexpr Row kTrailing[] = {
    {"", ""},
    {"ab", "ab"},
    {"ab ", "ab"},
    {"ab   ", "ab"},
    {"  ab  ", "  ab"},
    {"a b ", "a b"},
    {" ", ""},
    // A text of blanks becomes empty.
    {"   ", ""},
    // Only the space is a blank.
    {"ab\t", "ab\t"},
    {"ab \t ", "ab \t"},
    {"ab\xA0 ", "ab\xA0"},
    {"ab\r\n", "ab\r\n"},
    {"                ", ""},
    {"x                ", "x"},
    {"                                 ", ""},
};

constexpr Row kLeading[] = {
    {"", ""},
    {"ab", "ab"},
    {" ab", "ab"},
    // Two blanks in front.
    {"  ab", "ab"},
    {"  ab  ", "ab  "},
    {" a b", "a b"},
    {" ", ""},
    {"   ", ""},
    {"\tab", "\tab"},
    {" \t ab", "\t ab"},
    {"\xA0 ab", "\xA0 ab"},
    {"                 abcdefghijklmnopqrstuvwxyz", "abcdefghijklmnopqrstuvwxyz"},
};

TEST(Chelibl_f, RemovesTrailingBlanks) {
  for (const auto &[text, left] : kTrailing) expectTrimmed(text, left, chelibl_f);
}

TEST(Chelibl_f, ThreeBlanksYieldAnEmptyText) {
  char s[] = "   ";
  EXPECT_EQ(chelibl_f(s), 0);
  EXPECT_STREQ(s, "");
}

TEST(Chelibl_f, LeavesWhatIsBehindTheNewTerminator) {
  char s[] = "ab   ";
  chelibl_f(s);
  EXPECT_EQ(std::string_view(s, sizeof s), std::string_view("ab\0  \0", sizeof s));
}

TEST(Chelibl_f, ATextThatEndsInNoBlankIsNotWrittenTo) {
  // The text is in read-only memory: a write would end the program.
  static const char kConstant[] = "abc";
  EXPECT_EQ(chelibl_f(const_cast<char *>(kConstant)), 3);
}

TEST(Chelibl_d, RemovesLeadingBlanks) {
  for (const auto &[text, left] : kLeading) expectTrimmed(text, left, chelibl_d);
}

TEST(Chelibl_d, TwoBlanksInFrontAreShiftedOut) {
  char s[] = "  ab";
  EXPECT_EQ(chelibl_d(s), 2);
  EXPECT_STREQ(s, "ab");
}

TEST(Chelibl_d, ATextWithoutLeadingBlankIsNotWrittenTo) {
  static const char kConstant[] = "abc ";
  EXPECT_EQ(chelibl_d(const_cast<char *>(kConstant)), 4);
}

TEST(Chelicar_f, TakesTheCharacterInPlaceOfTheBlank) {
  const auto zeros = [](char *s) { return chelicar_f(s, '0'); };
  expectTrimmed("1500", "15", zeros);
  expectTrimmed("000", "", zeros);
  expectTrimmed("15 ", "15 ", zeros);
  expectTrimmed("", "", zeros);
}

TEST(Chelicar_d, TakesTheCharacterInPlaceOfTheBlank) {
  const auto zeros = [](char *s) { return chelicar_d(s, '0'); };
  expectTrimmed("0015", "15", zeros);
  expectTrimmed("000", "", zeros);
  expectTrimmed(" 015", " 015", zeros);
  expectTrimmed("", "", zeros);
}

TEST(Chelicar, TheCharacterIsComparedWithTheSignedByte) {
  expectTrimmed("ab\xE9\xE9", "ab", [](char *s) { return chelicar_f(s, kSignedEAcute); });
  expectTrimmed(
      "\xE9\xE9"
      "ab",
      "ab", [](char *s) { return chelicar_d(s, kSignedEAcute); });
  expectTrimmed("ab\xE9", "ab\xE9", [](char *s) { return chelicar_f(s, kUnsignedEAcute); });
  expectTrimmed(
      "\xE9"
      "ab",
      "\xE9"
      "ab",
      [](char *s) { return chelicar_d(s, kUnsignedEAcute); });
  // A value outside the range of a byte equals no byte, even where its low 8 bits would.
  expectTrimmed("  ab  ", "  ab  ", [](char *s) { return chelicar_f(s, 256 + ' '); });
  expectTrimmed("  ab  ", "  ab  ", [](char *s) { return chelicar_d(s, ' ' - 256); });
}

TEST(Chelicar, TheTerminatorIsNoCharacterToRemove) {
  expectTrimmed("ab", "ab", [](char *s) { return chelicar_f(s, 0); });
  expectTrimmed("ab", "ab", [](char *s) { return chelicar_d(s, 0); });
  expectTrimmed("", "", [](char *s) { return chelicar_d(s, 0); });
}

std::string modelTrimEnd(std::string s, char c) {
  while (!s.empty() && s.back() == c) s.pop_back();
  return s;
}

std::string modelTrimStart(std::string s, char c) {
  while (!s.empty() && s.front() == c) s.erase(0, 1);
  return s;
}

TEST(Trim, AgreesWithTheModelOnTextsAtThePagesEdge) {
  RandomText random(1);
  GuardedPages pages;
  for (int i = 0; i < 20000; ++i) {
    const char c = i % 3 == 0 ? '\xE9' : ' ';
    const int signedC = static_cast<signed char>(c);
    const std::string alphabet = {c, c, 'a'};
    const std::string blanks(static_cast<std::size_t>(random.number(0, 40)), c);
    const std::string text =
        (i % 2 == 0 ? blanks : "") + random.text(random.number(0, 40), alphabet) + blanks;
    const bool atEnd = random.number(0, 1) == 1;
    const auto place = [&] { return atEnd ? pages.textAtEnd(text) : pages.textAtStart(text); };

    char *s = place();
    const std::string endTrimmed = modelTrimEnd(text, c);
    ASSERT_EQ(chelicar_f(s, signedC), static_cast<int>(endTrimmed.size())) << text;
    ASSERT_EQ(std::string(s), endTrimmed);
    s = place();
    const std::string startTrimmed = modelTrimStart(text, c);
    ASSERT_EQ(chelicar_d(s, signedC), static_cast<int>(startTrimmed.size())) << text;
    ASSERT_EQ(std::string(s), startTrimmed);
  }
}

TEST(Chelicar_f, CountsWhatIsLeftForEveryTailOfEveryLength) {
  GuardedPages pages;
  for (std::size_t length = 0; length <= 80; ++length) {
    for (std::size_t tail = 0; tail <= length; ++tail) {
      const std::string text = std::string(length - tail, 'a') + std::string(tail, '\x80');
      const int left = static_cast<int>(length - tail);
      EXPECT_EQ(chelicar_f(pages.textAtStart(text), -128), left);
    }
  }
}

}  // namespace
