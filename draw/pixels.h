// For draw/ only: positions that a caller may have chosen anywhere in the range of an int.
#ifndef KORVEL_DRAW_PIXELS_H
#define KORVEL_DRAW_PIXELS_H

#include <algorithm>
#include <cstdint>
#include <limits>

namespace korvel::draw {

// Positions and widths are added up in this type, in which no text is long enough to overflow.
using Pixels = std::int64_t;

// The nearest int: so far outside every port that nothing is seen of the difference.
constexpr int toInt(Pixels value) {
  return static_cast<int>(
      std::clamp<Pixels>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// What the 16 bits of a short keep of a value.
constexpr std::int16_t toShort(Pixels value) { return static_cast<std::int16_t>(value); }

}  // namespace korvel::draw

#endif
