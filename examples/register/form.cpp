// SPDX-License-Identifier: MIT
// The exported tables and callbacks behind a few functions. The library shows one dialog at a time.
#include "form.h"

#include <korvel/korvel.h>

#include "text.h"

namespace registry {
namespace {

constexpr char kRefused[] = "Saisie non acceptée";

const Reactions *current;

int changed(int item, int, int, char **, int, int, int, int *, int, int, int, int *, int, int, int,
            double *, int, int, int, int *, int, int *redisplay, int capacity) {
  Change change(item, redisplay, capacity);
  current->changed(change);
  return change.count();
}

int accepted(WindowRef window, int, char **, int, int, int *, int, int, int *, int, int, double *,
             int, int, int *, int) {
  const QString reason = current->keep();
  if (reason.isEmpty()) return 1;
  DlgBoxFinal_MessageBox(window, toBytes(reason).c_str(), toBytes(kRefused).c_str(),
                         KorvelCautionIcon);
  return 0;
}

bool run(const Reactions &reactions, const std::function<int()> &dialog) {
  current = &reactions;
  BOKDlgBox_textes("Enregistrer", "Annuler");
  DlgBoxGlobal_set(changed);
  DlgBoxFinal_set(accepted);
  const bool isAccepted = dialog() != 0;
  current = nullptr;
  return isAccepted;
}

int box(QWidget *owner, const QString &caption, const QString &text, unsigned flags) {
  return MessageBox(KorvelWidgetWindow(owner), toBytes(text).c_str(), toBytes(caption).c_str(),
                    flags);
}

}  // namespace

void Change::show(int identifier) {
  if (count_ < room_) redisplay_[count_++] = identifier;
}

void Change::showText(int i, const QString &text) {
  TexteDlgBox_set(i, toBytes(text).c_str());
  show(kFirstText + i);
}

void Change::showBool(int i, bool value) {
  BoolDlgBox_set(i, value ? 1 : 0);
  show(kFirstBool + i);
}

void Change::showDate(int i, QDate day) {
  DDB_lDates[i] = toNumber(day);
  for (int part = 0; part < 3; ++part) show(dateItem(i) + part);
}

void Change::clearDate(int i) {
  for (int part = 0; part < 3; ++part) show(-dateItem(i) - part);
}

QString enteredText(int i) { return fromBytes(TDB_pszBuffer[i]).trimmed(); }
bool enteredBool(int i) { return BDB_bFlags[i] > 0; }
QDate enteredDate(int i) { return fromNumber(DDB_lDates[i]); }

void describeText(int i, const QString &text, int longest, bool isMandatory) {
  TexteDlgBox_set(i, toBytes(text).c_str());
  TexteDlgBox_set_ncarac(i, longest);
  TexteDlgBox_mandatory(i, isMandatory ? 1 : 0);
}

void describeDate(int i, QDate day) {
  if (day.isValid()) DateDlgBox_set(i, toNumber(day), KorvelCalendarDate);
}

int notInFuture(char *text, int *number) {
  const int status = intcod_l_date(text, number);
  if (status != 0) return status;
  return *number <= toNumber(QDate::currentDate()) ? 0 : KorvelNoDayStatus;
}

bool runDrawn(const char *form, const QString &title, const Reactions &reactions) {
  TitreDlgBox_set(toBytes(title).c_str());
  return run(reactions, [&] { return ZRVDlgBox(form); });
}

bool runBuilt(const QString &title, QWidget *owner, const Reactions &reactions) {
  return run(reactions,
             [&] { return ZRVDlgBoxEx(toBytes(title).c_str(), KorvelWidgetWindow(owner)); });
}

void tell(QWidget *owner, const QString &caption, const QString &text) {
  box(owner, caption, text, KorvelNoteIcon);
}

void warn(QWidget *owner, const QString &caption, const QString &text) {
  box(owner, caption, text, KorvelCautionIcon);
}

bool mayLose(QWidget *owner, const QString &caption, const QString &text) {
  return box(owner, caption, text, KorvelQuestion | KorvelCautionIcon | KorvelDefaultNon) ==
         KorvelOuiAnswer;
}

}  // namespace registry
