// SPDX-License-Identifier: MIT
// Draws a glyph with the toolkit and keeps the coverage of its pixels.
#include "platform/qt/glyphink.h"

#include <QGlyphRun>
#include <QImage>
#include <QPainter>

namespace korvel::platform::qt {
namespace {

constexpr int kLongestSide = 256;
// Smoothing reaches beyond the outline.
constexpr int kMargin = 2;

// Black on white: each channel is 255 less the coverage.
QImage drawn(const QRawFont &font, quint32 glyph, const QRect &box) {
  QImage image(box.size(), QImage::Format_RGB32);
  image.fill(Qt::white);
  QGlyphRun run;
  run.setRawFont(font);
  run.setGlyphIndexes({glyph});
  run.setPositions({QPointF(0, 0)});
  QPainter painter(&image);
  painter.setPen(Qt::black);
  painter.drawGlyphRun(-box.topLeft(), run);
  return image;
}

}  // namespace

GlyphInk inkOf(const QRawFont &font, quint32 glyph) {
  GlyphInk ink;
  const QRectF outline = font.boundingRect(glyph);
  if (outline.isEmpty()) return ink;
  const QRect box = outline.toAlignedRect().adjusted(-kMargin, -kMargin, kMargin, kMargin);
  ink.box = box & QRect(box.left(), box.top(), kLongestSide, kLongestSide);
  const QImage image = drawn(font, glyph, ink.box);
  for (int y = 0; y < image.height(); ++y) {
    const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      const int coverage = 255 - qGreen(line[x]);
      if (coverage == 0) continue;
      ink.pixels.push_back({static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y),
                            static_cast<std::uint8_t>(coverage)});
    }
  }
  return ink;
}

}  // namespace korvel::platform::qt
