// SPDX-License-Identifier: MIT
// The current date and time as stored texts, with a stopped clock and with the host's.
#include "dates/clock.h"

#include <optional>
#include <stdlib.h>
#include <string>
#include <time.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/dates.h>

#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

using dates::ClockTime;

ClockTime stoppedAt{};

// Stops the library's clock at a given time while it lives.
class StoppedClock {
 public:
  explicit StoppedClock(ClockTime time) {
    stoppedAt = time;
    dates::clockInUse = [] { return stoppedAt; };
  }
  StoppedClock(const StoppedClock &) = delete;
  StoppedClock &operator=(const StoppedClock &) = delete;
  ~StoppedClock() { dates::clockInUse = dates::hostClock; }
};

// Sets the host's time zone while it lives.
class TimeZone {
 public:
  explicit TimeZone(const char *zone) {
    if (const char *set = getenv("TZ")) before_ = set;
    setenv("TZ", zone, 1);
    tzset();
  }
  TimeZone(const TimeZone &) = delete;
  TimeZone &operator=(const TimeZone &) = delete;
  ~TimeZone() {
    before_ ? setenv("TZ", before_->c_str(), 1) : unsetenv("TZ");
    tzset();
  }

 private:
  std::optional<std::string> before_;
};

void expectTells(int (*get)(char *), const char *text, int status) {
  PoisonedBuffer buffer(std::string(text).size() + 1);
  EXPECT_EQ(get(buffer.data()), status) << text;
  EXPECT_EQ(buffer.text(), text);
  EXPECT_TRUE(buffer.guardsIntact()) << text;
}

TEST(Clock, IsWrittenFieldByField) {
  const StoppedClock clock({2004, 3, 7, 9, 5, 0});
  expectTells(ZRV_Get_Date_short, "20040307", 0);
  expectTells(ZRV_Get_Date_long, "200403070905", 0);
  expectTells(ZRV_Get_Date_slong, "20040307090500", 0);
}

TEST(Clock, FillsEveryFieldOnTheLeft) {
  const StoppedClock clock({7, 12, 31, 23, 59, 60});
  expectTells(ZRV_Get_Date_slong, "00071231235960", 0);
}

TEST(Clock, OnlyTheLastFieldDecidesTheStatus) {
  // Kept: only the last field decides the status.
  const StoppedClock clock({2004, 123, 7, 9, 5, 123});
  char text[15] = "..............";
  EXPECT_EQ(ZRV_Get_Date_short(text), 0);
  EXPECT_EQ(ZRV_Get_Date_long(text), 0);
  EXPECT_EQ(ZRV_Get_Date_slong(text), 11);
}

TEST(Clock, NullOutputIsRefused) {
  EXPECT_EQ(ZRV_Get_Date_short(nullptr), 11);
  EXPECT_EQ(ZRV_Get_Date_long(nullptr), 11);
  EXPECT_EQ(ZRV_Get_Date_slong(nullptr), 11);
}

TEST(HostClock, TellsLocalTime) {
  // Two zones a whole day apart: the same moment has two dates.
  const auto inZone = [](const char *zone) {
    const TimeZone set(zone);
    const time_t before = time(nullptr);
    const ClockTime now = dates::hostClock();
    tm local{};
    local.tm_year = now.year - 1900;
    local.tm_mon = now.month - 1;
    local.tm_mday = now.day;
    local.tm_hour = now.hour;
    local.tm_min = now.minute;
    local.tm_sec = now.second;
    local.tm_isdst = -1;
    const time_t moment = mktime(&local);
    EXPECT_GE(moment, before) << zone;
    EXPECT_LE(moment, time(nullptr)) << zone;
    return now;
  };
  const ClockTime west = inZone("WST+12");
  const ClockTime east = inZone("EST-12");
  EXPECT_NE(west.day, east.day);
}

// The hours between two local times.
int hoursBetween(const ClockTime &from, const ClockTime &to) {
  const auto moment = [](const ClockTime &clock) {
    tm fields{};
    fields.tm_year = clock.year - 1900;
    fields.tm_mon = clock.month - 1;
    fields.tm_mday = clock.day;
    fields.tm_hour = clock.hour;
    return timegm(&fields);
  };
  return static_cast<int>((moment(to) - moment(from)) / 3600);
}

TEST(HostClock, FollowsATimeZoneSetWithoutTzset) {
  const TimeZone restored("WST+12");
  const ClockTime west = dates::hostClock();
  setenv("TZ", "EST-12", 1);
  // The hour may change between the two.
  EXPECT_NEAR(hoursBetween(west, dates::hostClock()), 24, 1);
}

// The hours that the host's clock jumps when /etc/localtime becomes another zone, in a process with
// its own view of the file system; negative where that is not allowed.
int hoursWhenTheHostMoves() {
  if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
    return -1;
  const auto moveTo = [](const char *zone) {
    return mount(zone, "/etc/localtime", nullptr, MS_BIND, nullptr) == 0;
  };
  unsetenv("TZ");
  if (!moveTo("/usr/share/zoneinfo/Etc/GMT+12")) return -1;
  const ClockTime west = dates::hostClock();
  if (!moveTo("/usr/share/zoneinfo/Etc/GMT-12")) return -1;
  return hoursBetween(west, dates::hostClock());
}

TEST(HostClock, FollowsTheHostToAnotherTimeZone) {
  const pid_t child = fork();
  if (child == 0) _exit(hoursWhenTheHostMoves() & 0xFF);
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 0xFF)
    GTEST_SKIP() << "/etc/localtime can be changed for a moment by root only, with tzdata there";
  EXPECT_NEAR(WEXITSTATUS(status), 24, 1);
}

}  // namespace
}  // namespace korvel::test
