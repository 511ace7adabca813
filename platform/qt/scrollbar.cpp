// SPDX-License-Identifier: MIT
// Draws the outline of a slider where the style draws the slider.
#include "platform/qt/scrollbar.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include "platform/qt/contrast.h"
#include "platform/qt/outline.h"

namespace korvel::platform::qt {
namespace {

// Of what a slider slides on, as the toolkit's style draws it from the colour of buttons.
constexpr int kGrooveDarkness = 112;

}  // namespace

void ScrollBar::initStyleOption(QStyleOptionSlider *option) const {
  QScrollBar::initStyleOption(option);
  option->palette = shared(option->palette);
}

void ScrollBar::paintEvent(QPaintEvent *event) {
  QScrollBar::paintEvent(event);
  if (maximum() == minimum() || isStyledByForm(*this)) return;
  QStyleOptionSlider option;
  initStyleOption(&option);
  const QRect slider =
      style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
  const QColor groove = palette().color(QPalette::Button).darker(kGrooveDarkness);
  QPainter painter(this);
  PixelFrame frame(painter, slider);
  frame.fillSides(
      0, frame.line(),
      standingOut(lineColors(palette(), QPalette::Button).outline, {groove}, kLineContrast));
}

}  // namespace korvel::platform::qt
