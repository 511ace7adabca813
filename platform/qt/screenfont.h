// SPDX-License-Identifier: MIT
// For platform/qt/: fonts as ports use them, a table of the 256 characters of the screen set.
//
// Every character advances by whole pixels, by the same number wherever it stands: no shaping, no
// kerning, no positions between pixels. That makes measuring a sum of table entries, which drawing
// equals by construction.
#ifndef KORVEL_PLATFORM_QT_SCREENFONT_H
#define KORVEL_PLATFORM_QT_SCREENFONT_H

#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include <QFont>
#include <QPainter>
#include <QRawFont>
#include <QString>

#include "platform/drawing.h"
#include "platform/qt/glyphink.h"

namespace korvel::platform::qt {

// The installed family for a name in the screen set: that family itself, else one with the same
// measures; null when there is neither. Cached by name; the same family has the same address.
const QString *familyAnswering(std::string_view name);

class ScreenFont {
 public:
  ScreenFont(const QFont &font, unsigned face);
  ScreenFont(const ScreenFont &) = delete;
  ScreenFont &operator=(const ScreenFont &) = delete;

  const FontMetrics &metrics() const { return metrics_; }
  int advance(char byte) const { return advances_[static_cast<unsigned char>(byte)]; }
  int width(std::string_view text) const;

  // The line under a text, if the face has one: how far below the baseline it begins.
  struct Underline {
    int top = 1;
    int thickness = 1;
  };
  bool isUnderlined() const { return isUnderlined_; }
  const Underline &underline() const { return underline_; }

  // Drops the toolkit's part, which ends with its application. Measures and inked glyphs stay;
  // other glyphs show nothing from then on.
  void end();

  // Draws with the painter's pen from (x, y) on, everything `scale` times as large. Each glyph
  // starts at a whole pixel of the painter. Glyphs far outside are left out.
  void draw(QPainter &painter, int x, int y, std::string_view text, qreal scale = 1) const;
  // The pixel at which a glyph starts.
  static long long placeOf(long long place, qreal scale) {
    return scale == 1 ? place : std::llround(static_cast<qreal>(place) * scale);
  }

  // The ink of the characters at this scale; null when they are too large to keep.
  InkTable *inkAt(qreal scale) const;

 private:
  struct Glyph {
    quint32 index = 0;
    std::uint8_t face = 0;  // in faces_
    bool isShown = false;
  };
  struct Scaled {
    qreal scale;
    std::vector<QRawFont> faces;
    std::unique_ptr<InkTable> ink;
  };

  Glyph glyphOf(char16_t character, const QFont &font);
  std::uint8_t indexOfFace(const QRawFont &face);
  Scaled &scaledBy(qreal scale) const;

  const bool isUnderlined_;
  const int pixelSize_;
  FontMetrics metrics_;
  Underline underline_;
  std::array<int, 256> advances_{};
  std::array<Glyph, 256> glyphs_{};
  std::vector<QRawFont> faces_;  // the font's own, then those of its substitutes
  mutable std::vector<Scaled> scaled_;
};

// `family` as familyAnswering() gives it, or null for the system's font; `face` as in
// platform/drawing.h; `size` in pixels, below 65536. Made once and kept: valid for good, also when
// the application ends in which it was made.
const ScreenFont &screenFont(const QString *family, unsigned face, int size);

// False before the application starts and after it ends: then neither screenFont() nor
// familyAnswering() may be called.
bool canHaveFonts();

}  // namespace korvel::platform::qt

#endif
