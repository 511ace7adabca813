// SPDX-License-Identifier: MIT
// Edit texts: filters what a person enters by keys, input methods, clipboards and drops, and tells
// each change as one hit.
#include "platform/qt/textitem.h"

#include <algorithm>

#include <QAction>
#include <QContextMenuEvent>
#include <QDragLeaveEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>

#include "platform/qt/fieldaccess.h"
#include "platform/qt/outline.h"
#include "platform/qt/text.h"

namespace korvel::platform::qt {
namespace {

bool isUndoOrRedo(QKeyEvent *event) {
  return event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo);
}

// Such a key carries no text, or a control character.
bool typesNothing(const QKeyEvent &event) {
  return event.text().isEmpty() || event.text().front().category() == QChar::Other_Control;
}

// The keys of the two clipboards: Shift+Insert and Control+V; with Control as well, Shift+Insert
// pastes the selection.
QClipboard::Mode clipboardOf(const QKeyEvent &event) {
  const bool isSelection = event.key() == Qt::Key_Insert &&
                           event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  return isSelection ? QClipboard::Selection : QClipboard::Clipboard;
}

}  // namespace

template <typename Editor>
TextItem<Editor>::TextItem(QWidget *parent, HitSink &sink, int number)
    : Editor(parent), Item(sink, number, ItemKind::EditText) {
  this->onEdited = [this] { textChangedByUser(); };
}

template <typename Editor>
TextItem<Editor>::TextItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
                           const Rect &rect)
    : TextItem(window, sink, number) {
  this->setGeometry(appearance.editText(rect));
  if (appearance.fieldFont != appearance.font) this->setFont(appearance.fieldFont);
  this->fitInto(appearance);
}

template <typename Editor>
bool TextItem<Editor>::event(QEvent *event) {
  const bool isHandled = Editor::event(event);
  if (event->type() != QEvent::Paint) return isHandled;
  if (this->hasFrame()) outlineField(*this, QPalette::Base);
  mark_.paint();
  return isHandled;
}

template <typename Editor>
std::string TextItem<Editor>::text() const {
  return fromQt(textWithSecret());
}

template <typename Editor>
void TextItem<Editor>::setText(std::string_view text) {
  entered_.reset();
  const QString shown = toQt(text);
  if (shown != Editor::text()) replaceText(shown);
}

// Keeps cursor and selection within the new text, and drops the undo steps.
template <typename Editor>
void TextItem<Editor>::replaceText(const QString &text) {
  const int cursor = cursorPosition();
  const int selectionBegin = selectionStart();
  const int selectionLength = selectedText().size() > 0 ? selectionEnd() - selectionBegin : 0;
  const bool cursorLeads = cursor == selectionBegin;

  const int length = static_cast<int>(text.size());
  if (length > maxLength()) setMaxLength(length);
  Editor::setText(text);

  const int begin = std::min(selectionBegin, length);
  const int end = std::min(selectionBegin + selectionLength, length);
  if (selectionLength > 0 && begin < end) {
    if (cursorLeads) {
      setSelection(end, begin - end);
    } else {
      setSelection(begin, end - begin);
    }
  } else {
    setCursorPosition(std::min(cursor, length));
  }
}

// Outside the item with the focus a selection would only mislead; an item that gets the focus by
// key selects its text itself.
template <typename Editor>
void TextItem<Editor>::selectText() {
  if (hasFocus() || this->window()->focusWidget() == this) selectAll();
}

