#include "platform/qt/strokes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korvel::platform::qt {
namespace {

int saturatedSum(int a, int b) {
  const long long sum = static_cast<long long>(a) + b;
  return static_cast<int>(
      std::clamp<long long>(sum, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// A half plane: the points at least 0 deep.
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

Rect straightStroke(const Stroke &stroke) {
  return {std::min(stroke.x1, stroke.x2), std::min(stroke.y1, stroke.y2),
          saturatedSum(std::max(stroke.x1, stroke.x2), stroke.width),
          saturatedSum(std::max(stroke.y1, stroke.y2), stroke.width)};
}

// A square moved along a line covers the rectangle around both its ends, less what lies too far
// from the line between their middles. Only the part within the bounds is ever formed, as the
// toolkit's coordinates hold some ten thousand pixels.
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
