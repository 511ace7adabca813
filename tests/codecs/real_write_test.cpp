// SPDX-License-Identifier: MIT
// Reals written with fixed decimals and with significant digits, beside the literal writers.
#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <korvel/codecs.h>

#include "tests/codecs/literal_codecs.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();
constexpr double kHuge = std::numeric_limits<double>::max();

using Writer = int (*)(double, char *, int, int);

void expectWrites(Writer writer, double value, int capacity, int digits, const Writing &expected) {
  const auto row = [&] {
    return ::testing::Message() << value << " with " << digits << " into " << capacity;
  };
  PoisonedBuffer buffer(static_cast<std::size_t>(std::max(capacity, 0)));
  ASSERT_EQ(writer(value, buffer.data(), capacity, digits), expected.status) << row();
  ASSERT_TRUE(buffer.guardsIntact()) << row();
  if (capacity < 1) return;
  ASSERT_EQ(buffer.text(), expected.text) << row();
}

struct Row {
  double value;
  int digits;
  const char *text;
};

// ---- Fixed decimals ----

TEST(RealWriteFixed, WritesFixedDecimals) {
  constexpr Row kRows[] = {
      {0.0, 2, "0.00"},
      {-0.0, 2, "0.00"},
      {1.0, 0, "1"},
      {-1.0, 0, "-1"},
      {12.5, 1, "12.5"},
      {12.5, 4, "12.5000"},
      {0.05, 2, "0.05"},
      {100.0, 3, "100.000"},
      {123456.789, 3, "123456.789"},
      {-123456.789, 3, "-123456.789"},
      // Half away from zero at the last decimal.
      {1.25, 1, "1.3"},
      {-1.25, 1, "-1.3"},
      {-1.005, 0, "-1"},
      {0.5, 0, "1"},
      {-0.5, 0, "-1"},
      {2.5, 0, "3"},
      {0.995, 1, "1.0"},
      {9.999, 2, "10.00"},
      {999.9996, 3, "1000.000"},
      // A value that rounds to zero keeps its sign.
      {-0.4, 0, "-0"},
      {-0.004, 2, "-0.00"},
      {-kTiny, 2, "-0.00"},
      {0.4, 0, "0"},
      // Kept: a negative number of decimals writes a lone point.
      {12.7, -1, "13."},
      {-0.2, -5, "-0."},
      {0.0, INT_MIN, "0."},
      // Decimals up to and past the precision of a double.
      {0.1, 10, "0.1000000000"},
      {1.0 / 3.0, 12, "0.333333333333"},
      {1.0 / 3.0, 15, "0.333333333333333"},
      {2.0 / 3.0, 15, "0.666666666666667"},
      {3.14159265358979, 14, "3.14159265358979"},
      {0.5, 22, "0.5000000000000000000000"},
      {0.0, 25, "0.0000000000000000000000000"},
  };
  for (const Row &row : kRows) {
    expectWrites(realdco_d, row.value, 64, row.digits, {0, row.text});
    expectWrites(realdco_d, row.value, 64, row.digits,
                 literalWriteFixed(row.value, 64, row.digits));
  }
}

TEST(RealWriteFixed, StatusReportsACapacityBelowTheSafeSize) {
  expectWrites(realdco_d, 0.0, 32, 2, {0, "0.00"});
  expectWrites(realdco_d, 0.0, 21, 2, {0, "0.00"});
  expectWrites(realdco_d, 0.0, 20, 2, {1, "0.00"});
  expectWrites(realdco_d, 0.0, 5, 2, {1, "0.00"});
  expectWrites(realdco_d, 0.0, 4, 2, {2, "0.0"});
}

