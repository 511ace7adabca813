// SPDX-License-Identifier: MIT
// Dates as numbers: the calendar, days added and taken off, minutes counted.
#include "dates/calendar.h"

#include <cstdint>

#include <korvel/dates.h>

#include "base/numbers.h"
#include "dates/misuse.h"

// The Gregorian calendar holds for all years: its rule repeats every 400 years, which are 146097
// days. 1 January 2000 is a Saturday. Numbers that are not dates go through the same steps; wide
// integers keep these from overflowing.

namespace korvel::dates {

namespace {

using Wide = std::int64_t;

constexpr Wide kCycleYears = 400;
constexpr Wide kCycleDays = 146097;
constexpr Wide kYearDays = 365;  // without the leap day
constexpr Wide kMinutesPerHour = 60;
constexpr Wide kMinutesPerDay = 24 * kMinutesPerHour;

int leapDay(Wide year) { return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0) ? 1 : 0; }

bool isMonth(int month) { return month >= 1 && month <= 12; }

struct Fields {
  Wide year;
  int month;
  int day;
};

Fields fieldsOf(int date) { return {date / 10000, date / 100 % 100, date % 100}; }

int numberOf(const Fields &f, Wide day) {
  return base::clampToInt(f.year * 10000 + f.month * Wide{100} + day);
}

// January comes after December, and after every number above it.
void stepForward(Fields &f) {
  if (f.month < 12) {
    ++f.month;
  } else {
    f.month = 1;
    ++f.year;
  }
}

// December comes before January, and before every number below it.
int monthBefore(int month) { return month > 1 ? month - 1 : 12; }

void stepBack(Fields &f) {
  if (f.month <= 1) --f.year;
  f.month = monthBefore(f.month);
}

// While more than a 400-year cycle of days is left, a whole cycle of yearly steps would follow:
// these cycles are skipped at once.
Wide wholeCycles(Wide days) { return days > kCycleDays ? (days - 1) / kCycleDays : 0; }

int dateAfter(Fields f, Wide days) {
  Wide left = f.day + days;
  while (left > 0 && !isMonth(f.month)) stepForward(f);
  const Wide cycles = wholeCycles(left);
  left -= cycles * kCycleDays;
  f.year += cycles * kCycleYears;
  while (left > daysIn(f.year, f.month)) {
    left -= daysIn(f.year, f.month);
    stepForward(f);
  }
  return numberOf(f, left);
}

int dateBefore(Fields f, Wide days) {
  const Wide cycles = wholeCycles(days);
  Wide left = days - cycles * kCycleDays;
  f.year -= cycles * kCycleYears;
  // Kept: a year is as long as the calendar year before, whatever the month.
  while (left > kYearDays + leapDay(f.year - 1)) {
    left -= kYearDays + leapDay(f.year - 1);
    --f.year;
  }
  // Kept: a whole month keeps the day, also one that the month reached does not have.
  while (left > daysIn(f.year, monthBefore(f.month))) {
    stepBack(f);
    left -= daysIn(f.year, f.month);
  }
  if (f.day > left) return numberOf(f, f.day - left);
  const Wide missing = left - f.day;
  stepBack(f);
  return numberOf(f, daysIn(f.year, f.month) - missing);
}

// 0 is a Sunday.
int dayOfWeek(Wide year, Wide month, Wide day) {
  const Wide y = month < 3 ? year - 1 : year;
  const Wide m = month < 3 ? month + 10 : month - 2;
  const Wide century = y / 100;
  const Wide rest = y % 100;
  const Wide sum = day + (13 * m - 1) / 5 + rest + rest / 4 + century / 4 - 2 * century + 77;
  // The sum is negative for years far from ours.
  return static_cast<int>((sum % 7 + 7) % 7);
}

// Leap years from 1 to `year`; below 1, those from `year` + 1 to 0 counted negative.
Wide leapYearsUpTo(Wide year) {
  const auto multiples = [year](Wide n) { return (year >= 0 ? year : year - n + 1) / n; };
  return multiples(4) - multiples(100) + multiples(400);
}

// The days of the years after `origin` up to `year`, each with its own leap day.
Wide daysOfYears(Wide origin, Wide year) {
  if (year <= origin) return 0;
  return kYearDays * (year - origin) + leapYearsUpTo(year) - leapYearsUpTo(origin);
}

int minutesFrom(int origin, const Fields &f, int time) {
  Wide days = f.day;
  for (int month = 1; month < f.month; ++month) days += daysIn(f.year, month);
  // Kept: each year counts its own leap day, from January on.
  days += daysOfYears(origin, f.year);
  const int hours = time / 100 % 100;
  const int minutes = time % 100;
  return base::clampToInt(days * kMinutesPerDay + hours * kMinutesPerHour + minutes);
}

}  // namespace

int daysIn(Wide year, int month) {
  static constexpr int kDays[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (!isMonth(month)) return 0;
  return month == 2 ? kDays[month] + leapDay(year) : kDays[month];
}

bool isCalendarDate(int date) {
  const Fields f = fieldsOf(date);
  const Wide year = f.year % 10000;
  return year >= 1800 && year <= 2100 && f.day >= 1 && f.day <= daysIn(year, f.month);
}

}  // namespace korvel::dates

using namespace korvel::dates;

int utdately(int year) { return leapDay(year); }

int utdatedm(int year, int month) {
  lookForMisuse([=] { needsMonth(Call("utdatedm", {year, month}), month); });
  return daysIn(year, month);
}

int utdatedw(int year, int month, int day) {
  lookForMisuse([=] { needsMonth(Call("utdatedw", {year, month, day}), month); });
  return dayOfWeek(year, month, day);
}

int Validate_Date(int date) { return isCalendarDate(date) ? 1 : 0; }

int Get_Date_Incr(int date, unsigned int n) {
  lookForMisuse([=] { needsDate(Call("Get_Date_Incr", {date, n}), date); });
  return dateAfter(fieldsOf(date), n);
}

int Get_Date_Diff(int date, unsigned int n) {
  lookForMisuse([=] { needsDate(Call("Get_Date_Diff", {date, n}), date); });
  return dateBefore(fieldsOf(date), n);
}

int Min_depuis_org(int date, int time, int origin) {
  lookForMisuse([=] { needsDate(Call("Min_depuis_org", {date, time, origin}), date); });
  return minutesFrom(origin, fieldsOf(date), time);
}
