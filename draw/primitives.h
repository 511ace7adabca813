// SPDX-License-Identifier: MIT
// For draw/: lines and framed rectangles on a surface. Both leave the foreground black.
#ifndef KORVEL_DRAW_PRIMITIVES_H
#define KORVEL_DRAW_PRIMITIVES_H

#include <korvel/types.h>

#include "draw/pixels.h"
#include "platform/drawing.h"

namespace korvel::draw {

struct Point {
  Pixels x;
  Pixels y;
};

void drawLine(platform::Port &surface, Point from, Point to, const RGBColor &colour, int width);
void drawRectangle(platform::Port &surface, const platform::Rect &rect, int colour);

}  // namespace korvel::draw

#endif
