// SPDX-License-Identifier: MIT
// For dates/: what an application can do wrong with dates, found and told.
#ifndef KORVEL_DATES_MISUSE_H
#define KORVEL_DATES_MISUSE_H

#include "base/misuse.h"

namespace korvel::dates {

using base::Call;
using base::filled;
using base::lookForMisuse;

// A text that has all the characters of its layout.
void needsLayout(const Call &call, const char *text, const char *layout);

// A date and a time of day.
void needsDateAndTime(const Call &call, const char *date, const char *time, const char *timeLayout);

// A month from 1 to 12, and a day of the week from 0 to 6.
void needsMonth(const Call &call, int month);
void needsWeekday(const Call &call, int day);

// A date whose month is one.
void needsDate(const Call &call, int date);

}  // namespace korvel::dates

#endif
