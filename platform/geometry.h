// For dialogs/, draw/, messages/ and platform/ only: rectangles of the seam.
#ifndef KORVEL_PLATFORM_GEOMETRY_H
#define KORVEL_PLATFORM_GEOMETRY_H

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

}  // namespace korvel::platform

#endif
