// SPDX-License-Identifier: MIT
// Reals read to the bit: rows, faults, and random texts beside the literal reader.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <korvel/codecs.h>

#include "tests/codecs/exact_text.h"
#include "tests/codecs/literal_codecs.h"

namespace korvel::test {
namespace {

constexpr double kUntouched = -77777.25;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

using Reader = int (*)(char *, double *);

Reading<double> read(Reader reader, std::string_view text) {
  ExactText exact(text);
  Reading<double> reading{0, kUntouched, ""};
  reading.status = reader(exact.data(), &reading.value);
  reading.text = exact.text();
  return reading;
}

Reading<double> read(std::string_view text) { return read(realcod_d, text); }

void expectReads(std::string_view text, double value) {
  const Reading<double> reading = read(text);
  EXPECT_EQ(reading.status, 0) << '"' << text << '"';
  EXPECT_TRUE(sameBits(reading.value, value)) << '"' << text << "\" gives " << reading.value;
}

void expectRefuses(std::string_view text, int status) {
  const Reading<double> reading = read(text);
  EXPECT_EQ(reading.status, status) << '"' << text << '"';
  EXPECT_TRUE(sameBits(reading.value, kUntouched)) << '"' << text << "\" stored a value";
}

TEST(RealRead, ReadsReals) {
  constexpr struct {
    const char *text;
    double value;
  } kGood[] = {
      {"0", 0.0},
      {"12", 12.0},
      {"1.5", 1.5},
      {"1,5", 1.5},
      {"-1,5", -1.5},
      {"+1.5", 1.5},
      {"  -1,5 ", -1.5},
      {"0.25", 0.25},
      {"000000000000000000000000001.5", 1.5},
      // Either part may be missing.
      {".5", 0.5},
      {"5.", 5.0},
      {".", 0.0},
      {",", 0.0},
      {"-.", -0.0},
      {"-,", -0.0},
      {"-0", -0.0},
      // Exponents.
      {"1.5e", 1.5},
      {"1.5E", 1.5},
      {"12e", 12.0},
      {"1.5e+2", 150.0},
      {"1.5E+2", 150.0},
      {"1.5e2", 150.0},
      {"15e-1", 1.5},
      {"1e0", 1.0},
      {"1e-0", 1.0},
      {"1e 2", 100.0},
      {"1e00000000000000000002", 100.0},
      {"e5", 0.0},
      {"-e5", -0.0},
      {".e5", 0.0},
  };
  for (const auto &row : kGood) expectReads(row.text, row.value);
}

TEST(RealRead, RefusesWhatIsNoReal) {
  constexpr struct {
    const char *text;
    int status;
  } kBad[] = {
      {"", 1},
      {"   ", 1},
      {"-", 2},
      {" + ", 2},
      // In the integral part.
      {"1 000", 3},
      {"abc", 3},
      {"--1", 3},
      {"- 1", 3},
      {"1x.5", 3},
      {"\xB2", 3},
      // There is no grouping: the point separates, and the comma is not a digit.
      {"1,234.5", 3},
      {"1 e5", 3},
      // Kept: a point in the exponent takes the separator's part from a comma in the mantissa.
      {"1,5e2.0", 3},
      // The first "e" is the mark, even after an "E".
      {"1E5e2", 3},
      // In the fraction.
      {"1.2.3", 4},
      {"1,2,3", 4},
      {"1.2,3", 4},
      {"1.x", 4},
      {"1.5 5", 4},
      {"1.\xE9", 4},
      // In the exponent.
      {"1e-", 6},
      {"1e+", 6},
      {"1.5ex", 7},
      {"1e5.0", 7},
      {"1.5e2,0", 7},
      {"1e5e5", 7},
      {"1e2147483648", 8},
      {"1e-2147483648", 8},
      // The first fault counts.
      {"x.yez", 3},
      {"1.yez", 4},
  };
  for (const auto &row : kBad) expectRefuses(row.text, row.status);
}

TEST(RealRead, TextStaysTrimmedWhateverTheOutcome) {
  EXPECT_EQ(read("  -1,5 ").text, "-1,5");
  EXPECT_EQ(read("    ").text, "");
  EXPECT_EQ(read(" x ").text, "x");
  EXPECT_EQ(read(" 1.5e ").text, "1.5e");
  // The exponent's text is trimmed, too, where it is read.
  EXPECT_EQ(read(" 1e   5 ").text, "1e5");
  EXPECT_EQ(read("1e   x").text, "1ex");
  EXPECT_EQ(read("xe   5").text, "xe   5");
}

TEST(RealRead, FractionDigitsAreSummedInOrder) {
  // 0.1 + 0.01 x 2 ..., not the nearest double of the whole text.
  double sum = 0.0;
  double factor = 0.1;
  for (const int digit : {1, 2, 3, 4, 5, 6, 7}) {
    sum += digit * factor;
    factor /= 10.0;
  }
  expectReads("0.1234567", sum);
}

TEST(RealRead, ExponentIsAppliedInStepsOfTen) {
  double grown = 1.7;
  for (int i = 0; i < 30; ++i) grown *= 10.0;
  expectReads("1.7e30", grown);
  double shrunk = 1.7;
  for (int i = 0; i < 320; ++i) shrunk /= 10.0;
  expectReads("1.7e-320", shrunk);
}

TEST(RealRead, ExponentEndsWhereTheValueNoLongerChanges) {
  expectReads("1e309", kInfinity);
  expectReads("-1e2000000000", -kInfinity);
  expectReads("1e2147483647", kInfinity);
  expectReads("1e-2000000000", 0.0);
  expectReads("-1e-2147483647", -0.0);
  expectReads("0e2000000000", 0.0);
  expectReads("0.000e-2000000000", 0.0);
  double literal = 1.0;
  for (int i = 0; i < 100000; ++i) literal /= 10.0;
  expectReads("1e-100000", literal);
}

TEST(RealRead, NoDigitStringGivesNaN) {
  for (const std::size_t count : {300U, 307U, 308U, 309U, 310U, 400U, 100000U}) {
    const std::string zeros(count, '0');
    const std::string large = std::string("1").append(zeros);
    const std::string small = std::string("0.").append(zeros).append("7");
    expectReads(large, literalReadReal(large).value);
    EXPECT_EQ(std::isinf(read(large).value), count > 308) << count;
    expectReads(zeros, 0.0);
    expectReads(std::string(zeros).append("5.5"), 5.5);
    expectReads(small, literalReadReal(small).value);
    // Infinite before the exponent is applied.
    if (count > 308) expectReads(std::string(large).append("e-2000000000"), kInfinity);
  }
}

TEST(RealRead, NullPointersCountAsEmptyText) {
  double value = kUntouched;
  float single = 1.0F;
  EXPECT_EQ(realcod_d(nullptr, &value), 1);
  EXPECT_EQ(realcod_f(nullptr, &single), 1);
  EXPECT_EQ(realcod_d_sup0(nullptr, &value), 1);
  EXPECT_EQ(realcod_d_ssup0(nullptr, &value), 1);
  EXPECT_TRUE(sameBits(value, kUntouched));
  char text[] = "12";
  for (const Reader reader : {realcod_d, realcod_d_sup0, realcod_d_ssup0}) {
    EXPECT_EQ(reader(text, nullptr), 1);
  }
  EXPECT_EQ(realcod_f(text, nullptr), 1);
}

TEST(RealReadSingle, RoundsTheDoubleWhenStored) {
  const auto expectSingle = [](std::string_view text, int status, float value) {
    ExactText exact(text);
    float stored = -1.5F;
    EXPECT_EQ(realcod_f(exact.data(), &stored), status) << text;
    EXPECT_EQ(stored, value) << text;
  };
  expectSingle(" 1,5 ", 0, 1.5F);
  expectSingle("0.1", 0, 0.1F);
  expectSingle("16777217", 0, 16777216.0F);
  expectSingle("1e39", 0, std::numeric_limits<float>::infinity());
  expectSingle("-1e400", 0, -std::numeric_limits<float>::infinity());
  expectSingle("1e-60", 0, 0.0F);
  expectSingle("", 1, -1.5F);
  expectSingle("-", 2, -1.5F);
  expectSingle("x", 3, -1.5F);
  expectSingle("1.x", 4, -1.5F);
  expectSingle("1ex", 7, -1.5F);
}

TEST(RealValidators, AcceptValuesFromTheirBoundOn) {
  constexpr struct {
    Reader validator;
    const char *text;
    int status;
  } kRows[] = {
      {realcod_d_sup0, "0", 0},       {realcod_d_sup0, "-0", 0},
      {realcod_d_sup0, "-0,001", 1},  {realcod_d_sup0, " 1,5 ", 0},
      {realcod_d_sup0, "-1e-400", 0}, {realcod_d_sup0, "", 1},
      {realcod_d_sup0, "-", 2},       {realcod_d_sup0, "x", 3},
      {realcod_d_sup0, "1.x", 4},     {realcod_d_sup0, "1ex", 7},
      {realcod_d_ssup0, "0", 1},      {realcod_d_ssup0, "0,001", 0},
      {realcod_d_ssup0, "-0", 1},     {realcod_d_ssup0, "-1", 1},
      {realcod_d_ssup0, "1e400", 0},  {realcod_d_ssup0, "1e-400", 1},
      {realcod_d_ssup0, "", 1},       {realcod_d_ssup0, "+", 2},
      {realcod_d_ssup0, "1 0", 3},    {realcod_d_ssup0, "1e9999999999", 8},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(read(row.validator, row.text).status, row.status) << row.text;
  }
}

TEST(RealValidators, StoreAValueBelowTheirBound) {
  EXPECT_EQ(read(realcod_d_sup0, "-2,5").value, -2.5);
  EXPECT_EQ(read(realcod_d_ssup0, "0").value, 0.0);
}

// ---- Random texts beside the literal reader ----

void compare(const std::string &text) {
  const Reading<double> expected = literalReadReal(text);
  const Reading<double> actual = read(text);
  ASSERT_EQ(actual.status, expected.status) << '"' << text << '"';
  ASSERT_EQ(actual.text, expected.text) << '"' << text << '"';
  const double value = expected.status == 0 ? expected.value : kUntouched;
  ASSERT_TRUE(sameBits(actual.value, value))
      << '"' << text << "\" gives " << actual.value << ", not " << value;
}

std::string digits(std::mt19937 &random, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += static_cast<char>('0' + random() % 10);
  return text;
}

TEST(RealRead, AgreesWithTheLiteralReaderOnRandomNumbers) {
  std::mt19937 random(46);
  static constexpr const char *kSigns[] = {"", "", "-", "+"};
  static constexpr const char *kSeparators[] = {".", ","};
  for (int i = 0; i < 200000; ++i) {
    std::string text = kSigns[random() % 4];
    text.append(digits(random, random() % 20));
    if (random() % 4 != 0)
      text.append(kSeparators[random() % 2]).append(digits(random, random() % 20));
    if (random() % 4 == 0) {
      text += random() % 2 == 0 ? "e" : "E";
      text.append(kSigns[random() % 4]).append(std::to_string(random() % 330));
    }
    if (random() % 8 == 0) text = std::string(" ").append(text).append("  ");
    compare(text);
  }
}

TEST(RealRead, AgreesWithTheLiteralReaderOnFourDecimals) {
  std::mt19937 random(47);
  for (int i = 0; i < 300000; ++i) {
    compare(std::to_string(random() % 1000000).append(".").append(digits(random, 4)));
  }
}

TEST(RealRead, AgreesWithTheLiteralReaderOnLongNumbers) {
  std::mt19937 random(48);
  for (int i = 0; i < 2000; ++i) {
    std::string text = digits(random, random() % 700);
    if (random() % 2 == 0) text.append(".").append(digits(random, random() % 700));
    if (random() % 4 == 0) text.append("e-").append(std::to_string(random() % 700));
    compare(text);
  }
}

TEST(RealRead, AgreesWithTheLiteralReaderOnHostileTexts) {
  std::mt19937 random(49);
  static constexpr std::string_view kAlphabets[] = {
      "0123456789.,eE+- ",
      "05.,eE-",
      "019.e ",
      "0123456789.,eE+- \t\x80\xB2\xE9\xFF/:xX",
  };
  for (int i = 0; i < 300000; ++i) {
    const std::string_view alphabet = kAlphabets[random() % std::size(kAlphabets)];
    const std::size_t length = random() % 14;
    std::string text;
    while (text.size() < length) text += alphabet[random() % alphabet.size()];
    compare(text);
  }
}

}  // namespace
}  // namespace korvel::test
