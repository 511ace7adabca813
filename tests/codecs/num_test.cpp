// SPDX-License-Identifier: MIT
// Numbers of a fixed width: written, read, and in lists.
#include <algorithm>
#include <climits>
#include <limits>
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

// ---- Writing ----

using Writer = int (*)(int, char *, int);

// `run` fills the width, or is empty where nothing is written.
void expectWrites(int value, int width, int status, std::string_view run) {
  for (const Writer writer : {LongToNUM, IntToNUM}) {
    PoisonedBuffer buffer(static_cast<std::size_t>(std::max(width, 0)));
    EXPECT_EQ(writer(value, buffer.data(), width), status) << value << " at " << width;
    EXPECT_EQ(std::string_view(buffer.data(), run.size()), run) << value << " at " << width;
    EXPECT_TRUE(buffer.untouchedFrom(run.size())) << value << " at " << width;
    EXPECT_TRUE(buffer.guardsIntact()) << value << " at " << width;
  }
}

TEST(NumWrite, FillsWithZerosOnTheLeft) {
  expectWrites(7, 2, 0, "07");
  expectWrites(7, 1, 0, "7");
  expectWrites(0, 3, 0, "000");
  expectWrites(2004, 4, 0, "2004");
  expectWrites(2147483647, 14, 0, "00002147483647");
}

TEST(NumWrite, RefusesAWidthTooSmall) {
  expectWrites(123, 2, 11, "");
  expectWrites(-5, 1, 11, "");
  for (const int width : {0, -1, INT_MIN}) {
    expectWrites(0, width, 11, "");
    expectWrites(123, width, 11, "");
    expectWrites(INT_MIN, width, 11, "");
  }
  EXPECT_EQ(LongToNUM(1, nullptr, 4), 11);
  EXPECT_EQ(IntToNUM(1, nullptr, 4), 11);
}

TEST(NumWrite, SignStandsBehindTheFill) {
  // Kept: the zeros are in front of the sign.
  expectWrites(-5, 4, 0, "00-5");
  expectWrites(-5, 2, 0, "-5");
  // Kept: -2147483648 has no positive magnitude, so no digit follows its sign.
  expectWrites(INT_MIN, 4, 0, "000-");
}

TEST(NumWrite, AgreesWithTheLiteralWriterAtEveryWidth) {
  std::mt19937 random(56);
  for (int i = 0; i < 3000; ++i) {
    const int value = static_cast<int>(random() >> random() % 32) * (random() % 2 == 0 ? 1 : -1);
    const std::string text = literalWriteInteger(value, 12, 11).text;
    for (int width = 0; width <= 14; ++width) {
      const int fill = width - static_cast<int>(text.size());
      if (fill < 0) {
        expectWrites(value, width, 11, "");
      } else {
        expectWrites(value, width, 0, std::string(static_cast<std::size_t>(fill), '0') + text);
      }
    }
  }
}

TEST(NumWrite, RealsAreNeverWritten) {
  // Kept: the writer of reals answers 1 for the 20 bytes that would be formatted into, which counts
  // as a failure; nothing is ever placed.
  for (const double value : {0.0, 1.5, -12.25, 1e300, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity()}) {
    for (const int width : {-1, 0, 1, 8, 20}) {
      for (const int decimals : {-1, 0, 2, 18, 400}) {
        PoisonedBuffer buffer(20);
        EXPECT_EQ(DoubleToNUMD(value, buffer.data(), width, decimals), 1) << value;
        EXPECT_TRUE(buffer.untouchedFrom(0)) << value;
        EXPECT_TRUE(buffer.guardsIntact()) << value;
      }
    }
  }
}

// ---- Reading ----

using Reader = int (*)(const char *, int, int *);

// `value` is 0 on failure.
void expectReads(Reader reader, std::string_view num, int status, int value) {
  const ExactRun run(num);
  int result = 77;
  EXPECT_EQ(reader(run.data(), run.width(), &result), status) << '"' << num << '"';
  EXPECT_EQ(result, value) << '"' << num << '"';
}

struct Row {
  const char *num;
  int status;
  int value;
};

TEST(NumRead, ReadsDigitsWithBlanksAroundAndOneSign) {
  constexpr Row kRows[] = {
      {" 042", 0, 42},
      {"0042", 0, 42},
      {"42  ", 0, 42},
      {" 42 ", 0, 42},
      {"+042", 0, 42},
      {"-000", 0, 0},
      {"7", 0, 7},
      {"00000000007", 0, 7},
      // Failures give 0.
      {"", 1, 0},
      {"    ", 1, 0},
      {"  - ", 2, 0},
      {"4 2", 3, 0},
      {"00-5", 3, 0},
      {"4\xE9", 3, 0},
      {"-042", 12, 0},
      {"000000000042", 11, 0},
      {"             ", 11, 0},
  };
  for (const Row &row : kRows) {
    expectReads(NUMToLong, row.num, row.status, row.value);
    expectReads(NUMToInt, row.num, row.status, row.value);
  }
}

