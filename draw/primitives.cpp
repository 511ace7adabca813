// Lines and framed rectangles.
#include "draw/primitives.h"

#include <korvel/draw.h>

#include "draw/palette.h"
#include "draw/ports.h"

namespace korvel::draw {

using platform::Port;

void drawLine(Port &surface, Point from, Point to, const RGBColor &colour, int width) {
  surface.setForeground(colour);
  surface.drawLine(toInt(from.x), toInt(from.y), toInt(to.x), toInt(to.y), width);
  surface.setForeground(paletteColour(kBlack));
}

void drawRectangle(Port &surface, const platform::Rect &rect, int colour) {
  surface.setForeground(paletteColour(colour));
  surface.fillRect(rect);
  surface.setForeground(paletteColour(kBlack));
  surface.frameRect(rect);
}

}  // namespace korvel::draw

using korvel::draw::onSurface;
using korvel::draw::Pixels;
using korvel::draw::toShort;
using korvel::platform::Port;

void LineC_Ex(CGrafPtr port, int x1, int y1, int x2, int y2, RGBColor rgb, int width) {
  onSurface(port, [&](Port &surface) {
    korvel::draw::drawLine(surface, {x1, y1}, {x2, y2}, rgb, width);
    return 0;
  });
}

void Line_Ex(CGrafPtr port, int x1, int y1, int x2, int y2, int colour, int width) {
  LineC_Ex(port, x1, y1, x2, y2, korvel::draw::paletteColour(colour), width);
}

void Rectangle_Ex(CGrafPtr port, int x, int y, int cx, int cy, int colour) {
  onSurface(port, [&](Port &surface) {
    const korvel::platform::Rect rect{toShort(x), toShort(y), toShort(Pixels{x} + cx),
                                      toShort(Pixels{y} + cy)};
    korvel::draw::drawRectangle(surface, rect, colour);
    return 0;
  });
}
