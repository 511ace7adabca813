// SPDX-License-Identifier: MIT
// Rich text: one line with tabs, bullets, pictures, lines and frames, drawn or measured.
#include <algorithm>
#include <cstdint>
#include <optional>

#include <korvel/draw.h>

#include "base/guard.h"
#include "base/numbers.h"
#include "base/views.h"
#include "draw/fonts.h"
#include "draw/misuse.h"
#include "draw/palette.h"
#include "draw/pictures.h"
#include "draw/ports.h"
#include "draw/primitives.h"
#include "draw/text.h"
#include "draw/walker.h"

namespace korvel::draw {

using base::clampToInt;
using platform::Port;

namespace {

constexpr int kNarrowestEm = 8;
constexpr int kPenWidth = 2;

// These outlast a text.
constinit std::int16_t penX = 0;
constinit std::int16_t penY = 0;
constinit bool isNextRunRightAligned = false;  // when drawing
constinit bool areRunsMeasured = true;         // when measuring

int emOf(const Port &surface) { return std::max(runWidth(surface, "X"), kNarrowestEm); }

class Drawing {
 public:
  static constexpr bool kHasPen = true;

  // Lines and frames are placed relative to `origin`, all else relative to `y` below it.
  Drawing(Port &surface, int em, Point origin, int y)
      : surface_(surface), em_(em), origin_(origin), top_(origin.y + y) {}

  Pixels run(Pixels x, std::string_view text) {
    const Pixels left = origin_.x + x;
    if (!isNextRunRightAligned) return drawRun(surface_, left, top_, text);
    isNextRunRightAligned = false;
    drawRun(surface_, left - runWidth(surface_, text), top_, text);
    return 0;
  }
  void alignRight() { isNextRunRightAligned = true; }
  void alignOff() { isNextRunRightAligned = false; }
  void tab() {}

  // Kept: as any framed rectangle, a bullet leaves the foreground black.
  void bullet(Pixels x) {
    const Pixels left = origin_.x + x + em_ / 2;
    const Pixels top = top_ + em_ / 2;
    drawRectangle(
        surface_,
        {clampToInt(left), clampToInt(top), clampToInt(left + em_), clampToInt(top + em_)},
        KorvelRed);
  }
  void picture(Pixels x, const char *name) {
    drawPicture(surface_, name, clampToInt(origin_.x + x), clampToInt(top_ + 1));
  }

  int lineHeight() {
    if (!lineHeight_) lineHeight_ = draw::lineHeight(surface_.fontMetrics());
    return *lineHeight_;
  }
  void setPenAcross(Pixels x) { penX = toShort(x); }
  void setPenDown(Pixels y) { penY = toShort(y); }
  void line(Point to) {
    stroke({penX, penY}, to);
    penX = toShort(to.x);
    penY = toShort(to.y);
  }
  void frame(Point corner) {
    const Point pen{penX, penY};
    stroke(pen, {corner.x, pen.y});
    stroke({corner.x, pen.y}, corner);
    stroke(corner, {pen.x, corner.y});
    stroke({pen.x, corner.y}, pen);
  }

 private:
  void stroke(Point from, Point to) {
    drawLine(surface_, {origin_.x + from.x, origin_.y + from.y},
             {origin_.x + to.x, origin_.y + to.y}, paletteColour(KorvelBlack), kPenWidth);
  }

  Port &surface_;
  const int em_;
  const Point origin_;
  const Pixels top_;
  std::optional<int> lineHeight_;
};

class Measuring {
 public:
  // Kept: the arguments of lines, frames and the pen are measured as text.
  static constexpr bool kHasPen = false;

  Measuring(const Port &surface, int em) : surface_(surface), em_(em) {}