template <typename Editor>
void TextItem<Editor>::setSecret() {
  isSecret_ = true;
  this->stayOnOneLine();
  setInputMethodHints(inputMethodHints() | Qt::ImhHiddenText | Qt::ImhSensitiveData |
                      Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
  dropUndoSteps();
}

template <typename Editor>
QVariant TextItem<Editor>::inputMethodQuery(Qt::InputMethodQuery query) const {
  const bool asksForText = query == Qt::ImSurroundingText || query == Qt::ImCurrentSelection ||
                           query == Qt::ImTextBeforeCursor || query == Qt::ImTextAfterCursor;
  if (isSecret_ && asksForText) return QString();
  return Editor::inputMethodQuery(query);
}

template <typename Editor>
void TextItem<Editor>::textChangedByUser() {
  if (isComposing_) {
    hasUntoldChange_ = true;
  } else {
    tellChange();
  }
}

template <typename Editor>
void TextItem<Editor>::tellChange() {
  hasUntoldChange_ = false;
  const bool isHandled = hit();
  if (!isSecret_) return;
  if (isHandled && entered_) replaceText(textWithSecret());
  if (isHandled) entered_.reset();
  dropUndoSteps();
}

// The characters of a secret never reach the editor, which would tell a screen reader.
template <typename Editor>
QString TextItem<Editor>::shownFor(const QString &entered) {
  const qsizetype kept = Editor::text().size() - selectedText().size();
  QString fitting = entered.left(std::max<qsizetype>(0, maxLength() - kept));
  if (!isSecret_) return fitting;
  entered_ = fitting;
  return QString(fitting.size(), u'*');
}

// What was entered ends at the cursor.
template <typename Editor>
QString TextItem<Editor>::textWithSecret() const {
  QString text = Editor::text();
  if (entered_) text.replace(cursorPosition() - entered_->size(), entered_->size(), *entered_);
  return text;
}

template <typename Editor>
void TextItem<Editor>::insertEntered(const QString &entered) {
  const std::optional<QString> text = admitted(entered);
  if (isReadOnly() || !text || (text->isEmpty() && !hasSelectedText())) return;
  insert(shownFor(*text));
}

template <typename Editor>
void TextItem<Editor>::replaceAsEntered(int begin, int end, const QString &entered) {
  const int length = static_cast<int>(Editor::text().size());
  begin = std::clamp(begin, 0, length);
  end = std::clamp(end, begin, length);
  if (!mayBeUsed(*this) || isReadOnly() || !admitted(entered) ||
      (begin == end && entered.isEmpty()))
    return;
  setSelection(begin, end - begin);
  insertEntered(entered);
}

template <typename Editor>
void TextItem<Editor>::pasteFrom(QClipboard::Mode mode) {
  insertEntered(QGuiApplication::clipboard()->text(mode));
}

template <typename Editor>
void TextItem<Editor>::dropUndoSteps() {
  if (isUndoAvailable() || isRedoAvailable()) replaceText(Editor::text());
}

template <typename Editor>
void TextItem<Editor>::keyPressEvent(QKeyEvent *event) {
  if (event->matches(QKeySequence::Paste)) {
    pasteFrom(clipboardOf(*event));
    return;
  }
  if (isSecret_ && isUndoOrRedo(event)) return;
  if (isReadOnly() || typesNothing(*event)) {
    Editor::keyPressEvent(event);
    return;
  }
  const std::optional<QString> typed = admitted(event->text());
  if (!typed) return;
  QKeyEvent admittedEvent(event->type(), event->key(), event->modifiers(), shownFor(*typed));
  Editor::keyPressEvent(&admittedEvent);
  event->setAccepted(admittedEvent.isAccepted());
}

template <typename Editor>
void TextItem<Editor>::inputMethodEvent(QInputMethodEvent *event) {
  if (isReadOnly()) return event->ignore();
  const std::optional<QString> commit = admitted(event->commitString());
  QInputMethodEvent admittedEvent =
      isSecret_ ? QInputMethodEvent()
                : QInputMethodEvent(event->preeditString(), event->attributes());
  if (commit && !event->commitString().isEmpty()) {
    admittedEvent.setCommitString(shownFor(*commit), event->replacementStart(),
                                  event->replacementLength());
  } else if (event->commitString().isEmpty()) {
    admittedEvent.setCommitString({}, event->replacementStart(), event->replacementLength());
  }

  isComposing_ = true;
  Editor::inputMethodEvent(&admittedEvent);
  // The selection was removed when composing began; undoing the refused text restores it.
  if (!commit && hasUntoldChange_) {
    undo();
    hasUntoldChange_ = false;
  }
  isComposing_ = !admittedEvent.preeditString().isEmpty();
  event->setAccepted(admittedEvent.isAccepted());
  if (!isComposing_ && hasUntoldChange_) tellChange();
}

template <typename Editor>
void TextItem<Editor>::mouseReleaseEvent(QMouseEvent *event) {
  const bool pastesSelection =
      event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection();
  if (pastesSelection) {
    pasteFrom(QClipboard::Selection);
  } else {
    Editor::mouseReleaseEvent(event);
  }
}

template <typename Editor>
void TextItem<Editor>::dropEvent(QDropEvent *event) {
  QDragLeaveEvent leave;
  Editor::dragLeaveEvent(&leave);  // removes the drop marker
  const std::optional<QString> text = admitted(event->mimeData()->text());
  if (isReadOnly() || !text || text->isEmpty()) {
    event->ignore();
    return;
  }
  event->acceptProposedAction();
  setFocus(Qt::OtherFocusReason);
  setCursorPosition(cursorPositionAt(event->position().toPoint()));
  insertEntered(*text);
}

template <typename Editor>
void TextItem<Editor>::contextMenuEvent(QContextMenuEvent *event) {
  auto *menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  addEditActions(*menu);
  menu->popup(event->globalPos());
}

template <typename Editor>
void TextItem<Editor>::addEditActions(QMenu &menu) {
  const bool mayChange = !isReadOnly();
  const bool mayUndo = mayChange && !isSecret_;
  const bool hasSelection = hasSelectedText();
  const bool hasClip = !QGuiApplication::clipboard()->text().isEmpty();
  const auto add = [&menu](const char16_t *title, bool isEnabled, auto action) {
    menu.addAction(QString::fromUtf16(title), action)->setEnabled(isEnabled);
  };
  add(u"Annuler", mayUndo && isUndoAvailable(), [this] { undo(); });
  add(u"Rétablir", mayUndo && isRedoAvailable(), [this] { redo(); });
  menu.addSeparator();
  add(u"Couper", mayChange && hasSelection, [this] { cut(); });
  add(u"Copier", hasSelection, [this] { copy(); });
  add(u"Coller", mayChange && hasClip, [this] { pasteFrom(QClipboard::Clipboard); });
  add(u"Supprimer", mayChange && hasSelection, [this] { del(); });
  menu.addSeparator();
  add(u"Tout sélectionner", !Editor::text().isEmpty(), [this] { selectAll(); });
}

template class TextItem<LineEdit>;
template class TextItem<LinesEdit>;

}  // namespace korvel::platform::qt
