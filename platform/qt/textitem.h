// SPDX-License-Identifier: MIT
// For platform/qt/: edit-text items, of one line and of several.
#ifndef KORVEL_PLATFORM_QT_TEXTITEM_H
#define KORVEL_PLATFORM_QT_TEXTITEM_H

#include <optional>

#include <QClipboard>

#include "platform/qt/appearance.h"
#include "platform/qt/item.h"
#include "platform/qt/lineedit.h"
#include "platform/qt/linesedit.h"
#include "platform/qt/mark.h"

class QMenu;

namespace korvel::platform::qt {

// Every change by a person passes through here, so that a character without a byte is refused and
// each change is one hit. `Editor` is LineEdit or LinesEdit.
template <typename Editor>
class TextItem final : public Editor, public Item {
 public:
  TextItem(QWidget *parent, HitSink &sink, int number);
  TextItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
           const Rect &rect);

  QWidget *widget() override { return this; }
  std::string text() const override;
  void setText(std::string_view text) override;
  void selectText() override;
  void setSecret() override;
  Mark *mark() override { return &mark_; }

  // As if these characters were selected and the text entered in their place: one hit, unless the
  // text holds a character without a byte, or the dialog takes no input now.
  void replaceAsEntered(int begin, int end, const QString &entered);
  bool isSecret() const { return isSecret_; }

  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  using Editor::cursorPosition, Editor::cursorPositionAt, Editor::hasSelectedText,
      Editor::isReadOnly, Editor::maxLength, Editor::selectedText, Editor::selectionEnd,
      Editor::selectionStart, Editor::setCursorPosition, Editor::setSelection;

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void inputMethodEvent(QInputMethodEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void dropEvent(QDropEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;

 private:
  using Editor::copy, Editor::cut, Editor::del, Editor::hasFocus, Editor::inputMethodHints,
      Editor::insert, Editor::isRedoAvailable, Editor::isUndoAvailable, Editor::redo,
      Editor::selectAll, Editor::setFocus, Editor::setInputMethodHints, Editor::setMaxLength,
      Editor::undo;

  void textChangedByUser();
  void tellChange();
  void insertEntered(const QString &entered);
  QString shownFor(const QString &entered);
  QString textWithSecret() const;
  void pasteFrom(QClipboard::Mode mode);
  void dropUndoSteps();
  void replaceText(const QString &text);
  void addEditActions(QMenu &menu);

  Mark mark_{*this, *this};
  bool isSecret_ = false;
  // What was last entered into a secret, where stars are shown, until the program sets the text.
  std::optional<QString> entered_;
  bool isComposing_ = false;      // an input method shows characters that are not yet entered
  bool hasUntoldChange_ = false;  // made while composing
};

extern template class TextItem<LineEdit>;
extern template class TextItem<LinesEdit>;
using LineItem = TextItem<LineEdit>;
using LinesItem = TextItem<LinesEdit>;

}  // namespace korvel::platform::qt

#endif
