// SPDX-License-Identifier: MIT
// For tests/platform/: where a scroll bar shows its slider.
#ifndef KORVEL_TESTS_PLATFORM_SLIDER_H
#define KORVEL_TESTS_PLATFORM_SLIDER_H

#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>

namespace korvel::test {

// In its window.
inline QRect sliderOf(const QScrollBar &bar) {
  QStyleOptionSlider option;
  option.initFrom(&bar);
  option.orientation = bar.orientation();
  option.maximum = bar.maximum();
  option.pageStep = bar.pageStep();
  option.sliderPosition = option.sliderValue = bar.value();
  option.subControls = QStyle::SC_All;
  if (bar.orientation() == Qt::Horizontal) option.state |= QStyle::State_Horizontal;
  return bar.style()
      ->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, &bar)
      .translated(bar.mapTo(bar.window(), QPoint(0, 0)));
}

}  // namespace korvel::test

#endif
