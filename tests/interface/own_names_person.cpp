// Presses the keys that own_names_program asks for, by a timer that runs in all its dialogs.
#include "tests/interface/own_names_person.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace {

// How often a modal window may be seen waiting when there is no key left.
constexpr int kPatience = 2000;

std::string *toPress = nullptr;
int waited = 0;

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
    default:
      QTest::sendKeyEvent(QTest::Click, window, Qt::Key_unknown, QString(QLatin1Char(key)),
                          Qt::NoModifier);
  }
}

void pressNext() {
  QTimer::singleShot(1, pressNext);
  QWidget *window = QApplication::activeModalWidget();
  if (window == nullptr || !window->isActiveWindow()) return;
  if (toPress->empty()) {
    if (++waited < kPatience) return;
    std::fputs("a window waits for a key\n", stderr);
    std::_Exit(4);
  }
  const char key = toPress->front();
  toPress->erase(0, 1);
  press(window->windowHandle(), key);
}

}  // namespace

void startToolkit(int argc, char **argv) {
  static int count = argc;
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("KORVEL_UNSEEN", "1", 1);
  new QApplication(count, argv);
  toPress = new std::string;
  QTimer::singleShot(1, pressNext);
}

void pressKeys(const char *keys) {
  *toPress += keys;
  waited = 0;
}

int keysLeft() { return static_cast<int>(toPress->size()); }
