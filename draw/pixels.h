// SPDX-License-Identifier: MIT
// For draw/: positions that a caller may have chosen anywhere in the range of an int.
#ifndef KORVEL_DRAW_PIXELS_H
#define KORVEL_DRAW_PIXELS_H

#include <cstdint>

namespace korvel::draw {

// Positions and widths are added up in this type: no text is long enough to make it overflow. The
// seam takes ints; a position clamped to int is far outside every port.
using Pixels = std::int64_t;

// Truncates to the 16 bits of a short.
constexpr std::int16_t toShort(Pixels value) { return static_cast<std::int16_t>(value); }

}  // namespace korvel::draw

#endif
