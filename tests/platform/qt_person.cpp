// SPDX-License-Identifier: MIT
// Plays the steps of a person with the toolkit's test kit, each when the dialog in front waits for
// one.
#include "tests/platform/qt_person.h"

#include <utility>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <gtest/gtest.h>

#include "platform/loader.h"

namespace korvel::test {
namespace {

QString toQString(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

bool isItem(const QWidget *widget) {
  return qobject_cast<const QPushButton *>(widget) || qobject_cast<const QCheckBox *>(widget) ||
         qobject_cast<const QListView *>(widget) || qobject_cast<const QComboBox *>(widget) ||
         qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QPlainTextEdit *>(widget);
}

// The part of a window that scrolls; null for a window that fits into its screen.
const QWidget *bodyOf(const QWidget *window) {
  for (const auto *area :
       window->findChildren<QAbstractScrollArea *>(QString(), Qt::FindDirectChildrenOnly))
    if (!isItem(area) && qobject_cast<const QScrollArea *>(area) == nullptr) return area;
  return nullptr;
}

// Whether the widget lies on the ground of such a part, or in a place of the foot below it.
bool isInPart(const QWidget *widget, const QWidget *window) {
  const QWidget *body = bodyOf(window);
  int depth = 0;
  for (const QWidget *each = widget; each != window; each = each->parentWidget()) ++depth;
  return body != nullptr && depth == (body->isAncestorOf(widget) ? 4 : 3);
}

QPoint placeInWindow(QWidget *widget, QPoint place) {
  return widget->mapTo(widget->window(), place);
}

void moveFocusTo(QWidget *widget) {
  if (!widget->hasFocus()) widget->setFocus(Qt::OtherFocusReason);
}

void selectIn(QPlainTextEdit &lines, int from, int to) {
  QTextCursor cursor = lines.textCursor();
  cursor.setPosition(from);
  cursor.setPosition(to, QTextCursor::KeepAnchor);
  lines.setTextCursor(cursor);
}

QPoint placeOfRow(QWidget *list, int row) {
  auto *view = qobject_cast<QListView *>(list);
  const QModelIndex index = view->model()->index(row, 0);
  view->scrollTo(index);
  const QRect rect = view->visualRect(index);
  return view->viewport()->mapTo(view, QPoint(5, rect.center().y()));
}

}  // namespace

platform::Desktop &qtDesktop() {
  setenv("KORVEL_DESKTOP", KORVEL_TEST_MODULE, 0);
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("KORVEL_UNSEEN", "1", 1);
  platform::Desktop *desktop = platform::desktop();
  std::string problem;
  if (desktop == nullptr || !desktop->hasScreen(problem)) {
    ADD_FAILURE() << "no desktop: " << problem;
    std::abort();
  }
  return *desktop;
}

QWidget *widgetOf(WindowRef window) { return reinterpret_cast<QWidget *>(window); }

std::vector<QWidget *> itemWidgets(QWidget *window) {
  std::vector<QWidget *> items;
  for (QWidget *next = window->nextInFocusChain(); next != window; next = next->nextInFocusChain())
    if (isItem(next) && (next->parentWidget() == window || isInPart(next, window)))
      items.push_back(next);
  return items;
}

void pressKey(QWidget *widget, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(widget->window()->windowHandle(), key, modifiers);
}

void typeText(QWidget *widget, const QString &text) {
  QWindow *window = widget->window()->windowHandle();
  for (const QChar character : text)
    QTest::sendKeyEvent(QTest::Click, window, Qt::Key_unknown, QString(character), Qt::NoModifier);
}

void clickOn(QWidget *widget, QPoint place, Qt::MouseButton button) {
  QTest::mouseClick(widget->window()->windowHandle(), button, Qt::NoModifier,
                    placeInWindow(widget, place));
}

QtPerson::QtPerson(std::string_view title) : title_(title) { keepGoing(); }

// One timer per shot: a repeating one would wait for its last shot, in which another dialog may
// run.
void QtPerson::keepGoing() {
  QTimer::singleShot(1, &life_, [this] {
    keepGoing();
    nextStep();
  });
}

QtPerson::~QtPerson() = default;

// A step is taken when a dialog waits for one: on top, and not within another step on it.
void QtPerson::nextStep() {
  QWidget *window = QApplication::activeModalWidget();
  if (window == nullptr || window == busyWith_) return;
  QWidget *before = std::exchange(busyWith_, window);
  if (!hasCome_) {
    hasCome_ = true;
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(window->windowTitle(), toQString(title_));
  }
  if (steps_.empty()) {
    ADD_FAILURE() << "the dialog is still open after its last step";
    QCoreApplication::exit(1);
  } else {
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    perform(window, step);
  }
  busyWith_ = before;
}

void QtPerson::perform(QWidget *window, const Step &step) {
  const std::vector<QWidget *> items = itemWidgets(window);
  if (step.item < 0 || static_cast<std::size_t>(step.item) > items.size()) {
    ADD_FAILURE() << "there is no item " << step.item;
  } else {
    step.act(step.item == 0 ? window : items[static_cast<std::size_t>(step.item) - 1]);
  }
}

void QtPerson::finish() {
  EXPECT_TRUE(hasCome_) << "the dialog never came";
  EXPECT_TRUE(steps_.empty()) << "the dialog ended before its last step";
}

QtPerson &QtPerson::act(int item, std::function<void(QWidget *)> action) {
  steps_.push_back({item, std::move(action)});
  return *this;
}

QtPerson &QtPerson::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  return act(0, [=](QWidget *window) { pressKey(window, key, modifiers); });
}

QtPerson &QtPerson::clickAt(int item, QPoint place, Qt::MouseButton button) {
  return act(item, [=](QWidget *widget) { clickOn(widget, place, button); });
}

Person &QtPerson::type(int item, std::string_view text) {
  return act(item, [text = toQString(text)](QWidget *widget) {
    moveFocusTo(widget);
    typeText(widget, text);
  });
}

Person &QtPerson::deleteBack(int item) {
  return act(item, [](QWidget *widget) {
    moveFocusTo(widget);
    pressKey(widget, Qt::Key_Backspace);
  });
}

Person &QtPerson::paste(int item, std::string_view text) {
  return act(item, [text = toQString(text)](QWidget *widget) {
    moveFocusTo(widget);
    QGuiApplication::clipboard()->setText(text);
    pressKey(widget, Qt::Key_V, Qt::ControlModifier);
  });
}

Person &QtPerson::moveTo(int item, int position) { return select(item, position, position); }

Person &QtPerson::select(int item, int from, int to) {
  return act(item, [=](QWidget *widget) {
    moveFocusTo(widget);
    if (auto *lines = qobject_cast<QPlainTextEdit *>(widget)) {
      selectIn(*lines, from, to);
    } else {
      auto &edit = dynamic_cast<QLineEdit &>(*widget);
      edit.setCursorPosition(from);
      if (to != from) edit.setSelection(from, to - from);
    }
  });
}

Person &QtPerson::choose(int item, std::string_view entry) {
  return with<QComboBox>(item, [entry = toQString(entry)](QComboBox &popUp) {
    clickOn(&popUp, popUp.rect().center());
    QAbstractItemView *view = popUp.view();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(view->window()));
    const QModelIndex index = popUp.model()->index(popUp.findText(entry), 0);
    QTest::qWait(QApplication::doubleClickInterval() + 50);  // a click at once only opens
    clickOn(view->viewport(), view->visualRect(index).center());
  });
}

Person &QtPerson::clickRow(int item, int row) {
  return act(item, [row](QWidget *list) { clickOn(list, placeOfRow(list, row)); });
}

Person &QtPerson::doubleClickRow(int item, int row) {
  return act(item, [row](QWidget *list) {
    QTest::mouseDClick(list->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                       placeInWindow(list, placeOfRow(list, row)));
  });
}

Person &QtPerson::click(int item) { return clickAt(item, {8, 8}); }

Person &QtPerson::press(int item) { return clickAt(item, {20, 10}); }

Person &QtPerson::pressReturn() { return key(Qt::Key_Return); }

Person &QtPerson::pressEscape() { return key(Qt::Key_Escape); }

Person &QtPerson::closeBox() {
  return act(0, [](QWidget *window) { window->windowHandle()->close(); });
}

Person &QtPerson::check(std::function<void()> checks) {
  return act(0, [checks = std::move(checks)](QWidget *) { checks(); });
}

Person &QtPerson::goDown() {
  return act(0, [](QWidget *) { QCoreApplication::exit(0); });
}

}  // namespace korvel::test
