// SPDX-License-Identifier: MIT
// The calendar, days added and taken off, and minutes counted: rows, borders, and random numbers
// beside models that count days.
#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include <korvel/dates.h>

namespace korvel::test {
namespace {

// ---- Models that count days on the standard library's calendar ----

using Wide = std::int64_t;

constexpr Wide kCycleYears = 400;
constexpr Wide kCycleDays = 146097;

Wide floorDivided(Wide a, Wide b) { return (a >= 0 ? a : a - b + 1) / b; }

// The number of a day. Months are counted from year 0 on. The standard calendar knows some 65,000
// years: all are moved into the cycle that begins with year 0.
Wide dayNumber(Wide month, Wide day) {
  const Wide year = floorDivided(month, 12);
  const Wide cycles = floorDivided(year, kCycleYears);
  const std::chrono::year inCycle(static_cast<int>(year - cycles * kCycleYears));
  const std::chrono::sys_days first = inCycle / static_cast<int>(month - 12 * year + 1) / 1;
  return first.time_since_epoch().count() + cycles * kCycleDays + day - 1;
}

Wide newYear(Wide year) { return dayNumber(12 * year, 1); }

struct Date {
  Wide year;
  int month;
  int day;

  Wide months() const { return 12 * year + month - 1; }
  // What is below January counts as January, what is above December as the next January.
  Wide nearestMonths() const { return 12 * year + std::clamp(month, 1, 13) - 1; }
};

Date fieldsOf(int date) { return {date / 10000, date / 100 % 100, date % 100}; }

Date dateOf(Wide number) {
  const Wide cycles = floorDivided(number, kCycleDays);
  const std::chrono::days inCycle(number - cycles * kCycleDays);
  const std::chrono::year_month_day date{std::chrono::sys_days(inCycle)};
  return {int{date.year()} + cycles * kCycleYears, static_cast<int>(unsigned{date.month()}),
          static_cast<int>(unsigned{date.day()})};
}

int clamped(Wide number) { return static_cast<int>(std::clamp<Wide>(number, INT_MIN, INT_MAX)); }

int numberOf(const Date &date, Wide day) {
  return clamped(date.year * 10000 + date.month * 100 + day);
}

int modelIncr(int date, unsigned n) {
  const Date from = fieldsOf(date);
  const Wide days = Wide{from.day} + n;
  if (days <= 0) return numberOf(from, days);
  const Date reached = dateOf(dayNumber(from.nearestMonths(), days));
  return numberOf(reached, reached.day);
}

// Whole years go back to the first new year after the day that lies n days before this new year,
// whole months then to the first month after the day that lies the rest before this month.
int modelDiff(int date, unsigned n) {
  Date from = fieldsOf(date);
  const Wide thisNewYear = newYear(from.year);
  from.year = std::min(from.year, dateOf(thisNewYear - n).year + 1);
  Wide left = n - (thisNewYear - newYear(from.year));
  if (from.month > 13 && left > 0) from.month = 13;

  const Wide months = from.nearestMonths();
  const Wide reached = std::min(months, dateOf(dayNumber(months, 1) - left).months() + 1);
  left -= dayNumber(months, 1) - dayNumber(reached, 1);
  const Date month = reached < months ? dateOf(dayNumber(reached, 1)) : from;
  if (from.day > left) return numberOf(month, from.day - left);
  if (month.month > 13) return numberOf(month, from.day - left - 100);
  const Date last = dateOf(dayNumber(reached, 1) - 1);
  return numberOf(last, last.day + from.day - left);
}

int modelMinutes(int date, int time, int origin) {
  const Date to = fieldsOf(date);
  Wide days = dayNumber(to.nearestMonths(), to.day) + 1 - newYear(to.year);
  if (to.year > origin) days += newYear(to.year + 1) - newYear(Wide{origin} + 1);
  return clamped(days * 1440 + time / 100 % 100 * 60 + time % 100);
}

int randomDate(std::mt19937 &random) {
  const Wide days = newYear(10000) - newYear(0);
  const Date date = dateOf(newYear(0) + static_cast<Wide>(random() % static_cast<unsigned>(days)));
  return numberOf(date, date.day);
}

unsigned randomDays(std::mt19937 &random) {
  return static_cast<unsigned>(random() >> random() % 32);
}

// ---- The calendar ----

TEST(LeapYear, FollowsTheGregorianRule) {
  constexpr struct {
    int year;
    int leap;
  } kRows[] = {
      {2000, 1}, {1900, 0}, {2100, 0}, {2004, 1}, {2001, 0}, {1600, 1},    {0, 1},       {4, 1},
      {100, 0},  {-4, 1},   {-100, 0}, {-400, 1}, {-1, 0},   {INT_MIN, 1}, {INT_MAX, 0},
  };
  for (const auto &row : kRows) EXPECT_EQ(utdately(row.year), row.leap) << row.year;
}

TEST(DaysInMonth, KnowsEveryMonth) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int month = 1; month <= 12; ++month) {
    EXPECT_EQ(utdatedm(2001, month), kDays[month - 1]) << month;
    EXPECT_EQ(utdatedm(2004, month), kDays[month - 1] + (month == 2 ? 1 : 0)) << month;
  }
  EXPECT_EQ(utdatedm(1900, 2), 28);
  EXPECT_EQ(utdatedm(2000, 2), 29);
}

