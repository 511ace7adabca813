// SPDX-License-Identifier: MIT
// For platform/qt/: the toolkit's line edit, with what an item needs of an editor besides.
#ifndef KORVEL_PLATFORM_QT_LINEEDIT_H
#define KORVEL_PLATFORM_QT_LINEEDIT_H

#include <functional>

#include <QLineEdit>

#include "platform/qt/appearance.h"

namespace korvel::platform::qt {

class LineEdit : public QLineEdit {
 public:
  explicit LineEdit(QWidget *parent);

  // A change that was not made by setText().
  std::function<void()> onEdited;

  void fitInto(const Appearance &appearance) { setTextMargins(appearance.textMargins); }
  void stayOnOneLine() {}
  // One step of undo.
  void insert(const QString &text);
};

}  // namespace korvel::platform::qt

#endif
