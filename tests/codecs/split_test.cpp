// SPDX-License-Identifier: MIT
// Reals split into integral part and fraction.
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <korvel/codecs.h>

#include "tests/codecs/literal_codecs.h"

namespace korvel::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(SplitDouble, TruncatesTowardZero) {
  constexpr struct {
    double x;
    double integral;
    double fraction;
  } kRows[] = {
      {0.0, 0.0, 0.0},
      {1.75, 1.0, 0.75},
      {-1.75, -1.0, -0.75},
      {0.25, 0.0, 0.25},
      {-0.25, 0.0, -0.25},
      {2147483646.5, 2147483646.0, 0.5},
      // Clamped to 32 bits; the fraction takes the rest.
      {2147483647.0, 2147483647.0, 0.0},
      {2147483647.5, 2147483647.0, 0.5},
      {2147483648.0, 2147483647.0, 1.0},
      {3000000000.0, 2147483647.0, 852516353.0},
      {-2147483647.5, -2147483647.0, -0.5},
      {-2147483648.0, -2147483648.0, 0.0},
      {-2147483648.5, -2147483648.0, -0.5},
      {-2147483649.0, -2147483648.0, -1.0},
      {kInfinity, 2147483647.0, kInfinity},
      {-kInfinity, -2147483648.0, -kInfinity},
  };
  for (const auto &row : kRows) {
    double integral = 5.0;
    double fraction = 5.0;
    utrealds(&row.x, &integral, &fraction);
    EXPECT_EQ(integral, row.integral) << row.x;
    EXPECT_EQ(fraction, row.fraction) << row.x;
  }
}

TEST(SplitDouble, NaNHasNoIntegralPart) {
  double integral = 5.0;
  double fraction = 5.0;
  utrealds(&kNaN, &integral, &fraction);
  EXPECT_EQ(integral, 0.0);
  EXPECT_TRUE(std::isnan(fraction));
}

TEST(SplitDouble, AgreesWithTruncationOnRandomBits) {
  std::mt19937_64 random(54);
  for (int i = 0; i < 200000; ++i) {
    const auto x = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
    if (std::isnan(x)) continue;
    double integral = 5.0;
    double fraction = 5.0;
    utrealds(&x, &integral, &fraction);
    ASSERT_EQ(integral, literalIntegral(x)) << x;
    ASSERT_EQ(fraction, x - integral) << x;
  }
}

TEST(SplitDouble, ResultsMayBeStoredOverTheValue) {
  double x = -7.5;
  double other = 0.0;
  utrealds(&x, &x, &other);
  EXPECT_EQ(x, -7.0);
  EXPECT_EQ(other, -0.5);
  x = 7.5;
  utrealds(&x, &other, &x);
  EXPECT_EQ(other, 7.0);
  EXPECT_EQ(x, 0.5);
}

TEST(SplitSingle, ClearsTheBitsBelowThePoint) {
  constexpr float kInf = std::numeric_limits<float>::infinity();
  constexpr struct {
    float x;
    float integral;
    float fraction;
  } kRows[] = {
      {0.0F, 0.0F, 0.0F},
      {0.75F, 0.0F, 0.75F},
      {-0.75F, 0.0F, -0.75F},
      {1.0F, 1.0F, 0.0F},
      {1.75F, 1.0F, 0.75F},
      {-1.75F, -1.0F, -0.75F},
      {8388607.5F, 8388607.0F, 0.5F},
      // From an exponent of 23 on there are no bits below the point.
      {8388608.0F, 8388608.0F, 0.0F},
      {-16777216.0F, -16777216.0F, 0.0F},
      // No step through 32 bits.
      {3e9F, 3e9F, 0.0F},
      {1e38F, 1e38F, 0.0F},
      {std::numeric_limits<float>::denorm_min(), 0.0F, std::numeric_limits<float>::denorm_min()},
  };
  for (const auto &row : kRows) {
    float integral = 5.0F;
    float fraction = 5.0F;
    utrealfs(&row.x, &integral, &fraction);
    EXPECT_EQ(integral, row.integral) << row.x;
    EXPECT_EQ(fraction, row.fraction) << row.x;
  }
  float integral = 5.0F;
  float fraction = 5.0F;
  utrealfs(&kInf, &integral, &fraction);
  EXPECT_EQ(integral, kInf);
  EXPECT_TRUE(std::isnan(fraction));
}

TEST(SplitSingle, AgreesWithTruncationOnRandomBits) {
  std::mt19937 random(55);
  for (int i = 0; i < 200000; ++i) {
    const auto x = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (!std::isfinite(x)) continue;
    float integral = 5.0F;
    float fraction = 5.0F;
    utrealfs(&x, &integral, &fraction);
    ASSERT_EQ(integral, std::trunc(x)) << x;
    ASSERT_EQ(fraction, x - std::trunc(x)) << x;
  }
}

TEST(Split, NullPointersChangeNothing) {
  double x = 1.5;
  double kept = 9.0;
  utrealds(nullptr, &kept, &kept);
  utrealds(&x, nullptr, &kept);
  utrealds(&x, &kept, nullptr);
  EXPECT_EQ(kept, 9.0);
  float single = 1.5F;
  float keptSingle = 9.0F;
  utrealfs(nullptr, &keptSingle, &keptSingle);
  utrealfs(&single, nullptr, &keptSingle);
  utrealfs(&single, &keptSingle, nullptr);
  EXPECT_EQ(keptSingle, 9.0F);
}

}  // namespace
}  // namespace korvel::test