TEST(DaysInMonth, HasNoneOutsideOneToTwelve) {
  for (const int month : {0, 13, -1, 99, INT_MIN, INT_MAX}) EXPECT_EQ(utdatedm(2000, month), 0);
}

TEST(Weekday, CountsFromSunday) {
  constexpr struct {
    int year;
    int month;
    int day;
    int weekday;
  } kRows[] = {
      {2000, 1, 1, 6},  {1970, 1, 1, 4}, {1789, 7, 14, 2}, {2004, 3, 7, 0},
      {2000, 2, 29, 2}, {1900, 3, 1, 4}, {1900, 2, 28, 3}, {2100, 12, 31, 5},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(utdatedw(row.year, row.month, row.day), row.weekday)
        << row.year << '-' << row.month << '-' << row.day;
  }
}

TEST(Weekday, GoesOnWithoutAGapFromYearOneTo9999) {
  int expected = utdatedw(1, 1, 1);
  EXPECT_EQ(expected, 1);
  for (int year = 1; year <= 9999; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; day <= utdatedm(year, month); ++day) {
        ASSERT_EQ(utdatedw(year, month, day), expected) << year << '-' << month << '-' << day;
        expected = (expected + 1) % 7;
      }
    }
  }
}

TEST(Weekday, IsADayOfTheWeekForAnyNumbers) {
  for (const int year : {INT_MIN, -1, 0, 123456, INT_MAX}) {
    for (const int month : {INT_MIN, 0, 13, INT_MAX}) {
      for (const int day : {INT_MIN, 0, 32, INT_MAX}) {
        const int weekday = utdatedw(year, month, day);
        EXPECT_TRUE(weekday >= 0 && weekday <= 6) << year << '-' << month << '-' << day;
      }
    }
  }
}

TEST(Validate, AcceptsDatesOf1800To2100) {
  for (const int date : {18000101, 20000229, 20040229, 20040307, 21001231, 19991130}) {
    EXPECT_EQ(Validate_Date(date), 1) << date;
  }
  // Kept: only the last four digits of the year count.
  for (const int date : {118000101, 120040307, 121001231})
    EXPECT_EQ(Validate_Date(date), 1) << date;
}

TEST(Validate, RefusesEverythingElse) {
  for (const int date :
       {19000229, 20010229, 21000229, 17991231, 21010101, 20040001, 20041301, 20040100, 20040132,
        20040431, 20040399, 0, 1, 101, -20040307, INT_MIN, INT_MAX, 40307}) {
    EXPECT_EQ(Validate_Date(date), 0) << date;
  }
}

TEST(Validate, AcceptsExactlyTheDaysOfEveryMonth) {
  for (int year = 1799; year <= 2101; ++year) {
    for (int month = 0; month <= 13; ++month) {
      for (int day = 0; day <= 32; ++day) {
        const bool isDay = (std::chrono::year(year) / month / day).ok();
        const bool isDate = isDay && year >= 1800 && year <= 2100;
        ASSERT_EQ(Validate_Date(year * 10000 + month * 100 + day), isDate ? 1 : 0)
            << year << '-' << month << '-' << day;
      }
    }
  }
}

// ---- Days added ----

