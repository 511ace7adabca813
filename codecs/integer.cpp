// SPDX-License-Identifier: MIT
// Integers to text and back. Short texts are read and written without a branch on their content.
#include "codecs/integer.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <system_error>

#include <korvel/codecs.h>

#include "codecs/digits.h"
#include "codecs/misuse.h"
#include "codecs/status.h"
#include "strings/trim.h"

namespace korvel::codecs {

namespace {

// Twelve characters hold every value with its sign and one leading zero.
constexpr std::size_t kShortText = 12;

__extension__ using Word128 = unsigned __int128;

// Branch-free both ways: signs are random in real data, and a branch would be mispredicted half the
// time.
int signedValue(std::uint32_t magnitude, bool negative) {
  const std::uint32_t flip = 0U - static_cast<std::uint32_t>(negative);
  return static_cast<int>((magnitude ^ flip) - flip);
}

std::uint32_t absolute(int value) {
  const std::uint32_t flip = 0U - static_cast<std::uint32_t>(value < 0);
  return (static_cast<std::uint32_t>(value) ^ flip) - flip;
}

// The two bytes at `at`, or the first two where the text ends before: one character and the
// terminator are two bytes. What is after the end of the text is shifted out later.
std::uint64_t twoBytes(const char *text, std::size_t length, std::size_t at) {
  const std::size_t inside = std::size_t{0} - static_cast<std::size_t>(at < length);
  std::uint16_t bytes = 0;
  std::memcpy(&bytes, text + (at & inside), 2);
  return bytes;
}

// The digit values of a text of 1 to kShortText characters, right-aligned after zeros: the last
// eight and those before. A sign in front counts as a zero.
struct ShortNumber {
  std::uint64_t head;
  std::uint64_t tail;
};

// Only offsets and a shift depend on the length: it varies from field to field, so a branch on it
// would often be mispredicted.
ShortNumber shortNumber(const char *text, std::size_t length, bool hasSign) {
  std::uint64_t first = twoBytes(text, length, 0) | twoBytes(text, length, 2) << 16U |
                        twoBytes(text, length, 4) << 32U | twoBytes(text, length, 6) << 48U;
  const std::uint64_t second = twoBytes(text, length, 8) | twoBytes(text, length, 10) << 16U;
  const std::uint64_t signToZero = static_cast<unsigned char>(text[0]) ^ std::uint64_t{'0'};
  first ^= signToZero & (std::uint64_t{0} - static_cast<std::uint64_t>(hasSign));

  const Word128 digits = Word128{second ^ (kEightZeros >> 32U)} << 64U | (first ^ kEightZeros);
  const Word128 aligned = digits << (8 * (2 * sizeof first - length));
  return {static_cast<std::uint64_t>(aligned), static_cast<std::uint64_t>(aligned >> 64U)};
}

// Reads the plain case: at most kShortText characters, no blanks, within the limit. Returns false
// and changes nothing for any other text.
bool readShort(const char *text, std::uint32_t limit, int *value) {
  const std::size_t length = std::strlen(text);
  if (length - 1 >= kShortText) return false;
  const bool negative = text[0] == '-';
  const bool hasSign = negative | (text[0] == '+');
  const ShortNumber number = shortNumber(text, length, hasSign);
  const bool plain = areDigitValues(number.head) && areDigitValues(number.tail);
  if (!plain || length == static_cast<std::size_t>(hasSign)) return false;
  const std::uint64_t magnitude =
      joinDigits(number.tail) + std::uint64_t{100000000} * joinDigits(number.head);
  if (magnitude > limit) return false;
  *value = signedValue(static_cast<std::uint32_t>(magnitude), negative);
  return true;
}

// Reads any text. A function apart, or the short way in front of it would save registers for it.
[[gnu::noinline]] int readAny(char *text, std::uint32_t limit, int *value) {
  strings::trimBlanks(text);
  if (text[0] == '\0') return kEmpty;
  const char *digits = skipSign(text);
  if (*digits == '\0') return kSignAlone;
  std::uint32_t magnitude = 0;
  const auto [end, error] = std::from_chars(digits, digits + std::strlen(digits), magnitude);
  if (*end != '\0') return kNotDigit;
  if (error != std::errc{} || magnitude > limit) return kTooLarge;
  *value = signedValue(magnitude, text[0] == '-');
  return kRead;
}

// Writes the sign and the digits into a buffer that holds any value. Returns their end.
// Kept: -2147483648 has no positive magnitude, so no digit follows its sign.
char *writeSigned(int value, char *out) {
  constexpr auto kNoMagnitude = static_cast<std::uint32_t>(INT_MIN);
  const bool negative = value < 0;
  *out = '-';
  out += static_cast<int>(negative);
  const std::uint32_t magnitude = absolute(value);
  return magnitude == kNoMagnitude ? out : writeDigits(magnitude, out);
}

// As if the digits were inserted one by one in front: where they do not all fit, the lowest stay.
int writeCut(std::string_view text, char *buffer, int capacity, int safeSize) {
  if (capacity < 1) return kDoesNotFit;
  const std::size_t kept = std::min(text.size(), static_cast<std::size_t>(capacity - 1));
  std::memcpy(buffer, text.end() - kept, kept);
  buffer[kept] = '\0';
  if (kept < text.size()) return kDoesNotFit;
  return capacity < safeSize ? kBelowSafeSize : kWritten;
}

}  // namespace

int readInteger(char *text, std::uint32_t limit, int *value) {
  if (text == nullptr || value == nullptr) return kEmpty;
  if constexpr (kWordsHoldText) {
    if (readShort(text, limit, value)) return kRead;
  }
  return readAny(text, limit, value);
}

int readIntegerFrom(int bound, char *text, std::uint32_t limit, int *value) {
  const int status = readInteger(text, limit, value);
  if (status != kRead) return status;
  return *value < bound ? kBelowBound : kAccepted;
}

int writeInteger(int value, char *buffer, int capacity, int safeSize) {
  if (buffer == nullptr) return kDoesNotFit;
  if (capacity < kIntegerSize) {
    char text[kIntegerSize];
    return writeCut({text, writeSigned(value, text)}, buffer, capacity, safeSize);
  }
  *writeSigned(value, buffer) = '\0';
  return kWritten;
}

}  // namespace korvel::codecs

