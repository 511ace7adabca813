// SPDX-License-Identifier: MIT
// Keeps what is inserted apart from what was typed before.
#include "platform/qt/lineedit.h"

namespace korvel::platform::qt {

LineEdit::LineEdit(QWidget *parent) : QLineEdit(parent) {
  connect(this, &QLineEdit::textEdited, this, [this] { onEdited(); });
}

// A line edit joins successive insertions into one undo step, unless the cursor moves in between.
void LineEdit::insert(const QString &text) {
  const int cursor = cursorPosition();
  if (!hasSelectedText() && !this->text().isEmpty()) {
    setCursorPosition(cursor == 0 ? 1 : cursor - 1);
    setCursorPosition(cursor);
  }
  QLineEdit::insert(text);
}

}  // namespace korvel::platform::qt
