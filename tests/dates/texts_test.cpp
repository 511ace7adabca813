// SPDX-License-Identifier: MIT
// Display dates to stored ones and back: rows, short texts, overlap and random bytes.
#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/dates.h>

#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

using namespace std::string_view_literals;

constexpr int kNone = 0;

// Changes the origin year while it lives.
class OriginYear {
 public:
  explicit OriginYear(int year) : before_(a_org) { a_org = year; }
  OriginYear(const OriginYear &) = delete;
  OriginYear &operator=(const OriginYear &) = delete;
  ~OriginYear() { a_org = before_; }

 private:
  int before_;
};

// All conversions under one signature; some ignore `time`.
using Convert = int (*)(const char *date, const char *time, char *out);

constexpr Convert kBuild = [](const char *date, const char *, char *out) {
  ZRV_Build_Date(date, out);
  return kNone;
};
constexpr Convert kBuildShort = [](const char *date, const char *, char *out) {
  return ZRV_Build_Date_short(date, out);
};
constexpr Convert kBuildLong = ZRV_Build_Date_long;
constexpr Convert kBuildSlong = ZRV_Build_Date_slong;
constexpr Convert kBuildSV = [](const char *date, const char *, char *out) {
  return ZRV_Build_Date_SV(date, out);
};
constexpr Convert kInv = [](const char *date, const char *, char *out) {
  ZRV_Inv_Date(date, out);
  return kNone;
};
constexpr Convert kInv2 = [](const char *date, const char *, char *out) {
  ZRV_Inv_Date_2(date, out);
  return kNone;
};
constexpr Convert kInvTime = [](const char *date, const char *, char *out) {
  ZRV_Inv_Date_Time(date, out);
  return kNone;
};
constexpr Convert kReduc = [](const char *date, const char *, char *out) {
  return ZRV_Reduc_Date(date, out);
};

// The text in memory that ends with its terminator: the sanitizers see a read after it.
std::vector<char> exact(std::string_view text) {
  std::vector<char> bytes(text.begin(), text.end());
  bytes.push_back('\0');
  bytes.shrink_to_fit();
  return bytes;
}

// `out` is everything written before the final terminator, inner NULs included.
void expectConverts(Convert convert, std::string_view date, std::string_view time, int status,
                    std::string_view out) {
  const std::vector<char> dateText = exact(date);
  const std::vector<char> timeText = exact(time);
  PoisonedBuffer buffer(out.size() + 1);
  EXPECT_EQ(convert(dateText.data(), timeText.data(), buffer.data()), status) << date;
  EXPECT_EQ(std::string_view(buffer.data(), out.size()), out) << date;
  EXPECT_EQ(buffer.data()[out.size()], '\0') << date;
  EXPECT_TRUE(buffer.guardsIntact()) << date;
}

struct Row {
  Convert convert;
  std::string_view date;
  std::string_view time;
  int status;
  std::string_view out;
};

TEST(BuildDate, StoresDisplayDates) {
  constexpr Row kRows[] = {
      {kBuild, "07/03/2004", "", kNone, "20040307"},
      {kBuildShort, "07/03/04", "", 0, "20040307"},
      {kBuildLong, "07/03/04", "09:05", 0, "200403070905"},
      {kBuildSlong, "07/03/04", "09:05:00", 0, "20040307090500"},
      {kBuildSV, "07/03/04", "", 0, "200403070000"},
      // Kept: a copied year gives the length of the input for a status.
      {kBuildSV, "07/03/2004", "", 10, "200403070000"},
      // Separators are not checked.
      {kBuild, "07.03 2004", "", kNone, "20040307"},
      {kBuildLong, "07x03x04", "09h05", 0, "200403070905"},
      // Nor are the digits.
      {kBuild, "ab/cd/efgh", "", kNone, "efghcdab"},
      {kBuild, "99/99/9999", "", kNone, "99999999"},
      // Characters after the fields are ignored.
      {kBuild, "07/03/2004 09:05:00", "", kNone, "20040307"},
      {kBuildShort, "07/03/2004", "", 0, "20200307"},
      {kBuildSV, "07/03/04 ", "", 0, "200403070000"},
      {kBuildSV, "07/03/2004 ", "", 0, "202003070000"},
  };
  for (const Row &row : kRows) {
    expectConverts(row.convert, row.date, row.time, row.status, row.out);
  }
}

