// SPDX-License-Identifier: MIT
// Chooses what to do next, and ends the program where what is shown disagrees with the tables.
#include "tests/monkey/monkey.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <utility>

#include <QApplication>
#include <QClipboard>
#include <QKeySequence>
#include <QWindow>
#include <gtest/gtest.h>

#include "tests/monkey/agreement.h"
#include "tests/platform/qt_person.h"

namespace korvel::test {

namespace {

std::string titleOf(const QWindow *window) {
  return window != nullptr ? "\"" + window->title().toStdString() + "\"" : "none";
}

}  // namespace

// A step is taken late enough for an ended dialog to be gone.
Monkey::Monkey(Application &app, Hand &hand, int events) : app_(app), hand_(hand), enough_(events) {
  next_.setSingleShot(true);
  next_.setInterval(1);
  QObject::connect(&next_, &QTimer::timeout, &next_, [this] { step(); });
}

void Monkey::play() {
  while (events_ < enough_ && !testing::Test::HasFailure()) playWithOne();
}

void Monkey::playWithOne() {
  ++dialogs_;
  next_.start();
  waiting_.start();
  if (oneIn(4)) {
    app_.runChooser();
  } else {
    app_.runDialog();
  }
  next_.stop();
  for (const QWidget *window : QApplication::topLevelWidgets())
    EXPECT_FALSE(window->isVisible()) << window->windowTitle().toStdString();
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

// A callback that shows a message has a further step taken within the one that led to it.
void Monkey::step() {
  next_.start();
  QWidget *window = QApplication::activeModalWidget();
  if (window == nullptr || window == busyWith_ || !isReady(window)) return;
  QWidget *before = std::exchange(busyWith_, window);
  playAt(window);
  busyWith_ = before;
  waiting_.start();
}

// On a screen a window gets the focus by and by.
bool Monkey::isReady(QWidget *window) {
  const bool isReached = window->isVisible() && hand_.reaches(window);
  if (isReached || clicked_ != window) clicks_ = 0;
  if (isReached) return true;
  constexpr int kPatience = 3'000;
  constexpr int kMostMilliseconds = 20'000;
  if (waiting_.elapsed() > kPatience * (clicks_ + 1)) clickOnFrame(window);
  if (waiting_.elapsed() > kMostMilliseconds) {
    ADD_FAILURE() << window->windowTitle().toStdString() << " never had the focus, which is at "
                  << titleOf(QGuiApplication::focusWindow()) << ", modal "
                  << titleOf(QGuiApplication::modalWindow()) << ", pop-up "
                  << (QApplication::activePopupWidget() != nullptr) << ", after:" << lately();
    std::_Exit(1);
  }
  return false;
}

// On a busy machine the window manager sometimes leaves a new window without the focus. A person
// clicks on it then, and again.
void Monkey::clickOnFrame(QWidget *window) {
  clicked_ = window;
  ++clicks_;
  std::printf("a click gives %s the focus\n", window->windowTitle().toUtf8().constData());
  QWidget *before = std::exchange(busyWith_, window);
  hand_.clickOnFrame(window);
  busyWith_ = before;
}

void Monkey::playAt(QWidget *window) {
  window_ = window;
  items_ = itemWidgets(window);
  const auto agreement = agreementOn(window, items_);
  if (shown_ != window) agreement->check(true);
  shown_ = window;
  if (events_ >= enough_) return leave();
  act();
  ++events_;
  agreement->check(events_ % 10 == 0);
  if (!testing::Test::HasFailure()) return;
  ADD_FAILURE() << "at event " << events_ << ", after:" << lately();
  std::_Exit(1);
}

void Monkey::leave() {
  while (QWidget *popUp = QApplication::activePopupWidget()) popUp->close();
  hand_.press(window_, Qt::Key_Escape);
}

void Monkey::act() {
  if (!app_.messages.empty() && oneIn(3)) return answer();
  if (oneIn(400)) {
    did("close by the frame");
    return hand_.closeByFrame(window_);
  }
  const int dice = below(100);
  if (dice < 40) {
    typeSomething();
  } else if (dice < 72) {
    pressSomething();
  } else if (dice < 78) {
    paste();
  } else if (dice < 80) {
    compose();
  } else {
    clickSomewhere();
  }
}

void Monkey::answer() {
  const Qt::Key keys[] = {Qt::Key_Return, Qt::Key_Space, Qt::Key_Escape};
  press(keys[below(3)]);
}

void Monkey::did(std::string what) {
  done_.push_back(std::move(what));
  if (done_.size() > 12) done_.pop_front();
}

std::string Monkey::lately() const {
  std::string all;
  for (const std::string &what : done_) all += "\n  " + what;
  return all;
}

QString Monkey::someText(int longest) {
  const QString characters = hand_.characters();
  QString text;
  for (int n = 1 + below(longest); n > 0; --n)
    text += characters.at(below(static_cast<int>(characters.size())));
  return text;
}

// Mostly what the field with the focus can use.
void Monkey::typeSomething() {
  QString text = someText(1);
  if (!oneIn(3)) text = QString::number(below(10));
  did("type " + text.toStdString());
  hand_.type(window_, text.front());
}

void Monkey::paste() {
  QString text = someText(oneIn(20) ? 3000 : 8);
  if (oneIn(3)) text = QString::number(below(3000));
  if (oneIn(5)) text += QLatin1Char('\n');
  did("paste " + text.toStdString());
  QGuiApplication::clipboard()->setText(text);
  hand_.press(window_, Qt::Key_V, Qt::ControlModifier);
}

void Monkey::compose() {
  const QString text = someText(2);
  did("compose " + text.toStdString());
  hand_.compose(text, oneIn(3));
}

void Monkey::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  did("press " + QKeySequence(key | modifiers).toString().toStdString());
  hand_.press(window_, key, modifiers);
}

void Monkey::pressSomething() {
  static constexpr struct {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
  } kKeys[] = {{Qt::Key_Backspace},
               {Qt::Key_Backspace},
               {Qt::Key_Backspace},
               {Qt::Key_Backspace, Qt::ControlModifier},
               {Qt::Key_Delete},
               {Qt::Key_Delete},
               {Qt::Key_Delete, Qt::ControlModifier},
               {Qt::Key_Tab},
               {Qt::Key_Tab},
               {Qt::Key_Tab},
               {Qt::Key_Tab},
               {Qt::Key_Backtab, Qt::ShiftModifier},
               {Qt::Key_Left},
               {Qt::Key_Left, Qt::ShiftModifier},
               {Qt::Key_Right},
               {Qt::Key_Right, Qt::ControlModifier},
               {Qt::Key_Up},
               {Qt::Key_Down},
               {Qt::Key_Down},
               {Qt::Key_Home},
               {Qt::Key_Home, Qt::ShiftModifier},
               {Qt::Key_End},
               {Qt::Key_End, Qt::ShiftModifier},
               {Qt::Key_PageUp},
               {Qt::Key_PageDown},
               {Qt::Key_Space},
               {Qt::Key_Space, Qt::ControlModifier},
               {Qt::Key_Return},
               {Qt::Key_F4},
               {Qt::Key_A, Qt::ControlModifier},
               {Qt::Key_A, Qt::ControlModifier},
               {Qt::Key_X, Qt::ControlModifier},
               {Qt::Key_C, Qt::ControlModifier},
               {Qt::Key_Z, Qt::ControlModifier},
               {Qt::Key_Z, Qt::ControlModifier},
               {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
               {Qt::Key_Menu}};
  if (oneIn(60)) return press(Qt::Key_Escape);
  const auto &[key, modifiers] = kKeys[below(static_cast<int>(std::size(kKeys)))];
  press(key, modifiers);
}

void Monkey::clickSomewhere() {
  QWidget *target = window_;
  if (QWidget *popUp = QApplication::activePopupWidget()) {
    target = popUp;
  } else if (!oneIn(4)) {
    target = items_[static_cast<std::size_t>(below(static_cast<int>(items_.size())))];
  }
  // "Annuler" would come too often.
  if (app_.messages.empty() && target == items_[1] && !oneIn(4)) return;
  const QPoint place(below(target->width()), below(target->height()));
  const Qt::MouseButton button = oneIn(12) ? Qt::RightButton : Qt::LeftButton;
  did("click " + std::string(target->metaObject()->className()) + " at " +
      std::to_string(place.x()) + "," + std::to_string(place.y()));
  hand_.click(target, place, button, button == Qt::LeftButton && oneIn(6) ? 2 : 1);
}

}  // namespace korvel::test
