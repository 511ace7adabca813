// SPDX-License-Identifier: MIT
// For platform/qt/: the scroll bars of items.
#ifndef KORVEL_PLATFORM_QT_SCROLLBAR_H
#define KORVEL_PLATFORM_QT_SCROLLBAR_H

#include <QScrollBar>
#include <QStyleOptionSlider>

#include "platform/qt/contrast.h"

namespace korvel::platform::qt {

// Without the toolkit's own menu.
class ScrollBar : public QScrollBar {
 public:
  ScrollBar(Qt::Orientation orientation, QWidget *parent) : QScrollBar(orientation, parent) {
    setContextMenuPolicy(Qt::PreventContextMenu);
  }

 protected:
  void initStyleOption(QStyleOptionSlider *option) const override {
    QScrollBar::initStyleOption(option);
    option->palette = shared(option->palette);
  }
};

}  // namespace korvel::platform::qt

#endif
