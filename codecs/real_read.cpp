// SPDX-License-Identifier: MIT
// Texts to reals, by sums that have the same bits on every machine.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <korvel/codecs.h>

#include "codecs/digits.h"
#include "codecs/integer.h"
#include "codecs/misuse.h"
#include "codecs/real.h"
#include "codecs/status.h"
#include "strings/trim.h"

// The digits of the integral part are summed from the last to the first as digit x 10^k. The digits
// of the fraction are added from the first to the last as digit x factor; the factor starts at 0.1
// and is divided by 10 at each step. The shortcuts below are exact.

namespace korvel::codecs {

namespace {

// Sums of up to so many digits of a whole number are exact in double precision, in any order.
constexpr std::ptrdiff_t kExactDigits = 15;

constexpr std::size_t kTableDigits = 16;

// [k][d] is the value of the digit d at place k after the separator.
constexpr auto kFractionDigits = [] {
  std::array<std::array<double, 10>, kTableDigits> table{};
  double factor = 0.1;
  for (auto &row : table) {
    for (std::size_t digit = 0; digit < row.size(); ++digit) {
      row[digit] = static_cast<double>(digit) * factor;
    }
    factor /= 10.0;
  }
  return table;
}();

// Reads the plain case: no blanks and no exponent, at most kExactDigits digits before the separator
// and kTableDigits after it. Returns false and changes nothing for any other text.
bool readPlain(const char *text, double *value) {
  const bool negative = *text == '-';
  const char *p = text + static_cast<int>(negative | (*text == '+'));
  if (*p == '\0') return false;

  const char *const digits = p;
  std::uint64_t integral = 0;
  for (unsigned digit = 0; (digit = digitValue(*p)) < 10; ++p) integral = 10 * integral + digit;
  if (p - digits > kExactDigits) return false;
  auto sum = static_cast<double>(static_cast<std::int64_t>(integral));

  // With a comma, no point follows: only digits do.
  if (*p == '.' || *p == ',') {
    ++p;
    std::size_t place = 0;
    for (unsigned digit = 0; (digit = digitValue(*p)) < 10; ++p) {
      if (place == kTableDigits) return false;
      sum += kFractionDigits[place++][digit];
    }
  }
  if (*p != '\0') return false;
  constexpr double kSigns[] = {1.0, -1.0};
  *value = sum * kSigns[static_cast<int>(negative)];
  return true;
}

// A digit 0 is skipped: past the largest power of ten it would be 0 times infinity.
double integralSum(const char *begin, const char *end) {
  double sum = 0.0;
  double power = 1.0;
  while (end != begin) {
    const unsigned digit = digitValue(*--end);
    if (digit != 0) sum += digit * power;
    power *= 10.0;
  }
  return sum;
}

double withFraction(double sum, const char *begin, const char *end) {
  double factor = 0.1;
  for (; begin != end; ++begin) {
    sum += digitValue(*begin) * factor;
    factor /= 10.0;
  }
  return sum;
}

// One step at a time, until a step changes nothing, as from 0 or infinity on.
double scaled(double value, int exponent) {
  const bool grows = exponent > 0;
  for (; exponent != 0; exponent += grows ? -1 : 1) {
    const double next = grows ? value * 10.0 : value / 10.0;
    if (next == value) break;
    value = next;
  }
  return value;
}

// The parts of a trimmed text without its sign.
struct Parts {
  const char *integral;
  const char *integralEnd;
  const char *fraction;
  const char *fractionEnd;
  char *exponent;  // null without a mark
};

char *exponentMark(char *text) {
  char *mark = std::strchr(text, 'e');
  return mark != nullptr ? mark : std::strchr(text, 'E');
}

const char *separator(const char *text) {
  const char *point = std::strchr(text, '.');
  return point != nullptr ? point : std::strchr(text, ',');
}

Parts partsOf(char *text) {
  char *const mark = exponentMark(text);
  const char *const end = mark != nullptr ? mark : text + std::strlen(text);
  const char *point = separator(text);
  // Kept: a point in the exponent takes the separator's part from a comma in the mantissa.
  if (point == nullptr || point > end) point = end;
  const char *const fraction = point == end ? end : point + 1;
  return {text, point, fraction, end, mark != nullptr ? mark + 1 : nullptr};
}

int readAny(char *text, double *value) {
  strings::trimBlanks(text);
  if (text[0] == '\0') return kEmpty;
  const bool negative = text[0] == '-';
  char *const number = text + (skipSign(text) - text);
  if (*number == '\0') return kSignAlone;
  const Parts parts = partsOf(number);
  if (!areDigits(parts.integral, parts.integralEnd)) return kNotDigit;
  if (!areDigits(parts.fraction, parts.fractionEnd)) return kFractionNotDigit;

  double sum = integralSum(parts.integral, parts.integralEnd);
  sum = withFraction(sum, parts.fraction, parts.fractionEnd);
  if (parts.exponent != nullptr && *parts.exponent != '\0') {
    int exponent = 0;
    const int status = readInteger(parts.exponent, kLimit32, &exponent);
    if (status != kRead) return kExponentFailed + status;
    sum = scaled(sum, exponent);
  }
  *value = negative ? -sum : sum;
  return kRead;
}

template <typename IsAccepted>
int readAccepted(char *text, double *value, IsAccepted isAccepted) {
  const int status = readReal(text, value);
  if (status != kRead) return status;
  return isAccepted(*value) ? kAccepted : kBelowBound;
}

}  // namespace

int readReal(char *text, double *value) {
  if (text == nullptr || value == nullptr) return kEmpty;
  return readPlain(text, value) ? kRead : readAny(text, value);
}

int readNotNegative(char *text, double *value) {
  return readAccepted(text, value, [](double read) { return read >= 0.0; });
}

int readPositive(char *text, double *value) {
  return readAccepted(text, value, [](double read) { return read > 0.0; });
}

}  // namespace korvel::codecs

using namespace korvel::codecs;

int realcod_d(char *text, double *value) {
  lookForMisuse([=] { Call("realcod_d", {text, filled(value)}).needsAll(); });
  return readReal(text, value);
}

int realcod_f(char *text, float *value) {
  lookForMisuse([=] { Call("realcod_f", {text, filled(value)}).needsAll(); });
  double read = 0.0;
  const int status = value == nullptr ? kEmpty : readReal(text, &read);
  if (status == kRead) *value = static_cast<float>(read);
  return status;
}

int realcod_d_sup0(char *text, double *value) {
  lookForMisuse([=] { Call("realcod_d_sup0", {text, filled(value)}).needsAll(); });
  return readNotNegative(text, value);
}

int realcod_d_ssup0(char *text, double *value) {
  lookForMisuse([=] { Call("realcod_d_ssup0", {text, filled(value)}).needsAll(); });
  return readPositive(text, value);
}
