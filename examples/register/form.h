// SPDX-License-Identifier: MIT
// The library's dialogs for C++: functions in place of the C callbacks, Qt's texts and days.
#ifndef REGISTER_FORM_H
#define REGISTER_FORM_H

#include <functional>

#include <QDate>
#include <QString>

class QWidget;

namespace registry {

// First identifier of each kind of field: field i of a kind has the number that is i higher, a date
// 3 * i. In the forms drawn with Qt Designer they are the items' numbers.
inline constexpr int kFirstText = 100, kFirstBool = 200, kFirstDate = 300, kFirstPush = 400;

constexpr int dateItem(int i) { return kFirstDate + 3 * i; }

// What the user changed, and which fields are to be shown anew because of it.
class Change {
 public:
  Change(int item, int *redisplay, int room) : item_(item), redisplay_(redisplay), room_(room) {}

  bool isOfText(int i) const { return item_ == kFirstText + i; }
  bool isOfBool(int i) const { return item_ == kFirstBool + i; }
  bool isOfPush(int i) const { return item_ == kFirstPush + i; }
  bool isOfDate(int i) const { return item_ >= dateItem(i) && item_ < dateItem(i) + 3; }

  void showText(int i, const QString &text);
  void showBool(int i, bool value);
  void showDate(int i, QDate day);
  void clearDate(int i);

  int count() const { return count_; }

 private:
  void show(int identifier);

  const int item_;
  int *const redisplay_;
  const int room_;
  int count_ = 0;
};

struct Reactions {
  std::function<void(Change &)> changed;
  // Keeps what was entered. Returns why it cannot be; empty when it is kept.
  std::function<QString()> keep;
};

// The values while a dialog is up, and afterwards.
QString enteredText(int i);
bool enteredBool(int i);
QDate enteredDate(int i);

// Text i is empty at first, not mandatory and at most so many characters long.
void describeText(int i, const QString &text, int longest, bool isMandatory);
// A null day leaves the date empty.
void describeDate(int i, QDate day);

// A day that is not in the future, for DateDlgBox_set_fvalid.
int notInFuture(char *text, int *number);

// Run what was described, a form by its name or a dialog that is built. True when it was accepted.
bool runDrawn(const char *form, const QString &title, const Reactions &reactions);
bool runBuilt(const QString &title, QWidget *owner, const Reactions &reactions);

// Message boxes in front of a window, or of none.
void tell(QWidget *owner, const QString &caption, const QString &text);
void warn(QWidget *owner, const QString &caption, const QString &text);
// Asks before something is lost: "Non" is the answer of those who are too quick.
bool mayLose(QWidget *owner, const QString &caption, const QString &text);

}  // namespace registry

#endif
