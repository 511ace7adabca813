// SPDX-License-Identifier: MIT
// Misuse of dates: texts that are shorter than their layout, months and days that there are not.
#include "dates/misuse.h"

#include <cstring>

#include "base/views.h"

namespace korvel::dates {

void needsLayout(const Call &call, const char *text, const char *layout) {
  call.needsAll();
  const std::size_t length = base::textOf(text).size();
  call.misusedIf(length < std::strlen(layout),
                 {"a text of ", length, " characters is shorter than ", layout});
}

void needsDateAndTime(const Call &call, const char *date, const char *time,
                      const char *timeLayout) {
  needsLayout(call, date, "DD/MM/YY");
  needsLayout(call, time, timeLayout);
}

void needsMonth(const Call &call, int month) {
  call.misusedIf(month < 1 || month > 12, {"there is no month ", month, ": 1 to 12"});
}

void needsWeekday(const Call &call, int day) {
  call.misusedIf(day < 0 || day > 6, {"there is no day ", day, ": 0 is Sunday and 6 is Saturday"});
}

void needsDate(const Call &call, int date) {
  const int month = date / 100 % 100;
  call.misusedIf(month < 1 || month > 12, {date, " has no month from 1 to 12: a date is YYYYMMDD"});
}

}  // namespace korvel::dates
