// SPDX-License-Identifier: MIT
// What is told of texts and numbers that are no dates.
#include "dates/misuse.h"

#include <korvel/dates.h>

#include "tests/support/told.h"

namespace korvel::test {
namespace {

TEST(DatesMisuse, ATextThatIsShorterThanItsLayout) {
  char out[32] = "";
  EXPECT_TOLD(
      ZRV_Build_Date("07/03/04", out),
      "ZRV_Build_Date(\"07/03/04\", ...): a text of 8 characters is shorter than DD/MM/YYYY");
  EXPECT_TOLD(ZRV_Build_Date("07/03/2004", out), "");
  EXPECT_TOLD(
      ZRV_Build_Date_short("7/3/4", out),
      "ZRV_Build_Date_short(\"7/3/4\", ...): a text of 5 characters is shorter than DD/MM/YY");
  EXPECT_TOLD(ZRV_Build_Date_long("07/03/04", "9:05", out),
              "ZRV_Build_Date_long(\"07/03/04\", \"9:05\", ...): a text of 4 characters is shorter "
              "than HH:MM");
  EXPECT_TOLD(
      ZRV_Build_Date_slong("07/03/04", "09:05", out),
      "ZRV_Build_Date_slong(\"07/03/04\", \"09:05\", ...): a text of 5 characters is shorter "
      "than HH:MM:SS");
  EXPECT_FAILS(ZRV_Build_Date_short("07/03/04", nullptr), 11,
               "ZRV_Build_Date_short(\"07/03/04\", null): argument 2 is null");
  EXPECT_FAILS(ZRV_Build_Date_long("07/03/04", "09:05", nullptr), 11,
               "ZRV_Build_Date_long(\"07/03/04\", \"09:05\", null): argument 3 is null");
  EXPECT_FAILS(ZRV_Build_Date_slong("07/03/04", "09:05:00", nullptr), 11,
               "ZRV_Build_Date_slong(\"07/03/04\", \"09:05:00\", null): argument 3 is null");
  EXPECT_FAILS(ZRV_Build_Date_SV("07/03/04", nullptr), 11,
               "ZRV_Build_Date_SV(\"07/03/04\", null): argument 2 is null");
  EXPECT_TOLD(ZRV_Build_Date_SV("", out),
              "ZRV_Build_Date_SV(\"\", ...): a text of 0 characters is shorter than DD/MM/YY");
  EXPECT_TOLD(ZRV_Inv_Date("2004", out),
              "ZRV_Inv_Date(\"2004\", ...): a text of 4 characters is shorter than YYYYMMDD");
  EXPECT_TOLD(ZRV_Inv_Date_2("2004", out),
              "ZRV_Inv_Date_2(\"2004\", ...): a text of 4 characters is shorter than YYYYMMDD");
  EXPECT_TOLD(ZRV_Inv_Date_Time("20040307", out),
              "ZRV_Inv_Date_Time(\"20040307\", ...): a text of 8 characters is shorter than "
              "YYYYMMDDHHMMSS");
  EXPECT_TOLD(ZRV_Reduc_Date("2004", out),
              "ZRV_Reduc_Date(\"2004\", ...): a text of 4 characters is shorter than DD/MM/YY");
}

TEST(DatesMisuse, NoOutput) {
  char *const none = nullptr;
  EXPECT_FAILS(ZRV_Get_Date_short(none), 11, "ZRV_Get_Date_short(null): argument 1 is null");
  EXPECT_FAILS(ZRV_Get_Date_long(none), 11, "ZRV_Get_Date_long(null): argument 1 is null");
  EXPECT_FAILS(ZRV_Get_Date_slong(none), 11, "ZRV_Get_Date_slong(null): argument 1 is null");
  EXPECT_TOLD(ZRV_Inv_Date("20040307", none),
              "ZRV_Inv_Date(\"20040307\", null): argument 2 is null");
}

TEST(DatesMisuse, AMonthOrDayThatThereIsNot) {
  EXPECT_FAILS(utdatedm(2004, 13), 0, "utdatedm(2004, 13): there is no month 13: 1 to 12");
  EXPECT_TOLD(utdatedw(2004, 0, 1), "utdatedw(2004, 0, 1): there is no month 0: 1 to 12");
  EXPECT_TOLD(utdatemy(13), "utdatemy(13): there is no month 13: 1 to 12");
  EXPECT_TOLD(utdatemm(0), "utdatemm(0): there is no month 0: 1 to 12");
  EXPECT_TOLD(utdatedn(7), "utdatedn(7): there is no day 7: 0 is Sunday and 6 is Saturday");
  EXPECT_TOLD(utdatedd(-1), "utdatedd(-1): there is no day -1: 0 is Sunday and 6 is Saturday");
  EXPECT_TOLD(utdatedn(0), "");
  EXPECT_TOLD(Get_Date_Incr(20040007, 1),
              "Get_Date_Incr(20040007, 1): 20040007 has no month from 1 to 12: a date is YYYYMMDD");
  EXPECT_TOLD(Get_Date_Diff(20041301, 1),
              "Get_Date_Diff(20041301, 1): 20041301 has no month from 1 to 12: a date is YYYYMMDD");
  EXPECT_TOLD(Min_depuis_org(0, 0, 1999),
              "Min_depuis_org(0, 0, 1999): 0 has no month from 1 to 12: a date is YYYYMMDD");
  EXPECT_TOLD(Get_Date_Incr(20041231, 1), "");
  EXPECT_TOLD(Validate_Date(20041301), "");
}

}  // namespace
}  // namespace korvel::test
