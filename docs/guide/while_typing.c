/* SPDX-License-Identifier: MIT */
/* Checks at every key: a pulse within bounds, an index that is computed while its parts are typed,
   and a last look at the whole when OK is pressed. */
#include <stdio.h>

#include <korvel/korvel.h>

#include "french.h"

enum { kWeight, kHeight, kIndex, kNums };
enum { kPulse, kInts };
enum { kFirstInt = 200, kFirstNum = 300 };

/* A validation function: the library's own reads the text, and we add the bounds. */
static int readPulse(char *text, int *value) {
  int status = intcod_i(text, value);
  if (status != KorvelDoneStatus) return status;
  return *value >= 20 && *value <= 250 ? KorvelDoneStatus : KorvelRefusedStatus;
}

/* The global callback: called when a field has changed to an acceptable value. */
static int changed(int item, int textInUse, int textFirstItem, char **texts, int textCount,
                   int boolInUse, int boolFirstItem, int *bools, int boolCount, int intInUse,
                   int intFirstItem, int *ints, int intCount, int numInUse, int numFirstItem,
                   double *nums, int numCount, int dateInUse, int dateFirstItem, int *dates,
                   int dateCount, int *redisplay, int capacity) {
  (void)textInUse, (void)textFirstItem, (void)texts, (void)textCount;
  (void)boolInUse, (void)boolFirstItem, (void)bools, (void)boolCount;
  (void)intInUse, (void)intFirstItem, (void)ints, (void)intCount;
  (void)numInUse, (void)numFirstItem, (void)numCount;
  (void)dateInUse, (void)dateFirstItem, (void)dates, (void)dateCount;
  if (item != kFirstNum + kWeight && item != kFirstNum + kHeight) return 0;
  if (capacity < 1) return 0;
  if (nums[kWeight] > 0 && nums[kHeight] > 0) {
    nums[kIndex] = nums[kWeight] / (nums[kHeight] * nums[kHeight]);
    redisplay[0] = kFirstNum + kIndex;
  } else {
    redisplay[0] = -(kFirstNum + kIndex); /* negative: shown empty */
  }
  return 1;
}

/* The final callback: called when OK is pressed, 0 keeps the dialog open. */
static int accepted(WindowRef window, int textInUse, char **texts, int textCount, int boolInUse,
                    int *bools, int boolCount, int intInUse, int *ints, int intCount, int numInUse,
                    double *nums, int numCount, int dateInUse, int *dates, int dateCount) {
  (void)textInUse, (void)texts, (void)textCount, (void)boolInUse, (void)bools, (void)boolCount;
  (void)intInUse, (void)ints, (void)intCount, (void)numInUse, (void)numCount;
  (void)dateInUse, (void)dates, (void)dateCount;
  if (nums[kIndex] >= 10 && nums[kIndex] <= 80) return 1;
  DlgBoxFinal_MessageBox(window, french("Vérifiez le poids et la taille."),
                         french("Saisie non acceptée"), KorvelCautionIcon);
  return 0;
}

static void line(int i, const char *text, int y) {
  StaticDlgBox_set(i, french(text));
  StaticDlgBox_set_geo(i, 10, y, 60, 12);
}

static void number(int i, int y, int decimals, int rank) {
  NumDlgBox_set_geo(i, 72, y, 40, 12, rank);
  NumDlgBox_set_nchiff(i, decimals);
}

int main(void) {
  TailleDlgBox_set(150, 112);
  StaticDlgBox_param(4);
  line(0, "Pouls (par minute)", 12);
  line(1, "Poids (kg)", 30);
  line(2, "Taille (m)", 48);
  line(3, "IMC", 66);

  IntDlgBox_param(kInts, kFirstInt);
  IntDlgBox_set_geo(kPulse, 72, 12, 40, 12, 0);
  IntDlgBox_set_fvalid(kPulse, readPulse);

  NumDlgBox_param(kNums, kFirstNum);
  number(kWeight, 30, 1, 1);
  number(kHeight, 48, 2, 2);
  number(kIndex, 66, 1, 3);
  NumDlgBox_set_fvalid(kWeight, realcod_d_ssup0);
  NumDlgBox_set_fvalid(kHeight, realcod_d_ssup0);
  NumDlgBox_mandatory(kIndex, 0);

  DlgBoxGlobal_set(changed);
  DlgBoxFinal_set(accepted);
  if (!ZRVDlgBoxEx("Constantes", 0)) return 0;
  printf("pouls %d, poids %.1f, taille %.2f, IMC %.1f\n", IDB_iInts[kPulse], NDB_dNums[kWeight],
         NDB_dNums[kHeight], NDB_dNums[kIndex]);
  return 0;
}
