// The current date and time as stored texts.
#include "dates/clock.h"

#include <ctime>
#include <initializer_list>

#include <korvel/codecs.h>
#include <korvel/dates.h>

#include "dates/status.h"

namespace korvel::dates {

constinit Clock clockInUse = hostClock;

ClockTime hostClock() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  // localtime_r alone would stay with the time zone of the process's first call.
  tzset();
  if (localtime_r(&now, &local) == nullptr) return {};
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     local.tm_sec};
}

namespace {

constexpr int kYearWidth = 4;
constexpr int kFieldWidth = 2;

// Kept: the status is that of the last field alone.
int writeStored(char *out, int year, std::initializer_list<int> fields) {
  int status = LongToNUM(year, out, kYearWidth);
  out += kYearWidth;
  for (const int field : fields) {
    status = LongToNUM(field, out, kFieldWidth);
    out += kFieldWidth;
  }
  *out = '\0';
  return status;
}

}  // namespace

}  // namespace korvel::dates

using namespace korvel::dates;

int ZRV_Get_Date_short(char *out) {
  if (out == nullptr) return kNoOutput;
  const ClockTime now = clockInUse();
  return writeStored(out, now.year, {now.month, now.day});
}

int ZRV_Get_Date_long(char *out) {
  if (out == nullptr) return kNoOutput;
  const ClockTime now = clockInUse();
  return writeStored(out, now.year, {now.month, now.day, now.hour, now.minute});
}

int ZRV_Get_Date_slong(char *out) {
  if (out == nullptr) return kNoOutput;
  const ClockTime now = clockInUse();
  return writeStored(out, now.year, {now.month, now.day, now.hour, now.minute, now.second});
}
