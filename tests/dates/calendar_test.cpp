#include <algorithm>
#include <climits>
#include <cstdint>
#include <random>

#include <gtest/gtest.h>

#include <korvel/dates.h>

namespace korvel::test {
namespace {

// ---- The steps written down one day, month and year at a time ----

using Wide = std::int64_t;

Wide literalLeap(Wide year) {
  return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0) ? 1 : 0;
}

Wide literalDays(Wide year, Wide month) {
  switch (month) {
    case 1:
    case 3:
    case 5:
    case 7:
    case 8:
    case 10:
    case 12:
      return 31;
    case 4:
    case 6:
    case 9:
    case 11:
      return 30;
    case 2:
      return 28 + literalLeap(year);
    default:
      return 0;
  }
}

int literalHeld(Wide number) {
  return static_cast<int>(std::min<Wide>(std::max<Wide>(number, INT_MIN), INT_MAX));
}

int literalIncr(int date, unsigned n) {
  Wide year = date / 10000;
  Wide month = date / 100 % 100;
  Wide day = Wide{date % 100} + n;
  while (day > literalDays(year, month)) {
    day -= literalDays(year, month);
    ++month;
    if (month > 12) {
      month = 1;
      ++year;
    }
  }
  return literalHeld(year * 10000 + month * 100 + day);
}

int literalDiff(int date, unsigned days) {
  Wide n = days;
  Wide year = date / 10000;
  Wide month = date / 100 % 100;
  const Wide day = date % 100;
  while (n > 365 + literalLeap(year - 1)) {
    n -= 365 + literalLeap(year - 1);
    --year;
  }
  while (n > literalDays(year, month <= 1 ? 12 : month - 1)) {
    if (month <= 1) {
      month = 12;
      --year;
    } else {
      --month;
    }
    n -= literalDays(year, month);
  }
  if (day > n) return literalHeld(year * 10000 + month * 100 + day - n);
  if (month <= 1) {
    month = 12;
    --year;
  } else {
    --month;
  }
  return literalHeld(year * 10000 + month * 100 + literalDays(year, month) - (n - day));
}

int literalMinutes(int date, int time, int origin) {
  const Wide year = date / 10000;
  const Wide month = date / 100 % 100;
  Wide days = date % 100;
  for (Wide m = 1; m < month; ++m) days += literalDays(year, m);
  for (Wide y = year; y >= Wide{origin} + 1; --y) days += 365 + literalLeap(y);
  return literalHeld(days * 1440 + time / 100 % 100 * 60 + time % 100);
}

int randomDate(std::mt19937 &random) {
  const int year = static_cast<int>(random() % 10000);
  const int month = 1 + static_cast<int>(random() % 12);
  const int day = 1 + static_cast<int>(random() % literalDays(year, month));
  return year * 10000 + month * 100 + day;
}

unsigned randomDays(std::mt19937 &random) { return random() >> random() % 32; }

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
  EXPECT_EQ(Validate_Date(120040307), 1);
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
        const bool isDate =
            year >= 1800 && year <= 2100 && day >= 1 && day <= literalDays(year, month);
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
      // A day past its month goes on like one counted.
      {20040231, 0, 20040302},
      // No days are added to a date without days.
      {20040300, 0, 20040300},
      {20040300, 1, 20040301},
      // What is no month is stepped over.
      {20040007, 0, 20040107},
      {20041307, 0, 20050107},
      {20049907, 1, 20050108},
      {20041300, 0, 20041300},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(Get_Date_Incr(row.date, row.n), row.result) << row.date << " + " << row.n;
    EXPECT_EQ(literalIncr(row.date, row.n), row.result) << row.date << " + " << row.n;
  }
}

TEST(DaysAdded, HeldToWhatAnIntHolds) {
  EXPECT_EQ(Get_Date_Incr(20000101, 77000000), literalIncr(20000101, 77000000));
  EXPECT_EQ(Get_Date_Incr(20000101, UINT_MAX), INT_MAX);
  EXPECT_EQ(Get_Date_Incr(INT_MAX, UINT_MAX), INT_MAX);
  EXPECT_EQ(Get_Date_Incr(INT_MIN, UINT_MAX), INT_MAX);
}

TEST(DaysAdded, AgreeWithTheLiteralStepsOnRandomDates) {
  std::mt19937 random(57);
  for (int i = 0; i < 20000; ++i) {
    const int date = randomDate(random);
    const unsigned n = random() >> (8 + random() % 24);
    ASSERT_EQ(Get_Date_Incr(date, n), literalIncr(date, n)) << date << " + " << n;
  }
  // The longest walks, a few of them.
  for (int i = 0; i < 8; ++i) {
    const int date = randomDate(random);
    const unsigned n = random() >> 6;
    ASSERT_EQ(Get_Date_Incr(date, n), literalIncr(date, n)) << date << " + " << n;
  }
}

TEST(DaysAdded, AgreeWithTheLiteralStepsAroundWholeCycles) {
  for (const int date :
       {20000101, 20000229, 20000301, 19991231, 101, 20041315, 20040015, -20040315}) {
    for (unsigned cycles = 1; cycles <= 3; ++cycles) {
      for (unsigned n = cycles * 146097 - 70; n <= cycles * 146097 + 70; ++n) {
        ASSERT_EQ(Get_Date_Incr(date, n), literalIncr(date, n)) << date << " + " << n;
      }
    }
  }
}

