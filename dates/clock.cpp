// SPDX-License-Identifier: MIT
// The current date and time as stored texts, from a clock that tests can replace.
#include "dates/clock.h"

#include <cstddef>
#include <ctime>
#include <span>

#include <korvel/dates.h>

#include "codecs/num.h"
#include "codecs/status.h"
#include "dates/misuse.h"

namespace korvel::dates {

constinit Clock clockInUse = hostClock;

ClockTime hostClock() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  // localtime_r alone would keep the time zone of the process's first call.
  tzset();
  if (localtime_r(&now, &local) == nullptr) return {};
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     local.tm_sec};
}

namespace {

// The fields after the year, in the order of a stored date.
constexpr std::size_t kToDay = 2;
constexpr std::size_t kToMinute = 4;
constexpr std::size_t kToSecond = 5;

// Kept: only the last field decides the status.
int storeNow(char *out, std::size_t fieldCount) {
  constexpr std::size_t kYearWidth = 4;
  constexpr std::size_t kFieldWidth = 2;
  const ClockTime now = clockInUse();
  const int fields[] = {now.month, now.day, now.hour, now.minute, now.second};
  int status = codecs::writeNum(now.year, {out, kYearWidth});
  out += kYearWidth;
  for (const int field : std::span(fields).first(fieldCount)) {
    status = codecs::writeNum(field, {out, kFieldWidth});
    out += kFieldWidth;
  }
  *out = '\0';
  return status;
}

}  // namespace

}  // namespace korvel::dates

using namespace korvel::codecs;
using namespace korvel::dates;

int ZRV_Get_Date_short(char *out) {
  lookForMisuse([=] { Call("ZRV_Get_Date_short", {filled(out)}).needsAll(); });
  return out == nullptr ? kWrongWidth : storeNow(out, kToDay);
}

int ZRV_Get_Date_long(char *out) {
  lookForMisuse([=] { Call("ZRV_Get_Date_long", {filled(out)}).needsAll(); });
  return out == nullptr ? kWrongWidth : storeNow(out, kToMinute);
}

int ZRV_Get_Date_slong(char *out) {
  lookForMisuse([=] { Call("ZRV_Get_Date_slong", {filled(out)}).needsAll(); });
  return out == nullptr ? kWrongWidth : storeNow(out, kToSecond);
}
