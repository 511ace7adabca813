// SPDX-License-Identifier: MIT
// For tests/codecs/: models of the conversions, which go one character and one step at a time.
#ifndef KORVEL_TESTS_CODECS_LITERAL_CODECS_H
#define KORVEL_TESTS_CODECS_LITERAL_CODECS_H

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>

namespace korvel::test {

// The results of a reader; `value` counts only with status 0.
template <typename Value>
struct Reading {
  int status = 0;
  Value value{};
  std::string text;
};

// The results of a writer.
struct Writing {
  int status = 0;
  std::string text;
};

inline void literalTrim(std::string &text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  while (!text.empty() && text.front() == ' ') text.erase(0, 1);
}

inline bool literalIsDigit(char c) { return c >= '0' && c <= '9'; }

// Digits from the last to the first, each times a power of ten that grows by one step. A digit 0 is
// skipped: the power may be infinite.
inline double literalMagnitude(const std::string &digits) {
  double sum = 0.0;
  double power = 1.0;
  for (std::size_t i = digits.size(); i-- > 0;) {
    if (digits[i] != '0') sum += (digits[i] - '0') * power;
    power *= 10.0;
  }
  return sum;
}

inline Reading<int> literalReadInteger(std::string text, double limit) {
  literalTrim(text);
  if (text.empty()) return {1, 0, text};
  std::size_t i = 0;
  const bool negative = text[0] == '-';
  if (text[0] == '+' || text[0] == '-') ++i;
  if (i == text.size()) return {2, 0, text};
  for (std::size_t k = i; k < text.size(); ++k) {
    if (!literalIsDigit(text[k])) return {3, 0, text};
  }
  const double magnitude = literalMagnitude(text.substr(i));
  if (magnitude > limit) return {4, 0, text};
  return {0, static_cast<int>(negative ? -magnitude : magnitude), text};
}

inline Reading<double> literalReadReal(std::string text) {
  literalTrim(text);
  if (text.empty()) return {1, 0.0, text};
  std::size_t begin = 0;
  const bool negative = text[0] == '-';
  if (text[0] == '+' || text[0] == '-') ++begin;
  if (begin == text.size()) return {2, 0.0, text};

  std::size_t mark = text.find('e', begin);
  if (mark == std::string::npos) mark = text.find('E', begin);
  const bool hasMark = mark != std::string::npos;
  const std::size_t end = hasMark ? mark : text.size();
  std::size_t point = text.find('.', begin);
  if (point == std::string::npos) point = text.find(',', begin);
  if (point == std::string::npos || point > end) point = end;

  const std::string integral = text.substr(begin, point - begin);
  const std::string fraction = point < end ? text.substr(point + 1, end - point - 1) : "";
  for (const char c : integral) {
    if (!literalIsDigit(c)) return {3, 0.0, text};
  }
  for (const char c : fraction) {
    if (!literalIsDigit(c)) return {4, 0.0, text};
  }
  double value = literalMagnitude(integral);
  double factor = 0.1;
  for (const char c : fraction) {
    value += (c - '0') * factor;
    factor /= 10.0;
  }
  if (hasMark && mark + 1 < text.size()) {
    const Reading<int> exponent = literalReadInteger(text.substr(mark + 1), 2147483647.0);
    text = text.substr(0, mark + 1) + exponent.text;
    if (exponent.status != 0) return {4 + exponent.status, 0.0, text};
    const auto canChange = [&] { return value != 0.0 && !std::isinf(value); };
    for (int i = 0; i < exponent.value && canChange(); ++i) value *= 10.0;
    for (int i = 0; i > exponent.value && canChange(); --i) value /= 10.0;
  }
  return {0, negative ? -value : value, text};
}

// A buffer of a given capacity that takes one character at a time or refuses it.
class LiteralBuffer {
 public:
  explicit LiteralBuffer(int capacity) : capacity_(capacity) {}

  bool insert(char c, std::size_t at) {
    if (static_cast<int>(text.size()) + 1 > capacity_ - 1) return false;
    text.insert(at, 1, c);
    return true;
  }
  bool append(char c) { return insert(c, text.size()); }

  std::string text;

