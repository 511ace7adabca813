// SPDX-License-Identifier: MIT
// Draws on the raster of an image or of a window.
#include "platform/qt/rasterport.h"

#include <algorithm>
#include <cmath>

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QScopeGuard>

#include "base/guard.h"

namespace korvel::platform::qt {
namespace {

constexpr int kLongestSide = 32767;

// Wide enough for every raster, and small enough for sums and products of int.
constexpr qreal kFarthest = 1 << 20;

int devicePixels(int place, qreal scale) {
  return static_cast<int>(std::lround(std::clamp(place * scale, -kFarthest, kFarthest)));
}

}  // namespace

// Opens the file itself, as the toolkit takes only paths in UTF-8.
bool RasterPort::save(const std::string &path) const {
  return base::guarded(false, [&] {
    const Raster *raster = drawn();
    if (raster == nullptr) return false;
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor < 0) return false;
    const auto closing = qScopeGuard([descriptor] { close(descriptor); });
    QFile file;
    return file.open(descriptor, QIODevice::WriteOnly) && raster->image().save(&file, "PNG") &&
           file.flush();
  });
}

std::optional<RGBColor> RasterPort::pixel(int x, int y) const {
  const Raster *raster = drawn();
  if (raster == nullptr) return std::nullopt;
  const QPoint place(devicePixels(x, scale()), devicePixels(y, scale()));
  if (!QRect(QPoint(), raster->size()).contains(place)) return std::nullopt;
  const QRgb colour = raster->pixel(place.x(), place.y());
  if (qAlpha(colour) == 0) return std::nullopt;
  return fromQt(qUnpremultiply(colour));
}

PixelGrid RasterPort::grid() {
  prepared();
  return PixelGrid(scale());
}

void RasterPort::paintPixels(const QRect &pixels, QRgb colour) {
  Raster *raster = prepared();
  if (raster == nullptr) return;
  raster->fill(pixels, colour);
  touched(pixels);
}

void RasterPort::blendGlyphs(Raster &raster, InkTable &inks, int x, int y, std::string_view text) {
  const QRgb colour = foreground();
  const qreal factor = scale();
  const long long baseline = ScreenFont::placeOf(y, factor);
  long long place = x;
  for (const char byte : text) {
    const GlyphInk &ink = inks.of(byte);
    if (!ink.pixels.empty())
      raster.blend(ink, ScreenFont::placeOf(place, factor), baseline, colour);
    place += font().advance(byte);
  }
}

void RasterPort::paintGlyphs(int x, int y, std::string_view text, const Rect &bounds) {
  Raster *raster = prepared();
  if (raster == nullptr) return;
  if (InkTable *inks = font().inkAt(scale())) {
    blendGlyphs(*raster, *inks, x, y, text);
  } else {
    QPainter &painter = raster->painter();
    painter.setPen(QColor::fromRgb(foreground()));
    font().draw(painter, x, y, text, scale());
  }
  touched(grid().rect(bounds));
}

void RasterPort::paintSlantedStroke(const Stroke &stroke) {
  Raster *raster = prepared();
  if (raster == nullptr) return;
  const QPolygonF outline = slantedStroke(stroke, QRectF(QPointF(), raster->size()), scale());
  if (outline.isEmpty()) return;
  QPainter &painter = raster->painter();
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgb(foreground()));
  painter.drawConvexPolygon(outline);
  touched(outline.boundingRect().toAlignedRect());
}

void RasterPort::paintPicture(const QtPicture &picture, int x, int y) {
  Raster *raster = prepared();
  if (raster == nullptr) return;
  const QRect place(QPoint(devicePixels(x, scale()), devicePixels(y, scale())),
                    picture.sizeAt(scale()));
  if (!place.intersects(QRect(QPoint(), raster->size()))) return;
  raster->painter().drawImage(place, picture.at(scale()));
  touched(place);
}

std::unique_ptr<ImagePort> ImagePort::make(int width, int height) {
  if (width > kLongestSide || height > kLongestSide) return nullptr;
  std::unique_ptr<Raster> raster = Raster::make(QSize(width, height), Raster::Ground::White);
  if (raster == nullptr) return nullptr;
  return std::unique_ptr<ImagePort>(new ImagePort(std::move(raster)));
}

}  // namespace korvel::platform::qt
