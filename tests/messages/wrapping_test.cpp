// SPDX-License-Identifier: MIT
// A message broken into lines.
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "messages/layout.h"

namespace korvel::messages {
namespace {

std::string digits(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += static_cast<char>('0' + (i + 1) % 10);
  return text;
}

struct Wrapped {
  std::string text;
  int lines;
};

Wrapped wrapped(std::string text) {
  const int lines = wrapLines(text);
  return {text, lines};
}

TEST(Wrapping, OneLineNeedsTheHeightOfTwo) {
  for (const char *text : {"", "x", "Une seule ligne."}) {
    EXPECT_EQ(wrapped(text).text, text);
    EXPECT_EQ(wrapped(text).lines, 2) << text;
  }
}

// Kept: a carriage return and line feed pair ends two lines, and a line end is itself counted in
// the column.
TEST(Wrapping, LineEndsOfEveryKind) {
  const struct {
    const char *name;
    std::string text, expected;
    int lines;
  } cases[] = {
      {"a carriage return", "a\rb", "a\rb", 2},
      {"a line feed becomes a carriage return", "a\nb", "a\rb", 2},
      {"a carriage return and line feed pair ends two lines", "a\r\nb", "a\r\rb", 3},
      {"line ends alone", "\n\n\n", "\r\r\r", 4},
      {"a last line end opens one more line", "a\nb\n", "a\rb\r", 3},
  };
  for (const auto &row : cases) {
    EXPECT_EQ(wrapped(row.text).text, row.expected) << row.name;
    EXPECT_EQ(wrapped(row.text).lines, row.lines) << row.name;
  }
}

TEST(Wrapping, BreaksAtTheFirstSpaceBeyondColumn50) {
  const struct {
    const char *name;
    std::string text, expected;
    int lines;
  } cases[] = {
      {"a space at column 50 stays", digits(50) + " b", digits(50) + " b", 2},
      {"a space at column 51 is a break", digits(51) + " b", digits(51) + "\rb", 2},
      {"the first one counts, wherever the last fitting one was",
       std::string("a b ") + digits(60) + " c d", std::string("a b ") + digits(60) + "\rc d", 2},
      {"a space before a colon stays", digits(60) + " : b", digits(60) + " :\rb", 2},
      {"a space before a comma stays", digits(60) + " , b", digits(60) + " ,\rb", 2},
      {"a space before other punctuation does not", digits(60) + " ; b", digits(60) + "\r; b", 2},
      {"a space at the end is a break too", digits(51) + " ", digits(51) + "\r", 2},
      {"of two spaces the first is a break", digits(51) + "  b", digits(51) + "\r b", 2},
      {"a space that does not break stays", digits(60) + "\xA0? b", digits(60) + "\xA0?\rb", 2},
      {"a tab is not a space", digits(60) + "\tb", digits(60) + "\tb", 2},
      {"without a space there is no break", digits(200), digits(200), 2},
  };
  for (const auto &row : cases) {
    EXPECT_EQ(wrapped(row.text).text, row.expected) << row.name;
    EXPECT_EQ(wrapped(row.text).lines, row.lines) << row.name;
  }
}

TEST(Wrapping, AfterABreakTheLineStartsInColumn1) {
  // After 51 characters and a break: one counted, 49 more make 50, the next makes 51.
  EXPECT_EQ(wrapped(digits(51) + " " + digits(49) + " b").text,
            digits(51) + "\r" + digits(49) + " b");
  EXPECT_EQ(wrapped(digits(51) + " " + digits(50) + " b").text,
            digits(51) + "\r" + digits(50) + "\rb");
  EXPECT_EQ(wrapped(digits(51) + " " + digits(50) + " b").lines, 3);
}

TEST(Wrapping, ALineEndIsItselfCountedInTheColumn) {
  const std::string shown = "\r";
  for (const std::string end : {"\r", "\n"}) {
    EXPECT_EQ(wrapped(end + digits(49) + " b").text, shown + digits(49) + " b");
    EXPECT_EQ(wrapped(end + digits(50) + " b").text, shown + digits(50) + "\rb");
  }
}

TEST(Wrapping, AccentedLettersCountOnce) {
  const std::string accents(51, '\xE9');
  EXPECT_EQ(wrapped(accents + " b").text, accents + "\rb");
}

// The rule word by word, on a buffer that ends in a NUL.
Wrapped literally(const std::string &given) {
  char s[5000];
  given.copy(s, given.size());
  s[given.size()] = '\0';
  int lineCount = 1, columnCount = 0;
  for (int i = 0; s[i] != '\0'; i++) {
    if (s[i] == '\r' || s[i] == '\n') {
      if (s[i] == '\n') s[i] = '\r';
      lineCount = lineCount + 1;
      columnCount = 0;
    }
    if (s[i] == ' ' && s[i + 1] != ':' && s[i + 1] != ',' && columnCount > 50) {
      s[i] = '\r';
      lineCount = lineCount + 1;
      columnCount = 1;
    } else {
      columnCount = columnCount + 1;
    }
  }
  if (lineCount < 2) lineCount = 2;
  return {s, lineCount};
}

TEST(Wrapping, AsTheLiteralModelOnRandomTexts) {
  std::mt19937 random(9);
  const std::string alphabets[] = {"a ", "ab :,", "abcdefgh\xE9 ", "a \r\n", "word:, \r\n\t\xA0"};
  for (int round = 0; round < 20000; ++round) {
    const std::string &alphabet = alphabets[random() % std::size(alphabets)];
    std::string text(random() % (round % 50 == 0 ? 4096 : 300), '\0');
    for (char &c : text) c = alphabet[random() % alphabet.size()];
    const Wrapped expected = literally(text);
    const Wrapped actual = wrapped(text);
    ASSERT_EQ(actual.text, expected.text) << text;
    ASSERT_EQ(actual.lines, expected.lines) << text;
  }
}

}  // namespace
}  // namespace korvel::messages
