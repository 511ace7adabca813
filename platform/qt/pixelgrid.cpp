// SPDX-License-Identifier: MIT
// Rounds edges and thicknesses to device pixels.
#include "platform/qt/pixelgrid.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

namespace korvel::platform::qt {
namespace {

using Axis = PixelGrid::Axis;

// Wide enough for every device, and small enough for sums and products of int.
constexpr long long kFarthest = 1 << 20;

long long placeOf(int place, const Axis &axis) {
  return std::llround(place * axis.scale + axis.origin);
}

long long thicknessOf(int width, const Axis &axis) {
  return std::max(1LL, std::llround(width * axis.scale));
}

int clamped(long long place) { return static_cast<int>(std::clamp(place, -kFarthest, kFarthest)); }

QRect between(long long left, long long top, long long right, long long bottom) {
  return {QPoint(clamped(left), clamped(top)), QPoint(clamped(right) - 1, clamped(bottom) - 1)};
}

}  // namespace

PixelGrid PixelGrid::of(const QPainter &painter) {
  const QTransform &transform = painter.deviceTransform();
  const bool isUpright =
      transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0;
  if (!isUpright) return {};
  return {{transform.m11(), transform.dx()}, {transform.m22(), transform.dy()}};
}

QRect PixelGrid::rect(const Rect &rect) const {
  return between(placeOf(rect.left, across_), placeOf(rect.top, down_),
                 placeOf(rect.right, across_), placeOf(rect.bottom, down_));
}

// The sides do not overlap, as they may be painted translucently.
std::array<QRect, 4> PixelGrid::frame(const Rect &rect) const {
  const long long thickAcross = thicknessOf(1, across_);
  const long long thickDown = thicknessOf(1, down_);
  const long long left = placeOf(rect.left, across_);
  const long long top = placeOf(rect.top, down_);
  const long long right = std::max(left + thickAcross, placeOf(rect.right, across_));
  const long long bottom = std::max(top + thickDown, placeOf(rect.bottom, down_));
  const long long innerLeft = left + thickAcross;
  const long long innerTop = top + thickDown;
  const long long innerRight = std::max(innerLeft, right - thickAcross);
  const long long innerBottom = std::max(innerTop, bottom - thickDown);
  return {between(left, top, right, innerTop), between(left, innerBottom, right, bottom),
          between(left, innerTop, innerLeft, innerBottom),
          between(innerRight, innerTop, right, innerBottom)};
}

QRect PixelGrid::stroke(const Stroke &stroke) const {
  const auto &[x1, y1, x2, y2, width] = stroke;
  return between(placeOf(std::min(x1, x2), across_), placeOf(std::min(y1, y2), down_),
                 placeOf(std::max(x1, x2), across_) + thicknessOf(width, across_),
                 placeOf(std::max(y1, y2), down_) + thicknessOf(width, down_));
}

QRectF PixelGrid::fromPixels(const QRect &pixels) const {
  return {(pixels.left() - across_.origin) / across_.scale,
          (pixels.top() - down_.origin) / down_.scale, pixels.width() / across_.scale,
          pixels.height() / down_.scale};
}

}  // namespace korvel::platform::qt