TEST(NumRead, RangesAreThoseOfTheIntegerReaders) {
  expectReads(NUMToInt, "32767", 0, 32767);
  expectReads(NUMToInt, "32768", 4, 0);
  expectReads(NUMToInt, "-32767", 12, 0);
  expectReads(NUMToLong, "32768", 0, 32768);
  expectReads(NUMToLong, "2147483647", 0, 2147483647);
  expectReads(NUMToLong, "2147483648", 4, 0);
  expectReads(NUMToLong, "-2147483647", 12, 0);
  expectReads(NUMToLong, "-2147483648", 4, 0);
}

TEST(NumRead, WidthOutsideTheWorkingAreaIsRefused) {
  const ExactRun run("42");
  for (const Reader reader : {NUMToLong, NUMToInt, NUMP100ToLong}) {
    for (const int width : {-1, INT_MIN}) {
      int result = 77;
      EXPECT_EQ(reader(run.data(), width, &result), 11) << width;
      EXPECT_EQ(result, 0) << width;
    }
    int result = 77;
    EXPECT_EQ(reader(nullptr, 2, &result), 11);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(reader(run.data(), 2, nullptr), 11);
  }
}

TEST(NumRead, ANulEndsTheNumber) {
  using namespace std::string_view_literals;
  expectReads(NUMToLong, "42\0xy"sv, 0, 42);
  expectReads(NUMToLong, "\0 42"sv, 1, 0);
}

TEST(NumReadPercentage, DropsTheSignAndTheBlanksAroundIt) {
  constexpr Row kRows[] = {
      {"25 %", 0, 25},
      {"25%", 0, 25},
      {"25", 0, 25},
      {" 25   %   ", 0, 25},
      {"025%", 0, 25},
      {"                      ", 1, 0},
      {"%", 1, 0},
      {" % ", 1, 0},
      {"", 1, 0},
      {"25%%", 3, 0},
      {"%25", 3, 0},
      {"-5 %", 12, 0},
      {"2147483648%", 4, 0},
      {"00000000025%", 0, 25},
      {"000000000025%", 11, 0},
      {"5                                        %", 0, 5},
  };
  for (const Row &row : kRows) expectReads(NUMP100ToLong, row.num, row.status, row.value);
}

TEST(NumReadInterval, ReadsBothBounds) {
  constexpr struct {
    const char *text;
    int status;
    int low;
    int high;
  } kRows[] = {
      {"[10-20]", 0, 10, 20},
      {"10,20", 0, 10, 20},
      {" [ 10 ; 20 ] ", 0, 10, 20},
      {"10-20", 0, 10, 20},
      {"[10;20", 0, 10, 20},
      {"10,20]", 0, 10, 20},
      {"0-0", 0, 0, 0},
      {"00000000001,00000000002", 0, 1, 2},
      // Blanks next to a bracket or a separator do not count for a bound's width.
      {"[               10-20               ]", 0, 10, 20},
      {"10               ;               20", 0, 10, 20},
      // Bounds are not put in order.
      {"20-10", 0, 20, 10},
      // The first separator splits; a second one is not a digit.
      {"10,20-30", 3, 10, 0},
      {"10--20", 12, 10, 0},
      {"-10,20", 1 + 3, 0, 0},
      // Only these three separate, not even '+', which separates the items of a list.
      {"10+20", 3 + 11, 0, 0},
      {"10:20", 3 + 11, 0, 0},
      {"10.20", 3 + 11, 0, 0},
      {"10/20", 3 + 11, 0, 0},
      {"10 20", 3 + 11, 0, 0},
      {"10\t20", 3 + 11, 0, 0},
      {"10\xAD"
       "20",
       3 + 11, 0, 0},
      // Without a separator there is no high bound; an empty one is another fault.
      {"10", 11, 10, 0},
      {"", 1 + 11, 0, 0},
      {"[]", 1 + 11, 0, 0},
      {"[10]", 11, 10, 0},
      {"10,", 1, 10, 0},
      {",20", 1, 0, 20},
      {",", 1 + 1, 0, 0},
      {"[[10-20]]", 3 + 3, 0, 0},
      {"x-20", 3, 0, 20},
      {"10-x", 3, 10, 0},
      {"x-y", 3 + 3, 0, 0},
      {"000000000010-20", 11, 0, 20},
      {"10-+20", 0, 10, 20},
  };
  for (const auto &row : kRows) {
    const ExactRun run(row.text);
    int low = 77;
    int high = 77;
    EXPECT_EQ(NUMPInterToLong(run.data(), run.width(), &low, &high), row.status) << row.text;
    EXPECT_EQ(low, row.low) << row.text;
    EXPECT_EQ(high, row.high) << row.text;
  }
}

TEST(NumReadInterval, NoRunHasNoBounds) {
  int low = 77;
  int high = 77;
  EXPECT_EQ(NUMPInterToLong(nullptr, 7, &low, &high), 22);
  EXPECT_EQ(low, 0);
  EXPECT_EQ(high, 0);
  EXPECT_EQ(NUMPInterToLong("10-20", -5, &low, &high), 22);
  EXPECT_EQ(NUMPInterToLong("10-20", INT_MIN, &low, &high), 22);
  EXPECT_EQ(NUMPInterToLong("10-20", 5, nullptr, nullptr), 22);
}

