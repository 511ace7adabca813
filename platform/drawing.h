// SPDX-License-Identifier: MIT
// For draw/ and platform/: the drawing half of the seam between library and desktop.
//
// A port is a surface to draw on, with a font, two colours and a text mode of its own. All
// coordinates are pixels from the port's top-left corner at scale 1 (a screen of scale 2 shows each
// pixel as 2 x 2 finer ones). A coordinate far outside is clipped, never an error. Text is in the
// screen set (platform/screentext.h). Everything runs on the interface thread. No method throws:
// without memory nothing or only a part is drawn.
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

// A picture, read once and drawn often; owned by its loader.
class Picture {
 public:
  virtual ~Picture() = default;

  // Its own size at scale 1, at least 1 x 1; 0 x 0 for a file that is not a picture.
  virtual int width() const = 0;
  virtual int height() const = 0;
};

// A new port draws black on white, transparently, in the system's font at 12 points, plain.
class Port {
 public:
  virtual ~Port() = default;

  // Selects a known font with the face, keeping the size, and returns true; with an unknown font
  // everything stays. Known are an installed font and one with an installed substitute of the same
  // measures (Liberation Sans for Arial), not one that the system would replace by just any other.
  // Bits without a face are ignored.
  virtual bool setFont(std::string_view family, unsigned face) = 0;
  // One point is one pixel; a size below 1 counts as 12, one above 1000 as 1000.
  virtual void setFontSize(int points) = 0;
  virtual FontMetrics fontMetrics() const = 0;

  // The width that drawText returns. A character advances by a whole number of pixels, the same
  // everywhere in a text and at every scale. A control character shows nothing and has no width.
  virtual int textWidth(std::string_view text) const = 0;
  // Draws the text with its baseline starting at (x, y), smoothed, in the foreground colour; opaque
  // text first fills the rectangle of its width from ascent to descent with the background colour.
  // Returns its width; 0 where memory ran out.
  virtual int drawText(int x, int y, std::string_view text) = 0;

  virtual void setForeground(const RGBColor &colour) = 0;
  virtual void setBackground(const RGBColor &colour) = 0;
  virtual void setOpaqueText(bool isOpaque) = 0;

  // A line in the foreground colour by a square pen of `width` x `width` pixels (below 1: nothing)
  // that hangs to the right of and below each point from (x1, y1) to (x2, y2), both included. Level
  // and upright lines are not smoothed, slanted ones may be. At any scale, level and upright lines
  // have the same thickness everywhere: the whole number of finer pixels nearest to `width`, at
  // least 1.
  virtual void drawLine(int x1, int y1, int x2, int y2, int width) = 0;
  // Drawn inside the rectangle, in the foreground colour, not smoothed; an empty one shows nothing.
  virtual void fillRect(const Rect &rect) = 0;
  virtual void frameRect(const Rect &rect) = 0;  // one pixel wide, all sides as thick as a line

  // Draws a picture (never one of 0 x 0) at its own size, its top-left corner at (x, y). False
  // where memory ran out.
  virtual bool drawPicture(const Picture &picture, int x, int y) = 0;

  // Writes the surface as a PNG file, transparent where nothing was drawn on a window. False when
  // the file cannot be written, when nothing was drawn on a window, and for a painter's port.
  virtual bool save(const std::string &path) const = 0;
  // The colour of a pixel; nothing outside the port, where nothing was drawn on a window, and for a
  // painter's port. A surface keeps the upper eight bits of each component: 0xFF reads back as
  // 0xFFFF, all others with zeros below, so that 0x8000, 0xC000 and 0xFFFF read back unchanged.
  virtual std::optional<RGBColor> pixel(int x, int y) const = 0;
};

}  // namespace korvel::platform

#endif
