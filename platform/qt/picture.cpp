#include "platform/qt/picture.h"

#include <QImageReader>

namespace korvel::platform::qt {
namespace {

QImage imageOf(const QString &path, const QSize &size) {
  QImageReader reader(path);
  if (reader.size() != size) reader.setScaledSize(size);
  return reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace

std::unique_ptr<QtPicture> QtPicture::read(const QString &path) {
  const QSize size = QImageReader(path).size();
  if (size.isEmpty()) return nullptr;
  std::unique_ptr<QtPicture> picture(new QtPicture(path, size));
  return picture->at(1).isNull() ? nullptr : std::move(picture);
}

// A file that went away meanwhile leaves the picture at scale 1 to be stretched.
const QImage &QtPicture::at(qreal scale) const {
  for (const Rendered &each : rendered_)
    if (each.scale == scale) return each.image;
  const QSize size = (QSizeF(size_) * scale).toSize().expandedTo(QSize(1, 1));
  QImage image = imageOf(path_, size);
  if (image.isNull() && !rendered_.empty())
    image = rendered_[0].image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  return rendered_.emplace_back(Rendered{scale, std::move(image)}).image;
}

}  // namespace korvel::platform::qt
