// SPDX-License-Identifier: MIT
// For dates/, tables/ and dialogs/: the calendar behind the exported functions.
#ifndef KORVEL_DATES_CALENDAR_H
#define KORVEL_DATES_CALENDAR_H

#include <cstdint>

namespace korvel::dates {

// The days of a month; 0 for a month outside 1 to 12.
int daysIn(std::int64_t year, int month);

// True for a date YYYYMMDD of the years 1800 to 2100. Of a longer year, only the last four digits
// count.
bool isCalendarDate(int date);

}  // namespace korvel::dates

#endif
