// SPDX-License-Identifier: MIT
// For tests/monkey/: the monkey: thousands of random keys and clicks on whatever window of the
// application is in front, each followed by a look at what is shown.
#ifndef KORVEL_TESTS_MONKEY_MONKEY_H
#define KORVEL_TESTS_MONKEY_MONKEY_H

#include <deque>
#include <string>
#include <vector>

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "tests/monkey/application.h"
#include "tests/monkey/hand.h"

namespace korvel::test {

class Monkey {
 public:
  Monkey(Application &app, Hand &hand, int events);

  // Plays with one window after another until it has had enough.
  void play();
  int events() const { return events_; }
  int dialogs() const { return dialogs_; }

 private:
  int below(int n) { return app_.below(n); }
  bool oneIn(int n) { return app_.oneIn(n); }

  void playWithOne();
  void step();
  bool isReady(QWidget *window);
  void clickOnFrame(QWidget *window);
  void playAt(QWidget *window);
  void leave();
  void act();
  void answer();
  void typeSomething();
  void paste();
  void compose();
  void pressSomething();
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void clickSomewhere();
  QString someText(int longest);

  void did(std::string what);
  std::string lately() const;

  Application &app_;
  Hand &hand_;
  const int enough_;
  QTimer next_;
  QElapsedTimer waiting_;
  QPointer<QWidget> clicked_;
  int clicks_ = 0;  // on it, so far
  QWidget *busyWith_ = nullptr;
  QPointer<QWidget> shown_;
  // The window in front and its items.
  QWidget *window_ = nullptr;
  std::vector<QWidget *> items_;
  std::deque<std::string> done_;
  int events_ = 0;
  int dialogs_ = 0;
};

}  // namespace korvel::test

#endif
