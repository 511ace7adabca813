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

TextItem::TextItem(QWidget *parent, HitSink &sink, int number)
    : QLineEdit(parent), Item(sink, number, ItemKind::EditText) {
  connect(this, &QLineEdit::textEdited, this, [this] { textChangedByUser(); });
}

TextItem::TextItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
                   const Rect &rect)
    : TextItem(window, sink, number) {
  setGeometry(appearance.editText(rect));
  setTextMargins(appearance.textMargins);
  if (appearance.hasSeveralLines(rect)) setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void TextItem::paintEvent(QPaintEvent *event) {
  QLineEdit::paintEvent(event);
  if (hasFrame()) outlineField(*this, QPalette::Base);
  mark_.paint();
}

std::string TextItem::text() const { return fromQt(textWithSecret()); }

void TextItem::setText(std::string_view text) {
  entered_.reset();
  const QString shown = toQt(text);
  if (shown != QLineEdit::text()) replaceText(shown);
}

// Keeps cursor and selection within the new text, and drops the undo steps.
void TextItem::replaceText(const QString &text) {
  const int cursor = cursorPosition();
  const int selectionBegin = selectionStart();
  const int selectionLength = selectedText().size() > 0 ? selectionEnd() - selectionBegin : 0;
  const bool cursorLeads = cursor == selectionBegin;

  const int length = static_cast<int>(text.size());
  if (length > maxLength()) setMaxLength(length);
  QLineEdit::setText(text);

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
void TextItem::selectText() {
  if (hasFocus() || window()->focusWidget() == this) selectAll();
}

void TextItem::setSecret() {
  isSecret_ = true;
  setInputMethodHints(inputMethodHints() | Qt::ImhHiddenText | Qt::ImhSensitiveData |
                      Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
  dropUndoSteps();
}

QVariant TextItem::inputMethodQuery(Qt::InputMethodQuery query) const {
  const bool asksForText = query == Qt::ImSurroundingText || query == Qt::ImCurrentSelection ||
                           query == Qt::ImTextBeforeCursor || query == Qt::ImTextAfterCursor;
  if (isSecret_ && asksForText) return QString();
  return QLineEdit::inputMethodQuery(query);
}

void TextItem::textChangedByUser() {
  if (isComposing_) {
    hasUntoldChange_ = true;
  } else {
    tellChange();
  }
}

void TextItem::tellChange() {
  hasUntoldChange_ = false;
  const bool isHandled = hit();
  if (!isSecret_) return;
  if (isHandled && entered_) replaceText(textWithSecret());
  if (isHandled) entered_.reset();
  dropUndoSteps();
}

// The characters of a secret never reach the line edit, which would tell a screen reader.
QString TextItem::shownFor(const QString &entered) {
  if (!isSecret_) return entered;
  const qsizetype kept = QLineEdit::text().size() - selectedText().size();
  entered_ = entered.left(std::max<qsizetype>(0, maxLength() - kept));
  return QString(entered_->size(), u'*');
}

// What was entered ends at the cursor.
QString TextItem::textWithSecret() const {
  QString text = QLineEdit::text();
  if (entered_) text.replace(cursorPosition() - entered_->size(), entered_->size(), *entered_);
  return text;
}

void TextItem::insertEntered(const QString &entered) {
  const std::optional<QString> text = admitted(entered);
  if (!text || (text->isEmpty() && !hasSelectedText())) return;
  beginUndoStep();
  insert(shownFor(*text));
}

void TextItem::replaceAsEntered(int begin, int end, const QString &entered) {
  const int length = static_cast<int>(QLineEdit::text().size());
  begin = std::clamp(begin, 0, length);
  end = std::clamp(end, begin, length);
  if (!mayBeUsed(*this) || isReadOnly() || !admitted(entered) ||
      (begin == end && entered.isEmpty()))
    return;
  setSelection(begin, end - begin);
  insertEntered(entered);
}

void TextItem::pasteFrom(QClipboard::Mode mode) {
  insertEntered(QGuiApplication::clipboard()->text(mode));
}

// A line edit joins successive insertions into one undo step, unless the cursor moves in between.
void TextItem::beginUndoStep() {
  const int cursor = cursorPosition();
  if (hasSelectedText() || QLineEdit::text().isEmpty()) return;
  setCursorPosition(cursor == 0 ? 1 : cursor - 1);
  setCursorPosition(cursor);
}

void TextItem::dropUndoSteps() {
  if (isUndoAvailable() || isRedoAvailable()) replaceText(QLineEdit::text());
}

void TextItem::keyPressEvent(QKeyEvent *event) {
  if (event->matches(QKeySequence::Paste)) {
    pasteFrom(clipboardOf(*event));
    return;
  }
  if (isSecret_ && isUndoOrRedo(event)) return;
  if (typesNothing(*event)) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  const std::optional<QString> typed = admitted(event->text());
  if (!typed) return;
  QKeyEvent admittedEvent(event->type(), event->key(), event->modifiers(), shownFor(*typed));
  QLineEdit::keyPressEvent(&admittedEvent);
  event->setAccepted(admittedEvent.isAccepted());
}

void TextItem::inputMethodEvent(QInputMethodEvent *event) {
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
  QLineEdit::inputMethodEvent(&admittedEvent);
  // The selection was removed when composing began; undoing the refused text restores it.
  if (!commit && hasUntoldChange_) {
    undo();
    hasUntoldChange_ = false;
  }
  isComposing_ = !admittedEvent.preeditString().isEmpty();
  event->setAccepted(admittedEvent.isAccepted());
  if (!isComposing_ && hasUntoldChange_) tellChange();
}

void TextItem::mouseReleaseEvent(QMouseEvent *event) {
  const bool pastesSelection =
      event->button() == Qt::MiddleButton && QGuiApplication::clipboard()->supportsSelection();
  if (pastesSelection) {
    pasteFrom(QClipboard::Selection);
  } else {
    QLineEdit::mouseReleaseEvent(event);
  }
}

void TextItem::dropEvent(QDropEvent *event) {
  QDragLeaveEvent leave;
  QLineEdit::dragLeaveEvent(&leave);  // removes the drop marker
  const std::optional<QString> text = admitted(event->mimeData()->text());
  if (!text || text->isEmpty()) {
    event->ignore();
    return;
  }
  event->acceptProposedAction();
  setFocus(Qt::OtherFocusReason);
  setCursorPosition(cursorPositionAt(event->position().toPoint()));
  insertEntered(*text);
}

void TextItem::contextMenuEvent(QContextMenuEvent *event) {
  auto *menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  addEditActions(*menu);
  menu->popup(event->globalPos());
}

void TextItem::addEditActions(QMenu &menu) {
  const bool mayUndo = !isSecret_;
  const bool hasSelection = hasSelectedText();
  const bool hasClip = !QGuiApplication::clipboard()->text().isEmpty();
  const auto add = [&menu](const char16_t *title, bool isEnabled, auto action) {
    menu.addAction(QString::fromUtf16(title), action)->setEnabled(isEnabled);
  };
  add(u"Annuler", mayUndo && isUndoAvailable(), [this] { undo(); });
  add(u"Rétablir", mayUndo && isRedoAvailable(), [this] { redo(); });
  menu.addSeparator();
  add(u"Couper", hasSelection, [this] { cut(); });
  add(u"Copier", hasSelection, [this] { copy(); });
  add(u"Coller", hasClip, [this] { pasteFrom(QClipboard::Clipboard); });
  add(u"Supprimer", hasSelection, [this] { del(); });
  menu.addSeparator();
  add(u"Tout sélectionner", !QLineEdit::text().isEmpty(), [this] { selectAll(); });
}

}  // namespace korvel::platform::qt
