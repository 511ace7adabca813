// SPDX-License-Identifier: MIT
// For platform/qt/: the icon that says what a message is about.
#ifndef KORVEL_PLATFORM_QT_ALERTICON_H
#define KORVEL_PLATFORM_QT_ALERTICON_H

#include <QWidget>

#include "platform/desktop.h"

namespace korvel::platform::qt {

// Drawn here, as no style has sharp icons for every scale: a red disc with a cross for stop, a blue
// one with an "i" for a note, a yellow triangle with an exclamation mark for caution.
class AlertIconWidget final : public QWidget {
 public:
  AlertIconWidget(QWidget *window, const Rect &rect, AlertIcon icon);

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  const AlertIcon icon_;
};

}  // namespace korvel::platform::qt

#endif
