#include "platform/qt/strokes.h"

#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace korvel::platform::qt {
namespace {

int saturatedSum(int a, int b) {
  const long long sum = static_cast<long long>(a) + b;
  return static_cast<int>(
      std::clamp<long long>(sum, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// One side of the bounds: how far within it a point lies, negative outside.
using Depth = std::function<qreal(const QPointF &)>;

QPolygonF clippedAt(const QPolygonF &convex, const Depth &depth) {
  QPolygonF inside;
  for (qsizetype i = 0; i < convex.size(); ++i) {
    const QPointF from = convex[i];
    const QPointF to = convex[(i + 1) % convex.size()];
    const qreal fromDepth = depth(from);
    const qreal toDepth = depth(to);
    if (fromDepth >= 0) inside << from;
    if ((fromDepth >= 0) != (toDepth >= 0))
      inside << from + (to - from) * (fromDepth / (fromDepth - toDepth));
  }
  return inside;
}

// Before anything is drawn, as the toolkit's own coordinates hold some ten thousand pixels only.
QPolygonF clipped(QPolygonF convex, const QRectF &bounds) {
  const Depth kSides[] = {
      [&](const QPointF &point) { return point.x() - bounds.left(); },
      [&](const QPointF &point) { return bounds.right() - point.x(); },
      [&](const QPointF &point) { return point.y() - bounds.top(); },
      [&](const QPointF &point) { return bounds.bottom() - point.y(); },
  };
  for (const Depth &side : kSides) convex = clippedAt(convex, side);
  return convex;
}

QPolygonF square(const QPointF &middle, qreal half) {
  return QPolygonF({middle + QPointF(-half, -half), middle + QPointF(half, -half),
                    middle + QPointF(half, half), middle + QPointF(-half, half)});
}

// In the same sense of rotation as the squares, so that where they overlap nothing cancels out.
QPolygonF band(const QPointF &from, const QPointF &to, qreal half) {
  const QPointF along = to - from;
  const QPointF across = QPointF(-along.y(), along.x()) * (half / std::hypot(along.x(), along.y()));
  return QPolygonF({from - across, to - across, to + across, from + across});
}

}  // namespace

Rect straightStroke(const Stroke &stroke) {
  return {std::min(stroke.x1, stroke.x2), std::min(stroke.y1, stroke.y2),
          saturatedSum(std::max(stroke.x1, stroke.x2), stroke.width),
          saturatedSum(std::max(stroke.y1, stroke.y2), stroke.width)};
}

QPainterPath slantedStroke(const Stroke &stroke, const QRectF &bounds, qreal scale) {
  const qreal half = stroke.width * scale / 2;
  const QPointF from = QPointF(stroke.x1, stroke.y1) * scale + QPointF(half, half);
  const QPointF to = QPointF(stroke.x2, stroke.y2) * scale + QPointF(half, half);
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  for (const QPolygonF &part : {square(from, half), band(from, to, half), square(to, half)}) {
    const QPolygonF seen = clipped(part, bounds);
    if (seen.isEmpty()) continue;
    path.addPolygon(seen);
    path.closeSubpath();
  }
  return path;
}

}  // namespace korvel::platform::qt