 private:
  int capacity_;
};

inline Writing literalWriteInteger(int value, int capacity, int threshold) {
  LiteralBuffer buffer(capacity);
  if (value == 0) {
    if (!buffer.insert('0', 0)) return {2, buffer.text};
  }
  int magnitude = value == std::numeric_limits<int>::min() ? 0 : std::abs(value);
  for (; magnitude > 0; magnitude /= 10) {
    if (!buffer.insert(static_cast<char>('0' + magnitude % 10), 0)) return {2, buffer.text};
  }
  if (value < 0 && !buffer.insert('-', 0)) return {2, buffer.text};
  return {capacity <= threshold ? 1 : 0, buffer.text};
}

inline double literalIntegral(double x) {
  if (std::isnan(x)) return 0.0;
  return std::clamp(std::trunc(x), -2147483648.0, 2147483647.0) + 0.0;
}

// The decimal digits of a whole number, exact at any size; empty for infinity and NaN.
inline std::string literalWholeDigits(double number) {
  if (!std::isfinite(number)) return "";
  char digits[400];
  const double whole = std::fabs(std::trunc(number));
  return {digits, std::to_chars(digits, digits + 400, whole, std::chars_format::fixed, 0).ptr};
}

inline Writing literalWriteFixed(double x, int capacity, int decimals) {
  LiteralBuffer buffer(capacity);
  if (std::isnan(x)) x = 0.0;
  double scale = 1.0;
  for (int i = 0; i < decimals && !std::isinf(scale); ++i) scale *= 10.0;
  x += x < 0.0 ? -0.5 / scale : 0.5 / scale;
  double integral = literalIntegral(x);
  double fraction = x - integral;
  const bool negative = x < 0.0;
  if (negative) {
    integral = -integral;
    fraction = -fraction;
  }
  if (integral == 0.0 && !buffer.insert('0', 0)) return {2, buffer.text};
  while (integral != 0.0) {
    const double quotient = literalIntegral(integral / 10.0);
    const int digit = static_cast<int>(integral - 10.0 * quotient);
    if (!buffer.insert(static_cast<char>('0' + digit), 0)) return {2, buffer.text};
    integral = quotient;
  }
  const std::size_t integralLength = buffer.text.size();
  if (decimals != 0 && !buffer.append('.')) return {2, buffer.text};

  // Decimals past the 308th, the largest power of ten of a double, are zeros.
  const int places = std::min(decimals, 308);
  double power = 1.0;
  for (int i = 0; i < places; ++i) power *= 10.0;
  const std::string digits = literalWholeDigits(fraction * power);
  for (int i = 0; i < decimals; ++i) {
    const int place = i - (decimals - places);
    const bool isThere = place >= 0 && place < static_cast<int>(digits.size());
    const char digit = isThere ? digits[digits.size() - 1 - static_cast<std::size_t>(place)] : '0';
    if (!buffer.insert(digit, integralLength + 1)) return {2, buffer.text};
  }
  if (negative && !buffer.insert('-', 0)) return {2, buffer.text};
  return {capacity <= 20 ? 1 : 0, buffer.text};
}

inline Writing literalWriteSignificant(double x, int capacity, int extraDigits) {
  LiteralBuffer buffer(capacity);
  if (x == 0.0 || std::isnan(x)) {
    if (!buffer.append('0')) return {2, buffer.text};
    return {0, buffer.text};
  }
  double integral = std::fabs(literalIntegral(x));
  double fraction = std::fabs(x - literalIntegral(x));
  long long budget = extraDigits + 1LL;
  int k = 0;
  while (integral != 0.0) {
    const double quotient = literalIntegral(integral / 10.0);
    const int digit = static_cast<int>(integral - 10.0 * quotient);
    if (budget > 0) {
      --budget;
    } else if (!buffer.text.empty()) {
      buffer.text.pop_back();
    }
    if (!buffer.insert(static_cast<char>('0' + digit), 0)) return {2, buffer.text};
    ++k;
    integral = quotient;
  }
  while (budget > 0) {
    fraction *= 10.0;
    // The rest above an integral part at its bound has only digits 9.
    const double digit = std::min(literalIntegral(fraction), 9.0);
    fraction -= digit;
    if (buffer.text.empty() && digit == 0.0) {
      --k;
      continue;
    }
    if (!buffer.append(static_cast<char>('0' + static_cast<int>(digit)))) return {2, buffer.text};
    --budget;
  }
  if (!buffer.insert('.', std::min<std::size_t>(buffer.text.size(), 1))) return {2, buffer.text};
  if (x < 0.0 && !buffer.insert('-', 0)) return {2, buffer.text};
  if (k == 1) return {0, buffer.text};
  if (!buffer.append('e')) return {2, buffer.text};
  const int room = capacity - static_cast<int>(buffer.text.size());
  return {0, buffer.text + literalWriteInteger(k - 1, room, 6).text};
}

}  // namespace korvel::test

#endif