using namespace korvel::codecs;

int intcod_i(char *text, int *value) {
  lookForMisuse([=] { Call("intcod_i", {text, filled(value)}).needsAll(); });
  return readInteger(text, kLimit16, value);
}

int intcod_l(char *text, int *value) {
  lookForMisuse([=] { Call("intcod_l", {text, filled(value)}).needsAll(); });
  return readInteger(text, kLimit32, value);
}

int intdco_i(int value, char *buffer, int capacity) {
  lookForMisuse([=] {
    needsIntegerRoom(Call("intdco_i", {value, filled(buffer), capacity}), buffer, capacity, value);
  });
  return writeInteger(value, buffer, capacity, kShortSize);
}

int intdco_l(int value, char *buffer, int capacity) {
  lookForMisuse([=] {
    needsIntegerRoom(Call("intdco_l", {value, filled(buffer), capacity}), buffer, capacity, value);
  });
  return writeInteger(value, buffer, capacity);
}

int intcod_i_sup0(char *text, int *value) {
  lookForMisuse([=] { Call("intcod_i_sup0", {text, filled(value)}).needsAll(); });
  return readIntegerFrom(0, text, kLimit16, value);
}

int intcod_i_ssup0(char *text, int *value) {
  lookForMisuse([=] { Call("intcod_i_ssup0", {text, filled(value)}).needsAll(); });
  return readIntegerFrom(1, text, kLimit16, value);
}

int intcod_l_sup0(char *text, int *value) {
  lookForMisuse([=] { Call("intcod_l_sup0", {text, filled(value)}).needsAll(); });
  return readIntegerFrom(0, text, kLimit32, value);
}
