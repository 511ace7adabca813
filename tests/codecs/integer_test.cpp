// SPDX-License-Identifier: MIT
// Integers read and written: rows, borders, and random ones beside the literal models.
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <korvel/codecs.h>

#include "tests/codecs/exact_text.h"
#include "tests/codecs/literal_codecs.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

constexpr int kUntouched = -77777;

using Reader = int (*)(char *, int *);
using Writer = int (*)(int, char *, int);

Reading<int> read(Reader reader, std::string_view text) {
  ExactText exact(text);
  Reading<int> reading{0, kUntouched, ""};
  reading.status = reader(exact.data(), &reading.value);
  reading.text = exact.text();
  return reading;
}

void expectReads(Reader reader, std::string_view text, int value) {
  const Reading<int> reading = read(reader, text);
  EXPECT_EQ(reading.status, 0) << '"' << text << '"';
  EXPECT_EQ(reading.value, value) << '"' << text << '"';
}

void expectRefuses(Reader reader, std::string_view text, int status) {
  const Reading<int> reading = read(reader, text);
  EXPECT_EQ(reading.status, status) << '"' << text << '"';
  EXPECT_EQ(reading.value, kUntouched) << '"' << text << "\" stored a value";
}

struct Good {
  const char *text;
  int value;
};

struct Bad {
  const char *text;
  int status;
};

TEST(IntegerRead, ReadsValuesOfEitherRange) {
  constexpr Good kGood[] = {
      {"0", 0},
      {"7", 7},
      {"12", 12},
      {"123", 123},
      {"1234", 1234},
      {"12345", 12345},
      {"32767", 32767},
      {"-32767", -32767},
      // Signs.
      {"+12", 12},
      {"-12", -12},
      {"-0", 0},
      {"+0", 0},
      // Blanks around.
      {"  +12  ", 12},
      {" 7", 7},
      {"7 ", 7},
      // Any number of leading zeros.
      {"0000000000000000012", 12},
      {"-00000000000", 0},
      {"000000000000", 0},
      {"-000000000032767", -32767},
  };
  for (const Good &row : kGood) {
    expectReads(intcod_i, row.text, row.value);
    expectReads(intcod_l, row.text, row.value);
  }
}

TEST(IntegerRead, RefusesWhatIsNoInteger) {
  constexpr Bad kBad[] = {
      // Empty.
      {"", 1},
      {" ", 1},
      {"             ", 1},
      // A sign alone.
      {"-", 2},
      {"+", 2},
      {"  -  ", 2},
      // Anything but digits.
      {"1 2", 3},
      {"- 12", 3},
      {"--1", 3},
      {"+-1", 3},
      {"1-", 3},
      {"1+2", 3},
      {"12a", 3},
      {"a", 3},
      {"1.5", 3},
      {"1,5", 3},
      {"\t1", 3},
      {"1\n", 3},
      {"/", 3},
      {":", 3},
      {"0/", 3},
      {"0:", 3},
      {"0x1F", 3},
      {"1e3", 3},
      // Bytes of 0x80 and above, among them digits of other character sets.
      {"\xB2", 3},
      {"1\xB9", 3},
      {"\xA0"
       "1",
       3},
      {"\xB0\xB1", 3},
      {"1234567\xFF", 3},
      {"-\x80", 3},
      // Too large, and not only digits: the characters are checked first.
      {"99999999999999999999x", 3},
  };
  for (const Bad &row : kBad) {
    expectRefuses(intcod_i, row.text, row.status);
    expectRefuses(intcod_l, row.text, row.status);
  }
}

TEST(IntegerRead, EveryCharacterButDigitsIsRefused) {
  for (int c = CHAR_MIN; c <= CHAR_MAX; ++c) {
    const char byte = static_cast<char>(c);
    if (byte == '\0' || byte == ' ' || literalIsDigit(byte)) continue;
    expectRefuses(intcod_l, std::string("12") + byte + "34", 3);
    expectRefuses(intcod_l, std::string("1234567890123") + byte, 3);
  }
}

TEST(IntegerRead, SixteenBitLimitIsSymmetric) {
  expectReads(intcod_i, "32767", 32767);
  expectRefuses(intcod_i, "32768", 4);
  // Kept: refused although it fits 16 bits.
  expectRefuses(intcod_i, "-32768", 4);
  expectRefuses(intcod_i, "2147483647", 4);
}

TEST(IntegerRead, ThirtyTwoBitLimitIsSymmetric) {
  expectReads(intcod_l, "2147483647", 2147483647);
  expectReads(intcod_l, "-2147483647", -2147483647);
  expectReads(intcod_l, "+02147483647", 2147483647);
  expectReads(intcod_l, "-0000000002147483647", -2147483647);
  expectRefuses(intcod_l, "2147483648", 4);
  // Kept: refused although it fits 32 bits.
  expectRefuses(intcod_l, "-2147483648", 4);
  expectRefuses(intcod_l, "4294967296", 4);
  expectRefuses(intcod_l, "9999999999", 4);
  expectRefuses(intcod_l, "10000000000", 4);
  expectRefuses(intcod_l, "99999999999", 4);
  expectRefuses(intcod_l, "18446744073709551617", 4);
}

