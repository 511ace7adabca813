// SPDX-License-Identifier: MIT
// For platform/qt/: words about a widget that hold for a while.
#ifndef KORVEL_PLATFORM_QT_HINT_H
#define KORVEL_PLATFORM_QT_HINT_H

#include <QString>

class QWidget;

namespace korvel::platform::qt {

// Tells its words to screen readers as the widget's description, and to a person who rests the
// mouse on the widget. The widget's own description and tooltip come back after them.
class Hint {
 public:
  explicit Hint(QWidget &widget) : widget_(widget) {}

  // Plain text; empty: none. A tooltip that is up follows.
  void tell(const QString &words);

 private:
  QWidget &widget_;
  QString words_;
  QString ownDescription_, ownToolTip_;  // while there are words
};

}  // namespace korvel::platform::qt

#endif
