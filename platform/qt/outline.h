// SPDX-License-Identifier: MIT
// For platform/qt/: frames of whole device pixels, equally thick on all four sides at every scale.
#ifndef KORVEL_PLATFORM_QT_OUTLINE_H
#define KORVEL_PLATFORM_QT_OUTLINE_H

#include <QColor>
#include <QPalette>
#include <QRect>

#include "platform/qt/pixelgrid.h"

class QPainter;
class QWidget;

namespace korvel::platform::qt {

// The device pixels of a rectangle, and frames inside it. A painter that is clipped to a part of a
// frame paints this part where the others would.
class PixelFrame {
 public:
  PixelFrame(QPainter &painter, const QRect &rect);

  // What a pixel at scale 1 becomes: as many whole device pixels as it surely holds.
  int line() const { return line_; }
  // As many device pixels as so many pixels at scale 1 touch.
  int touched(int pixels) const;
  // The sides from `begin` to `end` device pixels inside the rectangle, but for squares of `cut`
  // device pixels at its corners.
  void fillSides(int begin, int end, const QColor &color, int cut = 0);
  // As high as `height` device pixels, along the whole upper edge.
  void fillTop(int height, const QColor &color);
  // As wide as `width` device pixels, from `top` device pixels below the upper edge to as many
  // above the lower one.
  void fillLeft(int width, int top, const QColor &color);
  // A line along the edge, with rounded corners.
  void drawRounded(qreal radius, const QColor &color);

 private:
  void fill(const QRect &pixels, const QColor &color);

  QPainter &painter_;
  const PixelGrid grid_;
  const QRect pixels_;
  const int line_;
};

// The outline of an item with this ground, in the focus's colour where it has the focus. It takes
// the place of the style's own frame of `width` pixels, which rounds the corners, and keeps them.
void paintOutline(QWidget &item, const QRect &rect, QPalette::ColorRole ground, bool isFocused,
                  int width = 1);

// The same around a whole field, unless a form gives it a look of its own.
void outlineField(QWidget &field, QPalette::ColorRole ground);

// True for a widget that a style sheet of a form draws.
bool isStyledByForm(const QWidget &widget);

}  // namespace korvel::platform::qt

#endif
