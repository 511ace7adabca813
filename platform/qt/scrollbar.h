// SPDX-License-Identifier: MIT
// For platform/qt/: the scroll bars of items and of dialogs.
#ifndef KORVEL_PLATFORM_QT_SCROLLBAR_H
#define KORVEL_PLATFORM_QT_SCROLLBAR_H

#include <QScrollBar>

namespace korvel::platform::qt {

// Without the toolkit's own menu, and with an outline around its slider, which tells it from what
// it slides on.
class ScrollBar : public QScrollBar {
 public:
  ScrollBar(Qt::Orientation orientation, QWidget *parent) : QScrollBar(orientation, parent) {
    setContextMenuPolicy(Qt::PreventContextMenu);
  }

 protected:
  void initStyleOption(QStyleOptionSlider *option) const override;
  void paintEvent(QPaintEvent *event) override;
};

}  // namespace korvel::platform::qt

#endif