TEST(IntegerRead, MoreDigitsThanADoubleHoldsAreTooLarge) {
  for (const std::size_t zeros : {307U, 308U, 309U, 310U, 5000U}) {
    expectRefuses(intcod_l, std::string("1").append(zeros, '0'), 4);
    expectRefuses(intcod_l, std::string("-9").append(zeros, '9'), 4);
    expectReads(intcod_l, std::string(zeros, '0').append("1"), 1);
  }
}

TEST(IntegerRead, TextStaysTrimmedWhateverTheOutcome) {
  EXPECT_EQ(read(intcod_l, "  +12  ").text, "+12");
  EXPECT_EQ(read(intcod_l, "   ").text, "");
  EXPECT_EQ(read(intcod_l, " - ").text, "-");
  EXPECT_EQ(read(intcod_l, "  1 2 ").text, "1 2");
  EXPECT_EQ(read(intcod_i, " 99999 ").text, "99999");
  EXPECT_EQ(read(intcod_l, "\t7 ").text, "\t7");
}

TEST(IntegerRead, NullPointersCountAsEmptyText) {
  int value = kUntouched;
  char text[] = "12";
  for (const Reader reader : {intcod_i, intcod_l, intcod_i_sup0, intcod_i_ssup0, intcod_l_sup0}) {
    EXPECT_EQ(reader(nullptr, &value), 1);
    EXPECT_EQ(value, kUntouched);
    EXPECT_EQ(reader(text, nullptr), 1);
  }
}

std::string randomText(std::mt19937 &random) {
  static constexpr std::string_view kAlphabets[] = {
      "0123456789",
      "0123456789 ",
      "0123456789+- ",
      "00000000019",
      "0123456789+-.,eE \t\x80\xB2\xFF/:",
  };
  const std::string_view alphabet = kAlphabets[random() % std::size(kAlphabets)];
  const std::size_t length = random() % (random() % 16 == 0 ? 400 : 16);
  std::string text;
  if (random() % 3 == 0) text += random() % 2 == 0 ? '-' : '+';
  while (text.size() < length) text += alphabet[random() % alphabet.size()];
  return text;
}

TEST(IntegerRead, AgreesWithTheLiteralReaderOnRandomTexts) {
  std::mt19937 random(41);
  for (int i = 0; i < 300000; ++i) {
    const std::string text = randomText(random);
    const struct {
      Reader reader;
      double limit;
    } kRanges[] = {{intcod_i, 32767.0}, {intcod_l, 2147483647.0}};
    for (const auto &[reader, limit] : kRanges) {
      const Reading<int> expected = literalReadInteger(text, limit);
      const Reading<int> actual = read(reader, text);
      ASSERT_EQ(actual.status, expected.status) << '"' << text << '"';
      ASSERT_EQ(actual.text, expected.text) << '"' << text << '"';
      ASSERT_EQ(actual.value, expected.status == 0 ? expected.value : kUntouched) << text;
    }
  }
}

TEST(IntegerRead, ReadsBackEveryLengthAndBorder) {
  for (long long power = 1; power <= 10000000000; power *= 10) {
    for (const long long value : {power - 1, power, power + 1, -power + 1, -power, -power - 1}) {
      const std::string text = std::to_string(value);
      if (std::llabs(value) <= INT_MAX) {
        expectReads(intcod_l, text, static_cast<int>(value));
      } else {
        expectRefuses(intcod_l, text, 4);
      }
    }
  }
}

TEST(IntegerValidators, AcceptValuesFromTheirBoundOn) {
  constexpr struct {
    Reader validator;
    const char *text;
    int status;
  } kRows[] = {
      {intcod_i_sup0, "0", 0},           {intcod_i_sup0, "-0", 0},
      {intcod_i_sup0, "1", 0},           {intcod_i_sup0, "-1", 1},
      {intcod_i_sup0, "32768", 4},       {intcod_i_ssup0, "0", 1},
      {intcod_i_ssup0, "1", 0},          {intcod_i_ssup0, "-1", 1},
      {intcod_i_ssup0, "32767", 0},      {intcod_i_ssup0, "32768", 4},
      {intcod_l_sup0, "0", 0},           {intcod_l_sup0, "-1", 1},
      {intcod_l_sup0, "2147483647", 0},  {intcod_l_sup0, "2147483648", 4},
      {intcod_l_sup0, "-2147483648", 4},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(read(row.validator, row.text).status, row.status) << row.text;
  }
  for (const Reader validator : {intcod_i_sup0, intcod_i_ssup0, intcod_l_sup0}) {
    expectRefuses(validator, "  ", 1);
    expectRefuses(validator, "-", 2);
    expectRefuses(validator, "x", 3);
    expectRefuses(validator, "99999999999", 4);
    expectReads(validator, " 12 ", 12);
  }
}

