// SPDX-License-Identifier: MIT
// Accessible interfaces of our own: the toolkit's would change a field without a hit, and read a
// secret out.
#include "platform/qt/fieldaccess.h"

#include <algorithm>

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QFontMetrics>

#include "platform/qt/popupitem.h"
#include "platform/qt/textitem.h"

namespace korvel::platform::qt {
namespace {

// A field with its text. Each kind of field decides what a change of the text does.
class FieldAccess : public QAccessibleWidget,
                    public QAccessibleTextInterface,
                    public QAccessibleEditableTextInterface {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  void *interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface *>(this);
    if (type == QAccessible::EditableTextInterface)
      return static_cast<QAccessibleEditableTextInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? shownText() : QAccessibleWidget::text(kind);
  }
  void setText(QAccessible::Text kind, const QString &text) override {
    if (kind == QAccessible::Value) {
      replaceText(0, characterCount(), text);
    } else {
      QAccessibleWidget::setText(kind, text);
    }
  }

  int characterCount() const override { return static_cast<int>(shownText().size()); }
  QString text(int begin, int end) const override {
    return begin > end ? QString() : shownText().mid(begin, end - begin);
  }
  QString attributes(int offset, int *begin, int *end) const override {
    *begin = *end = offset;
    return {};
  }
  void scrollToSubstring(int, int) override {}

  void insertText(int at, const QString &text) override { replaceText(at, at, text); }
  void deleteText(int begin, int end) override { replaceText(begin, end, {}); }

 protected:
  virtual QString shownText() const = 0;
};

// The part of an item that shows its text.
const QWidget &areaOf(const LineItem &item) { return item; }
const QWidget &areaOf(const LinesItem &item) { return *item.viewport(); }

bool hasSeveralLines(const LineItem &) { return false; }
bool hasSeveralLines(const LinesItem &item) { return !item.isSecret(); }

// On the screen.
QRect placeOf(const LineItem &item, int offset) {
  const QString text = item.displayText();
  const QFontMetrics metrics(item.font());
  const QRect cursor = item.inputMethodQuery(Qt::ImCursorRectangle).toRect();
  const int shift = metrics.horizontalAdvance(text.left(offset)) -
                    metrics.horizontalAdvance(text.left(item.cursorPosition()));
  const QPoint corner(cursor.center().x() + shift, cursor.top());
  return {item.mapToGlobal(corner),
          QSize(metrics.horizontalAdvance(text.at(offset)), cursor.height())};
}

QRect placeOf(const LinesItem &item, int offset) {
  const QRect place = item.characterRect(offset);
  return {item.viewport()->mapToGlobal(place.topLeft()), place.size()};
}

// Only the stars of a secret are read out.
template <typename TextItem>
class TextItemAccess final : public FieldAccess {
 public:
  explicit TextItemAccess(TextItem &item)
      : FieldAccess(&item, QAccessible::EditableText), item_(item) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = !item_.isReadOnly();
    state.readOnly = item_.isReadOnly();
    state.selectableText = true;
    state.passwordEdit = item_.isSecret();
    state.multiLine = hasSeveralLines(item_);
    return state;
  }

  int cursorPosition() const override { return item_.cursorPosition(); }
  void setCursorPosition(int position) override { item_.setCursorPosition(position); }
  int selectionCount() const override { return item_.hasSelectedText() ? 1 : 0; }
  void selection(int index, int *begin, int *end) const override {
    const bool exists = index == 0 && item_.hasSelectedText();
    *begin = exists ? item_.selectionStart() : 0;
    *end = exists ? item_.selectionEnd() : 0;
  }
  void addSelection(int begin, int end) override { setSelection(0, begin, end); }
  void setSelection(int index, int begin, int end) override {
    if (index == 0) item_.setSelection(begin, end - begin);
  }
  void removeSelection(int index) override {
    if (index == 0) item_.deselect();
  }

  QRect characterRect(int offset) const override {
    const QString text = shownText();
    if (offset < 0 || offset >= text.size()) return {};
    return placeOf(item_, offset);
  }
  int offsetAtPoint(const QPoint &point) const override {
    return item_.cursorPositionAt(areaOf(item_).mapFromGlobal(point));
  }

  // Scroll bars are no fields.
  int childCount() const override { return 0; }

  void replaceText(int begin, int end, const QString &text) override {
    item_.replaceAsEntered(begin, end, text);
  }

 protected:
  QString shownText() const override { return item_.displayText(); }

 private:
  TextItem &item_;
};

// The text of a pop-up is its chosen entry; changing it chooses the entry with that text. Its child
// is the list of entries.
class PopUpItemAccess final : public FieldAccess {
 public:
  explicit PopUpItemAccess(PopUpItem &item)
      : FieldAccess(&item, QAccessible::ComboBox), item_(item) {}

  int childCount() const override { return 1; }
  QAccessibleInterface *child(int index) const override {
    return index == 0 ? QAccessible::queryAccessibleInterface(item_.view()) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface *child) const override {
    return child != nullptr && child->object() == item_.view() ? 0 : -1;
  }
  QAccessibleInterface *childAt(int, int) const override { return nullptr; }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.hasPopup = true;
    state.expandable = true;
    state.expanded = item_.view()->isVisible();
    state.collapsed = !state.expanded;
    return state;
  }

  QStringList actionNames() const override {
    return {showMenuAction(), pressAction(), increaseAction(), decreaseAction(), setFocusAction()};
  }
  void doAction(const QString &name) override {
    if (name == increaseAction()) {
      item_.chooseByPerson(item_.currentIndex() + 1);
    } else if (name == decreaseAction()) {
      item_.chooseByPerson(item_.currentIndex() - 1);
    } else if (name == showMenuAction() || name == pressAction()) {
      toggleList();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

  int cursorPosition() const override { return 0; }
  void setCursorPosition(int) override {}
  int selectionCount() const override { return 0; }
  void selection(int, int *begin, int *end) const override { *begin = *end = 0; }
  void addSelection(int, int) override {}
  void setSelection(int, int, int) override {}
  void removeSelection(int) override {}
  QRect characterRect(int) const override { return rect(); }
  int offsetAtPoint(const QPoint &) const override { return -1; }

  void replaceText(int begin, int end, const QString &text) override {
    QString wanted = shownText();
    begin = std::clamp(begin, 0, static_cast<int>(wanted.size()));
    end = std::clamp(end, begin, static_cast<int>(wanted.size()));
    item_.chooseByPerson(item_.findText(wanted.replace(begin, end - begin, text)));
  }

 protected:
  QString shownText() const override { return item_.currentText(); }

 private:
  void toggleList() {
    if (item_.view()->isVisible()) {
      item_.hidePopup();
    } else if (mayBeUsed(item_)) {
      item_.showPopup();
    }
  }

  PopUpItem &item_;
};

QAccessibleInterface *makeAccess(const QString &, QObject *object) {
  if (auto *line = dynamic_cast<LineItem *>(object)) return new TextItemAccess(*line);
  if (auto *lines = dynamic_cast<LinesItem *>(object)) return new TextItemAccess(*lines);
  if (auto *popUp = dynamic_cast<PopUpItem *>(object)) return new PopUpItemAccess(*popUp);
  return nullptr;
}

}  // namespace

void installFieldAccess() {
  [[maybe_unused]] static const bool isInstalled = [] {
    QAccessible::installFactory(makeAccess);
    return true;
  }();
}

bool mayBeUsed(const QWidget &widget) {
  return widget.isEnabled() && QApplication::activeModalWidget() == widget.window();
}

}  // namespace korvel::platform::qt
