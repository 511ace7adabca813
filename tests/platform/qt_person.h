// SPDX-License-Identifier: MIT
// For tests/platform/: a person who uses the dialogs of the Qt module, with keys and clicks that
// arrive at the dialog's window as from the screen.
#ifndef KORVEL_TESTS_PLATFORM_QT_PERSON_H
#define KORVEL_TESTS_PLATFORM_QT_PERSON_H

#include <deque>
#include <string>
#include <vector>

#include <QObject>
#include <QWidget>

#include "tests/platform/dialog_world.h"

class QLineEdit;

namespace korvel::test {

// The module's desktop on Qt's platform without a screen, unless the environment asks for others.
platform::Desktop &qtDesktop();

QWidget *widgetOf(WindowRef window);

// The widgets of a dialog's items, item n at n - 1: what the Tab key goes through.
std::vector<QWidget *> itemWidgets(QWidget *window);

class QtPerson final : public Person {
 public:
  explicit QtPerson(std::string_view title);
  ~QtPerson() override;

  Person &type(int item, std::string_view text) override;
  Person &deleteBack(int item) override;
  Person &paste(int item, std::string_view text) override;
  Person &moveTo(int item, int position) override;
  Person &select(int item, int from, int to) override;
  Person &choose(int item, std::string_view entry) override;
  Person &clickRow(int item, int row) override;
  Person &doubleClickRow(int item, int row) override;
  Person &click(int item) override;
  Person &press(int item) override;
  Person &pressReturn() override;
  Person &pressEscape() override;
  Person &closeBox() override;
  Person &check(std::function<void()> checks) override;
  Person &goDown() override;

  // Steps that other desktops lack. A key goes to the widget with the focus.
  QtPerson &key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  QtPerson &clickAt(int item, QPoint place, Qt::MouseButton button = Qt::LeftButton);
  // Anything else: `act` gets the widget of the item, or the window for item 0.
  QtPerson &act(int item, std::function<void(QWidget *)> action);
  template <typename Widget>
  QtPerson &with(int item, std::function<void(Widget &)> action) {
    return act(item, [action](QWidget *widget) { action(dynamic_cast<Widget &>(*widget)); });
  }

  void finish();

 private:
  struct Step {
    int item;
    std::function<void(QWidget *)> act;
  };

  void keepGoing();
  void nextStep();
  void perform(QWidget *window, const Step &step);

  const std::string title_;
  std::deque<Step> steps_;
  QObject life_;  // ends the steps with the person
  QWidget *busyWith_ = nullptr;
  bool hasCome_ = false;
};

// Keys as from the screen; they go to the widget with the focus in the window of `widget`.
void pressKey(QWidget *widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void typeText(QWidget *widget, const QString &text);
void clickOn(QWidget *widget, QPoint place, Qt::MouseButton button = Qt::LeftButton);

}  // namespace korvel::test

#endif
