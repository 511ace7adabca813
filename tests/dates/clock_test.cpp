#include "dates/clock.h"

#include <gtest/gtest.h>
#include <korvel/dates.h>
#include <stdlib.h>
#include <time.h>

#include <optional>
#include <string>

#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

using dates::ClockTime;

ClockTime told{};

// Stops the library's clock at a time of the test's choice.
class StoppedClock {
 public:
  explicit StoppedClock(ClockTime time) {
    told = time;
    dates::clockInUse = [] { return told; };
  }
  StoppedClock(const StoppedClock &) = delete;
  StoppedClock &operator=(const StoppedClock &) = delete;
  ~StoppedClock() { dates::clockInUse = dates::hostClock; }
};

// Sets the host's time zone for as long as it lives.
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

TEST(Clock, StatusIsThatOfTheLastField) {
  // Kept: a field before the last one that does not fit is not told.
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

}  // namespace
}  // namespace korvel::test
