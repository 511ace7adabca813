// SPDX-License-Identifier: MIT
// Presses the keys that a program asks for, one for each time that its dialogs wait.
#include "tests/support/person_at_keys.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace {

// How long a modal window may wait for a key when there is none left, in milliseconds.
constexpr int kPatience = 60000;

std::string *toPress = nullptr;
QElapsedTimer sinceLastKey;

void press(QWindow *window, char key) {
  switch (key) {
    case '\t':
      return QTest::keyClick(window, Qt::Key_Tab);
    case '\r':
      return QTest::keyClick(window, Qt::Key_Return);
    case ' ':
      return QTest::keyClick(window, Qt::Key_Space);
    case '\v':
      return QTest::keyClick(window, Qt::Key_Down);
    case '\033':
      return QTest::keyClick(window, Qt::Key_Escape);
    default:
      QTest::sendKeyEvent(QTest::Click, window, Qt::Key_unknown, QString(QLatin1Char(key)),
                          Qt::NoModifier);
  }
}

void giveUpAfterAWhile() {
  if (sinceLastKey.elapsed() < kPatience) return;
  std::fputs("a window waits for a key, or to be active\n", stderr);
  std::_Exit(4);
}

void pressNext() {
  QWidget *window = QApplication::activeModalWidget();
  if (window == nullptr) return;
  if (!window->isActiveWindow() || toPress->empty()) return giveUpAfterAWhile();
  const char key = toPress->front();
  toPress->erase(0, 1);
  sinceLastKey.start();
  press(window->windowHandle(), key);
}

}  // namespace

void startToolkit(int argc, char **argv) {
  static int count = argc;
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("KORVEL_UNSEEN", "1", 1);
  new QApplication(count, argv);
  toPress = new std::string;
  // A key for each time that a dialog would wait: one that has ended does not wait any more.
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   qApp, pressNext, Qt::QueuedConnection);
}

void pressKeys(const char *keys) {
  *toPress += keys;
  sinceLastKey.start();
}

int keysLeft() { return static_cast<int>(toPress->size()); }