TEST(BuildDate, PlacesTwoDigitYearsByTheOriginYear) {
  expectConverts(kBuildShort, "07/03/49", "", 0, "20490307");
  expectConverts(kBuildShort, "07/03/50", "", 0, "19500307");
  expectConverts(kBuildShort, "07/03/00", "", 0, "20000307");
  expectConverts(kBuildShort, "07/03/99", "", 0, "19990307");
  const OriginYear later(1980);
  expectConverts(kBuildShort, "07/03/79", "", 0, "20790307");
  expectConverts(kBuildShort, "07/03/80", "", 0, "19800307");
  expectConverts(kBuildLong, "07/03/79", "00:00", 0, "207903070000");
  expectConverts(kBuildSlong, "07/03/79", "00:00:00", 0, "20790307000000");
  expectConverts(kBuildSV, "07/03/79", "", 0, "207903070000");
  expectConverts(kBuildSV, "07/03/1979", "", 10, "197903070000");
}

TEST(BuildDate, OriginYearsOfAnySizeAreTaken) {
  for (const int year : {INT_MIN, 0, 1900}) {
    const OriginYear origin(year);
    expectConverts(kBuildShort, "07/03/00", "", 0, "19000307");
    expectConverts(kBuildShort, "07/03/99", "", 0, "19990307");
  }
  for (const int year : {2000, INT_MAX}) {
    const OriginYear origin(year);
    expectConverts(kBuildShort, "07/03/00", "", 0, "20000307");
    expectConverts(kBuildShort, "07/03/99", "", 0, "20990307");
  }
}

TEST(BuildDate, YearDigitsAreReadByPositionWithoutACheck) {
  // Kept: any character counts as a digit, by its distance from "0".
  expectConverts(kBuildShort, "07/03/ 4", "", 0, "18440307");
  expectConverts(kBuildShort, "07/03/ab", "", 0, "24400307");
  expectConverts(kBuildShort, "07/03/\x80\x80", "", 0, "00640307");
  expectConverts(kBuildShort, "07/03/\x7F\x7F", "", 0, "27690307");
}

TEST(OriginYearGlobal, StartsAt1950) { EXPECT_EQ(a_org, 1950); }

TEST(InvDate, ShowsStoredDates) {
  constexpr Row kRows[] = {
      {kInv, "20040307", "", kNone, "07/03/2004"},
      {kInv, "20040307090500", "", kNone, "07/03/2004"},
      {kInv2, "20040307", "", kNone, "07/03/04"},
      {kInv2, "200403070905", "", kNone, "07/03/04"},
      {kInvTime, "20040307090500", "", kNone, "07/03/2004 09:05:00"},
      {kInvTime, "20040307090500999", "", kNone, "07/03/2004 09:05:00"},
      {kInv, "\xE9\xE9\xE9\xE9zzyy", "", kNone, "yy/zz/\xE9\xE9\xE9\xE9"},
  };
  for (const Row &row : kRows) {
    expectConverts(row.convert, row.date, row.time, row.status, row.out);
  }
}

TEST(ReducDate, TakesTheYearByTheLength) {
  constexpr Row kRows[] = {
      {kReduc, "07/03/2004", "", 10, "07/03/04"},  {kReduc, "07/03/04", "", 8, "07/03/04"},
      {kReduc, "07/03/2004 ", "", 11, "07/03/20"}, {kReduc, "07/03/200", "", 9, "07/03/20"},
      {kReduc, "07.03.2004", "", 10, "07/03/04"},
  };
  for (const Row &row : kRows) {
    expectConverts(row.convert, row.date, row.time, row.status, row.out);
  }
}

TEST(ShortTexts, ReadAsIfNulsFollowed) {
  constexpr Row kRows[] = {
      {kBuild, "1/2", "", kNone,
       "\0\0\0\0\0\0"
       "1/"sv},
      {kBuild, "", "", kNone, "\0\0\0\0\0\0\0\0"sv},
      {kBuild, "07/03/04", "", kNone,
       "04\0\0"
       "0307"sv},
      // A NUL in place of a year's digit counts like any other character.
      {kBuildShort, "1/2", "", 0,
       "1472\0\0"
       "1/"sv},
      {kBuildLong, "07/03/04", "9", 0, "200403079\0\0\0"sv},
      {kBuildSlong, "07/03/04", "", 0, "20040307\0\0\0\0\0\0"sv},
      {kBuildSV, "", "", 0,
       "1472\0\0\0\0"
       "0000"sv},
      {kInv, "2004", "", kNone, "\0\0/\0\0/2004"sv},
      {kInv, "", "", kNone, "\0\0/\0\0/\0\0\0\0"sv},
      {kInv2, "20040", "", kNone, "\0\0/0\0/04"sv},
      {kInvTime, "20040307", "", kNone, "07/03/2004 \0\0:\0\0:\0\0"sv},
      {kReduc, "1/2", "", 3, "1//\0\0/\0\0"sv},
      {kReduc, "", "", 0, "\0\0/\0\0/\0\0"sv},
  };
  for (const Row &row : kRows) {
    expectConverts(row.convert, row.date, row.time, row.status, row.out);
  }
}

