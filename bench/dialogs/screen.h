// SPDX-License-Identifier: MIT
// For bench/dialogs/ only: keys into the dialog that is up, and the moments at which it has
// painted.
#ifndef KORVEL_BENCH_DIALOGS_SCREEN_H
#define KORVEL_BENCH_DIALOGS_SCREEN_H

#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include "bench/support/ratios.h"

namespace korvel::bench {

inline void pressKey(Qt::Key key, const QString &text = {}) {
  QWindow *window = QApplication::activeModalWidget()->windowHandle();
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
  QCoreApplication::sendEvent(window, &press);
}

// Calls a function when the next dialog has been painted for the first time.
class OnFirstFrame final : public QObject {
 public:
  explicit OnFirstFrame(std::function<void()> then) : then_(std::move(then)) {
    qApp->installEventFilter(this);
  }

 private:
  // The window paints itself while it handles the exposure, and what that leads to follows at once.
  bool eventFilter(QObject *object, QEvent *event) override {
    if (event->type() != QEvent::Expose || !qobject_cast<QWindow *>(object)->isExposed())
      return false;
    qApp->removeEventFilter(this);
    QTimer::singleShot(0, this, then_);
    return false;
  }

  const std::function<void()> then_;
};

// Sees to it that a keystroke is measured to its end: the painting of a widget.
class PaintWatch final : public QObject {
 public:
  explicit PaintWatch(QWidget *widget) { widget->installEventFilter(this); }

  void await() {
    while (!isPainted_) QCoreApplication::processEvents();
    isPainted_ = false;
  }

 private:
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == QEvent::Paint) isPainted_ = true;
    return false;
  }

  bool isPainted_ = false;
};

// Measures `run`, which shows a dialog, from its start to the dialog's first frame.
inline void measureFirstFrame(benchmark::State &state, const std::function<void()> &run) {
  using Clock = std::chrono::steady_clock;
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    std::chrono::duration<double> elapsed{};
    const OnFirstFrame shown([&] {
      elapsed = Clock::now() - start;
      pressKey(Qt::Key_Escape);
    });
    run();
    state.SetIterationTime(elapsed.count());
  }
}

inline std::string named(const char *workload, const char *who) {
  return std::string(workload) + "/" + who;
}

// Makes the application on the platform without a screen, and runs what `registerAll` registers.
inline int runOffScreen(int argc, char **argv, void (*registerAll)()) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("KORVEL_UNSEEN", "1", 1);
  // The toolkit collects updates for some milliseconds before it paints, which would hide all else.
  setenv("QT_QPA_UPDATE_IDLE_TIME", "0", 0);
  int count = 1;
  QApplication application(count, argv);
  application.setQuitOnLastWindowClosed(false);
  registerAll();
  return runAndPrintRatios(argc, argv);
}

}  // namespace korvel::bench

#endif