TEST(RealWriteFixed, WhatDoesNotFitLeavesAPartialText) {
  // The lowest digits of the integral part.
  expectWrites(realdco_d, 12345.0, 4, 2, {2, "345"});
  // All of them, but no point.
  expectWrites(realdco_d, 12345.0, 6, 2, {2, "12345"});
  // The point and the lowest decimals.
  expectWrites(realdco_d, 1.25, 3, 2, {2, "1."});
  expectWrites(realdco_d, 1.25, 4, 2, {2, "1.5"});
  // Everything but the sign.
  expectWrites(realdco_d, -1.25, 5, 2, {2, "1.25"});
  expectWrites(realdco_d, -1.25, 6, 2, {1, "-1.25"});
  expectWrites(realdco_d, 0.25, 1, 2, {2, ""});
}

TEST(RealWriteFixed, IntegralPartStopsAtThirtyTwoBits) {
  expectWrites(realdco_d, 2147483647.0, 32, 0, {0, "2147483647"});
  expectWrites(realdco_d, 2147483647.25, 32, 2, {0, "2147483647.25"});
  expectWrites(realdco_d, -2147483647.25, 32, 2, {0, "-2147483647.25"});
  expectWrites(realdco_d, 3000000000.0, 32, 0, {0, "2147483647"});
  expectWrites(realdco_d, -3000000000.0, 32, 0, {0, "-2147483648"});
  // Rounding up comes before the bound.
  expectWrites(realdco_d, 2147483647.5, 32, 0, {0, "2147483647"});
  expectWrites(realdco_d, 1e300, 32, 2, literalWriteFixed(1e300, 32, 2));
}

TEST(RealWriteFixed, InfinitiesAndNaNGiveABoundedText) {
  expectWrites(realdco_d, kInfinity, 32, 2, {0, "2147483647.00"});
  expectWrites(realdco_d, -kInfinity, 32, 2, {0, "-2147483648.00"});
  expectWrites(realdco_d, kHuge, 32, 2, {0, "2147483647.00"});
  expectWrites(realdco_d, kNaN, 32, 2, {0, "0.00"});
  expectWrites(realdco_d, -kNaN, 32, 0, {0, "0"});
}

TEST(RealWriteFixed, DecimalsPastTheLargestPowerAreZeros) {
  const std::string zeros(92, '0');
  for (const double value : {0.5, 0.1, 1e-300, kTiny}) {
    const Writing whole = literalWriteFixed(value, 500, 400);
    ASSERT_EQ(whole.text.size(), 402U);
    EXPECT_EQ(whole.text.substr(402 - zeros.size()), zeros);
    expectWrites(realdco_d, value, 500, 400, whole);
    expectWrites(realdco_d, value, 403, 400, whole);
    expectWrites(realdco_d, value, 402, 400, literalWriteFixed(value, 402, 400));
    expectWrites(realdco_d, -value, 403, 400, {2, whole.text});
  }
  expectWrites(realdco_d, 0.5, 10, INT_MAX, {2, "0.0000000"});
  expectWrites(realdco_d, kNaN, 500, 400, {0, std::string("0.").append(400, '0')});
  expectWrites(realdco_d, kInfinity, 500, 400, {0, std::string("2147483647.").append(400, '0')});
}

TEST(RealWriteFixed, NoCapacityIsNeverWritten) {
  for (const int capacity : {0, -1, INT_MIN}) {
    for (const double value : {0.0, 1.5, -1.5, kInfinity, kNaN}) {
      expectWrites(realdco_d, value, capacity, 2, {2, ""});
      expectWrites(realdco_sd, value, capacity, 2, {2, ""});
    }
  }
  EXPECT_EQ(realdco_d(1.0, nullptr, 32, 2), 2);
  EXPECT_EQ(realdco_sd(1.0, nullptr, 32, 2), 2);
}

TEST(RealWriteFixed, NothingBehindTheTerminatorIsTouched) {
  for (const double value : {0.0, -3.25, 12345678.5, -2147483647.99}) {
    for (int decimals = 0; decimals <= 8; ++decimals) {
      PoisonedBuffer buffer(40);
      ASSERT_EQ(realdco_d(value, buffer.data(), 40, decimals), 0);
      EXPECT_TRUE(buffer.untouchedFrom(buffer.text().size() + 1)) << value << ", " << decimals;
    }
  }
}

