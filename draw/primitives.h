// For draw/ only: lines, rectangles and pictures on a surface. Line and rectangle leave the
// foreground black.
#ifndef KORVEL_DRAW_PRIMITIVES_H
#define KORVEL_DRAW_PRIMITIVES_H

#include <string_view>

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

// True when there is such a picture, and memory to draw it.
bool drawPicture(platform::Port &surface, std::string_view name, int x, int y);

}  // namespace korvel::draw

#endif
