// Rich text: one line with tabs, bullets, pictures, lines and frames, drawn or measured.
#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

#include <korvel/draw.h>

#include "draw/fonts.h"
#include "draw/palette.h"
#include "draw/ports.h"
#include "draw/primitives.h"
#include "draw/text.h"
#include "draw/walker.h"

namespace korvel::draw {

using platform::Port;

namespace {

constexpr int kNarrowestEm = 8;
constexpr int kPenWidth = 2;

// What outlasts a text.
constinit std::int16_t g_penX = 0;
constinit std::int16_t g_penY = 0;
constinit bool g_nextRunEndsAtX = false;  // when drawing
constinit bool g_runsCount = true;        // when measuring

int emOf(const Port &surface) { return std::max(runWidth(surface, "X"), kNarrowestEm); }

class Drawing {
 public:
  static constexpr bool kHasPen = true;

  // Lines and frames are placed from `origin`, all else `y` below it.
  Drawing(Port &surface, int em, Point origin, int y)
      : surface_(surface), em_(em), origin_(origin), top_(origin.y + y) {}

  Pixels run(Pixels x, std::string_view text) {
    const Pixels left = origin_.x + x;
    if (!g_nextRunEndsAtX) return drawRun(surface_, left, top_, text);
    g_nextRunEndsAtX = false;
    drawRun(surface_, left - runWidth(surface_, text), top_, text);
    return 0;
  }
  void alignRight() { g_nextRunEndsAtX = true; }
  void alignOff() { g_nextRunEndsAtX = false; }
  void tab() {}

  // Kept: as any framed rectangle, a bullet leaves the foreground black.
  void bullet(Pixels x) {
    const Pixels left = origin_.x + x + em_ / 2;
    const Pixels top = top_ + em_ / 2;
    drawRectangle(surface_, {toInt(left), toInt(top), toInt(left + em_), toInt(top + em_)}, kRed);
  }
  void picture(Pixels x, const char *name) {
    drawPicture(surface_, name, toInt(origin_.x + x), toInt(top_ + 1));
  }

  int lineHeight() {
    if (lineHeight_ == kUnknown) lineHeight_ = draw::lineHeight(surface_.fontMetrics());
    return lineHeight_;
  }
  void setPenAcross(Pixels x) { g_penX = toShort(x); }
  void setPenDown(Pixels y) { g_penY = toShort(y); }
  void line(Point to) {
    stroke({g_penX, g_penY}, to);
    g_penX = toShort(to.x);
    g_penY = toShort(to.y);
  }
  void frame(Point corner) {
    const Point pen{g_penX, g_penY};
    stroke(pen, {corner.x, pen.y});
    stroke({corner.x, pen.y}, corner);
    stroke(corner, {pen.x, corner.y});
    stroke({pen.x, corner.y}, pen);
  }

 private:
  void stroke(Point from, Point to) {
    drawLine(surface_, {origin_.x + from.x, origin_.y + from.y},
             {origin_.x + to.x, origin_.y + to.y}, paletteColour(kBlack), kPenWidth);
  }

  static constexpr int kUnknown = INT_MIN;

  Port &surface_;
  const int em_;
  const Point origin_;
  const Pixels top_;
  int lineHeight_ = kUnknown;
};

class Measuring {
 public:
  // Kept: the arguments of lines, frames and the pen are measured as text.
  static constexpr bool kHasPen = false;

  Measuring(const Port &surface, int em) : surface_(surface), em_(em) {}

  // Kept: a run has no height.
  Pixels run(Pixels, std::string_view text) { return g_runsCount ? runWidth(surface_, text) : 0; }
  // Kept: until it is taken back, and not for the next run only.
  void alignRight() { g_runsCount = false; }
  void alignOff() { g_runsCount = true; }
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

// The lengths of the interface are ints.
int lengthOf(const char *text) {
  return static_cast<int>(std::min<std::size_t>(std::strlen(text), INT_MAX));
}

// The shift that puts a text into the middle of a box, truncated toward zero.
int shiftIntoMiddle(CGrafPtr port, int x, int y, int width, const char *text) {
  int textWidth = 0;
  int height = 0;
  const bool isPlain = GetTextExtent_Ext(port, x, y, text, lengthOf(text), &textWidth, &height);
  return isPlain && textWidth < width ? (width - textWidth) / 2 : 0;
}

// Selects the size, and where no font was chosen the default one. Where that one is missing, font
// and size stay.
void selectSize(Port &surface, int size) {
  const bool hasFont = *ch_font_FontName != '\0' || surface.setFont(kDefaultFont, 0);
  if (hasFont) surface.setFontSize(size);
}

}  // namespace
}  // namespace korvel::draw

using korvel::draw::onSurface;
using korvel::draw::Pixels;
using korvel::draw::toInt;
using korvel::draw::Walker;
using korvel::platform::Port;

int TextOut_Ext(CGrafPtr port, int x, int y, int x0, int y0, const char *text, int len) {
  if (!korvel::draw::isText(text, len)) return 0;
  return onSurface(port, [&](Port &surface) {
    const int em = korvel::draw::emOf(surface);
    korvel::draw::Drawing drawing(surface, em, {x0, y0}, y);
    return toInt(Walker(drawing, em, x).walk({text, static_cast<std::size_t>(len)}));
  });
}

int GetTextExtent_Ext(CGrafPtr port, int x, int, const char *text, int len, int *cx, int *cy) {
  if (!korvel::draw::isText(text, len)) return 0;
  return onSurface(port, [&](const Port &surface) {
    const int em = korvel::draw::emOf(surface);
    korvel::draw::Measuring measuring(surface, em);
    const Pixels width = Walker(measuring, em, x).walk({text, static_cast<std::size_t>(len)});
    if (cx != nullptr) *cx = toInt(width);
    if (cy != nullptr) *cy = measuring.height();
    return measuring.hasTab() ? 0 : 1;
  });
}

int ch_font_printstr(CGrafPtr port, int x, int y, int width, int fore, int back, int size,
                     const char *text) {
  if (text == nullptr) return 0;
  return onSurface(port, [&](Port &surface) {
    korvel::draw::selectSize(surface, size);
    korvel::draw::setColours(surface, fore, back);
    const Pixels left = Pixels{x} + korvel::draw::shiftIntoMiddle(port, x, y, width, text);
    const int drawn = TextOut_Ext(port, toInt(left), y, 0, 0, text, korvel::draw::lengthOf(text));
    surface.setForeground(korvel::draw::paletteColour(korvel::draw::kBlack));
    return toInt(left + drawn);
  });
}
