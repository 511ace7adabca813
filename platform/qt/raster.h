// SPDX-License-Identifier: MIT
// For platform/qt/: the pixels of a port in memory, and ways to draw on them. All coordinates are
// device pixels; what lies outside is clipped.
#ifndef KORVEL_PLATFORM_QT_RASTER_H
#define KORVEL_PLATFORM_QT_RASTER_H

#include <cstdint>
#include <cstdlib>
#include <memory>

#include <QImage>
#include <QPainter>

#include "platform/qt/glyphink.h"

namespace korvel::platform::qt {

class Raster {
 public:
  // The ground also decides whether pixels can be transparent: on Nothing they can, on White never.
  enum class Ground { White, Nothing };

  // Null when a side is below 1, when it has more pixels than kMostPixels, or without memory.
  static std::unique_ptr<Raster> make(const QSize &size, Ground ground);
  static constexpr long long kMostPixels = 1LL << 28;

  Raster(const Raster &) = delete;
  Raster &operator=(const Raster &) = delete;

  QSize size() const { return image_.size(); }
  const QImage &image() const { return image_; }
  // Premultiplied; within size().
  QRgb pixel(int x, int y) const { return pixels_[static_cast<std::size_t>(y) * stride_ + x]; }

  void fill(const QRect &rect, QRgb colour);
  // The glyph's origin at (x, y). `colour` is opaque.
  void blend(const GlyphInk &ink, long long x, long long y, QRgb colour);

  // Antialiases. Kept open, as opening one takes longer than drawing a line of text.
  QPainter &painter();

 private:
  struct Free {
    void operator()(std::uint32_t *pixels) const { std::free(pixels); }
  };
  using Pixels = std::unique_ptr<std::uint32_t[], Free>;

  Raster(Pixels pixels, const QSize &size, QImage::Format format);

  const Pixels pixels_;
  const std::size_t stride_;
  QImage image_;      // shows pixels_
  QPainter painter_;  // ends before its image
};

}  // namespace korvel::platform::qt

#endif
