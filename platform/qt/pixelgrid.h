// For platform/qt/ only: where rectangles and rules lie on the pixels of a device of any scale.
#ifndef KORVEL_PLATFORM_QT_PIXELGRID_H
#define KORVEL_PLATFORM_QT_PIXELGRID_H

#include <array>

#include <QRect>
#include <QRectF>

#include "platform/geometry.h"
#include "platform/qt/strokes.h"

namespace korvel::platform::qt {

// An edge lies on the nearest pixel, so that rectangles that touch each other leave no gap; a rule
// is as thick wherever it lies. What is far outside every device ends before it leaves the range of
// an int.
class PixelGrid {
 public:
  // Of the device: pixels for one of the port's, and where the port's corner lies.
  struct Axis {
    qreal scale = 1;
    qreal origin = 0;
  };

  PixelGrid() = default;
  explicit PixelGrid(qreal scale) : PixelGrid(Axis{scale}, Axis{scale}) {}
  PixelGrid(const Axis &across, const Axis &down) : across_(across), down_(down) {}

  QRect rect(const Rect &rect) const;
  // The sides of a frame that lies inside of the rectangle, each as thick as a pixel of the port.
  std::array<QRect, 4> frame(const Rect &rect) const;
  // A level or upright stroke.
  QRect stroke(const Stroke &stroke) const;

  // The same part of the device in coordinates of the port.
  QRectF fromPixels(const QRect &pixels) const;

 private:
  Axis across_;
  Axis down_;
};

}  // namespace korvel::platform::qt

#endif
