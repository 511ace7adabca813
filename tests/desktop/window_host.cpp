// SPDX-License-Identifier: MIT
// window_host: an application with a window of its own, which shows a dialog in front of it when
// Return is pressed. The window writes "typed <text>" when something is typed into it; the dialog
// ends as usual, and runs a loop of the toolkit's after "looping !" once "!" is typed into it.
#include <cstdio>
#include <cstring>

#include <QApplication>
#include <QEventLoop>
#include <QLineEdit>

#include <korvel/korvel.h>

namespace {

void say(const char *what, const QString &text) {
  std::printf("%s %s\n", what, text.toUtf8().constData());
  std::fflush(stdout);
}

int loopAtMark(int, int, int, char **texts, int, int, int, int *, int, int, int, int *, int, int,
               int, double *, int, int, int, int *, int, int *, int) {
  if (std::strcmp(texts[0], "!") != 0) return 0;
  say("looping", texts[0]);
  QEventLoop().exec();
  return 0;
}

void showDialog(QWidget &window) {
  TailleDlgBox_set(100, 80);
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set_geo(0, 10, 10, 60, 12, 0);
  TexteDlgBox_set(0, "");
  DlgBoxGlobal_set(loopAtMark);
  const int result = ZRVDlgBoxEx("Devant", KorvelWidgetWindow(&window));
  std::printf("result %d text %s\n", result, TDB_pszBuffer[0]);
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char **argv) {
  // Never destroyed: under Wayland two threads of the toolkit may wait for each other at its end.
  new QApplication(argc, argv);
  QWidget window;
  window.setWindowTitle("Derrière");
  QLineEdit line(&window);
  line.setGeometry(10, 10, 200, 30);
  QObject::connect(&line, &QLineEdit::textChanged, [](const QString &text) { say("typed", text); });
  window.setGeometry(600, 500, 400, 300);
  QObject::connect(&line, &QLineEdit::returnPressed, &window, [&] { showDialog(window); });
  line.setFocus();
  window.show();
  return QApplication::exec();
}