TEST(NumReadReal, ReadsRealsAndPercentages) {
  constexpr struct {
    const char *num;
    int status;
    double value;
  } kRows[] = {
      {"12,5%", 0, 0.125},
      {"12,5 %", 0, 0.125},
      {"12.5", 0, 12.5},
      {" 0012,5", 0, 12.5},
      {"1e2", 0, 100.0},
      {"1e2%", 0, 1.0},
      {"0000000000000012.5%", 0, 0.125},
      {"0000000000000000012", 0, 12.0},
      {"00000000000000000012", 11, 0.0},
      {"0000000000000000012%", 0, 0.12},
      // The sign and the blanks before it do not count for the width.
      {"12,5                      %", 0, 0.125},
      {"", 1, 0.0},
      {"%", 1, 0.0},
      {"-", 2, 0.0},
      {"1x", 3, 0.0},
      {"1.x", 4, 0.0},
      {"1ex", 7, 0.0},
      {"-1", 12, 0.0},
      {"-1%", 12, 0.0},
      // Only as the last character is the sign dropped.
      {"12,5% ", 4, 0.0},
  };
  for (const auto &row : kRows) {
    const ExactRun run(row.num);
    double result = 77.0;
    EXPECT_EQ(NUMDToDouble(run.data(), run.width(), &result), row.status) << row.num;
    EXPECT_EQ(result, row.value) << row.num;
  }
}

// Each of these differs when it is multiplied by 0.01, or divided as a float.
TEST(NumReadReal, PercentagesAreDividedByAHundredExactly) {
  constexpr struct {
    const char *num;
    double value;
  } kRows[] = {
      {"35%", 0.35}, {"41%", 0.41}, {"57 %", 0.57}, {"070%", 0.7}, {"114%", 1.14}, {"166%", 1.66},
  };
  for (const auto &row : kRows) {
    const ExactRun run(row.num);
    double result = 77.0;
    EXPECT_EQ(NUMDToDouble(run.data(), run.width(), &result), 0) << row.num;
    EXPECT_EQ(result, row.value) << row.num;
  }
}

TEST(NumReadReal, WidthOutsideTheWorkingAreaIsRefused) {
  double result = 77.0;
  EXPECT_EQ(NUMDToDouble("12", -1, &result), 11);
  EXPECT_EQ(result, 0.0);
  EXPECT_EQ(NUMDToDouble(nullptr, 2, &result), 11);
  EXPECT_EQ(NUMDToDouble("12", 2, nullptr), 11);
}

// ---- Lists ----

TEST(NumList, CountsItemsThatAreAllRead) {
  constexpr struct {
    const char *list;
    int count;
  } kRows[] = {
      {"1+2,3", 3},
      {"1", 1},
      {"1-2", 2},
      {" 1 , 2 ", 2},
      {"00000000001,2", 2},
      // One item that is not read makes it 0.
      {"1+x", 0},
      {"x+1", 0},
      {"", 0},
      {"+", 0},
      {"1+", 0},
      {"+1", 0},
      {"1,,2", 0},
      {"1;2", 0},
      {"000000000001,2", 0},
      {"2147483648", 0},
      {"\xE9", 0},
  };
  for (const auto &row : kRows) EXPECT_EQ(Teste_NUM_liste(row.list), row.count) << row.list;
  EXPECT_EQ(Teste_NUM_liste(nullptr), 0);
}

TEST(NumList, GivesTheItemAtAnIndex) {
  constexpr struct {
    const char *list;
    int index;
    int value;
  } kRows[] = {
      {"1+2,3", 0, 1},
      {"1+2,3", 1, 2},
      {"1+2,3", 2, 3},
      // Kept: past the last item it is still the last one.
      {"1+2,3", 3, 3},
      {"1+2,3", 7, 3},
      {"1+2,3", INT_MAX, 3},
      {"1+2,3", -1, 0},
      {"1+2,3", INT_MIN, 0},
      // Only the items up to the one asked for are read.
      {"1+x,3", 0, 1},
      {"1+x,3", 1, 0},
      {"1+x,3", 2, 0},
      {"1,2,", 1, 2},
      {"1,2,", 2, 0},
      {"1,2,", 5, 0},
      {"", 0, 0},
      {"", 3, 0},
      {"000000000001", 0, 0},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(Get_NUM_liste(row.list, row.index), row.value) << row.list << " at " << row.index;
  }
  EXPECT_EQ(Get_NUM_liste(nullptr, 0), 0);
}

TEST(NumList, AnItemOfAnyLengthIsRefused) {
  const std::string list = "1," + std::string(100000, '0') + ",2";
  EXPECT_EQ(Teste_NUM_liste(list.c_str()), 0);
  EXPECT_EQ(Get_NUM_liste(list.c_str(), 0), 1);
  EXPECT_EQ(Get_NUM_liste(list.c_str(), 2), 0);
}

}  // namespace
}  // namespace korvel::test
