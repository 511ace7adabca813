// For platform/qt/ only: the icon that says what a message is about.
#ifndef KORVEL_PLATFORM_QT_ALERTICON_H
#define KORVEL_PLATFORM_QT_ALERTICON_H

#include <QWidget>

#include "platform/desktop.h"

namespace korvel::platform::qt {

// The desktop's own, as long as it has it in the pixels of the screen; else one of ours in its
// place, as a picture made larger would show its pixels.
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
