// SPDX-License-Identifier: MIT
// Gives the toolkit's editor of plain texts the looks and manners of its line edit.
#include "platform/qt/linesedit.h"

#include <algorithm>

#include <QFocusEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMimeData>
#include <QStyleOptionFrame>
#include <QStylePainter>

#include "platform/qt/scrollbar.h"

namespace korvel::platform::qt {
namespace {

// From the outside to the lines: room for the frame and for a mark.
constexpr int kFrame = 2;
constexpr int kMargin = 3;
constexpr int kClassicMargin = 1;  // with the frame the three pixels around a classic rectangle

// A document ends its lines by characters of its own, one for each that a text may hold.
constexpr QChar kLineFeed = QChar::LineSeparator;
constexpr QChar kReturn = QChar::ParagraphSeparator;

QString toDocument(QString text) { return text.replace(u'\n', kLineFeed).replace(u'\r', kReturn); }

QString fromDocument(QString text) {
  return text.replace(kLineFeed, u'\n').replace(kReturn, u'\r');
}

bool endsEntry(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab;
}

bool comesByKey(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
         reason == Qt::ShortcutFocusReason;
}

}  // namespace

LinesEdit::LinesEdit(QWidget *parent) : QPlainTextEdit(parent) {
  setTabChangesFocus(true);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBar(new ScrollBar(Qt::Vertical, this));
  document()->setDocumentMargin(kMargin);
  const int inside = std::max(0, kFrame - frameWidth());
  // A pixel more at the bottom is what the toolkit asks for to show the last line that fits.
  setViewportMargins(inside, inside, inside, std::max(0, inside - 1));
  viewport()->setAutoFillBackground(false);  // shows frame and mark, which reach below it
  connect(this, &QPlainTextEdit::textChanged, this, [this] { noteChange(); });
  // The toolkit keeps the width that a line had before it was wrapped.
  connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this, [this] {
    if (lineWrapMode() != NoWrap) horizontalScrollBar()->setRange(0, 0);
  });
}

QString LinesEdit::text() const { return fromDocument(document()->toRawText()); }

// The lines in view stay where the new text allows.
void LinesEdit::setText(const QString &text) {
  const int top = verticalScrollBar()->value();
  isSetting_ = true;
  setPlainText(toDocument(text));
  isSetting_ = false;
  known_ = text;
  verticalScrollBar()->setValue(top);
}

// The toolkit also tells what changes the looks alone, such as composed characters that are not yet
// entered.
void LinesEdit::noteChange() {
  QString now = text();
  if (isSetting_ || (now == known_ && !isEntering_)) return;
  isEntering_ = false;
  known_ = std::move(now);
  onEdited();
}

QRect LinesEdit::characterRect(int position) const {
  QTextCursor cursor(document());
  cursor.setPosition(position);
  QRect place = cursorRect(cursor);
  place.setWidth(QFontMetrics(font()).horizontalAdvance(document()->characterAt(position)));
  return place;
}

QString LinesEdit::selectedText() const { return fromDocument(textCursor().selectedText()); }

int LinesEdit::selectionStart() const {
  return hasSelectedText() ? textCursor().selectionStart() : -1;
}

int LinesEdit::selectionEnd() const { return hasSelectedText() ? textCursor().selectionEnd() : -1; }

void LinesEdit::setSelection(int begin, int length) {
  const int end = document()->characterCount() - 1;
  QTextCursor cursor = textCursor();
  cursor.setPosition(std::clamp(begin, 0, end));
  cursor.setPosition(std::clamp(begin + length, 0, end), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

void LinesEdit::fitInto(const Appearance &) { document()->setDocumentMargin(kClassicMargin); }

void LinesEdit::stayOnOneLine() {
  setLineWrapMode(NoWrap);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void LinesEdit::insert(const QString &text) {
  QTextCursor cursor = textCursor();
  isEntering_ = true;
  cursor.beginEditBlock();
  cursor.insertText(text);
  cursor.endEditBlock();
  isEntering_ = false;
  ensureCursorVisible();
}

// The ground is a line edit's, whose frame shows the focus.
bool LinesEdit::event(QEvent *event) {
  if (event->type() != QEvent::Paint) return QPlainTextEdit::event(event);
  QStyleOptionFrame option;
  initStyleOption(&option);
  option.state |= QStyle::State_Sunken;
  QStylePainter(this).drawPrimitive(QStyle::PE_PanelLineEdit, option);
  return true;
}

void LinesEdit::keyPressEvent(QKeyEvent *event) {
  if (endsEntry(event->key())) {
    event->ignore();
  } else {
    isEntering_ = true;
    QPlainTextEdit::keyPressEvent(event);
    isEntering_ = false;
  }
}

void LinesEdit::inputMethodEvent(QInputMethodEvent *event) {
  isEntering_ = !event->commitString().isEmpty();
  QPlainTextEdit::inputMethodEvent(event);
  isEntering_ = false;
}

// The middle button pastes where it is pressed.
void LinesEdit::mousePressEvent(QMouseEvent *event) {
  if (event->button() == Qt::MiddleButton)
    setCursorPosition(cursorPositionAt(event->position().toPoint()));
  QPlainTextEdit::mousePressEvent(event);
}

void LinesEdit::focusInEvent(QFocusEvent *event) {
  QPlainTextEdit::focusInEvent(event);
  if (comesByKey(event->reason())) selectAll();
}

void LinesEdit::focusOutEvent(QFocusEvent *event) {
  QPlainTextEdit::focusOutEvent(event);
  if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
    deselect();
}

// The toolkit would turn blanks that do not break into others.
QMimeData *LinesEdit::createMimeDataFromSelection() const {
  auto *copied = new QMimeData;
  copied->setText(selectedText());
  return copied;
}

}  // namespace korvel::platform::qt
