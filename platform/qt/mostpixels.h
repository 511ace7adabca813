// For platform/qt/ only: how much of a window or a button is painted at most, as both are kept in
// memory pixel by pixel.
#ifndef KORVEL_PLATFORM_QT_MOSTPIXELS_H
#define KORVEL_PLATFORM_QT_MOSTPIXELS_H

#include <algorithm>

#include <QSize>

namespace korvel::platform::qt {

// More than any screen has.
constexpr int kMostPixels = 1 << 25;

// Less high where it would have more; `scale` device pixels make one of the size's.
inline QSize withinMostPixels(const QSize &size, qreal scale) {
  const auto most = static_cast<int>(kMostPixels / std::max(1.0, scale * scale));
  return size.boundedTo({most, most / std::max(1, size.width())});
}

}  // namespace korvel::platform::qt

#endif
