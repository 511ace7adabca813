// SPDX-License-Identifier: MIT
// The digits of numbers of every length, one at a time and eight at once.
#include "codecs/digits.h"

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/support/poisoned_buffer.h"

namespace korvel::codecs {
namespace {

using korvel::test::PoisonedBuffer;

void expectWritesDigits(std::uint32_t number) {
  const std::string expected = std::to_string(number);
  PoisonedBuffer buffer(kMaxDigits);
  const char *const end = writeDigits(number, buffer.data());
  EXPECT_EQ(std::string_view(buffer.data(), static_cast<std::size_t>(end - buffer.data())),
            expected);
  EXPECT_TRUE(buffer.untouchedFrom(expected.size())) << number;
  EXPECT_TRUE(buffer.guardsIntact()) << number;
  EXPECT_EQ(digitCount(number), static_cast<int>(expected.size())) << number;
}

TEST(Digits, WritesEveryNumberOfUpToFiveDigits) {
  for (std::uint32_t number = 0; number < 100000; ++number) expectWritesDigits(number);
}

TEST(Digits, WritesTheBordersOfEveryLength) {
  for (std::uint64_t power = 1; power <= UINT32_MAX; power *= 10) {
    expectWritesDigits(static_cast<std::uint32_t>(power - 1));
    expectWritesDigits(static_cast<std::uint32_t>(power));
    expectWritesDigits(static_cast<std::uint32_t>(power + 1));
  }
  for (unsigned bit = 0; bit < 32; ++bit) {
    expectWritesDigits((1U << bit) - 1);
    expectWritesDigits(1U << bit);
    expectWritesDigits((1U << bit) + 1);
  }
  expectWritesDigits(UINT32_MAX);
}

TEST(Digits, WritesRandomNumbers) {
  std::mt19937 random(44);
  for (int i = 0; i < 200000; ++i) {
    expectWritesDigits(static_cast<std::uint32_t>(random()) >> random() % 32);
  }
}

TEST(Digits, SplitsAndJoinsEightDigits) {
  std::mt19937 random(45);
  for (int i = 0; i < 200000; ++i) {
    const auto number = static_cast<std::uint32_t>(random() % 100000000);
    const std::uint64_t bytes = splitDigits(number);
    ASSERT_TRUE(areDigitValues(bytes)) << number;
    ASSERT_EQ(joinDigits(bytes), number);
    std::uint32_t rest = number;
    for (unsigned place = 8; place-- > 0; rest /= 10) {
      ASSERT_EQ((bytes >> (8 * place)) & 0xFFU, rest % 10) << number;
    }
  }
}

TEST(Digits, OnlyNineAndBelowAreDigitValues) {
  for (unsigned place = 0; place < 8; ++place) {
    for (std::uint64_t byte = 0; byte < 256; ++byte) {
      const std::uint64_t bytes = 0x0909090909090909U & ~(std::uint64_t{0xFF} << (8 * place));
      EXPECT_EQ(areDigitValues(bytes | byte << (8 * place)), byte < 10) << byte << " at " << place;
    }
  }
}

TEST(Digits, PadsWithZeros) {
  PoisonedBuffer buffer(5);
  writePadded(42, 5, buffer.data());
  EXPECT_EQ(std::string_view(buffer.data(), 5), "00042");
  EXPECT_TRUE(buffer.guardsIntact());
}

}  // namespace
}  // namespace korvel::codecs
