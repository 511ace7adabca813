// SPDX-License-Identifier: MIT
// For dialogs/, draw/, messages/ and platform/: rectangles of the seam to the desktop.
#ifndef KORVEL_PLATFORM_GEOMETRY_H
#define KORVEL_PLATFORM_GEOMETRY_H

#include <algorithm>
#include <cstdint>
#include <limits>

namespace korvel::platform {

// Pixels; right and bottom are one past the last pixel.
struct Rect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int width() const { return right - left; }
  int height() const { return bottom - top; }
  friend bool operator==(const Rect &, const Rect &) = default;
};

// The rectangle of this size in the middle of another, halves truncated toward zero, with no corner
// below `least`. In 64 bits, as the sum of two edges may overflow an int.
constexpr Rect centredOn(const Rect &other, int width, int height,
                         int least = std::numeric_limits<int>::min()) {
  using Wide = std::int64_t;
  const Wide left = std::max<Wide>((Wide{other.left} + other.right - width) / 2, least);
  const Wide top = std::max<Wide>((Wide{other.top} + other.bottom - height) / 2, least);
  return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(left + width),
          static_cast<int>(top + height)};
}

}  // namespace korvel::platform

#endif
