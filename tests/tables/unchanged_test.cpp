// SPDX-License-Identifier: MIT
// Tests of the lines that a rewriting copies as they are.
#include <climits>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "strings/plain_lines.h"
#include "tables/scan.h"
#include "tests/support/page_end.h"

namespace korvel::tables {
namespace {

FirstLines unchangedLines(std::string_view bytes, int most) {
  return firstLines(strings::plainLines(bytes, 1023), most);
}

// Character by character.
FirstLines counted(std::string_view bytes, int most) {
  FirstLines lines = {0, 0};
  std::size_t at = 0;
  while (lines.count < most) {
    std::size_t length = 0;
    while (at < bytes.size() && bytes[at] != '\r' && bytes[at] != '\n') {
      ++at;
      ++length;
    }
    const bool ends = at + 1 < bytes.size() && bytes[at] == '\r' && bytes[at + 1] == '\n';
    if (!ends || length > 1023) break;
    at += 2;
    lines = {at, lines.count + 1};
  }
  return lines;
}

void expectAsCounted(const std::string &bytes, int most = INT_MAX) {
  test::PageEnd atPageEnd(bytes);
  const FirstLines lines = unchangedLines(atPageEnd.bytes(), most);
  const FirstLines expected = counted(bytes, most);
  EXPECT_EQ(lines.bytes, expected.bytes) << bytes;
  EXPECT_EQ(lines.count, expected.count) << bytes;
}

TEST(UnchangedLines, AreThoseThatEndWithCrLf) {
  constexpr struct {
    std::string_view bytes;
    std::size_t unchanged;
    int count;
  } kCases[] = {
      {"", 0, 0},
      {"a", 0, 0},
      {"a\r", 0, 0},
      {"a\r\n", 3, 1},
      {"\r\n", 2, 1},
      {"\r\n\r\n", 4, 2},
      {"a\r\nb", 3, 1},
      {"a\r\nb\r", 3, 1},
      {"a\r\nb\rc\r\n", 3, 1},
      // A line feed that no carriage return precedes is to go.
      {"a\nb\r\n", 0, 0},
      {"a\r\n\nb\r\n", 3, 1},
      {"\na\r\n", 0, 0},
      {"a\r\nb\n", 3, 1},
      {"a\r\r\n", 0, 0},
  };
  for (const auto &row : kCases) {
    const FirstLines lines = unchangedLines(row.bytes, INT_MAX);
    EXPECT_EQ(lines.bytes, row.unchanged) << row.bytes;
    EXPECT_EQ(lines.count, row.count) << row.bytes;
  }
}

TEST(UnchangedLines, HaveAtMost1023Characters) {
  for (const std::size_t length : {0, 1, 62, 63, 64, 1022, 1023, 1024, 1025, 5000}) {
    for (const std::size_t before : {0, 1, 30, 61, 62, 63, 64, 100}) {
      const std::string first = before == 0 ? "" : std::string(before, 'b') + "\r\n";
      const std::string bytes = first + std::string(length, 'a') + "\r\nlast\r\n";
      const FirstLines lines = unchangedLines(bytes, INT_MAX);
      EXPECT_EQ(lines.bytes, length <= 1023 ? bytes.size() : first.size()) << length;
      expectAsCounted(bytes);
    }
  }
}

TEST(UnchangedLines, AreNoMoreThanAskedFor) {
  std::string bytes;
  for (int i = 0; i < 200; ++i) bytes += std::string(static_cast<std::size_t>(i % 9), 'a') + "\r\n";
  for (int most = 0; most <= 201; ++most) expectAsCounted(bytes, most);
  EXPECT_EQ(unchangedLines(bytes, -1).bytes, 0U);
  EXPECT_EQ(unchangedLines(bytes, INT_MIN).bytes, 0U);
}

TEST(UnchangedLines, AreFoundAtAnyPlaceOfAStep) {
  for (std::size_t before = 0; before < 140; ++before) {
    const std::string text(before, 'a');
    for (const std::string_view end : {"\r\n", "\r", "\n", "\r\r\n", "\r\n\n", "\n\r\n"}) {
      expectAsCounted(text + std::string(end) + "bc\r\n" + std::string(150, 'd') + "\r\n");
    }
  }
}

TEST(UnchangedLines, AgreeWithACountOnRandomBytes) {
  std::mt19937 random(1);
  for (int round = 0; round < 20000; ++round) {
    std::string bytes;
    const auto oddness = random() % 40;
    for (auto n = random() % 60; n > 0; --n) {
      const std::size_t length = random() % 200 == 0 ? 1000 + random() % 50 : random() % 30;
      bytes.append(length, static_cast<char>('a' + random() % 26));
      constexpr std::string_view kOdd[] = {"\r", "\n", "\n\r", "\r\n\n", "\r\r\n"};
      bytes += random() % 100 < oddness / 4 ? kOdd[random() % std::size(kOdd)] : "\r\n";
    }
    expectAsCounted(bytes, random() % 3 == 0 ? static_cast<int>(random() % 60) : INT_MAX);
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace
}  // namespace korvel::tables
