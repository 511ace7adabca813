/* SPDX-License-Identifier: MIT */
/* Dates and numbers: the day of a booster from the day of a vaccination, and texts to and from
   numbers. */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

enum { kFirstText = 100, kFirstInt = 200, kFirstDate = 300 };

/* "Mercredi 03/06/2026" */
static void showDay(int date, char *out, int size) {
  char stored[9] = "", display[11] = "";
  LongToNUM(date, stored, 8);
  ZRV_Inv_Date(stored, display);
  int weekday = utdatedw(date / 10000, date / 100 % 100, date % 100);
  snprintf(out, (size_t)size, "%s %s", utdatedn(weekday), display);
}

static int changed(int item, int textInUse, int textFirstItem, char **texts, int textCount,
                   int boolInUse, int boolFirstItem, int *bools, int boolCount, int intInUse,
                   int intFirstItem, int *ints, int intCount, int numInUse, int numFirstItem,
                   double *nums, int numCount, int dateInUse, int dateFirstItem, int *dates,
                   int dateCount, int *redisplay, int capacity) {
  (void)item, (void)textInUse, (void)textFirstItem, (void)textCount;
  (void)boolInUse, (void)boolFirstItem, (void)bools, (void)boolCount;
  (void)intInUse, (void)intFirstItem, (void)intCount;
  (void)numInUse, (void)numFirstItem, (void)nums, (void)numCount;
  (void)dateInUse, (void)dateFirstItem, (void)dateCount;
  if (!Validate_Date(dates[0]) || ints[0] < 0 || capacity < 1) return 0;
  showDay(Get_Date_Incr(dates[0], (unsigned)ints[0]), texts[0], TDB_BUFFERSIZE);
  redisplay[0] = kFirstText;
  return 1;
}

/* Texts that are typed have a comma, texts that are stored a point: both are read. */
static void numbers(void) {
  char typed[] = " 37,5 ", written[32] = "", record[5] = "";
  double value = 0;
  int count = 0;
  printf("%d", realcod_d(typed, &value));
  realdco_d(value, written, sizeof written, 2);
  printf(" %s\n", written);
  printf("%d", LongToNUM(42, record, 4));
  printf(" %s", record);
  NUMToLong(record, 4, &count);
  printf(" %d\n", count);
}

int main(void) {
  char stored[9] = "";
  numbers();
  ZRV_Build_Date("03/06/2026", stored);
  puts(stored);

  TailleDlgBox_set(190, 92);
  StaticDlgBox_param(3);
  StaticDlgBox_set(0, "Injection");
  StaticDlgBox_set_geo(0, 10, 12, 56, 12);
  StaticDlgBox_set(1, french("Délai (jours)"));
  StaticDlgBox_set_geo(1, 10, 30, 56, 12);
  StaticDlgBox_set(2, "Rappel");
  StaticDlgBox_set_geo(2, 10, 48, 56, 12);
  DateDlgBox_param(1, kFirstDate);
  DateDlgBox_set_geo(0, 70, 12, 0, 12, 0);
  DateDlgBox_set_fvalid(0, intcod_l_date);
  IntDlgBox_param(1, kFirstInt);
  IntDlgBox_set_geo(0, 70, 30, 30, 12, 1);
  IntDlgBox_set(0, 90, KorvelPositive);
  TexteDlgBox_param(1, kFirstText);
  TexteDlgBox_set_geo(0, 70, 48, 100, 12, 2);
  TexteDlgBox_set(0, "");
  TexteDlgBox_mandatory(0, 0);
  DlgBoxGlobal_set(changed);
  if (ZRVDlgBoxEx("Rappel de vaccination", 0)) say(TDB_pszBuffer[0]);
  return 0;
}
