// SPDX-License-Identifier: MIT
// For platform/qt/: an editor of several lines that is used like the toolkit's line edit.
#ifndef KORVEL_PLATFORM_QT_LINESEDIT_H
#define KORVEL_PLATFORM_QT_LINESEDIT_H

#include <functional>

#include <QPlainTextEdit>

#include "platform/qt/appearance.h"

namespace korvel::platform::qt {

// Looks like a line edit, wraps at words and scrolls. Return is left to the window, Tab goes on.
// Its methods are those of QLineEdit; places are in the viewport.
class LinesEdit : public QPlainTextEdit {
 public:
  explicit LinesEdit(QWidget *parent);

  // A change that was not made by setText().
  std::function<void()> onEdited;

  // As it was set: a line end in it is shown as one, and kept.
  QString text() const;
  void setText(const QString &text);
  QString displayText() const { return text(); }
  int maxLength() const { return maxLength_; }
  void setMaxLength(int length) { maxLength_ = length; }

  int cursorPosition() const { return textCursor().position(); }
  void setCursorPosition(int position) { setSelection(position, 0); }
  int cursorPositionAt(const QPoint &place) const { return cursorForPosition(place).position(); }
  QRect characterRect(int position) const;
  bool hasSelectedText() const { return textCursor().hasSelection(); }
  QString selectedText() const;
  int selectionStart() const;
  int selectionEnd() const;
  void setSelection(int begin, int length);
  void deselect() { setCursorPosition(cursorPosition()); }

  bool hasFrame() const { return frameShape() != NoFrame; }
  void fitInto(const Appearance &appearance);
  void stayOnOneLine();
  // One step of undo.
  void insert(const QString &text);
  void del() { textCursor().deleteChar(); }
  bool isUndoAvailable() const { return document()->isUndoAvailable(); }
  bool isRedoAvailable() const { return document()->isRedoAvailable(); }

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void inputMethodEvent(QInputMethodEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void focusInEvent(QFocusEvent *event) override;
  void focusOutEvent(QFocusEvent *event) override;
  QMimeData *createMimeDataFromSelection() const override;

 private:
  void noteChange();

  QString known_;  // the text of the last change
  bool isSetting_ = false;
  bool isEntering_ = false;  // what is entered is a change, also where it looks as before
  int maxLength_ = 32767;
};

}  // namespace korvel::platform::qt

#endif
