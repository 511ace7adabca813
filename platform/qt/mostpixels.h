// SPDX-License-Identifier: MIT
// For platform/qt/: the largest area of a window or button, as both are kept in memory pixel by
// pixel.
#ifndef KORVEL_PLATFORM_QT_MOSTPIXELS_H
#define KORVEL_PLATFORM_QT_MOSTPIXELS_H

#include <algorithm>

#include <QSize>

namespace korvel::platform::qt {

// More than any screen has.
constexpr int kMostPixels = 1 << 25;

// The size, less high where it would have more; one of its pixels is `scale` device pixels.
inline QSize withinMostPixels(const QSize &size, qreal scale) {
  const auto most = static_cast<int>(kMostPixels / std::max(1.0, scale * scale));
  return size.boundedTo({most, most / std::max(1, size.width())});
}

}  // namespace korvel::platform::qt

#endif
