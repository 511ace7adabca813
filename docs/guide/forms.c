/* SPDX-License-Identifier: MIT */
/* A form drawn with Qt Designer, resources/dialogs/vaccination.ui: the layout is the form's, the
   values and their rules are the program's. */
#include <stdio.h>

#include <korvel/korvel.h>

#include "french.h"

/* The numbers that the form gives to its widgets, in their dynamic property `item`: 1 and 2 are OK
   and Annuler, and a date takes three. */
enum { kFirstText = 10, kFirstInt = 20, kFirstDate = 30, kFirstBool = 40, kFirstPush = 50 };
enum { kPatient, kVaccine, kLot, kTexts };

/* The action of the push button: the next dose is due in four weeks. */
static int moveDate(WindowRef window) {
  (void)window;
  if (Validate_Date(DDB_lDates[0])) DDB_lDates[0] = Get_Date_Incr(DDB_lDates[0], 28);
  return 0;
}

/* Called after the action, too: the date is shown anew. */
static int changed(int item, int textInUse, int textFirstItem, char **texts, int textCount,
                   int boolInUse, int boolFirstItem, int *bools, int boolCount, int intInUse,
                   int intFirstItem, int *ints, int intCount, int numInUse, int numFirstItem,
                   double *nums, int numCount, int dateInUse, int dateFirstItem, int *dates,
                   int dateCount, int *redisplay, int capacity) {
  (void)textInUse, (void)textFirstItem, (void)texts, (void)textCount;
  (void)boolInUse, (void)boolFirstItem, (void)bools, (void)boolCount;
  (void)intInUse, (void)intFirstItem, (void)ints, (void)intCount;
  (void)numInUse, (void)numFirstItem, (void)nums, (void)numCount;
  (void)dateInUse, (void)dateFirstItem, (void)dates, (void)dateCount;
  if (item != kFirstPush || capacity < 1) return 0;
  redisplay[0] = kFirstDate;
  return 1;
}

int main(void) {
  TexteDlgBox_param(kTexts, kFirstText);
  TexteDlgBox_set(kPatient, french("Lefèvre Françoise"));
  TexteDlgBox_set_liste(kVaccine, french("Grippe+ROR+Tétanos"));
  TexteDlgBox_set(kVaccine, "Grippe");
  TexteDlgBox_set(kLot, "");
  TexteDlgBox_set_ncarac(kLot, 12);
  IntDlgBox_param(1, kFirstInt);
  IntDlgBox_set(0, 1, KorvelPositive);
  DateDlgBox_param(1, kFirstDate);
  DateDlgBox_set(0, 20260304, KorvelCalendarDate);
  BoolDlgBox_param(1, kFirstBool);
  BoolDlgBox_set(0, 1);
  PushDlgBox_param(1, kFirstPush);
  PushDlgBox_set_fvalid(0, moveDate);
  DlgBoxGlobal_set(changed);

  if (!ZRVDlgBox("vaccination")) return 0;
  say(TDB_pszBuffer[kPatient]);
  say(TDB_pszBuffer[kVaccine]);
  printf("lot %s, dose %d, %d, rappel %d\n", TDB_pszBuffer[kLot], IDB_iInts[0], DDB_lDates[0],
         BDB_bFlags[0]);
  return 0;
}
