// SPDX-License-Identifier: MIT
// Forms the outline of a slanted stroke as a clipped polygon.
#include "platform/qt/strokes.h"

#include <cmath>

namespace korvel::platform::qt {
namespace {

// A half plane: the points of depth 0 or more.
struct Side {
  QPointF origin;
  QPointF inward;  // of length 1

  qreal depth(const QPointF &point) const { return QPointF::dotProduct(point - origin, inward); }
};

QPolygonF clipped(const QPolygonF &convex, const Side &side) {
  QPolygonF inside;
  for (qsizetype i = 0; i < convex.size(); ++i) {
    const QPointF from = convex[i];
    const QPointF to = convex[(i + 1) % convex.size()];
    const qreal fromDepth = side.depth(from);
    const qreal toDepth = side.depth(to);
    if (fromDepth >= 0) inside << from;
    if ((fromDepth >= 0) != (toDepth >= 0))
      inside << from + (to - from) * (fromDepth / (fromDepth - toDepth));
  }
  return inside;
}

}  // namespace

// A square moved along a line covers the rectangle around both its ends, less what lies too far
// from the line between their middles. Only the part within the bounds is ever formed, as the
// toolkit's coordinates end at some ten thousand pixels.
QPolygonF slantedStroke(const Stroke &stroke, const QRectF &bounds, qreal scale) {
  const QPointF from = QPointF(stroke.x1, stroke.y1) * scale;
  const QPointF to = QPointF(stroke.x2, stroke.y2) * scale;
  const qreal side = stroke.width * scale;
  const QRectF around = QRectF(from, to).normalized().adjusted(0, 0, side, side);
  const QRectF seen = around & bounds;
  if (seen.isEmpty()) return {};

  const QPointF way = (to - from) / std::hypot(to.x() - from.x(), to.y() - from.y());
  const QPointF across(-way.y(), way.x());
  const qreal spread = std::abs(way.x()) + std::abs(way.y());
  const QPointF half = across * ((stroke.width - 1) * spread + 1) * scale / 2;
  const QPointF middle = from + QPointF(side, side) / 2;
  const QPolygonF corners({seen.topLeft(), seen.topRight(), seen.bottomRight(), seen.bottomLeft()});
  return clipped(clipped(corners, {middle - half, across}), {middle + half, -across});
}

}  // namespace korvel::platform::qt
