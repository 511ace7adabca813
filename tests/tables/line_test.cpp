// SPDX-License-Identifier: MIT
// Tests of lines: the characters that are kept, the text that counts, fields and columns.
#include "tables/line.h"

#include <string>

#include <gtest/gtest.h>

namespace korvel::tables {
namespace {

using namespace std::string_view_literals;

std::string repeated(char c, std::size_t count) { return std::string(count, c); }

TEST(KeptCharacters, LineFeedsAreNoneWhereverTheyStand) {
  const struct {
    std::string_view raw;
    std::string_view kept;
  } kCases[] = {
      {"", ""},
      {"\n", ""},
      {"\n\n\n", ""},
      {"ab", "ab"},
      {"\nab", "ab"},
      {"ab\n", "ab"},
      {"a\nb", "ab"},
      {"\na\n\nb\n", "ab"},
      {"\n\nab", "ab"},
      {"a\0b"sv, "a\0b"sv},
      {"\xE9\n\xFF", "\xE9\xFF"},
  };
  for (const auto &row : kCases) {
    LineScratch scratch;
    EXPECT_EQ(keptOf(row.raw, scratch), row.kept) << row.raw;
  }
}

TEST(KeptCharacters, AreAtMost1023) {
  for (const std::size_t length : {1021U, 1022U, 1023U, 1024U, 1025U, 1500U, 100000U}) {
    const std::string raw = repeated('a', length / 2) + "\n" + repeated('b', length - length / 2);
    LineScratch scratch;
    const std::string whole = repeated('a', length / 2) + repeated('b', length - length / 2);
    EXPECT_EQ(keptOf(raw, scratch), whole.substr(0, 1023)) << length;
    EXPECT_EQ(keptOf(whole, scratch), whole.substr(0, 1023)) << length;
  }
}

TEST(KeptCharacters, AreAtMost255InAListing) {
  const std::string raw = repeated('a', 300);
  LineScratch scratch;
  EXPECT_EQ(keptOf(raw, scratch, kListingSize).size(), 255U);
  EXPECT_EQ(keptOf("\n\n" + raw, scratch, kListingSize).size(), 255U);
  EXPECT_EQ(keptOf("a\n" + raw, scratch, kListingSize).size(), 255U);
}

TEST(LineText, EndsAtTheFirstNulAndAfter1022Characters) {
  EXPECT_EQ(textOf(""), "");
  EXPECT_EQ(textOf("a,b"), "a,b");
  EXPECT_EQ(textOf("a,b\0,c"sv), "a,b");
  EXPECT_EQ(textOf("\0a"sv), "");
  for (const std::size_t length : {1021U, 1022U, 1023U}) {
    EXPECT_EQ(textOf(repeated('a', length)).size(), std::min<std::size_t>(length, 1022));
  }
  EXPECT_EQ(textOf(repeated('a', 255), kListingSize).size(), 254U);
}

std::string walked(std::string_view text) {
  RawFields fields(text);
  std::string all(fields.field());
  while (fields.next()) all.append("|").append(fields.field());
  return all;
}

TEST(Fields, StandBetweenCommasAndPluses) {
  const struct {
    std::string_view text;
    std::string_view fields;
  } kCases[] = {
      {"AB,Libell\xE9", "AB|Libell\xE9"},
      {"AB+Libell\xE9", "AB|Libell\xE9"},
      {"a,b+c,d", "a|b|c|d"},
      {"a-b;c", "a-b;c"},
      {"a", "a"},
      {"", ""},
      // An empty field ends the list.
      {"a,", "a"},
      {"a,,c", "a"},
      {"a,b,,d", "a|b"},
      {"a,+", "a"},
      {",b", ""},
      {",", ""},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(walked(row.text), row.fields) << row.text;
    std::string split(row.text);
    std::replace(split.begin(), split.end(), ',', '\0');
    std::replace(split.begin(), split.end(), '+', '\0');
    split.append(2, '\0');
    SplitFields fields(split);
    std::string all(fields.field());
    while (fields.next()) all.append("|").append(fields.field());
    EXPECT_EQ(all, row.fields) << row.text;
  }
}

TEST(Fields, OfABufferWithoutEndStayInside) {
  const std::string full = repeated('a', 1024);
  SplitFields fields(full);
  EXPECT_EQ(fields.field().size(), 1024U);
  EXPECT_FALSE(fields.next());
  SplitFields last("a\0"sv);
  EXPECT_EQ(last.field(), "a");
  EXPECT_FALSE(last.next());
}

TEST(Columns, OfALookupAreEmptyBehindTheLast) {
  const struct {
    std::string_view text;
    int column;
    std::string_view field;
    bool exists;
  } kCases[] = {
      {"01,A,B", 1, "A", true},
      {"01,A,B", 2, "B", true},
      {"01,A,B", 3, "", false},
      {"01,A,B", 99, "", false},
      {"01", 1, "", false},
      {"", 1, "", false},
      {"01,,B", 1, "", false},
      {"01,,B", 2, "", false},
      // Kept: a count below 1 goes to the last field, like an unsigned counter that wraps.
      {"01,A,B", 0, "", false},
      {"01,A,B", -1, "", false},
      {"01,A,B", INT_MIN, "", false},
      {"01,A,B", INT_MAX, "", false},
  };
  for (const auto &row : kCases) {
    const ChosenField column = chosenField(RawFields(row.text), {false, row.column});
    EXPECT_EQ(column.field, row.field) << row.text << ' ' << row.column;
    EXPECT_EQ(column.exists, row.exists) << row.text << ' ' << row.column;
  }
}

TEST(Columns, OfASearchAreTheLastFieldBehindTheLast) {
  const struct {
    std::string_view text;
    int column;
    std::string_view field;
  } kCases[] = {
      {"01,A,B", 1, "A"},
      {"01,A,B", 2, "B"},
      {"01,A,B", 3, "B"},
      {"01,A,B", 99, "B"},
      {"01", 1, "01"},
      {"", 1, ""},
      {"01,,B", 1, "01"},
      {"01,A,B", INT_MAX, "B"},
      // Kept: a count below 1 goes to the last field, like an unsigned counter that wraps.
      {"01,A,B", 0, "B"},
      {"01,A,B", -7, "B"},
  };
  for (const auto &row : kCases) {
    EXPECT_EQ(examinedColumn(RawFields(row.text), row.column), row.field)
        << row.text << ' ' << row.column;
  }
}

}  // namespace
}  // namespace korvel::tables
