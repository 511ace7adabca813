// SPDX-License-Identifier: MIT
// For platform/qt/: where rectangles and rules lie on the pixels of a device of any scale.
#ifndef KORVEL_PLATFORM_QT_PIXELGRID_H
#define KORVEL_PLATFORM_QT_PIXELGRID_H

#include <array>

#include <QRect>
#include <QRectF>

#include "platform/geometry.h"
#include "platform/qt/strokes.h"

class QPainter;

namespace korvel::platform::qt {

// An edge lies on the nearest pixel, so that touching rectangles leave no gap; a rule is equally
// thick everywhere. Coordinates far outside every device are clamped.
class PixelGrid {
 public:
  // The device's pixels to one of the port's, and the device coordinate of the port's corner.
  struct Axis {
    qreal scale = 1;
    qreal origin = 0;
  };

  PixelGrid() = default;
  explicit PixelGrid(qreal scale) : PixelGrid(Axis{scale}, Axis{scale}) {}
  PixelGrid(const Axis &across, const Axis &down) : across_(across), down_(down) {}
  // The pixels of the painter's device, unless it rotates or mirrors.
  static PixelGrid of(const QPainter &painter);

  qreal scale() const { return across_.scale; }

  QRect rect(const Rect &rect) const;
  // The sides of a frame inside the rectangle, each as thick as a pixel of the port.
  std::array<QRect, 4> frame(const Rect &rect) const;
  // A horizontal or vertical stroke.
  QRect stroke(const Stroke &stroke) const;

  // The same part of the device in coordinates of the port.
  QRectF fromPixels(const QRect &pixels) const;

 private:
  Axis across_;
  Axis down_;
};

}  // namespace korvel::platform::qt

#endif
