// SPDX-License-Identifier: MIT
// Lines and framed rectangles, drawn alike for rich text and for the exported functions.
#include "draw/primitives.h"

#include <korvel/draw.h>

#include "base/numbers.h"
#include "draw/misuse.h"
#include "draw/palette.h"
#include "draw/ports.h"

namespace korvel::draw {

using base::clampToInt;
using platform::Port;
using platform::Rect;

namespace {

Rect rectOfShorts(Pixels x, Pixels y, Pixels cx, Pixels cy) {
  return {toShort(x), toShort(y), toShort(x + cx), toShort(y + cy)};
}

}  // namespace

void drawLine(Port &surface, Point from, Point to, const RGBColor &colour, int width) {
  surface.setForeground(colour);
  surface.drawLine(clampToInt(from.x), clampToInt(from.y), clampToInt(to.x), clampToInt(to.y),
                   width);
  surface.setForeground(paletteColour(KorvelBlack));
}

void drawRectangle(Port &surface, const Rect &rect, int colour) {
  surface.setForeground(paletteColour(colour));
  surface.fillRect(rect);
  surface.setForeground(paletteColour(KorvelBlack));
  surface.frameRect(rect);
}

}  // namespace korvel::draw

using namespace korvel::draw;

void LineC_Ex(CGrafPtr port, int x1, int y1, int x2, int y2, RGBColor rgb, int width) {
  lookForMisuse([=] {
    needsPen(Call("LineC_Ex", {port, x1, y1, x2, y2, filled(&rgb), width}), port, width);
  });
  onSurface(port, [&](Port &surface) { drawLine(surface, {x1, y1}, {x2, y2}, rgb, width); });
}

void Line_Ex(CGrafPtr port, int x1, int y1, int x2, int y2, int colour, int width) {
  lookForMisuse([=] {
    needsLine(Call("Line_Ex", {port, x1, y1, x2, y2, colour, width}), port, colour, width);
  });
  onSurface(port, [&](Port &surface) {
    drawLine(surface, {x1, y1}, {x2, y2}, paletteColour(colour), width);
  });
}

void Rectangle_Ex(CGrafPtr port, int x, int y, int cx, int cy, int colour) {
  lookForMisuse([=] {
    needsRectangle(Call("Rectangle_Ex", {port, x, y, cx, cy, colour}), port, cx, cy, colour);
  });
  onSurface(port,
            [&](Port &surface) { drawRectangle(surface, rectOfShorts(x, y, cx, cy), colour); });
}
