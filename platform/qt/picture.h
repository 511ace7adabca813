// For platform/qt/ only: pictures of the seam, kept ready for the screens that they were drawn on.
#ifndef KORVEL_PLATFORM_QT_PICTURE_H
#define KORVEL_PLATFORM_QT_PICTURE_H

#include <QImage>
#include <QSize>
#include <QString>
#include <memory>
#include <vector>

#include "platform/drawing.h"

namespace korvel::platform::qt {

class QtPicture final : public Picture {
 public:
  // Null for a file that cannot be read as a picture.
  static std::unique_ptr<QtPicture> read(const QString &path);

  int width() const override { return size_.width(); }
  int height() const override { return size_.height(); }

  // With `scale` of its pixels to one of the port's; rendered at that scale when it is first asked
  // for. Valid until the next call.
  const QImage &at(qreal scale) const;

 private:
  struct Rendered {
    qreal scale;
    QImage image;
  };

  QtPicture(QString path, const QSize &size) : path_(std::move(path)), size_(size) {}

  const QString path_;
  const QSize size_;
  mutable std::vector<Rendered> rendered_;
};

}  // namespace korvel::platform::qt

#endif
