// Integers to text and back.
#include "codecs/integer.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <korvel/codecs.h>
#include <korvel/strings.h>

#include "codecs/digits.h"
#include "codecs/status.h"

namespace korvel::codecs {

namespace {

// Twelve characters hold every value with its sign and one leading zero.
constexpr std::size_t kShortText = 12;

__extension__ using Word128 = unsigned __int128;

// Both ways by arithmetic instead of a branch: a sign is foretold no better than by tossing a coin.
int signedValue(std::uint32_t magnitude, bool negative) {
  const std::uint32_t flip = 0U - static_cast<std::uint32_t>(negative);
  return static_cast<int>((magnitude ^ flip) - flip);
}

std::uint32_t absolute(int value) {
  const std::uint32_t flip = 0U - static_cast<std::uint32_t>(value < 0);
  return (static_cast<std::uint32_t>(value) ^ flip) - flip;
}

// The two bytes at `at`, or the first two when the text ends before: a text of at least one
// character has two with its terminator, and what is behind its end is shifted out later.
std::uint64_t twoBytes(const char *text, std::size_t length, std::size_t at) {
  const std::size_t inside = std::size_t{0} - static_cast<std::size_t>(at < length);
  std::uint16_t bytes = 0;
  std::memcpy(&bytes, text + (at & inside), 2);
  return bytes;
}

// The digit values of a text of 1 to kShortText characters, right-aligned behind zeros: the last
// eight and those before. A sign in front counts as a zero.
struct ShortNumber {
  std::uint64_t head;
  std::uint64_t tail;
};

// The length decides nothing but offsets and a shift count: it changes from one field to the next,
// and a branch on it would be foretold wrong too often.
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
// with nothing done for every other text.
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

// Reads any text. The magnitude is summed in whole numbers: from kMaxDigits + 1 significant digits
// on it is above every limit, whatever the rest.
int readAny(char *text, std::uint32_t limit, int *value) {
  chelibl_f(text);
  chelibl_d(text);
  if (text[0] == '\0') return kEmpty;
  const char *digits = skipSign(text);
  if (*digits == '\0') return kSignAlone;
  const char *const end = digits + std::strlen(digits);
  if (!areDigits(digits, end)) return kNotDigit;
  while (*digits == '0') ++digits;
  if (end - digits > kMaxDigits) return kTooLarge;
  std::uint64_t magnitude = 0;
  for (; digits != end; ++digits) magnitude = 10 * magnitude + digitValue(*digits);
  if (magnitude > limit) return kTooLarge;
  *value = signedValue(static_cast<std::uint32_t>(magnitude), text[0] == '-');
  return kRead;
}

// Writes `-` and the digits into room for any value. Kept: -2147483648 has no positive magnitude,
// so no digit follows its sign.
char *writeSigned(int value, char *out) {
  constexpr auto kNoMagnitude = static_cast<std::uint32_t>(INT_MIN);
  const bool negative = value < 0;
  *out = '-';
  out += static_cast<int>(negative);
  const std::uint32_t magnitude = absolute(value);
  return magnitude == kNoMagnitude ? out : writeDigits(magnitude, out);
}

// What digits inserted one by one in front leave in a buffer that does not hold them all: the
// lowest ones.
void keepLowest(const char *text, int length, char *buffer, int capacity) {
  const int room = capacity - 1;
  std::memcpy(buffer, text + length - room, static_cast<std::size_t>(room));
  buffer[room] = '\0';
}

int writeCut(int value, char *buffer, int capacity) {
  char text[kIntegerSize];
  const int length = static_cast<int>(writeSigned(value, text) - text);
  if (capacity < 1) return kDoesNotFit;
  if (length >= capacity) {
    keepLowest(text, length, buffer, capacity);
    return kDoesNotFit;
  }
  std::memcpy(buffer, text, static_cast<std::size_t>(length));
  buffer[length] = '\0';
  return kBelowSafeSize;
}

}  // namespace

int readInteger(char *text, std::uint32_t limit, int *value) {
  if constexpr (kWordsHoldText) {
    if (readShort(text, limit, value)) return kRead;
  }
  return readAny(text, limit, value);
}

int writeInteger(int value, char *buffer, int capacity, int safeSize) {
  if (capacity < kIntegerSize) {
    const int status = writeCut(value, buffer, capacity);
    return status == kBelowSafeSize && capacity >= safeSize ? kWritten : status;
  }
  *writeSigned(value, buffer) = '\0';
  return kWritten;
}

}  // namespace korvel::codecs

namespace {

using namespace korvel::codecs;

// The widest text of 16 bits, "-32768", with its terminator.
constexpr int kSafeSize16 = 7;

int acceptFrom(int bound, int status, const int *value) {
  if (status != kRead) return status;
  return *value < bound ? kBelowBound : kAccepted;
}

}  // namespace

int intcod_i(char *text, int *value) {
  if (text == nullptr || value == nullptr) return kEmpty;
  return readInteger(text, kLimit16, value);
}

int intcod_l(char *text, int *value) {
  if (text == nullptr || value == nullptr) return kEmpty;
  return readInteger(text, kLimit32, value);
}

int intdco_i(int value, char *buffer, int capacity) {
  if (buffer == nullptr) return kDoesNotFit;
  return writeInteger(value, buffer, capacity, kSafeSize16);
}

int intdco_l(int value, char *buffer, int capacity) {
  if (buffer == nullptr) return kDoesNotFit;
  return writeInteger(value, buffer, capacity, kIntegerSize);
}

int intcod_i_sup0(char *text, int *value) { return acceptFrom(0, intcod_i(text, value), value); }

int intcod_i_ssup0(char *text, int *value) { return acceptFrom(1, intcod_i(text, value), value); }

int intcod_l_sup0(char *text, int *value) { return acceptFrom(0, intcod_l(text, value), value); }
