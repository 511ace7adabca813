// Display dates turned into stored ones and back.
//
// Fields are taken by their position alone. Every input is copied before anything is written, so
// that an output may be an input.
#include <array>
#include <cstddef>
#include <cstring>

#include <korvel/codecs.h>
#include <korvel/dates.h>

#include "dates/status.h"

constinit int a_org = 1950;

namespace {

using korvel::dates::kNoOutput;

// Positions of the fields.
constexpr std::size_t kDisplayDay = 0;
constexpr std::size_t kDisplayMonth = 3;
constexpr std::size_t kDisplayYear = 6;
constexpr std::size_t kDisplayLongYearEnd = 8;
constexpr std::size_t kTimeHour = 0;
constexpr std::size_t kTimeMinute = 3;
constexpr std::size_t kTimeSecond = 6;
constexpr std::size_t kStoredYear = 0;
constexpr std::size_t kStoredYearEnd = 2;
constexpr std::size_t kStoredMonth = 4;
constexpr std::size_t kStoredDay = 6;
constexpr std::size_t kStoredHour = 8;
constexpr std::size_t kStoredMinute = 10;
constexpr std::size_t kStoredSecond = 12;

constexpr std::size_t kLongDate = 10;  // DD/MM/YYYY
constexpr std::size_t kWidest = 14;    // of the inputs: YYYYMMDDHHMMSS
constexpr int kYearWidth = 4;

// The first characters of a text, with NULs for those that it does not have.
class Input {
 public:
  explicit Input(const char *text) : length_(text != nullptr ? std::strlen(text) : 0) {
    for (std::size_t i = 0; i < kWidest && i < length_; ++i) characters_[i] = text[i];
  }

  std::size_t length() const { return length_; }
  const char *at(std::size_t position) const { return &characters_[position]; }
  // Kept: any character counts as a digit, by its distance from "0".
  int digit(std::size_t position) const {
    return static_cast<signed char>(characters_[position]) - '0';
  }

 private:
  std::array<char, kWidest> characters_{};
  std::size_t length_;
};

char *putTwo(char *out, const char *field) {
  std::memcpy(out, field, 2);
  return out + 2;
}

char *putFour(char *out, const char *field) {
  std::memcpy(out, field, 4);
  return out + 4;
}

char *put(char *out, char c) {
  *out = c;
  return out + 1;
}

// Two-digit years lie in the hundred years that begin with the origin year.
int widenedYear(const Input &date) {
  const int year = 10 * date.digit(kDisplayYear) + date.digit(kDisplayYear + 1);
  // Compared without a subtraction, which could overflow.
  return year + 1900LL < a_org ? 2000 + year : 1900 + year;
}

char *putMonthAndDay(char *out, const Input &date) {
  out = putTwo(out, date.at(kDisplayMonth));
  return putTwo(out, date.at(kDisplayDay));
}

struct Stored {
  char *end;
  int status;
};

Stored putShortDate(char *out, const Input &date) {
  const int status = LongToNUM(widenedYear(date), out, kYearWidth);
  return {putMonthAndDay(out + kYearWidth, date), status};
}

char *putLongDate(char *out, const Input &date) {
  return putMonthAndDay(putFour(out, date.at(kDisplayYear)), date);
}

char *putDayAndMonth(char *out, const Input &stored) {
  out = put(putTwo(out, stored.at(kStoredDay)), '/');
  return put(putTwo(out, stored.at(kStoredMonth)), '/');
}

char *putTime(char *out, const Input &stored) {
  out = put(putTwo(out, stored.at(kStoredHour)), ':');
  out = put(putTwo(out, stored.at(kStoredMinute)), ':');
  return putTwo(out, stored.at(kStoredSecond));
}

}  // namespace

void ZRV_Build_Date(const char *date, char *out) {
  if (out == nullptr) return;
  *putLongDate(out, Input(date)) = '\0';
}

int ZRV_Build_Date_short(const char *date, char *out) {
  if (out == nullptr) return kNoOutput;
  const Stored stored = putShortDate(out, Input(date));
  *stored.end = '\0';
  return stored.status;
}

int ZRV_Build_Date_long(const char *date, const char *time, char *out) {
  if (out == nullptr) return kNoOutput;
  const Input hours(time);
  const Stored stored = putShortDate(out, Input(date));
  char *end = putTwo(stored.end, hours.at(kTimeHour));
  end = putTwo(end, hours.at(kTimeMinute));
  *end = '\0';
  return stored.status;
}

int ZRV_Build_Date_slong(const char *date, const char *time, char *out) {
  if (out == nullptr) return kNoOutput;
  const Input hours(time);
  const Stored stored = putShortDate(out, Input(date));
  char *end = putTwo(stored.end, hours.at(kTimeHour));
  end = putTwo(end, hours.at(kTimeMinute));
  end = putTwo(end, hours.at(kTimeSecond));
  *end = '\0';
  return stored.status;
}

int ZRV_Build_Date_SV(const char *date, char *out) {
  if (out == nullptr) return kNoOutput;
  const Input input(date);
  const bool isLong = input.length() == kLongDate;
  // Kept: a year that is copied gives the length of the input for a status.
  const Stored stored = isLong ? Stored{putLongDate(out, input), static_cast<int>(kLongDate)}
                               : putShortDate(out, input);
  *putFour(stored.end, "0000") = '\0';
  return stored.status;
}

void ZRV_Inv_Date(const char *stored, char *out) {
  if (out == nullptr) return;
  const Input input(stored);
  *putFour(putDayAndMonth(out, input), input.at(kStoredYear)) = '\0';
}

void ZRV_Inv_Date_2(const char *stored, char *out) {
  if (out == nullptr) return;
  const Input input(stored);
  *putTwo(putDayAndMonth(out, input), input.at(kStoredYearEnd)) = '\0';
}

void ZRV_Inv_Date_Time(const char *stored, char *out) {
  if (out == nullptr) return;
  const Input input(stored);
  char *end = putFour(putDayAndMonth(out, input), input.at(kStoredYear));
  *putTime(put(end, ' '), input) = '\0';
}

int ZRV_Reduc_Date(const char *date, char *out) {
  const Input input(date);
  const auto length = static_cast<int>(input.length());
  if (out == nullptr) return length;
  const bool isLong = input.length() == kLongDate;
  out = put(putTwo(out, input.at(kDisplayDay)), '/');
  out = put(putTwo(out, input.at(kDisplayMonth)), '/');
  *putTwo(out, input.at(isLong ? kDisplayLongYearEnd : kDisplayYear)) = '\0';
  return length;
}