TEST(DateTexts, OutputMayBeTheInput) {
  char text[32] = "07/03/2004";
  ZRV_Build_Date(text, text);
  EXPECT_STREQ(text, "20040307");
  ZRV_Inv_Date(text, text);
  EXPECT_STREQ(text, "07/03/2004");
  EXPECT_EQ(ZRV_Reduc_Date(text, text), 10);
  EXPECT_STREQ(text, "07/03/04");
  EXPECT_EQ(ZRV_Build_Date_short(text, text), 0);
  EXPECT_STREQ(text, "20040307");
  ZRV_Inv_Date_2(text, text);
  EXPECT_STREQ(text, "07/03/04");
  EXPECT_EQ(ZRV_Build_Date_SV(text, text), 0);
  EXPECT_STREQ(text, "200403070000");
  std::strcpy(text, "20040307090500");
  ZRV_Inv_Date_Time(text, text);
  EXPECT_STREQ(text, "07/03/2004 09:05:00");
  char time[32] = "09:05:00";
  EXPECT_EQ(ZRV_Build_Date_slong("07/03/04", time, time), 0);
  EXPECT_STREQ(time, "20040307090500");
}

TEST(DateTexts, NullPointersAreNeverFollowed) {
  char out[32] = "";
  ZRV_Build_Date("07/03/2004", nullptr);
  ZRV_Inv_Date("20040307", nullptr);
  ZRV_Inv_Date_2("20040307", nullptr);
  ZRV_Inv_Date_Time("20040307090500", nullptr);
  EXPECT_EQ(ZRV_Build_Date_short("07/03/04", nullptr), 11);
  EXPECT_EQ(ZRV_Build_Date_long("07/03/04", "09:05", nullptr), 11);
  EXPECT_EQ(ZRV_Build_Date_slong("07/03/04", "09:05:00", nullptr), 11);
  EXPECT_EQ(ZRV_Build_Date_SV("07/03/04", nullptr), 11);
  EXPECT_EQ(ZRV_Reduc_Date("07/03/04", nullptr), 8);
  EXPECT_EQ(ZRV_Build_Date_long("07/03/04", nullptr, out), 0);
  EXPECT_STREQ(out, "20040307");
  EXPECT_EQ(ZRV_Reduc_Date(nullptr, out), 0);
  EXPECT_STREQ(out, "");
}

// Any bytes of any length: nothing outside the output is written, and it is terminated.
TEST(DateTexts, StayInTheirOutputForAnyInput) {
  constexpr struct {
    Convert convert;
    std::size_t length;
  } kAll[] = {
      {kBuild, 8}, {kBuildShort, 8}, {kBuildLong, 12}, {kBuildSlong, 14}, {kBuildSV, 12},
      {kInv, 10},  {kInv2, 8},       {kInvTime, 19},   {kReduc, 8},
  };
  std::mt19937 random(61);
  for (int i = 0; i < 20000; ++i) {
    std::string date(random() % 24, 'x');
    std::string time(random() % 12, 'x');
    for (char &c : date) c = static_cast<char>(1 + random() % 255);
    for (char &c : time) c = static_cast<char>(1 + random() % 255);
    const std::vector<char> dateText = exact(date);
    const std::vector<char> timeText = exact(time);
    for (const auto &[convert, length] : kAll) {
      PoisonedBuffer buffer(length + 1);
      convert(dateText.data(), timeText.data(), buffer.data());
      ASSERT_TRUE(buffer.guardsIntact()) << date;
      ASSERT_EQ(buffer.data()[length], '\0') << date;
    }
  }
}

}  // namespace
}  // namespace korvel::test
