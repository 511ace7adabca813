// SPDX-License-Identifier: MIT
// For dates/: the clock that the library reads.
#ifndef KORVEL_DATES_CLOCK_H
#define KORVEL_DATES_CLOCK_H

namespace korvel::dates {

// A local date and time: the year in full, months and days from 1, hours 0 to 23.
struct ClockTime {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
};

using Clock = ClockTime (*)();

// The host's clock in its time zone; all zeros where there is none.
ClockTime hostClock();

// hostClock, unless a test has put its own in place.
extern Clock clockInUse;

}  // namespace korvel::dates

#endif
