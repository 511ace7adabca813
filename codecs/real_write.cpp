// SPDX-License-Identifier: MIT
// Reals to texts: fixed decimals, and significant digits with an exponent.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <korvel/codecs.h>

#include "codecs/digits.h"
#include "codecs/integer.h"
#include "codecs/misuse.h"
#include "codecs/real.h"
#include "codecs/split.h"
#include "codecs/status.h"

namespace korvel::codecs {

namespace {

// Up to this capacity the status says that not every value fits.
constexpr int kUnsafeSize = 20;

int status(int capacity) { return capacity <= kUnsafeSize ? kBelowSafeSize : kWritten; }

// ---- A buffer that is filled within its capacity ----

class BoundedText {
 public:
  // `capacity` is at least 1. The text is empty and terminated at once.
  BoundedText(char *buffer, int capacity) : buffer_(buffer), room_(capacity - 1) { end(); }

  int length() const { return length_; }
  int room() const { return room_ - length_; }

  bool append(char c) { return insert(c, length_); }
  // `count` is at most room().
  void append(const char *bytes, int count) {
    std::memcpy(buffer_ + length_, bytes, static_cast<std::size_t>(count));
    length_ += count;
    end();
  }
  bool insert(char c, int at) {
    if (room() < 1) return false;
    std::memmove(buffer_ + at + 1, buffer_ + at, static_cast<std::size_t>(length_ - at));
    buffer_[at] = c;
    ++length_;
    end();
    return true;
  }

 private:
  void end() { buffer_[length_] = '\0'; }