// Doubles of any bits, and everyday numbers.
double randomReal(std::mt19937_64 &random) {
  if (random() % 4 == 0) return std::bit_cast<double>(static_cast<std::uint64_t>(random()));
  double bound = 1.0;
  for (std::uint64_t more = random() % 12; more > 0; --more) bound *= 10.0;
  const double magnitude = bound * static_cast<double>(random() >> 11U) / 9007199254740992.0;
  return random() % 2 == 0 ? magnitude : -magnitude;
}

TEST(RealWriteFixed, AgreesWithTheLiteralWriterAtEveryCapacity) {
  std::mt19937_64 random(50);
  for (int i = 0; i < 2000; ++i) {
    const double value = randomReal(random);
    const int decimals = static_cast<int>(random() % 22) - 2;
    for (int capacity = -1; capacity <= 40; ++capacity) {
      expectWrites(realdco_d, value, capacity, decimals,
                   literalWriteFixed(value, capacity, decimals));
      if (HasFatalFailure()) return;
    }
  }
}

TEST(RealWriteFixed, AgreesWithTheLiteralWriterOnRandomReals) {
  std::mt19937_64 random(51);
  for (int i = 0; i < 300000; ++i) {
    const double value = randomReal(random);
    const int decimals = static_cast<int>(random() % 12);
    expectWrites(realdco_d, value, 64, decimals, literalWriteFixed(value, 64, decimals));
    if (HasFatalFailure()) return;
  }
}

