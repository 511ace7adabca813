// SPDX-License-Identifier: MIT
// Pictures by name, drawn or measured. They are kept, as reading one costs far more than drawing
// it.
#include "draw/pictures.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

#include <sys/stat.h>

#include <korvel/draw.h>

#include "base/guard.h"
#include "draw/misuse.h"
#include "draw/ports.h"
#include "platform/desktop.h"
#include "platform/loader.h"
#include "platform/resources.h"

namespace korvel::draw {

using platform::Desktop;
using platform::Picture;
using platform::Port;

namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::chrono::seconds kRetryAfter(1);

using Clock = std::chrono::system_clock;

// A picture file and what changes when it is rewritten or replaced.
struct File {
  std::string path;
  dev_t device;
  ino_t inode;
  off_t size;
  Clock::time_point changed;  // the status, a time that programs cannot set back

  bool operator==(const File &) const = default;
};

Clock::time_point timeOf(const timespec &time) {
  using std::chrono::nanoseconds, std::chrono::seconds;
  return Clock::time_point(seconds(time.tv_sec) + nanoseconds(time.tv_nsec));
}

std::optional<File> fileOf(std::string_view name) {
  std::string path = platform::findNamed("pictures", name, {".svg", ".png"});
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return File{std::move(path), status.st_dev, status.st_ino, status.st_size,
              timeOf(status.st_ctim)};
}

// A file as it was when it was read.
struct ReadPicture {
  File file;
  Clock::time_point readAt;
  std::unique_ptr<Picture> picture;

  bool isReadable() const { return picture->width() > 0; }
  bool standsFor(const File &now) const {
    return file == now && isAtRest(file.changed, readAt) &&
           (isReadable() || std::chrono::abs(Clock::now() - readAt) < kRetryAfter);
  }
  const Picture *shown() const { return isReadable() ? picture.get() : nullptr; }
};

// The pictures of one desktop by their names. Never destroyed: the toolkit that owns them may end
// before the process does.
struct Pictures {
  const Desktop *desktop = nullptr;
  std::map<std::string, ReadPicture, std::less<>> read;
};

Pictures &pictures() {
  static Pictures &all = *new Pictures;
  return all;
}

auto &picturesOf(const Desktop *desktop) {
  Pictures &known = pictures();
  if (known.desktop != desktop) known.read.clear();
  known.desktop = desktop;
  return known.read;
}

bool isTooLong(std::string_view name) { return name.size() > kLongestName; }

bool putSize(const Picture *picture, int *cx, int *cy) {
  if (picture == nullptr) return false;
  put(cx, picture->width());
  put(cy, picture->height());
  return true;
}

}  // namespace

bool isAtRest(Clock::time_point changed, Clock::time_point now) {
  return std::chrono::abs(now - changed) > std::chrono::milliseconds(20);
}

const Picture *findPicture(std::string_view name) {
  Desktop *desktop = platform::desktopForDrawing();
  if (desktop == nullptr) return nullptr;
  auto &read = picturesOf(desktop);
  const std::optional<File> file = fileOf(name);
  if (const auto known = read.find(name); known != read.end()) {
    if (file && known->second.standsFor(*file)) return known->second.shown();
    read.erase(known);
  }
  if (!file) return nullptr;
  const Clock::time_point now = Clock::now();
  auto picture = desktop->loadPicture(file->path);
  if (picture == nullptr) return nullptr;
  return read.emplace(name, ReadPicture{*file, now, std::move(picture)}).first->second.shown();
}

void forgetPictures() { pictures().read.clear(); }

bool drawPicture(Port &surface, std::string_view name, int x, int y) {
  const Picture *picture = findPicture(name);
  return picture != nullptr && surface.drawPicture(*picture, x, y);
}

}  // namespace korvel::draw

using namespace korvel::draw;

int BMP_affic_desfond0(const char *name, CGrafPtr port, int x, int y) {
  const Call call("BMP_affic_desfond0", {name, port, x, y});
  if (call) needsPictureOn(call, name, port);
  if (name == nullptr) return 1;
  if (isTooLong(name)) return 0;  // Kept: a name that is too long counts as drawn.
  const auto draw = [&](Port &surface) { return drawPicture(surface, name, x, y) ? 0 : 1; };
  const int status = onSurface(port, 1, draw);
  if (call) needsPicture(call, name, status == 0);
  return status;
}

int BMP_affic_dimfond0(const char *name, int *cx, int *cy) {
  const Call call("BMP_affic_dimfond0", {name, orNull(filled(cx)), orNull(filled(cy))});
  if (call) needsPictureName(call, name);
  if (name == nullptr) return 1;
  if (isTooLong(name)) return 0;  // Kept: a name that is too long counts as measured.
  const auto measure = [&] { return putSize(findPicture(name), cx, cy) ? 0 : 1; };
  const int status = korvel::base::guarded(1, measure);
  if (call) needsPicture(call, name, status == 0);
  return status;
}
