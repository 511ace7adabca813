// SPDX-License-Identifier: MIT
// For codecs/: decimal digits, one at a time and eight at once. Reals are written fast because
// their digits are.
//
// Eight digits in a 64-bit word are in little-endian order: the first digit in the lowest byte.
#ifndef KORVEL_CODECS_DIGITS_H
#define KORVEL_CODECS_DIGITS_H

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace korvel::codecs {

inline constexpr bool kWordsHoldText = std::endian::native == std::endian::little;
inline constexpr std::uint64_t kEightZeros = 0x3030303030303030U;  // "00000000"
inline constexpr int kMaxDigits = 10;                              // of a 32-bit magnitude

// 0 to 9 for a digit, more for any other character. Independent of the locale.
inline unsigned digitValue(char c) { return static_cast<unsigned>(c - '0'); }
inline bool isDigit(char c) { return digitValue(c) < 10; }

inline bool areDigits(const char *begin, const char *end) {
  return std::all_of(begin, end, isDigit);
}

inline const char *skipSign(const char *p) { return *p == '+' || *p == '-' ? p + 1 : p; }

// True when every byte is 0 to 9: its high bit is clear, and stays clear when 0x76 is added.
inline bool areDigitValues(std::uint64_t bytes) {
  return ((bytes | (bytes + 0x7676767676767676U)) & 0x8080808080808080U) == 0;
}

// The number whose digits are the eight bytes, each 0 to 9.
inline std::uint32_t joinDigits(std::uint64_t bytes) {
  constexpr std::uint64_t kOddPairs = 0x000000FF000000FFU;
  const std::uint64_t pairs = bytes * 10 + (bytes >> 8U);  // in bytes 0, 2, 4 and 6
  const std::uint64_t high = (pairs & kOddPairs) * (100 + (std::uint64_t{1000000} << 32U));
  const std::uint64_t low = ((pairs >> 16U) & kOddPairs) * (1 + (std::uint64_t{10000} << 32U));
  return static_cast<std::uint32_t>((high + low) >> 32U);
}

// The eight digits of a number below 100000000, with leading zeros, each a byte 0 to 9. The number
// is split three times: into two of four digits, four of two, eight of one. The divisions by 100
// and 10 are multiplications that are exact in that range.
inline std::uint64_t splitDigits(std::uint32_t number) {
  const std::uint64_t fours = number / 10000 | std::uint64_t{number % 10000} << 32U;
  const std::uint64_t hundreds = ((fours * 10486) >> 20U) & 0x0000007F0000007FU;
  const std::uint64_t twos = (fours - 100 * hundreds) << 16U | hundreds;
  const std::uint64_t tens = ((twos * 103) >> 10U) & 0x000F000F000F000FU;
  return (twos - 10 * tens) << 8U | tens;
}

// For a number n of b bits the upper half of kDigitCounts[b] + n is the digit count of n. Where a
// power of ten lies in that range, the lower half carries exactly when n reaches it.
inline constexpr auto kDigitCounts = [] {
  std::array<std::uint64_t, 33> table{};  // 0 counts as a number of one bit
  std::uint64_t digits = 1;
  std::uint64_t power = 10;  // the least number with more digits
  for (unsigned bits = 1; bits <= 32; ++bits) {
    table[bits] = digits << 32U;
    if (power >= std::uint64_t{1} << bits) continue;
    table[bits] = (++digits << 32U) - power;
    power *= 10;
  }
  return table;
}();

// How many digits the number has; 0 has one.
inline int digitCount(std::uint32_t number) {
  const auto bits = static_cast<std::size_t>(std::bit_width(number | 1U));
  return static_cast<int>((number + kDigitCounts[bits]) >> 32U);
}

// Writes the digits of the number, without a terminator. Returns their end.
inline char *writeDigits(std::uint32_t number, char *out) {
  const int count = digitCount(number);
  char *const end = out + count;
  if constexpr (!kWordsHoldText) {
    for (char *p = end; p != out; number /= 10) *--p = static_cast<char>('0' + number % 10);
    return end;
  }
  // Two words that overlap in the middle hold any count without a loop.
  const std::uint64_t last = splitDigits(number % 100000000) | kEightZeros;
  if (count >= 8) {
    const std::uint32_t first = number / 100000000;
    const std::uint32_t pair = ('0' + first / 10) | ('0' + first % 10) << 8U;
    const std::uint64_t head = (pair | last << 16U) >> (8U * static_cast<unsigned>(10 - count));
    const auto headPair = static_cast<std::uint16_t>(head);
    std::memcpy(out, &headPair, 2);
    std::memcpy(end - 8, &last, 8);
  } else if (count >= 4) {
    const auto head = static_cast<std::uint32_t>(last >> (8U * static_cast<unsigned>(8 - count)));
    const auto tail = static_cast<std::uint32_t>(last >> 32U);
    std::memcpy(out, &head, 4);
    std::memcpy(end - 4, &tail, 4);
  } else {
    const std::uint64_t text = last >> (8U * static_cast<unsigned>(8 - count));
    const int middle = count / 2;
    out[0] = static_cast<char>(text);
    out[middle] = static_cast<char>(text >> (8U * static_cast<unsigned>(middle)));
    end[-1] = static_cast<char>(last >> 56U);
  }
  return end;
}

// Writes the lowest `count` digits of a number, with leading zeros.
inline void writePadded(std::uint32_t number, int count, char *out) {
  for (char *p = out + count; p != out; number /= 10) *--p = static_cast<char>('0' + number % 10);
}

}  // namespace korvel::codecs

#endif
