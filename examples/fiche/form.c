/* SPDX-License-Identifier: MIT */
/* The library's field tables and callbacks behind one small interface for all dialogs. */
#include "form.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

enum { kMaxStatics = 64 };

static int statics;
static FormChange change;
static FormCheck check;

/* Hands a change on. */
static int changed(int item, int textsInUse, int firstText, char **texts, int textCount,
                   int boolsInUse, int firstBool, int *bools, int boolCount, int intsInUse,
                   int firstInt, int *ints, int intCount, int numsInUse, int firstNum, double *nums,
                   int numCount, int datesInUse, int firstDate, int *dates, int dateCount,
                   int *redisplay, int capacity) {
  (void)textsInUse, (void)firstText, (void)textCount;
  (void)boolsInUse, (void)firstBool, (void)boolCount;
  (void)intsInUse, (void)firstInt, (void)intCount;
  (void)numsInUse, (void)firstNum, (void)numCount;
  (void)datesInUse, (void)firstDate, (void)dateCount;
  Form form = {item, texts, bools, ints, nums, dates, redisplay, capacity, 0};
  change(&form);
  return form.shown;
}

static int accepted(WindowRef window, int textsInUse, char **texts, int textCount, int boolsInUse,
                    int *bools, int boolCount, int intsInUse, int *ints, int intCount,
                    int numsInUse, double *nums, int numCount, int datesInUse, int *dates,
                    int dateCount) {
  (void)textsInUse, (void)textCount, (void)boolsInUse, (void)boolCount;
  (void)intsInUse, (void)intCount, (void)numsInUse, (void)numCount;
  (void)datesInUse, (void)dateCount;
  Form form = {0, texts, bools, ints, nums, dates, NULL, 0, 0};
  const char *reason = check(&form);
  if (!reason) return 1;
  DlgBoxFinal_MessageBox(window, french(reason), french("Saisie non acceptée"), KorvelCautionIcon);
  return 0;
}

int formLine(int groupY, int line) { return groupY + 14 + kPitch * line; }

void formBegin(int cx, int cy, FormFields fields, const char *accept, const char *cancel,
               FormChange onChange, FormCheck onAccept) {
  TailleDlgBox_set(cx, cy);
  if (fields.texts > 0) TexteDlgBox_param(fields.texts, kFirstText);
  if (fields.ints > 0) IntDlgBox_param(fields.ints, kFirstInt);
  if (fields.nums > 0) NumDlgBox_param(fields.nums, kFirstNum);
  if (fields.dates > 0) DateDlgBox_param(fields.dates, kFirstDate);
  if (fields.bools > 0) BoolDlgBox_param(fields.bools, kFirstBool);
  if (fields.pushes > 0) PushDlgBox_param(fields.pushes, kFirstPush);
  StaticDlgBox_param(kMaxStatics);
  statics = 0;
  BOKDlgBox_textes(french(accept), french(cancel));
  change = onChange;
  check = onAccept;
  if (change) DlgBoxGlobal_set(changed);
  if (check) DlgBoxFinal_set(accepted);
}

static void addStatic(const char *text, int x, int y, int cx, int cy, int type) {
  StaticDlgBox_set(statics, text);
  StaticDlgBox_set_geo(statics, x, y, cx, cy);
  StaticDlgBox_set_type(statics, type);
  statics++;
}

void formGroup(const char *title, int x, int y, int cx, int lines) {
  addStatic(french(title), x, y, cx, kPitch * (lines + 1), KorvelGroupBox);
}

void formLabel(const char *text, int x, int y, int cx) { formNote(french(text), x, y, cx); }

void formIcon(int x, int y) { addStatic("", x, y, 20, 20, KorvelIcon); }

void formNote(const char *text, int x, int y, int cx) {
  addStatic(text, x, y, cx, kLine, KorvelStaticText);
}

void formText(int i, int x, int y, int cx, int rank, const char *text, int capacity,
              int mandatory) {
  TexteDlgBox_set_geo(i, x, y, cx, kLine, rank);
  TexteDlgBox_set(i, text);
  TexteDlgBox_set_ncarac(i, capacity - 1);
  TexteDlgBox_mandatory(i, mandatory);
}

void formLines(int i, int x, int y, int cx, int cy, int rank, int capacity) {
  formText(i, x, y, cx, rank, "", capacity, 0);
  TexteDlgBox_set_geo(i, x, y, cx, cy, rank);
}

void formPopUp(int i, int x, int y, int cx, int rank, const char *text, char *choices) {
  TexteDlgBox_set_geo(i, x, y, cx, kLine, rank);
  TexteDlgBox_set(i, text);
  TexteDlgBox_set_liste(i, choices);
  if (strlen(choices) >= (size_t)TDB_BUFFERSIZE) TexteDlgBox_set_liste_buffer(i, choices);
  TexteDlgBox_mandatory(i, 0);
}

void formList(int i, int x, int y, int cx, int cy, int rank, char *choices) {
  formPopUp(i, x, y, cx, rank, "", choices);
  TexteDlgBox_set_geo(i, x, y, cx, cy, rank);
  TexteDlgBox_change_liste(i);
}

void formPush(int i, const char *label, int x, int y, int cx, int rank) {
  PushDlgBox_set_geo(i, french(label), x, y - 1, cx, kLine + 3, rank);
}

void formName(int identifier, const char *name) { KorvelItemName(identifier, french(name)); }

static void redisplay(Form *form, int identifier) {
  if (form->shown < form->room) form->redisplay[form->shown++] = identifier;
}

void formShow(Form *form, int identifier) { redisplay(form, identifier); }

void formClear(Form *form, int identifier) { redisplay(form, -identifier); }

void formShowText(Form *form, int i, const char *text) {
  snprintf(form->texts[i], (size_t)TDB_BUFFERSIZE, "%s", text);
  formShow(form, kFirstText + i);
}

void formShowRows(Form *form, int i, char *rows) {
  TexteDlgBox_set_liste_buffer(i, rows);
  ZRVDlgBox_texte_set_liste(i);
  *form->texts[i] = '\0';
  formClear(form, kFirstText + i);
}

int formRun(const char *title) {
  SDB_N = statics;
  return ZRVDlgBoxEx(title, 0);
}