TEST(IntegerValidators, StoreAValueBelowTheirBound) {
  EXPECT_EQ(read(intcod_i_sup0, "-5").value, -5);
  EXPECT_EQ(read(intcod_i_ssup0, "0").value, 0);
  EXPECT_EQ(read(intcod_l_sup0, "-100000").value, -100000);
}

// ---- Writing ----

constexpr int kThreshold16 = 6;
constexpr int kThreshold32 = 11;

void expectWrites(Writer writer, int value, int capacity, const Writing &expected) {
  PoisonedBuffer buffer(static_cast<std::size_t>(std::max(capacity, 0)));
  EXPECT_EQ(writer(value, buffer.data(), capacity), expected.status)
      << value << " into " << capacity;
  EXPECT_TRUE(buffer.guardsIntact()) << value << " into " << capacity;
  if (capacity < 1) return;
  EXPECT_EQ(buffer.text(), expected.text) << value << " into " << capacity;
  EXPECT_TRUE(buffer.untouchedFrom(buffer.text().size() + 1)) << value << " into " << capacity;
}

TEST(IntegerWrite, StatusTellsTheSafeSizeOfTheRange) {
  expectWrites(intdco_i, -5, 7, {0, "-5"});
  expectWrites(intdco_i, -5, 6, {1, "-5"});
  expectWrites(intdco_i, -32768, 7, {0, "-32768"});
  expectWrites(intdco_i, -32768, 6, {2, "32768"});
  expectWrites(intdco_l, -5, 12, {0, "-5"});
  expectWrites(intdco_l, -5, 11, {1, "-5"});
  expectWrites(intdco_l, -2147483647, 12, {0, "-2147483647"});
  expectWrites(intdco_l, -2147483647, 11, {2, "2147483647"});
}

TEST(IntegerWrite, WhatDoesNotFitLeavesTheLowestDigits) {
  expectWrites(intdco_i, -5, 2, {2, "5"});
  expectWrites(intdco_l, 12345, 4, {2, "345"});
  expectWrites(intdco_l, -12345, 6, {2, "12345"});
  expectWrites(intdco_l, -12345, 5, {2, "2345"});
  expectWrites(intdco_l, 7, 1, {2, ""});
  expectWrites(intdco_l, 0, 1, {2, ""});
}

TEST(IntegerWrite, NoCapacityIsNeverWritten) {
  for (const int capacity : {0, -1, INT_MIN}) {
    for (const int value : {0, 7, -7, INT_MIN, INT_MAX}) {
      expectWrites(intdco_i, value, capacity, {2, ""});
      expectWrites(intdco_l, value, capacity, {2, ""});
    }
  }
  EXPECT_EQ(intdco_i(5, nullptr, 12), 2);
  EXPECT_EQ(intdco_l(5, nullptr, 12), 2);
}

TEST(IntegerWrite, LowestValueHasNoMagnitude) {
  // Kept: -2147483648 has no positive magnitude, so no digit follows its sign.
  expectWrites(intdco_l, INT_MIN, 12, {0, "-"});
  expectWrites(intdco_l, INT_MIN, 11, {1, "-"});
  expectWrites(intdco_l, INT_MIN, 2, {1, "-"});
  expectWrites(intdco_l, INT_MIN, 1, {2, ""});
  expectWrites(intdco_i, INT_MIN, 7, {0, "-"});
}

TEST(IntegerWrite, SixteenBitWriterTakesAnyValue) {
  expectWrites(intdco_i, 2147483647, 12, {0, "2147483647"});
  expectWrites(intdco_i, 100000, 7, {0, "100000"});
}

TEST(IntegerWrite, AgreesWithTheLiteralWriterAtEveryCapacity) {
  std::mt19937 random(42);
  const auto compare = [](int value) {
    for (int capacity = -1; capacity <= 14; ++capacity) {
      expectWrites(intdco_i, value, capacity, literalWriteInteger(value, capacity, kThreshold16));
      expectWrites(intdco_l, value, capacity, literalWriteInteger(value, capacity, kThreshold32));
    }
  };
  for (long long power = 1; power <= INT_MAX; power *= 10) {
    for (const long long value : {power - 1, power, power + 1}) {
      compare(static_cast<int>(value));
      compare(static_cast<int>(-value));
    }
  }
  for (const int value : {INT_MAX, INT_MIN, INT_MIN + 1, 32767, -32767, -32768}) compare(value);
  for (int i = 0; i < 5000; ++i) compare(static_cast<int>(random() >> random() % 32));
}

TEST(IntegerWrite, AgreesWithTheLiteralWriterOnRandomValues) {
  std::mt19937 random(43);
  for (int i = 0; i < 300000; ++i) {
    const auto magnitude = static_cast<int>(random() >> (1 + random() % 31));
    const int value = random() % 2 == 0 ? magnitude : -magnitude;
    char text[12];
    ASSERT_EQ(intdco_l(value, text, sizeof text), 0);
    ASSERT_EQ(text, literalWriteInteger(value, 12, kThreshold32).text);
    int back = kUntouched;
    ASSERT_EQ(intcod_l(text, &back), 0);
    ASSERT_EQ(back, value);
  }
}

}  // namespace
}  // namespace korvel::test
