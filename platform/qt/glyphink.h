// SPDX-License-Identifier: MIT
// For platform/qt/: glyphs as their inked pixels, drawn once by the toolkit. Blending these takes
// half the time of the toolkit's painter for a line of text.
#ifndef KORVEL_PLATFORM_QT_GLYPHINK_H
#define KORVEL_PLATFORM_QT_GLYPHINK_H

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include <QRawFont>
#include <QRect>

namespace korvel::platform::qt {

// A pixel of a glyph's box, covered from 1 part in 255 to wholly (255).
struct InkPixel {
  std::uint8_t x;
  std::uint8_t y;
  std::uint8_t coverage;
};

struct GlyphInk {
  QRect box;  // from the glyph's origin; at most 256 pixels a side
  std::vector<InkPixel> pixels;
};

// As the toolkit's painter would draw the glyph at whole pixels.
GlyphInk inkOf(const QRawFont &font, quint32 glyph);

// The ink of 256 characters, each computed when it is first drawn.
class InkTable {
 public:
  explicit InkTable(std::function<GlyphInk(unsigned char)> make) : make_(std::move(make)) {}

  const GlyphInk &of(char byte) {
    std::optional<GlyphInk> &ink = inks_[static_cast<unsigned char>(byte)];
    if (!ink) ink = make_(static_cast<unsigned char>(byte));
    return *ink;
  }

 private:
  const std::function<GlyphInk(unsigned char)> make_;
  std::array<std::optional<GlyphInk>, 256> inks_;
};

}  // namespace korvel::platform::qt

#endif