  char *buffer_;
  int room_;
  int length_ = 0;
};

// The digits of a magnitude of at most 2147483648, without any for 0.
struct IntegralDigits {
  char bytes[kMaxDigits];
  int count;
};

IntegralDigits integralDigits(double magnitude) {
  IntegralDigits digits{};
  if (magnitude >= 1.0) {
    digits.count = static_cast<int>(
        writeDigits(static_cast<std::uint32_t>(magnitude), digits.bytes) - digits.bytes);
  }
  return digits;
}

// As if the digits were inserted one by one in front: where they do not all fit, the lowest stay.
bool appendOrKeepLowest(BoundedText &text, const char *digits, int count) {
  const int kept = std::min(count, text.room());
  text.append(digits + count - kept, kept);
  return kept == count;
}

// ---- Fixed decimals ----

constexpr double kIntegralBound = 2147483648.0;

// So many decimals are a number of 32 bits.
constexpr int kShortDecimals = 8;

// Room for the sign, the integral part, the point and the terminator, without the decimals.
constexpr int kRoomButDecimals = kMaxDigits + 3;

// The largest power of ten that a double holds is 10^kMaxPower.
constexpr int kMaxPower = 308;

// 10^n by n multiplications, infinite above kMaxPower; 1 for n below 1.
constexpr double tenTo(int n) {
  double power = 1.0;
  for (int i = 0; i < std::min(n, kMaxPower + 1); ++i) power *= 10.0;
  return power;
}

struct Rounding {
  double scale;
  double half;  // of the last decimal
};

constexpr Rounding roundingTo(int decimals) {
  const double scale = tenTo(decimals);
  return {scale, 0.5 / scale};
}

constexpr auto kShortRounding = [] {
  std::array<Rounding, kShortDecimals + 1> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = roundingTo(static_cast<int>(i));
  return table;
}();

// Half away from zero; -0.0 is not below zero. Branch-free: a branch on the sign would be
// mispredicted half the time.
double rounded(double x, double half) {
  const double summands[] = {half, -half};
  return x + summands[static_cast<int>(x < 0.0)];
}

// Writes the plain case: few decimals, a magnitude within the bounds, room for all of it. Returns
// false and changes nothing in any other case.
bool writePlain(double x, char *buffer, int capacity, int decimals) {
  if (decimals < 0 || decimals > kShortDecimals || capacity < kRoomButDecimals + decimals) {
    return false;
  }
  const Rounding rounding = kShortRounding[static_cast<std::size_t>(decimals)];
  const double value = rounded(x, rounding.half);
  const double magnitude = std::fabs(value);
  if (!(magnitude < kIntegralBound)) return false;

  *buffer = '-';
  char *out = buffer + static_cast<int>(value < 0.0);
  const auto integral = static_cast<std::uint32_t>(magnitude);
  out = writeDigits(integral, out);
  if (decimals > 0) {
    // The fraction is at most 1 - 2^-53. Times a power of ten it is still rounded to less than the
    // power: there is no carry.
    const double fraction = magnitude - static_cast<double>(integral);
    *out++ = '.';
    writePadded(static_cast<std::uint32_t>(fraction * rounding.scale), decimals, out);
    out += decimals;
  }
  *out = '\0';
  return true;
}

// The decimals are the lowest digits of fraction x scale, truncated; where they do not all fit, the
// lowest stay. Decimals past the largest power of ten are zeros.
bool appendDecimals(BoundedText &text, double fraction, int decimals) {
  const int places = std::min(decimals, kMaxPower);
  const int zeros = decimals - places;
  const double scaled = fraction * tenTo(places);
  const double whole = std::isfinite(scaled) ? std::trunc(scaled) : 0.0;
  char digits[kMaxPower + 2];
  const int count = std::snprintf(digits, sizeof digits, "%0*.0f", places, whole);
  const int kept = std::min(decimals, text.room());
  for (int i = kept; i > 0; --i) text.append(i > zeros ? digits[count + zeros - i] : '0');
  return kept == decimals;
}

int writeFixed(double x, char *buffer, int capacity, int decimals) {
  if (capacity < 1) return kDoesNotFit;
  const double value = rounded(std::isnan(x) ? 0.0 : x, roundingTo(decimals).half);
  const double integral = integralPart(value);
  const IntegralDigits digits = integralDigits(std::fabs(integral));

  BoundedText text(buffer, capacity);
  if (digits.count == 0 && !text.append('0')) return kDoesNotFit;
  if (!appendOrKeepLowest(text, digits.bytes, digits.count)) return kDoesNotFit;
  // Kept: a negative number of decimals writes a lone point.
  if (decimals != 0 && !text.append('.')) return kDoesNotFit;
  if (decimals > 0 && !appendDecimals(text, std::fabs(value - integral), decimals)) {
    return kDoesNotFit;
  }
  if (value < 0.0 && !text.insert('-', 0)) return kDoesNotFit;
  return status(capacity);
}

// ---- Significant digits ----

// Takes the next digit off a fraction. A fraction of 1 and above, which an integral part at its
// bound leaves, has only digits 9: the rest of it stays above 1.
char nextDigit(double &fraction) {
  fraction *= 10.0;
  const double digit = std::min(integralPart(fraction), 9.0);
  fraction -= digit;
  return static_cast<char>('0' + static_cast<int>(digit));
}

// Moves a fraction above 0 to its first significant digit. Returns the number of zeros skipped.
int skipLeadingZeros(double &fraction) {
  int zeros = 0;
  for (; fraction * 10.0 < 1.0; ++zeros) fraction *= 10.0;
  return zeros;
}

bool appendDigits(BoundedText &text, double fraction, std::int64_t count) {
  for (; count > 0; --count) {
    if (!text.append(nextDigit(fraction))) return false;
  }
  return true;
}

int writeSignificant(double x, char *buffer, int capacity, int extraDigits) {
  if (capacity < 1) return kDoesNotFit;
  BoundedText text(buffer, capacity);
  if (x == 0.0 || std::isnan(x)) return text.append('0') ? kWritten : kDoesNotFit;

  const double integral = integralPart(x);
  const IntegralDigits digits = integralDigits(std::fabs(integral));
  const std::int64_t budget = std::max<std::int64_t>(std::int64_t{extraDigits} + 1, 0);
  // Kept: without any budget each digit of the integral part replaces the one before it, and one
  // stays.
  const auto kept =
      static_cast<int>(std::min<std::int64_t>(digits.count, std::max<std::int64_t>(budget, 1)));
  if (kept > text.room()) {
    appendOrKeepLowest(text, digits.bytes, digits.count);
    return kDoesNotFit;
  }
  text.append(digits.bytes, kept);

  double fraction = std::fabs(x - integral);
  const bool startsInFraction = digits.count == 0 && budget > 0;
  const int place = startsInFraction ? -skipLeadingZeros(fraction) : digits.count;
  if (!appendDigits(text, fraction, budget - digits.count)) return kDoesNotFit;
  if (!text.insert('.', std::min(text.length(), 1))) return kDoesNotFit;
  if (x < 0.0 && !text.insert('-', 0)) return kDoesNotFit;
  if (place == 1) return kWritten;
  if (!text.append('e')) return kDoesNotFit;
  // Kept: an exponent that does not fit is cut without a word.
  writeInteger(place - 1, buffer + text.length(), text.room() + 1, kIntegerSize);
  return kWritten;
}

// How many bytes the number needs.
int neededFor(double x, int extraDigits) {
  char text[512];
  writeSignificant(x, text, sizeof text, extraDigits);
  return static_cast<int>(std::strlen(text)) + 1;
}

}  // namespace

int writeReal(double value, char *buffer, int capacity, int decimals) {
  if (buffer == nullptr) return kDoesNotFit;
  return writePlain(value, buffer, capacity, decimals)
             ? status(capacity)
             : writeFixed(value, buffer, capacity, decimals);
}

}  // namespace korvel::codecs

using namespace korvel::codecs;

int realdco_d(double value, char *buffer, int capacity, int decimals) {
  lookForMisuse([=] {
    needsRealRoom(Call("realdco_d", {value, filled(buffer), capacity, decimals}), buffer, capacity,
                  value, decimals);
  });
  return writeReal(value, buffer, capacity, decimals);
}

int realdco_sd(double value, char *buffer, int capacity, int digits) {
  lookForMisuse([=] {
    needsSignificantRoom(Call("realdco_sd", {value, filled(buffer), capacity, digits}), buffer,
                         capacity, digits, neededFor(value, digits));
  });
  return buffer == nullptr ? kDoesNotFit : writeSignificant(value, buffer, capacity, digits);
}
