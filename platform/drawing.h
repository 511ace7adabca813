// For draw/, messages/ and platform/ only: the drawing half of the seam between the library and a
// desktop.
//
// A port is a surface to draw on, with a font, two colours and a text mode of its own. All
// coordinates are pixels from the port's top-left corner at scale 1 (a screen of scale 2 shows each
// as 2 x 2 finer ones); a coordinate far outside is clipped, never an error. Text is in the screen
// set (platform/screentext.h). Everything runs on the interface thread, and no method throws:
// without memory nothing, or only a part, is drawn.
#ifndef KORVEL_PLATFORM_DRAWING_H
#define KORVEL_PLATFORM_DRAWING_H

#include <optional>
#include <string>
#include <string_view>

#include <korvel/types.h>

#include "platform/geometry.h"

namespace korvel::platform {

// Bits of a face.
constexpr unsigned kBold = 1;
constexpr unsigned kItalic = 2;
constexpr unsigned kUnderline = 4;
constexpr unsigned kCondense = 32;
constexpr unsigned kExtend = 64;

// Whole pixels.
struct FontMetrics {
  int ascent = 0;
  int descent = 0;
  int leading = 0;
  int widest = 0;  // advance of the widest character
};

// A named picture, read once and drawn often; belongs to who loaded it.
class Picture {
 public:
  virtual ~Picture() = default;

  // Its own size at scale 1, at least 1 x 1; 0 x 0 for a file that is no picture.
  virtual int width() const = 0;
  virtual int height() const = 0;
};

// A new port draws black on white, transparently, in the system's font at 12 points, plain.
class Port {
 public:
  virtual ~Port() = default;

  // A font is known when it is installed, or another one of the same measures (as Liberation Sans
  // is for Arial); one that the system would only replace by any other is not. True when it is
  // known, which selects it with the face and keeps the size; else the font stays as it was. Bits
  // that are no face are left out.
  virtual bool setFont(std::string_view family, unsigned face) = 0;
  // One point is one pixel; a size below 1 stands for 12, and one above 1000 for 1000.
  virtual void setFontSize(int points) = 0;
  virtual FontMetrics fontMetrics() const = 0;

  // The width that drawing the text would give. Every character advances by whole pixels, by the
  // same number wherever it stands, and the same at every scale. A control character shows nothing
  // and has no width.
  virtual int textWidth(std::string_view text) const = 0;
  // Draws the text with its baseline starting at (x, y), smoothed, in the foreground colour; opaque
  // text first fills the rectangle of its width from ascent to descent with the background colour.
  // Returns its width; 0 when it could not, for want of memory.
  virtual int drawText(int x, int y, std::string_view text) = 0;

  virtual void setForeground(const RGBColor &colour) = 0;
  virtual void setBackground(const RGBColor &colour) = 0;
  virtual void setOpaqueText(bool isOpaque) = 0;

  // A line in the foreground colour by a square pen of `width` x `width` pixels (below 1: nothing)
  // that hangs to the right of and below each point from (x1, y1) to (x2, y2), both included. Level
  // and upright lines are not smoothed, slanted ones may be. At any scale those are of the same
  // thickness wherever they lie: of the whole number of finer pixels nearest to `width`, at
  // least 1.
  virtual void drawLine(int x1, int y1, int x2, int y2, int width) = 0;
  // Inside the rectangle, in the foreground colour, not smoothed; an empty rectangle shows nothing.
  virtual void fillRect(const Rect &rect) = 0;
  virtual void frameRect(const Rect &rect) = 0;  // one pixel wide, all sides as thick as a line

  // Draws the picture, which is one, at its own size, its top-left corner at (x, y). False when it
  // could not, for want of memory.
  virtual bool drawPicture(const Picture &picture, int x, int y) = 0;

  // Writes what was drawn as a PNG file (transparent where nothing was drawn on a window); false
  // when it cannot be written, when nothing was drawn on a window, and for a port whose surface
  // belongs to somebody else.
  virtual bool save(const std::string &path) const = 0;
  // The colour of a pixel; nothing outside the port, where nothing was drawn on a window, and for a
  // port whose surface belongs to somebody else. A surface keeps the upper eight bits of each
  // component: all of them set read back as 0xFFFF, others with zeros below, so that colours of
  // 0x8000, 0xC000 and 0xFFFF are as they were given.
  virtual std::optional<RGBColor> pixel(int x, int y) const = 0;
};

}  // namespace korvel::platform

#endif
