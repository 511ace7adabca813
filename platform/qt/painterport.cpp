#include "platform/qt/painterport.h"

#include <algorithm>

namespace korvel::platform::qt {
namespace {

// Farther away than this from the origin nothing is drawn: the toolkit's coordinates end there.
constexpr int kFarthest = 32767;

// The painter's settings are the host's own: where it draws and how (transformation, clipping,
// opacity) applies, and everything is as it was afterwards.
class Borrowed {
 public:
  explicit Borrowed(QPainter *painter) : painter_(painter), isActive_(painter->isActive()) {
    if (isActive_) painter_->save();
  }
  ~Borrowed() {
    if (isActive_) painter_->restore();
  }
  Borrowed(const Borrowed &) = delete;
  Borrowed &operator=(const Borrowed &) = delete;

  explicit operator bool() const { return isActive_; }

 private:
  QPainter *const painter_;
  const bool isActive_;
};

int near(int place) { return std::clamp(place, -kFarthest, kFarthest); }

}  // namespace

// Of the device's own pixels, as long as the painter does not turn what it draws.
PixelGrid PainterPort::grid() {
  if (!painter_->isActive()) return {};
  const QTransform &transform = painter_->deviceTransform();
  const bool isUpright =
      transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0;
  if (!isUpright) return {};
  return {{transform.m11(), transform.dx()}, {transform.m22(), transform.dy()}};
}

void PainterPort::paintPixels(const QRect &pixels, QRgb colour) {
  const Borrowed borrowed(painter_);
  if (!borrowed) return;
  painter_->setRenderHint(QPainter::Antialiasing, false);
  painter_->fillRect(grid().fromPixels(pixels), QColor::fromRgb(colour));
}

void PainterPort::paintGlyphs(int x, int y, std::string_view text, const Rect &) {
  const Borrowed borrowed(painter_);
  if (!borrowed) return;
  painter_->setPen(QColor::fromRgb(foreground()));
  font().draw(*painter_, x, y, text);
}

void PainterPort::paintSlantedStroke(const Stroke &stroke) {
  const Borrowed borrowed(painter_);
  if (!borrowed) return;
  painter_->setRenderHint(QPainter::Antialiasing);
  const QRectF bounds(-kFarthest, -kFarthest, 2 * kFarthest, 2 * kFarthest);
  painter_->setPen(Qt::NoPen);
  painter_->setBrush(QColor::fromRgb(foreground()));
  painter_->drawConvexPolygon(slantedStroke(stroke, bounds));
}

// Rendered for the device's own pixels, as far as the painter stretches by one factor.
void PainterPort::paintPicture(const QtPicture &picture, int x, int y) {
  if (near(x) != x || near(y) != y) return;
  const Borrowed borrowed(painter_);
  if (!borrowed) return;
  const QTransform &transform = painter_->deviceTransform();
  const bool isScaled =
      transform.type() == QTransform::TxScale && transform.m11() == transform.m22();
  const qreal scale = isScaled ? std::clamp(transform.m11(), 0.25, 8.0) : 1;
  painter_->setRenderHint(QPainter::SmoothPixmapTransform);
  painter_->drawImage(QRectF(x, y, picture.width(), picture.height()), picture.at(scale));
}

}  // namespace korvel::platform::qt
