// SPDX-License-Identifier: MIT
// For platform/qt/: the shapes that a square pen leaves.
#ifndef KORVEL_PLATFORM_QT_STROKES_H
#define KORVEL_PLATFORM_QT_STROKES_H

#include <QPolygonF>
#include <QRectF>

namespace korvel::platform::qt {

// A line by a pen of `width` x `width` pixels that hangs to the right of and below its points.
struct Stroke {
  int x1;
  int y1;
  int x2;
  int y2;
  int width;

  bool isStraight() const { return x1 == x2 || y1 == y2; }  // horizontal or vertical
};

// The part of a slanted stroke's outline within `bounds`; the stroke, but not `bounds`, is
// multiplied by `scale`. It is as thick as the trail of the pen's pixels, and ends at the pen's
// outer corners.
QPolygonF slantedStroke(const Stroke &stroke, const QRectF &bounds, qreal scale = 1);

}  // namespace korvel::platform::qt

#endif