TEST(DaysAdded, AgreeWithTheLiteralStepsOnAnyNumber) {
  std::mt19937 random(58);
  for (int i = 0; i < 20000; ++i) {
    const auto date = static_cast<int>(random());
    const unsigned n = random() >> (10 + random() % 22);
    ASSERT_EQ(Get_Date_Incr(date, n), literalIncr(date, n)) << date << " + " << n;
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
      // No day of its own: the last one before.
      {20040300, 0, 20040229},
      // What is no month is stepped over, or steps back as January does.
      {20041407, 0, 20041407},
      {20041407, 7, 20041231},
      {20040007, 7, 20031231},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(literalDiff(row.date, row.n), row.result) << row.date << " - " << row.n;
    EXPECT_EQ(Get_Date_Diff(row.date, row.n), row.result) << row.date << " - " << row.n;
  }
}

TEST(DaysTakenOff, HeldToWhatAnIntHolds) {
  EXPECT_EQ(Get_Date_Diff(20000101, UINT_MAX), INT_MIN);
  EXPECT_EQ(Get_Date_Diff(INT_MIN, UINT_MAX), INT_MIN);
  EXPECT_EQ(Get_Date_Diff(INT_MAX, UINT_MAX), INT_MIN);
}

TEST(DaysTakenOff, AgreeWithTheLiteralStepsOnAnyNumber) {
  std::mt19937 random(59);
  for (int i = 0; i < 20000; ++i) {
    const int date = randomDate(random);
    const unsigned n = random() >> (8 + random() % 24);
    ASSERT_EQ(Get_Date_Diff(date, n), literalDiff(date, n)) << date << " - " << n;
    const auto any = static_cast<int>(random());
    ASSERT_EQ(Get_Date_Diff(any, n), literalDiff(any, n)) << any << " - " << n;
  }
  for (int i = 0; i < 8; ++i) {
    const int date = randomDate(random);
    const unsigned n = randomDays(random);
    ASSERT_EQ(Get_Date_Diff(date, n), literalDiff(date, n)) << date << " - " << n;
  }
}

TEST(DaysTakenOff, AgreeWithTheLiteralStepsAroundWholeCycles) {
  for (const int date : {24000101, 24000229, 24000301, 23991231, 20041315, 20040015, -20040315}) {
    for (unsigned cycles = 1; cycles <= 3; ++cycles) {
      for (unsigned n = cycles * 146097 - 400; n <= cycles * 146097 + 400; ++n) {
        ASSERT_EQ(Get_Date_Diff(date, n), literalDiff(date, n)) << date << " - " << n;
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
      // Kept: the leap day that counts is that of the date's own year, from January on.
      {19520101, 0, 1950, (1 + 365 + 366) * 1440},
      {19530101, 0, 1950, (1 + 365 + 366 + 365) * 1440},
      // The origin year's own leap day counts only in its months.
      {19520301, 0, 1952, (1 + 31 + 29) * 1440},
      // Before the origin year no year counts.
      {19490101, 0, 1950, 1440},
      // What is no date or time goes through the same steps.
      {19501399, 9999, 1950, (99 + 365) * 1440 + 99 * 60 + 99},
      {0, 0, 1950, 0},
      {19500101, 12359, 1950, 1440 + 23 * 60 + 59},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(Min_depuis_org(row.date, row.time, row.origin), row.minutes)
        << row.date << ' ' << row.time << " from " << row.origin;
  }
}

TEST(Minutes, HeldToWhatAnIntHolds) {
  EXPECT_EQ(Min_depuis_org(99991231, 2359, 0), INT_MAX);
  EXPECT_EQ(Min_depuis_org(20000101, 0, INT_MIN), INT_MAX);
  EXPECT_EQ(Min_depuis_org(INT_MAX, INT_MAX, INT_MIN), INT_MAX);
  EXPECT_EQ(Min_depuis_org(20000101, 0, INT_MAX), 1440);
  EXPECT_EQ(Min_depuis_org(INT_MIN, INT_MIN, INT_MAX), literalMinutes(INT_MIN, INT_MIN, INT_MAX));
}

TEST(Minutes, AgreeWithTheLiteralStepsOnAnyNumber) {
  std::mt19937 random(60);
  for (int i = 0; i < 20000; ++i) {
    const int date = i % 2 == 0 ? randomDate(random) : static_cast<int>(random() % 200000000);
    const auto time = static_cast<int>(random() % 10000);
    const auto origin = static_cast<int>(random() % 12000) - 1000;
    ASSERT_EQ(Min_depuis_org(date, time, origin), literalMinutes(date, time, origin))
        << date << ' ' << time << " from " << origin;
    ASSERT_EQ(Min_depuis_org(-date, -time, -origin), literalMinutes(-date, -time, -origin))
        << -date << ' ' << -time << " from " << -origin;
  }
}

}  // namespace
}  // namespace korvel::test
