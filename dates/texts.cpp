// SPDX-License-Identifier: MIT
// Display dates turned into stored ones and back.
#include "dates/texts.h"

#include <array>
#include <cstddef>
#include <string_view>

#include <korvel/dates.h>

#include "base/views.h"
#include "codecs/num.h"
#include "codecs/status.h"
#include "dates/misuse.h"

// Fields are taken by their position alone. Every input is copied before anything is written, so
// that an output may be an input.

constinit int a_org = 1950;

namespace korvel::dates {

namespace {

constexpr std::size_t kDisplayYear = 6;  // its position
constexpr std::size_t kYearWidth = 4;
constexpr int kLongDate = 10;        // DD/MM/YYYY
constexpr std::size_t kWidest = 14;  // of the inputs: YYYYMMDDHHMMSS

// The first characters of a text, with NULs for those that it does not have.
class Input {
 public:
  explicit Input(const char *date) : Input(base::textOf(date)) {}
  explicit Input(std::string_view text) : length_(text.size()) {
    text.copy(characters_.data(), kWidest);
  }

  int length() const { return static_cast<int>(length_); }
  char at(std::size_t position) const { return characters_[position]; }
  // Kept: any character counts as a digit, by its distance from "0".
  int digit(std::size_t position) const { return static_cast<signed char>(at(position)) - '0'; }

 private:
  std::array<char, kWidest> characters_{};
  std::size_t length_;
};

// With an a_org of 1950: 49 is 2049, 50 is 1950.
int widenedYear(const Input &date) {
  const int year = 10 * date.digit(kDisplayYear) + date.digit(kDisplayYear + 1);
  // Compared without a subtraction, which could overflow.
  return year + 1900LL < a_org ? 2000 + year : 1900 + year;
}

// In a layout 'a' is the first character of the input, 'b' the second and so on; every other
// character is written as it is. Returns the end of what was written, which is terminated.
template <std::size_t kSize>
char *writeLayout(const Input &input, const char (&layout)[kSize], char *out) {
  for (std::size_t i = 0; i + 1 < kSize; ++i) {
    const char c = layout[i];
    out[i] = c >= 'a' ? input.at(static_cast<std::size_t>(c - 'a')) : c;
  }
  out[kSize - 1] = '\0';
  return out + kSize - 1;
}

// Returns the code of LongToNUM for the year.
template <std::size_t kSize>
int storeDateAndTime(const char *date, const char *time, const char (&timeLayout)[kSize],
                     char *out) {
  const Input day(date);
  const Input hours(time);
  const int status = codecs::writeNum(widenedYear(day), {out, kYearWidth});
  out = writeLayout(day, "deab", out + kYearWidth);
  writeLayout(hours, timeLayout, out);
  return status;
}

int storeMidnight(const char *date, char *out) {
  const Input input(date);
  if (input.length() != kLongDate) return storeDateAndTime(date, "", "0000", out);
  writeLayout(input, "ghijdeab0000", out);
  // Kept: a copied year gives the length of the input for a status.
  return kLongDate;
}

int reduce(const Input &date, char *out) {
  const bool isLong = date.length() == kLongDate;
  if (out != nullptr) writeLayout(date, isLong ? "ab/de/ij" : "ab/de/gh", out);
  return date.length();
}

void showDateAndTime(const Input &stored, char *out) {
  out = writeLayout(stored, "gh/ef/abcd", out);
  writeLayout(stored, " ij:kl:mn", out);
}

}  // namespace

int storeShortDate(const char *date, char *out) { return storeDateAndTime(date, "", "", out); }

}  // namespace korvel::dates

using namespace korvel::codecs;
using namespace korvel::dates;

void ZRV_Build_Date(const char *date, char *out) {
  lookForMisuse([=] {
    needsLayout(Call("ZRV_Build_Date", {date, filled(out)}), date, "DD/MM/YYYY");
  });
  if (out != nullptr) writeLayout(Input(date), "ghijdeab", out);
}

int ZRV_Build_Date_short(const char *date, char *out) {
  lookForMisuse([=] {
    needsLayout(Call("ZRV_Build_Date_short", {date, filled(out)}), date, "DD/MM/YY");
  });
  return out == nullptr ? kWrongWidth : storeShortDate(date, out);
}

int ZRV_Build_Date_long(const char *date, const char *time, char *out) {
  lookForMisuse([=] {
    needsDateAndTime(Call("ZRV_Build_Date_long", {date, time, filled(out)}), date, time, "HH:MM");
  });
  return out == nullptr ? kWrongWidth : storeDateAndTime(date, time, "abde", out);
}

int ZRV_Build_Date_slong(const char *date, const char *time, char *out) {
  lookForMisuse([=] {
    needsDateAndTime(Call("ZRV_Build_Date_slong", {date, time, filled(out)}), date, time,
                     "HH:MM:SS");
  });
  return out == nullptr ? kWrongWidth : storeDateAndTime(date, time, "abdegh", out);
}

int ZRV_Build_Date_SV(const char *date, char *out) {
  lookForMisuse([=] {
    needsLayout(Call("ZRV_Build_Date_SV", {date, filled(out)}), date, "DD/MM/YY");
  });
  return out == nullptr ? kWrongWidth : storeMidnight(date, out);
}

void ZRV_Inv_Date(const char *stored, char *out) {
  lookForMisuse([=] {
    needsLayout(Call("ZRV_Inv_Date", {stored, filled(out)}), stored, "YYYYMMDD");
  });
  if (out != nullptr) writeLayout(Input(stored), "gh/ef/abcd", out);
}

void ZRV_Inv_Date_2(const char *stored, char *out) {
  lookForMisuse([=] {
    needsLayout(Call("ZRV_Inv_Date_2", {stored, filled(out)}), stored, "YYYYMMDD");
  });
  if (out != nullptr) writeLayout(Input(stored), "gh/ef/cd", out);
}

void ZRV_Inv_Date_Time(const char *stored, char *out) {
  lookForMisuse([=] {
    needsLayout(Call("ZRV_Inv_Date_Time", {stored, filled(out)}), stored, "YYYYMMDDHHMMSS");
  });
  if (out != nullptr) showDateAndTime(Input(stored), out);
}

int ZRV_Reduc_Date(const char *date, char *out) {
  lookForMisuse([=] {
    needsLayout(Call("ZRV_Reduc_Date", {date, filled(out)}), date, "DD/MM/YY");
  });
  return reduce(Input(date), out);
}
