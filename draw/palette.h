// SPDX-License-Identifier: MIT
// For draw/: the palette's colours as values.
#ifndef KORVEL_DRAW_PALETTE_H
#define KORVEL_DRAW_PALETTE_H

#include <korvel/types.h>

namespace korvel::draw {

// The colour of the entry index mod 16; a negative index wraps as well.
RGBColor paletteColour(int index);

}  // namespace korvel::draw

#endif
