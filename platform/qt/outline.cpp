// SPDX-License-Identifier: MIT
// Fills frames side by side: they are painted at every key, and a stroke costs far more.
#include "platform/qt/outline.h"

#include <algorithm>
#include <cmath>

#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include "platform/qt/contrast.h"

namespace korvel::platform::qt {
namespace {

QPainterPath rounded(const QRectF &rect, qreal radius) {
  QPainterPath path;
  path.addRoundedRect(rect, radius, radius);
  return path;
}

}  // namespace

PixelFrame::PixelFrame(QPainter &painter, const QRect &rect)
    : painter_(painter),
      grid_(PixelGrid::of(painter)),
      pixels_(grid_.rect({rect.left(), rect.top(), rect.right() + 1, rect.bottom() + 1})),
      line_(std::max(1, static_cast<int>(grid_.scale()))) {}

int PixelFrame::touched(int pixels) const {
  return static_cast<int>(std::ceil(pixels * grid_.scale()));
}

void PixelFrame::fill(const QRect &pixels, const QColor &color) {
  if (!pixels.isEmpty()) painter_.fillRect(grid_.fromPixels(pixels), color);
}

// The sides do not overlap, as the colour may be translucent.
void PixelFrame::fillSides(int begin, int end, const QColor &color, int cut) {
  const QRect outer = pixels_.adjusted(begin, begin, -begin, -begin);
  const int thick = end - begin;
  const int beside = std::max(cut, thick);
  const QRect across = outer.adjusted(cut, 0, -cut, 0),
              down = outer.adjusted(0, beside, 0, -beside);
  fill({across.topLeft(), QSize(across.width(), thick)}, color);
  fill({across.left(), outer.bottom() + 1 - thick, across.width(), thick}, color);
  fill({down.topLeft(), QSize(thick, down.height())}, color);
  fill({outer.right() + 1 - thick, down.top(), thick, down.height()}, color);
}

void PixelFrame::fillTop(int height, const QColor &color) {
  fill({pixels_.topLeft(), QSize(pixels_.width(), height)}, color);
}

void PixelFrame::fillLeft(int width, int top, const QColor &color) {
  fill({pixels_.left(), pixels_.top() + top, width, pixels_.height() - 2 * top}, color);
}

void PixelFrame::drawRounded(qreal radius, const QColor &color) {
  const QRectF outer = grid_.fromPixels(pixels_);
  const qreal line = line_ / grid_.scale();
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.fillPath(rounded(outer, radius + line / 2) -
                        rounded(outer.adjusted(line, line, -line, -line), radius - line / 2),
                    color);
}

void paintOutline(QWidget &item, const QRect &rect, QPalette::ColorRole ground, bool isFocused,
                  int width) {
  const LineColors &colors = lineColors(item.palette(), ground);
  QPainter painter(&item);
  PixelFrame frame(painter, rect);
  frame.fillSides(frame.line(), frame.touched(width), item.palette().color(ground));
  frame.fillSides(0, frame.line(), isFocused ? colors.focus : colors.outline, frame.line());
}

void outlineField(QWidget &field, QPalette::ColorRole ground) {
  if (!isStyledByForm(field)) paintOutline(field, field.rect(), ground, field.hasFocus());
}

bool isStyledByForm(const QWidget &widget) { return widget.testAttribute(Qt::WA_StyleSheetTarget); }

}  // namespace korvel::platform::qt
