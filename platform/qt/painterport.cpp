// SPDX-License-Identifier: MIT
// Draws with a host's painter, whose settings are restored after each drawing.
#include "platform/qt/painterport.h"

#include <algorithm>

namespace korvel::platform::qt {
namespace {

// Nothing farther from the origin is drawn: the toolkit's coordinates end there.
constexpr int kFarthest = 32767;

// The painter belongs to the host: its transformation, clipping and opacity apply, and all its
// settings are restored at the end.
class BorrowedPainter {
 public:
  explicit BorrowedPainter(QPainter *painter) : painter_(painter), isActive_(painter->isActive()) {
    if (isActive_) painter_->save();
  }
  ~BorrowedPainter() {
    if (isActive_) painter_->restore();
  }
  BorrowedPainter(const BorrowedPainter &) = delete;
  BorrowedPainter &operator=(const BorrowedPainter &) = delete;

  explicit operator bool() const { return isActive_; }

 private:
  QPainter *const painter_;
  const bool isActive_;
};

int near(int place) { return std::clamp(place, -kFarthest, kFarthest); }

}  // namespace

PixelGrid PainterPort::grid() {
  return painter_->isActive() ? PixelGrid::of(*painter_) : PixelGrid();
}

void PainterPort::paintPixels(const QRect &pixels, QRgb colour) {
  const BorrowedPainter borrowed(painter_);
  if (!borrowed) return;
  painter_->setRenderHint(QPainter::Antialiasing, false);
  painter_->fillRect(grid().fromPixels(pixels), QColor::fromRgb(colour));
}

void PainterPort::paintGlyphs(int x, int y, std::string_view text, const Rect &) {
  const BorrowedPainter borrowed(painter_);
  if (!borrowed) return;
  painter_->setPen(QColor::fromRgb(foreground()));
  font().draw(*painter_, x, y, text);
}

void PainterPort::paintSlantedStroke(const Stroke &stroke) {
  const BorrowedPainter borrowed(painter_);
  if (!borrowed) return;
  painter_->setRenderHint(QPainter::Antialiasing);
  const QRectF bounds(-kFarthest, -kFarthest, 2 * kFarthest, 2 * kFarthest);
  painter_->setPen(Qt::NoPen);
  painter_->setBrush(QColor::fromRgb(foreground()));
  painter_->drawConvexPolygon(slantedStroke(stroke, bounds));
}

// Rendered in the device's pixels if the painter scales both axes alike.
void PainterPort::paintPicture(const QtPicture &picture, int x, int y) {
  if (near(x) != x || near(y) != y) return;
  const BorrowedPainter borrowed(painter_);
  if (!borrowed) return;
  const QTransform &transform = painter_->deviceTransform();
  const bool isScaled =
      transform.type() == QTransform::TxScale && transform.m11() == transform.m22();
  const qreal scale = isScaled ? std::clamp(transform.m11(), 0.25, 8.0) : 1;
  painter_->setRenderHint(QPainter::SmoothPixmapTransform);
  painter_->drawImage(QRectF(x, y, picture.width(), picture.height()), picture.at(scale));
}

}  // namespace korvel::platform::qt
