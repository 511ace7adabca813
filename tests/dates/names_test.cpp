// SPDX-License-Identifier: MIT
// The French names of months and days, and their abbreviations.
#include <climits>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <korvel/dates.h>

namespace korvel::test {
namespace {

// Kept: é is the byte 0x82 (octal 202), Aout has no accent.
constexpr const char *kIllegal = "Ill\202gal";
constexpr const char *kMonths[] = {"Janvier",   "F\202vrier", "Mars",     "Avril",
                                   "Mai",       "Juin",       "Juillet",  "Aout",
                                   "Septembre", "Octobre",    "Novembre", "D\202cembre"};
constexpr const char *kMonthAbbreviations[] = {"JAN", "F\202V", "MAR", "AVR", "MAI", "JUI",
                                               "JUI", "AOU",    "SEP", "OCT", "NOV", "D\202C"};
constexpr const char *kDays[] = {"Dimanche", "Lundi",    "Mardi", "Mercredi",
                                 "Jeudi",    "Vendredi", "Samedi"};
constexpr const char *kDayAbbreviations[] = {"DIM", "LUN", "MAR", "MER", "JEU", "VEN", "SAM"};

TEST(Names, OfEveryMonth) {
  for (int month = 1; month <= 12; ++month) {
    EXPECT_STREQ(utdatemy(month), kMonths[month - 1]);
    EXPECT_STREQ(utdatemm(month), kMonthAbbreviations[month - 1]);
  }
}

TEST(Names, OfEveryDay) {
  for (int day = 0; day <= 6; ++day) {
    EXPECT_STREQ(utdatedn(day), kDays[day]);
    EXPECT_STREQ(utdatedd(day), kDayAbbreviations[day]);
  }
}

TEST(Names, OutsideTheirRangeAreIllegal) {
  for (const int month : {0, 13, -1, 20, INT_MIN, INT_MAX}) {
    EXPECT_STREQ(utdatemy(month), kIllegal) << month;
    EXPECT_STREQ(utdatemm(month), "ILL") << month;
  }
  for (const int day : {-1, 7, 13, INT_MIN, INT_MAX}) {
    EXPECT_STREQ(utdatedn(day), kIllegal) << day;
    EXPECT_STREQ(utdatedd(day), "ILL") << day;
  }
}

TEST(Names, AreGivenAsCharacterPointers) {
  static_assert(std::is_same_v<decltype(utdatemy(1)), char *>);
  static_assert(std::is_same_v<decltype(utdatedn(1)), char *>);
  static_assert(std::is_same_v<decltype(utdatemm(1)), char *>);
  static_assert(std::is_same_v<decltype(utdatedd(1)), char *>);
  // The buffer of the abbreviations has room for three letters, and may be written.
  utdatemm(1)[0] = '#';
  EXPECT_STREQ(utdatemm(1), "JAN");
}

TEST(Names, AbbreviationsShareOneBuffer) {
  // Kept: both abbreviations are one buffer.
  const char *const month = utdatemm(3);
  EXPECT_STREQ(month, "MAR");
  const char *const day = utdatedd(0);
  EXPECT_EQ(month, day);
  EXPECT_STREQ(month, "DIM");
  EXPECT_EQ(utdatemm(2), day);
  EXPECT_STREQ(day, "F\202V");
}

}  // namespace
}  // namespace korvel::test