TEST(DaysAdded, CrossMonthsAndYears) {
  constexpr struct {
    int date;
    unsigned n;
    int result;
  } kRows[] = {
      {20001231, 1, 20010101},
      {20000228, 1, 20000229},
      {20010228, 1, 20010301},
      {20040307, 0, 20040307},
      {20040131, 31, 20040302},
      {19000101, 36524, 20000101},
      {20000101, 146097, 24000101},
      {20000101, 146098, 24000102},
      {20000101, 146096, 23991231},
      {20000229, 366, 20010301},
      // A day past the end of its month is carried into the next.
      {20040231, 0, 20040302},
      // No days are added to a date without days.
      {20040300, 0, 20040300},
      {20040300, 1, 20040301},
      // A month that does not exist is stepped over.
      {20040007, 0, 20040107},
      {20041307, 0, 20050107},
      {20049907, 1, 20050108},
      {20041300, 0, 20041300},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(Get_Date_Incr(row.date, row.n), row.result) << row.date << " + " << row.n;
    EXPECT_EQ(modelIncr(row.date, row.n), row.result) << row.date << " + " << row.n;
  }
}

TEST(DaysAdded, ClampedToAnInt) {
  EXPECT_EQ(Get_Date_Incr(20000101, 77000000), modelIncr(20000101, 77000000));
  EXPECT_EQ(Get_Date_Incr(20000101, UINT_MAX), INT_MAX);
  EXPECT_EQ(Get_Date_Incr(INT_MAX, UINT_MAX), INT_MAX);
  EXPECT_EQ(Get_Date_Incr(INT_MIN, UINT_MAX), INT_MAX);
}

TEST(DaysAdded, AgreeWithTheModelOnRandomDates) {
  std::mt19937 random(57);
  for (int i = 0; i < 20000; ++i) {
    const int date = randomDate(random);
    const unsigned n = randomDays(random);
    ASSERT_EQ(Get_Date_Incr(date, n), modelIncr(date, n)) << date << " + " << n;
  }
}

TEST(DaysAdded, AgreeWithTheModelAroundWholeCycles) {
  for (const int date :
       {20000101, 20000229, 20000301, 19991231, 101, 20041315, 20040015, -20040315}) {
    for (unsigned cycles = 1; cycles <= 3; ++cycles) {
      for (unsigned n = cycles * 146097 - 70; n <= cycles * 146097 + 70; ++n) {
        ASSERT_EQ(Get_Date_Incr(date, n), modelIncr(date, n)) << date << " + " << n;
      }
    }
  }
}

TEST(DaysAdded, AgreeWithTheModelOnAnyNumber) {
  std::mt19937 random(58);
  for (int i = 0; i < 20000; ++i) {
    const auto date = static_cast<int>(random());
    const unsigned n = randomDays(random);
    ASSERT_EQ(Get_Date_Incr(date, n), modelIncr(date, n)) << date << " + " << n;
  }
}

// ---- Days taken off ----

TEST(DaysTakenOff, CrossMonthsAndYears) {
  constexpr struct {
    int date;
    unsigned n;
    int result;
  } kRows[] = {
      {20000315, 20, 20000224},
      {20000301, 1, 20000229},
      {20010101, 1, 20001231},
      {20040307, 0, 20040307},
      {20040331, 31, 20040229},
      {20040115, 15, 20031231},
      {20040115, 46, 20031130},
      {20010301, 1, 20010228},
      // Kept: a year is as long as the calendar year before, whatever the month. From 1 March 2001
      // the year before has 366 days, one more than lie between the two dates.
      {20010301, 367, 20000229},
      {20010301, 366, 20000229},
      {20010301, 365, 20000301},
      // Kept: a whole month keeps the day, also one that the month reached does not have.
      {20010331, 28, 20010303},
      {20010331, 29, 20010230},
      {20010331, 30, 20010229},
      {20010331, 31, 20010228},
      // Day 0 is the last day of the month before.
      {20040300, 0, 20040229},
      // A month above 12 is stepped over; one below 1 steps back as January does.
      {20041407, 0, 20041407},
      {20041407, 7, 20041231},
      {20040007, 7, 20031231},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(modelDiff(row.date, row.n), row.result) << row.date << " - " << row.n;
    EXPECT_EQ(Get_Date_Diff(row.date, row.n), row.result) << row.date << " - " << row.n;
  }
}

