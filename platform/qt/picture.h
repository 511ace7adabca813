// SPDX-License-Identifier: MIT
// For platform/qt/: pictures of the seam, cached for the scales at which they were drawn.
#ifndef KORVEL_PLATFORM_QT_PICTURE_H
#define KORVEL_PLATFORM_QT_PICTURE_H

#include <memory>
#include <string>
#include <vector>

#include <QByteArray>
#include <QImage>
#include <QSize>

#include "platform/drawing.h"

namespace korvel::platform::qt {

// A larger picture is not read, nor is one rendered so large.
inline bool isTooLarge(const QSize &size) {
  return qint64{size.width()} * size.height() > (1 << 28);
}

class QtPicture final : public Picture {
 public:
  // The file is not used any more afterwards.
  static std::unique_ptr<QtPicture> read(const std::string &path);

  int width() const override { return size_.width(); }
  int height() const override { return size_.height(); }

  // Its size in device pixels, of which `scale` make one of the port's.
  QSize sizeAt(qreal scale) const;
  // The picture in that size, rendered when first asked for; in its own size, to be stretched,
  // where that would be too large. Valid until the next call.
  const QImage &at(qreal scale) const;
  // In any size; null where that would be too large.
  QImage rendered(const QSize &size) const;

 private:
  struct Rendered {
    qreal scale;
    QImage image;
  };

  QtPicture(QByteArray svg, const QImage &image);

  const QByteArray svg_;  // empty for a picture of pixels
  const QSize size_;
  mutable std::vector<Rendered> rendered_;  // the first one in its own size
};

}  // namespace korvel::platform::qt

#endif