TEST(RealWriteFixed, AgreesWithTheLiteralWriterOnHalves) {
  // Values next to those where the last decimal changes.
  for (int decimals = 0; decimals <= 9; ++decimals) {
    const double scale = std::pow(10.0, decimals);
    for (int i = 0; i < 2000; ++i) {
      for (const double half : {(i + 0.5) / scale, (i * 7919 + 0.5) / scale, 1.0 - 0.5 / scale}) {
        for (const double value : {half, std::nextafter(half, 0.0), std::nextafter(half, 1e9)}) {
          expectWrites(realdco_d, value, 64, decimals, literalWriteFixed(value, 64, decimals));
          expectWrites(realdco_d, -value, 64, decimals, literalWriteFixed(-value, 64, decimals));
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST(RealWriteFixed, AgreesWithTheLiteralWriterOnManyDecimals) {
  std::mt19937_64 random(52);
  for (int i = 0; i < 1000; ++i) {
    const double value = randomReal(random);
    const int decimals = static_cast<int>(random() % 330);
    const int capacity = static_cast<int>(random() % 360);
    expectWrites(realdco_d, value, capacity, decimals,
                 literalWriteFixed(value, capacity, decimals));
    if (HasFatalFailure()) return;
  }
}

// ---- Significant digits ----

TEST(RealWriteSignificant, WritesSignificantDigitsTruncated) {
  constexpr Row kRows[] = {
      {0.0, 3, "0"},
      {-0.0, 3, "0"},
      {1.0, 0, "1."},
      {5.0, 0, "5."},
      {-5.0, 0, "-5."},
      {5.0, 2, "5.00"},
      {1234.5, 3, "1.234e3"},
      {1234.5, 5, "1.23450e3"},
      {-1234.5, 3, "-1.234e3"},
      {1999.9, 1, "1.9e3"},
      {0.05, 0, "5.e-2"},
      {0.5, 0, "5.e-1"},
      {0.0012345, 2, "1.23e-3"},
      {-0.0012345, 2, "-1.23e-3"},
      {10.0, 1, "1.0e1"},
      {2147483647.0, 9, "2.147483647e9"},
      // Kept: without any budget each digit of the integral part replaces the one before it, and
      // one stays. A fraction has no digit.
      {1234.5, -1, "1.e3"},
      {1234.5, INT_MIN, "1.e3"},
      {7.0, -3, "7."},
      {0.5, -1, ".e-1"},
      {-0.5, -1, "-.e-1"},
  };
  for (const Row &row : kRows) {
    expectWrites(realdco_sd, row.value, 64, row.digits, {0, row.text});
    expectWrites(realdco_sd, row.value, 64, row.digits,
                 literalWriteSignificant(row.value, 64, row.digits));
  }
}

TEST(RealWriteSignificant, NeverReportsASmallCapacity) {
  expectWrites(realdco_sd, 5.0, 3, 0, {0, "5."});
  expectWrites(realdco_sd, 0.0, 2, 9, {0, "0"});
  expectWrites(realdco_sd, 0.0, 1, 9, {2, ""});
}

TEST(RealWriteSignificant, WhatDoesNotFitLeavesAPartialText) {
  expectWrites(realdco_sd, 1234.5, 3, 5, {2, "34"});
  expectWrites(realdco_sd, 1234.5, 5, 3, {2, "1234"});
  expectWrites(realdco_sd, 1234.5, 6, 3, {2, "1.234"});
  expectWrites(realdco_sd, -1234.5, 6, 3, {2, "1.234"});
  // Kept: an exponent that does not fit is cut without a word. It may even be left out.
  expectWrites(realdco_sd, 1234.5, 7, 3, {0, "1.234e"});
  expectWrites(realdco_sd, 1234.5, 8, 3, {0, "1.234e3"});
  expectWrites(realdco_sd, 1234567890.0, 5, 0, {0, "1.e9"});
  expectWrites(realdco_sd, 1e-12, 5, 0, {0, "9.e3"});
}

TEST(RealWriteSignificant, BoundedForInfinitiesAndNaN) {
  expectWrites(realdco_sd, kNaN, 32, 3, {0, "0"});
  expectWrites(realdco_sd, kInfinity, 32, 3, {0, "2.147e9"});
  expectWrites(realdco_sd, -kInfinity, 32, 3, {0, "-2.147e9"});
  expectWrites(realdco_sd, kInfinity, 32, 12, {0, "2.147483647999e9"});
  expectWrites(realdco_sd, -kHuge, 32, 12, {0, "-2.147483648999e9"});
  expectWrites(realdco_sd, 3000000000.0, 32, 3, {0, "2.147e9"});
  expectWrites(realdco_sd, kTiny, 32, 0, literalWriteSignificant(kTiny, 32, 0));
  expectWrites(realdco_sd, 1.5, 12, INT_MAX, {2, "15000000000"});
}

TEST(RealWriteSignificant, EveryDigitAboveTheBoundIsNine) {
  constexpr Row kRows[] = {
      // Less than 1 above the bound is exact.
      {2147483647.5, 12, "2.147483647500e9"},
      {-2147483648.5, 12, "-2.147483648500e9"},
      // From 1 above the bound on, all digits are nines.
      {2147483648.0, 12, "2.147483647999e9"},
      {2147483648.5, 12, "2.147483647999e9"},
      {2147483657.25, 12, "2.147483647999e9"},
      {-2147483649.0, 12, "-2.147483648999e9"},
      {-2147483649.5, 12, "-2.147483648999e9"},
      {3000000000.0, 20, "2.14748364799999999999e9"},
  };
  for (const Row &row : kRows) {
    expectWrites(realdco_sd, row.value, 64, row.digits, {0, row.text});
    expectWrites(realdco_sd, row.value, 64, row.digits,
                 literalWriteSignificant(row.value, 64, row.digits));
  }
}

TEST(RealWriteSignificant, AgreesWithTheLiteralWriterAtEveryCapacity) {
  std::mt19937_64 random(53);
  for (int i = 0; i < 3000; ++i) {
    const double value = randomReal(random);
    const int digits = static_cast<int>(random() % 20) - 2;
    for (int capacity = -1; capacity <= 32; ++capacity) {
      expectWrites(realdco_sd, value, capacity, digits,
                   literalWriteSignificant(value, capacity, digits));
      if (HasFatalFailure()) return;
    }
  }
}

}  // namespace
}  // namespace korvel::test
