/* SPDX-License-Identifier: MIT */
/* An application linked at a fixed address: the library's arrays then live in the application
   (copy relocations), and its functions have addresses there, too. Both must see the same ones.
   Ends with 0 when they do. */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

static int failures;

static void check(int holds, const char *what) {
  if (!holds) {
    printf("not so: %s\n", what);
    failures++;
  }
}

static int isEven(char *text, int *value) {
  int status = intcod_i(text, value);
  return status != 0 ? status : *value % 2 != 0;
}

/* Functions whose addresses the library puts into its tables, or recognises there. */
static void checkFunctions(void) {
  const DlgBoxGlobal_t noGlobal = (DlgBoxGlobal_t)(void (*)(void))DlgBoxGlobal_nul;
  const DlgBoxFinal_t noFinal = (DlgBoxFinal_t)(void (*)(void))DlgBoxFinal_nul;
  check(DlgBoxGlobal_fonct == noGlobal, "there is no global callback at first");
  check(DlgBoxFinal_fonct == noFinal, "nor a final one");
  DlgBoxFinal_set(noFinal);
  check(ZRVDlgBox_end(0) == 1, "a final callback of none accepts");
  check(DlgBoxGlobal_fonct == noGlobal, "the end of a run leaves no global callback");
  check(DlgBoxFinal_fonct == noFinal, "nor a final one");

  IntDlgBox_param(4, 200);
  IntDlgBox_set(1, 0, KorvelAnyValue);
  IntDlgBox_set(2, 0, KorvelNotNegative);
  IntDlgBox_set(3, 0, KorvelPositive);
  check(vi_tab[0] == intcod_i && vi_tab[1] == intcod_i, "an integer is read by intcod_i");
  check(vi_tab[2] == intcod_i_sup0, "one of 0 and above by intcod_i_sup0");
  check(vi_tab[3] == intcod_i_ssup0, "one of 1 and above by intcod_i_ssup0");
  NumDlgBox_param(4, 300);
  NumDlgBox_set(1, 0, KorvelAnyValue);
  NumDlgBox_set(2, 0, KorvelNotNegative);
  NumDlgBox_set(3, 0, KorvelPositive);
  check(vf_tab[0] == realcod_d && vf_tab[1] == realcod_d, "a number is read by realcod_d");
  check(vf_tab[2] == realcod_d_sup0, "one of 0 and above by realcod_d_sup0");
  check(vf_tab[3] == realcod_d_ssup0, "one above 0 by realcod_d_ssup0");
  DateDlgBox_param(3, 400);
  DateDlgBox_set(1, 0, KorvelUncheckedDate);
  DateDlgBox_set(2, 20000229, KorvelCalendarDate);
  check(vd_tab[0] == intcod_l, "a date is read by intcod_l");
  check(vd_tab[1] == intcod_l_sup0, "an unchecked one by intcod_l_sup0");
  check(vd_tab[2] == intcod_l_date, "a day of the calendar by intcod_l_date");
}

#ifdef KORVEL_TEST_DRAWS
static int isWhite(CGrafPtr image) {
  RGBColor colour;
  int x, y;
  for (y = 0; y < 20; y++) {
    for (x = 0; x < 40; x++) {
      if (!KorvelPortPixel(image, x, y, &colour)) return 0;
      if (colour.red != 0xFFFF) return 0;
    }
  }
  return 1;
}

static void checkDrawing(void) {
  CGrafPtr image = KorvelImagePort(40, 20);
  check(image != 0, "there is an image to draw on");
  ch_font_set(image, "Arial", 0, 255, 12);
  check(strcmp(ch_font_FontName, "Arial") == 0 && char_dy > 8, "a font that is chosen is seen");
  char_dy = 1000;
  TextOut_0(image, 0, 0, "H", 1);
  check(isWhite(image), "an offset written here is used");
  char_dy = 15;
  TextOut_0(image, 0, 0, "H", 1);
  check(!isWhite(image), "and so is the next one");
  KorvelPortRelease(image);
}
#endif

int main(void) {
  char text[32];
  ValidInt_t own[128] = {0};

  check(sizeof TDB_szBuffer == 8192, "the text store has 8192 bytes");
  check(sizeof IDB_iInts / sizeof IDB_iInts[0] == 128, "there are 128 integer fields");
  check(vi == vi_tab, "the validation functions' pointer starts at the table");
  check(strcmp(OK_sz1, "OK") == 0 && strcmp(OK_sz2, "Annuler") == 0, "the buttons have texts");
  check(OK_def == 1 && a_org == 1950, "the globals have their first values");

  /* What the library writes is read here. */
  TexteDlgBox_param(3, 100);
  TexteDlgBox_set(1, "Durand");
  check(TDB == 1 && TDB_N == 3 && TDB_BUFFERSIZE == 2730, "a definition is seen");
  check(TDB_pszBuffer[1] == TDB_szBuffer + 2730, "the slices lie in the store");
  check(strcmp(TDB_szBuffer + 2730, "Durand") == 0, "a text is seen");

  /* What is written here is read by the library. */
  strcpy(TDB_szBuffer + 2730, "Dupont");
  TexteDlgBox_retrieve(1, text, sizeof text);
  check(strcmp(text, "Dupont") == 0, "a text written here is read");
  a_org = 1980;
  ZRV_Build_Date_short("07/03/79", text);
  check(strcmp(text, "20790307") == 0, "an origin year written here is used");
  a_org = 1950;

  /* A table of the application's own takes the place of the library's. */
  vi = own;
  IntDlgBox_param(2, 200);
  IntDlgBox_set_fvalid(1, isEven);
  check(own[0] == intcod_i && own[1] == isEven, "functions go to the application's own table");
  check(vi_tab[0] == 0, "and leave the library's alone");
  vi = vi_tab;
  checkFunctions();

  /* The chosen font and its offset. */
  check(sizeof ch_font_FontName == 80 && ch_font_FontName[0] == 0, "no font is chosen at first");
#ifdef KORVEL_TEST_DRAWS
  checkDrawing();
#endif

  /* The handle tables. */
  check(DATA_FILE_TAB[0].mode == -1 && DATA_FILE_ID == -1, "no file is open at first");
  check(MFil_Open("", -1, 5000) == 0 && DATA_MFIL_ID == 0, "a memory file opens");
  check(DATA_MFIL_TAB[0].mode == 2 && DATA_MFIL_TAB[0].capacity == 5000, "its slot is seen");
  DATA_MFIL_TAB[0].mode = 1;
  check(MFil_LockPtr(0, 0) == 0 && MFil_Close(0) == 0 && DATA_MFIL_ID == -1, "it is closed");
  return failures != 0;
}