TEST(DaysTakenOff, ClampedToAnInt) {
  EXPECT_EQ(Get_Date_Diff(20000101, UINT_MAX), INT_MIN);
  EXPECT_EQ(Get_Date_Diff(INT_MIN, UINT_MAX), INT_MIN);
  EXPECT_EQ(Get_Date_Diff(INT_MAX, UINT_MAX), INT_MIN);
}

TEST(DaysTakenOff, AgreeWithTheModelOnAnyNumber) {
  std::mt19937 random(59);
  for (int i = 0; i < 20000; ++i) {
    const int date = randomDate(random);
    const unsigned n = randomDays(random);
    ASSERT_EQ(Get_Date_Diff(date, n), modelDiff(date, n)) << date << " - " << n;
    const auto any = static_cast<int>(random());
    ASSERT_EQ(Get_Date_Diff(any, n), modelDiff(any, n)) << any << " - " << n;
  }
}

TEST(DaysTakenOff, AgreeWithTheModelAroundWholeCycles) {
  for (const int date : {24000101, 24000229, 24000301, 23991231, 20041315, 20040015, -20040315}) {
    for (unsigned cycles = 1; cycles <= 3; ++cycles) {
      for (unsigned n = cycles * 146097 - 400; n <= cycles * 146097 + 400; ++n) {
        ASSERT_EQ(Get_Date_Diff(date, n), modelDiff(date, n)) << date << " - " << n;
      }
    }
  }
}

// ---- Minutes ----

TEST(Minutes, CountFromTheOriginYear) {
  constexpr struct {
    int date;
    int time;
    int origin;
    int minutes;
  } kRows[] = {
      {19500101, 0, 1950, 1440},
      {19500101, 1, 1950, 1441},
      {19500101, 2359, 1950, 1440 + 1439},
      {19500102, 0, 1950, 2 * 1440},
      {19500201, 0, 1950, 32 * 1440},
      {19510101, 0, 1950, 366 * 1440},
      // Kept: each year counts its own leap day, from January on.
      {19520101, 0, 1950, (1 + 365 + 366) * 1440},
      {19530101, 0, 1950, (1 + 365 + 366 + 365) * 1440},
      // The leap day of the origin year counts only from its March on.
      {19520301, 0, 1952, (1 + 31 + 29) * 1440},
      // Before the origin year no year counts.
      {19490101, 0, 1950, 1440},
      // Numbers that are no date or time go through the same steps.
      {19501399, 9999, 1950, (99 + 365) * 1440 + 99 * 60 + 99},
      {0, 0, 1950, 0},
      {19500101, 12359, 1950, 1440 + 23 * 60 + 59},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(Min_depuis_org(row.date, row.time, row.origin), row.minutes)
        << row.date << ' ' << row.time << " from " << row.origin;
  }
}

TEST(Minutes, ClampedToAnInt) {
  EXPECT_EQ(Min_depuis_org(99991231, 2359, 0), INT_MAX);
  EXPECT_EQ(Min_depuis_org(20000101, 0, INT_MIN), INT_MAX);
  EXPECT_EQ(Min_depuis_org(INT_MAX, INT_MAX, INT_MIN), INT_MAX);
  EXPECT_EQ(Min_depuis_org(20000101, 0, INT_MAX), 1440);
  EXPECT_EQ(Min_depuis_org(INT_MIN, INT_MIN, INT_MAX), modelMinutes(INT_MIN, INT_MIN, INT_MAX));
}

TEST(Minutes, AgreeWithTheModelOnAnyNumber) {
  std::mt19937 random(60);
  for (int i = 0; i < 20000; ++i) {
    const int date = i % 2 == 0 ? randomDate(random) : static_cast<int>(random() % 200000000);
    const auto time = static_cast<int>(random() % 10000);
    const auto origin = static_cast<int>(random() % 12000) - 1000;
    ASSERT_EQ(Min_depuis_org(date, time, origin), modelMinutes(date, time, origin))
        << date << ' ' << time << " from " << origin;
    ASSERT_EQ(Min_depuis_org(-date, -time, -origin), modelMinutes(-date, -time, -origin))
        << -date << ' ' << -time << " from " << -origin;
  }
}

}  // namespace
}  // namespace korvel::test
