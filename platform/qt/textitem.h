// For platform/qt/: edit-text items.
#ifndef KORVEL_PLATFORM_QT_TEXTITEM_H
#define KORVEL_PLATFORM_QT_TEXTITEM_H

#include <optional>

#include <QClipboard>
#include <QLineEdit>

#include "platform/qt/appearance.h"
#include "platform/qt/item.h"
#include "platform/qt/mark.h"

class QMenu;

namespace korvel::platform::qt {

// Every change by a person passes through here, so that a character without a byte is refused and
// each change is one hit.
class TextItem final : public QLineEdit, public Item {
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

 protected:
  void paintEvent(QPaintEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void inputMethodEvent(QInputMethodEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void dropEvent(QDropEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;

 private:
  void textChangedByUser();
  void tellChange();
  void insertEntered(const QString &entered);
  QString shownFor(const QString &entered);
  QString textWithSecret() const;
  void pasteFrom(QClipboard::Mode mode);
  void beginUndoStep();
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

}  // namespace korvel::platform::qt

#endif