  // Kept: a run has no height.
  Pixels run(Pixels, std::string_view text) {
    return areRunsMeasured ? runWidth(surface_, text) : 0;
  }
  // Kept: right alignment lasts until it is taken back, and not for the next run only.
  void alignRight() { areRunsMeasured = false; }
  void alignOff() { areRunsMeasured = true; }
  void tab() { hasTab_ = true; }
  void bullet(Pixels) { height_ = 2 * em_; }
  void picture(Pixels, const char *) { height_ = 2 * em_; }

  bool hasTab() const { return hasTab_; }
  int height() const { return height_; }

 private:
  const Port &surface_;
  const int em_;
  int height_ = 0;
  bool hasTab_ = false;
};

int drawRichText(Port &surface, Pixels x, int y, Point origin, std::string_view text) {
  const int em = emOf(surface);
  Drawing drawing(surface, em, origin, y);
  return clampToInt(Walker(drawing, em, x).walk(text));
}

struct Extent {
  int width;
  int height;
  bool hasTab;
};

Extent extentOf(const Port &surface, Pixels x, std::string_view text) {
  const int em = emOf(surface);
  Measuring measuring(surface, em);
  const Pixels width = Walker(measuring, em, x).walk(text);
  return {clampToInt(width), measuring.height(), measuring.hasTab()};
}

// Selects the size, and the default font if none was chosen. Where the default font is missing,
// font and size stay.
void selectSize(Port &surface, int size) {
  const bool hasFont = *ch_font_FontName != '\0' || surface.setFont(kDefaultFont, 0);
  if (hasFont) surface.setFontSize(size);
}

// The x at which a text is in the middle of a box; the left of the box for a text that has a tab or
// is too wide.
int startInBox(const Port &surface, int x, int width, std::string_view text) {
  const Extent extent = extentOf(surface, x, text);
  const bool isCentred = !extent.hasTab && extent.width < width;
  return clampToInt(isCentred ? x + (Pixels{width} - extent.width) / 2 : x);
}

int printCentred(Port &surface, int x, int y, int width, const TextStyle &style,
                 std::string_view text) {
  selectSize(surface, style.size);
  setColours(surface, style.fore, style.back);
  const Pixels start = startInBox(surface, x, width, text);
  const int drawn = base::guarded(0, [&] { return drawRichText(surface, start, y, {0, 0}, text); });
  surface.setForeground(paletteColour(KorvelBlack));
  return clampToInt(start + drawn);
}

}  // namespace
}  // namespace korvel::draw

using namespace korvel::draw;
using korvel::base::bytesOf;

int TextOut_Ext(CGrafPtr port, int x, int y, int x0, int y0, const char *text, int len) {
  lookForMisuse([=] {
    needsText(Call("TextOut_Ext", {port, x, y, x0, y0, shownRun(text, len), len}), port, text, len);
  });
  if (!isText(text, len)) return 0;
  return onSurface(port, 0, [&](Port &surface) {
    return drawRichText(surface, x, y, {x0, y0}, bytesOf(text, len));
  });
}

int GetTextExtent_Ext(CGrafPtr port, int x, int y, const char *text, int len, int *cx, int *cy) {
  lookForMisuse([=] {
    needsText(Call("GetTextExtent_Ext",
                   {port, x, y, shownRun(text, len), len, orNull(filled(cx)), orNull(filled(cy))}),
              port, text, len);
  });
  if (!isText(text, len)) return 0;
  return onSurface(port, 0, [&](const Port &surface) {
    const Extent extent = extentOf(surface, x, bytesOf(text, len));
    put(cx, extent.width);
    put(cy, extent.height);
    return extent.hasTab ? 0 : 1;
  });
}

int ch_font_printstr(CGrafPtr port, int x, int y, int width, int fore, int back, int size,
                     const char *text) {
  lookForMisuse([=] {
    needsPrinted(Call("ch_font_printstr", {port, x, y, width, fore, back, size, text}), port, text,
                 fore, back, size);
  });
  if (text == nullptr) return 0;
  return onSurface(port, 0, [&](Port &surface) {
    return printCentred(surface, x, y, width, {fore, back, size}, text);
  });
}
