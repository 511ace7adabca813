// SPDX-License-Identifier: MIT
// For platform/qt/: the bar of a work that goes on.
#ifndef KORVEL_PLATFORM_QT_PROGRESSBAR_H
#define KORVEL_PLATFORM_QT_PROGRESSBAR_H

#include <QProgressBar>

namespace korvel::platform::qt {

// Takes the focus, and does nothing with keys.
class ProgressBar final : public QProgressBar {
 public:
  ProgressBar(QWidget *window, const QRect &rect);

  void show(int done, int total);
};

}  // namespace korvel::platform::qt

#endif
