#include "platform/qt/rasterport.h"

#include <QString>
#include <algorithm>
#include <cmath>

namespace korvel::platform::qt {
namespace {

constexpr int kLongestSide = 32767;

// Wide enough for every raster, and small enough for sums and products of int.
constexpr qreal kFarthest = 1 << 20;

int devicePixels(int place, qreal scale) {
  return static_cast<int>(std::lround(std::clamp(place * scale, -kFarthest, kFarthest)));
}

QRect deviceRect(const Rect &rect, qreal scale) {
  const QPoint topLeft(devicePixels(rect.left, scale), devicePixels(rect.top, scale));
  const QPoint end(devicePixels(rect.right, scale), devicePixels(rect.bottom, scale));
  return {topLeft, end - QPoint(1, 1)};
}

QString pathOf(const std::string &path) {
  return QString::fromLocal8Bit(path.data(), static_cast<qsizetype>(path.size()));
}

}  // namespace

bool RasterPort::save(const std::string &path) const {
  const Raster *raster = drawn();
  return raster != nullptr && raster->image().save(pathOf(path), "PNG");
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

void RasterPort::paintRect(const Rect &rect, QRgb colour) {
  Raster *raster = prepared();
  if (raster == nullptr) return;
  const QRect place = deviceRect(rect, scale());
  raster->fill(place, colour);
  touched(place);
}

void RasterPort::blendGlyphs(Raster &raster, InkTable &inks, long long x, long long y,
                             std::string_view text) {
  const QRgb colour = foreground();
  const qreal factor = scale();
  long long advanced = 0;
  for (const char byte : text) {
    const GlyphInk &ink = inks.of(byte);
    if (!ink.pixels.empty()) {
      const long long place =
          factor == 1 ? advanced : std::llround(static_cast<qreal>(advanced) * factor);
      raster.blend(ink, x + place, y, colour);
    }
    advanced += font().advance(byte);
  }
}

void RasterPort::paintGlyphs(int x, int y, std::string_view text, int width) {
  Raster *raster = prepared();
  if (raster == nullptr) return;
  const qreal factor = scale();
  const long long left = std::llround(x * factor);
  const long long baseline = std::llround(y * factor);
  if (InkTable *inks = font().inkAt(factor)) {
    blendGlyphs(*raster, *inks, left, baseline, text);
  } else {
    QPainter &painter = raster->painter();
    painter.setPen(QColor::fromRgb(foreground()));
    font().draw(painter, left, baseline, text, factor);
  }
  // Slanted letters and accents reach beyond the text's own box.
  const FontMetrics &metrics = font().metrics();
  const int beyond = metrics.ascent + metrics.descent;
  touched(QRect(devicePixels(x - beyond, factor), devicePixels(y - 2 * beyond, factor),
                devicePixels(width + 2 * beyond, factor), devicePixels(3 * beyond, factor)));
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
  const QImage &image = picture.at(scale());
  const QRect place(QPoint(devicePixels(x, scale()), devicePixels(y, scale())), image.size());
  if (!place.intersects(QRect(QPoint(), raster->size()))) return;
  raster->painter().drawImage(place.topLeft(), image);
  touched(place);
}

std::unique_ptr<ImagePort> ImagePort::make(int width, int height) {
  if (width > kLongestSide || height > kLongestSide) return nullptr;
  std::unique_ptr<Raster> raster = Raster::make(QSize(width, height), Raster::Ground::White);
  if (raster == nullptr) return nullptr;
  return std::unique_ptr<ImagePort>(new ImagePort(std::move(raster)));
}

}  // namespace korvel::platform::qt
