#include "platform/qt/picture.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QBuffer>
#include <QFile>
#include <QImageReader>

#include "platform/qt/svgtext.h"

namespace korvel::platform::qt {
namespace {

// While pictures are read, the toolkit's own limit does not count, and nobody hears what it thinks
// of them. What the PNG library finds wrong it writes to standard error itself.
class Reading {
 public:
  Reading()
      : limit_(QImageReader::allocationLimit()), error_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    std::fflush(stderr);
    if (error_ >= 0 && nowhere >= 0) dup2(nowhere, STDERR_FILENO);
    if (nowhere >= 0) close(nowhere);
    QImageReader::setAllocationLimit(0);
    g_isReading = true;
    g_previous = qInstallMessageHandler(nullptr);  // known before it is asked for
    qInstallMessageHandler(dropOwn);
  }
  ~Reading() {
    qInstallMessageHandler(g_previous);
    g_isReading = false;
    QImageReader::setAllocationLimit(limit_);
    if (error_ < 0) return;
    std::fflush(stderr);
    dup2(error_, STDERR_FILENO);
    close(error_);
  }
  Reading(const Reading &) = delete;
  Reading &operator=(const Reading &) = delete;

 private:
  static void dropOwn(QtMsgType type, const QMessageLogContext &context, const QString &message) {
    if (!g_isReading) g_previous(type, context, message);
  }

  static constinit inline thread_local bool g_isReading = false;
  static constinit inline QtMessageHandler g_previous = nullptr;
  const int limit_;
  const int error_;  // standard error; -1 when there is none
};

// A pipe or a device would be waited for.
bool openFile(QFile &file, const std::string &path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return false;
  struct stat status;
  const bool isOpen = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                      file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
  if (!isOpen) close(descriptor);
  return isOpen;
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

// A painter that zooms asks for ever new ones.
constexpr std::size_t kMostScales = 4;

}  // namespace

std::unique_ptr<QtPicture> QtPicture::read(const std::string &path) {
  QFile file;
  if (!openFile(file, path)) return std::unique_ptr<QtPicture>(new QtPicture({}, {}));
  const Reading reading;
  // The toolkit knows an SVG by its first bytes only, where anything may stand.
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
