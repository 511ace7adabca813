// SPDX-License-Identifier: MIT
// French names of months and days, in the bytes of the DOS Latin code page.
#include <cstddef>
#include <iterator>

#include <korvel/dates.h>

#include "dates/misuse.h"

namespace korvel::dates {

namespace {

constexpr std::size_t kAbbreviation = 3;

// Kept: both abbreviations are one buffer.
constinit char abbreviation[kAbbreviation + 1] = "   ";

// Indices of the table below.
constexpr int kNoMonth = 0;
constexpr int kMonths = 12;
constexpr int kFirstDay = kMonths + 1;
constexpr int kDays = 7;
constexpr int kNoDay = kFirstDay + kDays;
constexpr int kMonthAbbreviation = kNoDay + 1;
constexpr int kDayAbbreviation = kNoDay + 2;

// Kept: é is the byte 0x82 (octal 202), Aout has no accent.
constinit const char *const names[] = {
    "Ill\202gal",  "Janvier",  "F\202vrier", "Mars",       "Avril",      "Mai",
    "Juin",        "Juillet",  "Aout",       "Septembre",  "Octobre",    "Novembre",
    "D\202cembre", "Dimanche", "Lundi",      "Mardi",      "Mercredi",   "Jeudi",
    "Vendredi",    "Samedi",   "Ill\202gal", abbreviation, abbreviation,
};
static_assert(std::size(names) == kDayAbbreviation + 1);

// Only ASCII letters: é stays.
char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Applications get char *, but the names are constants.
char *nameAt(int place) { return const_cast<char *>(names[place]); }

char *monthName(int month) { return nameAt(month >= 1 && month <= kMonths ? month : kNoMonth); }

char *dayName(int day) { return nameAt(day >= 0 && day < kDays ? kFirstDay + day : kNoDay); }

char *abbreviate(const char *name, int place) {
  for (std::size_t i = 0; i < kAbbreviation; ++i) abbreviation[i] = capital(name[i]);
  return nameAt(place);
}

}  // namespace

}  // namespace korvel::dates

using namespace korvel::dates;

char *utdatemy(int month) {
  lookForMisuse([=] { needsMonth(Call("utdatemy", {month}), month); });
  return monthName(month);
}

char *utdatedn(int day) {
  lookForMisuse([=] { needsWeekday(Call("utdatedn", {day}), day); });
  return dayName(day);
}

char *utdatemm(int month) {
  lookForMisuse([=] { needsMonth(Call("utdatemm", {month}), month); });
  return abbreviate(monthName(month), kMonthAbbreviation);
}

char *utdatedd(int day) {
  lookForMisuse([=] { needsWeekday(Call("utdatedd", {day}), day); });
  return abbreviate(dayName(day), kDayAbbreviation);
}
