// SPDX-License-Identifier: MIT
// For platform/qt/: the letters that press the buttons and check boxes of a dialog with the Alt
// key.
#ifndef KORVEL_PLATFORM_QT_ALTLETTERS_H
#define KORVEL_PLATFORM_QT_ALTLETTERS_H

#include <vector>

#include <QString>

#include "platform/qt/item.h"

class QAbstractButton;
class QKeyEvent;
class QWidget;

namespace korvel::platform::qt {

// A letter without its accent, in upper case; null for what is no letter from A to Z then.
QChar plainLetter(QChar character);

// The letters that the labels of a form mark for themselves ("&").
QString markedLetters(const QWidget &window);

// Each button has the first letter of its label that no button before it has and that nothing else
// in the window takes. The letters are underlined while Alt is held.
class AltLetters {
 public:
  // Gives the letters. A label with a mark of its own ("&") keeps what it has.
  void give(const std::vector<Item *> &buttons, QString taken);

  // Whether the key is used up: with Alt, no character is typed.
  bool take(const QKeyEvent &key);
  void underline(bool isShown);

 private:
  struct Letter {
    QChar letter;
    qsizetype at;  // its place in the label
    Item *item;
    QAbstractButton *button;
  };

  void press(QChar letter);

  std::vector<Letter> letters_;
  bool isUnderlined_ = false;
};

}  // namespace korvel::platform::qt

#endif
