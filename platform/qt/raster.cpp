// SPDX-License-Identifier: MIT
// Fills and blends pixels in memory, faster than the toolkit's painter.
#include "platform/qt/raster.h"

#include <algorithm>

namespace korvel::platform::qt {
namespace {

// The four components of a pixel, each in 16 bits, so that one multiplication scales all.
constexpr std::uint64_t kLanes = 0x00FF00FF00FF00FF;

std::uint64_t spread(std::uint32_t pixel) {
  return (pixel | (static_cast<std::uint64_t>(pixel) << 24)) & kLanes;
}

// `coverage` parts in 255 of one pixel and the rest of the other, rounded as the toolkit does.
std::uint32_t mixed(std::uint64_t spreadColour, std::uint32_t below, unsigned coverage) {
  constexpr std::uint64_t kHalves = 0x0080008000800080;
  const std::uint64_t sum = spreadColour * coverage + spread(below) * (255 - coverage);
  const std::uint64_t mean = ((sum + ((sum >> 8) & kLanes) + kHalves) >> 8) & kLanes;
  return static_cast<std::uint32_t>(mean | (mean >> 24));
}

}  // namespace

std::unique_ptr<Raster> Raster::make(const QSize &size, Ground ground) {
  if (size.width() < 1 || size.height() < 1) return nullptr;
  const long long count = static_cast<long long>(size.width()) * size.height();
  if (count > kMostPixels) return nullptr;
  // Cleared pages cost nothing until something is drawn on them.
  Pixels pixels(static_cast<std::uint32_t *>(
      std::calloc(static_cast<std::size_t>(count), sizeof(std::uint32_t))));
  if (pixels == nullptr) return nullptr;
  const bool isWhite = ground == Ground::White;
  if (isWhite) std::fill_n(pixels.get(), count, qRgb(255, 255, 255));
  return std::unique_ptr<Raster>(
      new Raster(std::move(pixels), size,
                 isWhite ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied));
}

Raster::Raster(Pixels pixels, const QSize &size, QImage::Format format)
    : pixels_(std::move(pixels)),
      stride_(static_cast<std::size_t>(size.width())),
      image_(reinterpret_cast<uchar *>(pixels_.get()), size.width(), size.height(),
             static_cast<qsizetype>(stride_ * sizeof(std::uint32_t)), format) {}

QPainter &Raster::painter() {
  if (!painter_.isActive()) {
    painter_.begin(&image_);
    painter_.setRenderHint(QPainter::Antialiasing);
  }
  return painter_;
}

void Raster::fill(const QRect &rect, QRgb colour) {
  const QRect seen = rect & image_.rect();
  if (seen.isEmpty()) return;
  for (int y = seen.top(); y <= seen.bottom(); ++y)
    std::fill_n(
        &pixels_[static_cast<std::size_t>(y) * stride_ + static_cast<std::size_t>(seen.left())],
        seen.width(), colour);
}

void Raster::blend(const GlyphInk &ink, long long x, long long y, QRgb colour) {
  const long long left = x + ink.box.left();
  const long long top = y + ink.box.top();
  const long long width = image_.width();
  const long long height = image_.height();
  if (left >= width || top >= height || left + ink.box.width() <= 0 || top + ink.box.height() <= 0)
    return;
  const std::uint64_t wide = spread(colour);
  const bool isWhole =
      left >= 0 && top >= 0 && left + ink.box.width() <= width && top + ink.box.height() <= height;
  if (isWhole) {
    std::uint32_t *corner = &pixels_[static_cast<std::size_t>(top * width + left)];
    for (const InkPixel &each : ink.pixels) {
      std::uint32_t &pixel = corner[each.y * stride_ + each.x];
      pixel = mixed(wide, pixel, each.coverage);
    }
    return;
  }
  for (const InkPixel &each : ink.pixels) {
    const long long column = left + each.x;
    const long long row = top + each.y;
    if (column < 0 || row < 0 || column >= width || row >= height) continue;
    std::uint32_t &pixel = pixels_[static_cast<std::size_t>(row * width + column)];
    pixel = mixed(wide, pixel, each.coverage);
  }
}

}  // namespace korvel::platform::qt
