// SPDX-License-Identifier: MIT
// Reads picture files safely, and renders an SVG anew for each scale.
#include "platform/qt/picture.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QScopeGuard>

#include "platform/qt/quiet.h"
#include "platform/qt/svgtext.h"

namespace korvel::platform::qt {
namespace {

// While pictures are read, the toolkit's own limit of their size is off, and its remarks go
// unheard. The PNG library writes its own to standard error, which leads nowhere meanwhile.
class Reading {
 public:
  Reading()
      : limit_(QImageReader::allocationLimit()), error_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    std::fflush(stderr);
    if (error_ >= 0 && nowhere >= 0) dup2(nowhere, STDERR_FILENO);
    if (nowhere >= 0) close(nowhere);
    QImageReader::setAllocationLimit(0);
  }
  ~Reading() {
    QImageReader::setAllocationLimit(limit_);
    if (error_ < 0) return;
    std::fflush(stderr);
    dup2(error_, STDERR_FILENO);
    close(error_);
  }
  Reading(const Reading &) = delete;
  Reading &operator=(const Reading &) = delete;

 private:
  const Quiet quiet_;
  const int limit_;
  const int error_;  // standard error; -1 when there is none
};

// False for a pipe or a device, whose reading may never end.
bool openFile(QFile &file, const std::string &path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return false;
  auto closing = qScopeGuard([descriptor] { close(descriptor); });
  struct stat status;
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
      !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
    return false;
  closing.dismiss();
  return true;
}

// In its own size when none is given.
QImage imageOf(QImageReader &&reader, const QSize &size = {}) {
  const QSize own = reader.size();
  if (own.isEmpty() || isTooLarge(own)) return {};
  if (!size.isEmpty() && size != own) reader.setScaledSize(size);
  return reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage imageOfSvg(QByteArray svg, const QSize &size = {}) {
  QBuffer buffer(&svg);
  return imageOf(QImageReader(&buffer, "svg"), size);
}

// A painter that zooms asks for more and more of them.
constexpr std::size_t kMostScales = 4;

}  // namespace

std::unique_ptr<QtPicture> QtPicture::read(const std::string &path) {
  QFile file;
  if (!openFile(file, path)) return std::unique_ptr<QtPicture>(new QtPicture({}, {}));
  const Reading reading;
  // The toolkit recognises an SVG by its first bytes only, which may be anything.
  const bool isSvg = path.ends_with(".svg") || QImageReader::imageFormat(&file).startsWith("svg");
  const QByteArray svg = isSvg ? withoutLinks(file.readAll()) : QByteArray();
  const QImage image = isSvg ? imageOfSvg(svg) : imageOf(QImageReader(&file));
  return std::unique_ptr<QtPicture>(new QtPicture(svg, image));
}

QtPicture::QtPicture(QByteArray svg, const QImage &image)
    : svg_(std::move(svg)), size_(image.size()), rendered_{{1, image}} {}

QSize QtPicture::sizeAt(qreal scale) const {
  return (QSizeF(size_) * scale).toSize().expandedTo(QSize(1, 1));
}

QImage QtPicture::rendered(const QSize &size) const {
  if (isTooLarge(size)) return {};
  if (svg_.isEmpty())
    return rendered_[0].image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  const Reading reading;
  return imageOfSvg(svg_, size);
}

const QImage &QtPicture::at(qreal scale) const {
  for (const Rendered &each : rendered_)
    if (each.scale == scale) return each.image;
  QImage image = rendered(sizeAt(scale));
  if (image.isNull()) return rendered_[0].image;
  if (rendered_.size() == kMostScales) rendered_.erase(rendered_.begin() + 1);
  return rendered_.emplace_back(Rendered{scale, std::move(image)}).image;
}

}  // namespace korvel::platform::qt
