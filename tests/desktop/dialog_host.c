/* SPDX-License-Identifier: MIT */
/* dialog_host <scenario>: an application that shows one dialog with a field of every kind, and
   writes what happened: "hit <identifier>" for each call of the global callback, "result <n>" at
   the end, then the dialog's size and the values. Texts are written as ASCII with \xNN for every
   other byte.

   Scenarios: plain; cancel-default (button 2 is the default); refuse (the final callback refuses
   the text "non"); optional (nothing is mandatory, nothing set); no-edit (opens with every high
   byte in its text fields); lines (the first text has room for three lines); large (twice as high,
   with the check box and the push button at its end). */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

enum { kPlain, kMasked, kChoice, kList, kTexts };

/* Column and height of the fields, in dialog units. */
enum { kX = 60, kLine = 12 };

static const char *scenario;

static void print(const char *label, int i, const char *text) {
  printf("%s %d ", label, i);
  for (; *text; text++) {
    unsigned char byte = (unsigned char)*text;
    if (byte >= 0x20 && byte < 0x7F) {
      putchar(byte);
    } else {
      printf("\\x%02X", byte);
    }
  }
  putchar('\n');
  fflush(stdout);
}

static int recordHit(int item, int t, int t0, char **texts, int tn, int b, int b0, int *bools,
                     int bn, int in, int i0, int *ints, int intn, int n, int n0, double *nums,
                     int nn, int d, int d0, int *dates, int dn, int *redisplay, int capacity) {
  (void)t, (void)t0, (void)texts, (void)tn, (void)b, (void)b0, (void)bools, (void)bn, (void)in;
  (void)i0, (void)ints, (void)intn, (void)n, (void)n0, (void)nums, (void)nn, (void)d, (void)d0;
  (void)dates, (void)dn, (void)redisplay, (void)capacity;
  printf("hit %d\n", item);
  fflush(stdout);
  return 0;
}

static int refuseNon(WindowRef window, int t, char **texts, int tn, int b, int *bools, int bn,
                     int i, int *ints, int in, int n, double *nums, int nn, int d, int *dates,
                     int dn) {
  (void)window, (void)t, (void)tn, (void)b, (void)bools, (void)bn, (void)i, (void)ints, (void)in;
  (void)n, (void)nums, (void)nn, (void)d, (void)dates, (void)dn;
  int accept = strcmp(texts[kPlain], "non") != 0;
  printf("final %d\n", accept);
  fflush(stdout);
  return accept;
}

static int action(WindowRef window) {
  printf("action %d\n", window != 0);
  fflush(stdout);
  return 0;
}

static void label(int i, const char *text, int y) {
  StaticDlgBox_set(i, text);
  StaticDlgBox_set_geo(i, 8, y, 48, kLine);
}

static void defineFields(void) {
  TailleDlgBox_set(200, 200);
  TexteDlgBox_param(kTexts, 100);
  IntDlgBox_param(2, 200);
  NumDlgBox_param(1, 300);
  DateDlgBox_param(1, 400);
  BoolDlgBox_param(1, 500);
  PushDlgBox_param(1, 600);
  StaticDlgBox_param(6);
  label(0, "Nom", 8);
  label(1, "Secret", 24);
  label(2, "Entiers", 40);
  label(3, "Nombre", 56);
  label(4, "Date", 72);
  label(5, "Choix", 88);

  TexteDlgBox_set_geo(kPlain, kX, 8, 100, kLine, 0); /* item 3 */
  TexteDlgBox_set(kPlain, "");
  TexteDlgBox_set_geo(kMasked, kX, 24, 100, kLine, 1); /* item 4 */
  TexteDlgBox_set(kMasked, "");
  TexteDlgBox_mandatory(kMasked, 0);
  TexteDlgBox_password(kMasked, 1);
  IntDlgBox_set_geo(0, kX, 40, 40, kLine, 2); /* item 5 */
  IntDlgBox_set(0, 12, 0);
  IntDlgBox_set_geo(1, kX + 50, 40, 40, kLine, 3); /* item 6, masked */
  IntDlgBox_set(1, 1234, 0);
  IntDlgBox_set_fvalid(1, intcod_l_sup0);
  IntDlgBox_password(1, 1);
  NumDlgBox_set_geo(0, kX, 56, 40, kLine, 4); /* item 7 */
  NumDlgBox_set_nchiff(0, 2);
  NumDlgBox_set(0, 1.5, 0);
  DateDlgBox_set_geo(0, kX, 72, 50, kLine, 5); /* items 8, 9, 10 */
  DateDlgBox_set(0, 20000229, 1);
  TexteDlgBox_set_geo(kChoice, kX, 88, 60, kLine, 6); /* item 11 */
  TexteDlgBox_set_liste(kChoice,
                        "Madame+Ma\xEEtre+No\xEBl+M\xEAme+Na\xEF"
                        "f");
  TexteDlgBox_set(kChoice, "Ma\xEEtre");
  TexteDlgBox_set_geo(kList, kX, 104, 80, 40, 7); /* item 12 */
  TexteDlgBox_set_liste(kList, "F\xE9minin$Masculin$Chlo\xEB");
  TexteDlgBox_change_liste(kList);
  TexteDlgBox_set(kList, "");
  TexteDlgBox_mandatory(kList, 0);
  KorvelItemName(100 + kList,
                 "Pr\xE9"
                 "f\xE9rence");                                  /* no text stands beside it */
  BoolDlgBox_set_geo(0, "Coch\xE9 & vu", kX, 148, 80, kLine, 8); /* item 13 */
  PushDlgBox_set_geo(0, "Action", kX, 164, 60, 15, 9);           /* item 14 */
  PushDlgBox_set_fvalid(0, action);
  DlgBoxGlobal_set(recordHit);
}

static void applyScenario(void) {
  if (strcmp(scenario, "cancel-default") == 0) BOKDlgBox_def(2);
  if (strcmp(scenario, "lines") == 0) {
    TexteDlgBox_set_geo(kPlain, kX + 52, 56, 80, 36, 0);
    TexteDlgBox_set_ncarac(kPlain, 60);
  }
  if (strcmp(scenario, "large") == 0) {
    TailleDlgBox_set(200, 480);
    BoolDlgBox_set_geo(0, "Coch\xE9 & vu", kX, 400, 80, kLine, 8);
    PushDlgBox_set_geo(0, "Action", kX, 420, 60, 15, 9);
  }
  if (strcmp(scenario, "refuse") == 0) DlgBoxFinal_set(refuseNon);
  if (strcmp(scenario, "no-edit") == 0) {
    char text[129] = "";
    for (int i = 0; i < 128; i++) text[i] = (char)(0x80 + i);
    text[128] = '\0';
    TexteDlgBox_set(kPlain, text);
    TexteDlgBox_set(kMasked, text);
  }
}

int main(int argc, char **argv) {
  scenario = argc > 1 ? argv[1] : "plain";
  defineFields();
  applyScenario();
  printf("result %d\n", ZRVDlgBoxEx("Essai \xE0 l'\xE9"
                                    "cran",
                                    0));
  printf("size %d %d\n", LDB_cx, LDB_cy);
  for (int i = 0; i < kTexts; i++) print("text", i, TDB_pszBuffer[i]);
  printf("int 0 %d\nint 1 %d\n", IDB_iInts[0], IDB_iInts[1]);
  printf("num 0 %.2f\ndate 0 %d\nbool 0 %d\n", NDB_dNums[0], DDB_lDates[0], BDB_bFlags[0]);
  return 0;
}
