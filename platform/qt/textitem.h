// For platform/qt/ only: edit-text items.
#ifndef KORVEL_PLATFORM_QT_TEXTITEM_H
#define KORVEL_PLATFORM_QT_TEXTITEM_H

#include <QClipboard>
#include <QLineEdit>

#include "platform/qt/appearance.h"
#include "platform/qt/item.h"

class QMenu;

namespace korvel::platform::qt {

// Every way in which a person can change the text passes through here, so that what has no byte is
// refused before it enters, and each change is one hit.
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

  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 protected:
  void keyPressEvent(QKeyEvent *event) override;
  void inputMethodEvent(QInputMethodEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void dropEvent(QDropEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;

 private:
  void textChangedByUser();
  void tellChange();
  void insertEntered(const QString &entered);
  void pasteFrom(QClipboard::Mode mode);
  void beginUndoStep();
  void dropUndoSteps();
  void replaceText(const QString &text);
  void addEditActions(QMenu &menu);

  bool isSecret_ = false;
  bool isComposing_ = false;      // an input method shows characters that are not yet entered
  bool hasUntoldChange_ = false;  // made while composing
};

}  // namespace korvel::platform::qt

#endif
