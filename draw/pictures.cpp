// Pictures by name, drawn or measured.
#include "draw/pictures.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <sys/stat.h>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "base/guard.h"
#include "draw/ports.h"
#include "draw/primitives.h"
#include "platform/desktop.h"
#include "platform/loader.h"
#include "platform/resources.h"

namespace korvel::draw {

using platform::Desktop;
using platform::Picture;
using platform::Port;

namespace {

constexpr std::size_t kLongestName = 255;

using Clock = std::chrono::system_clock;

// What tells a file from what stood at its path before.
struct FileState {
  dev_t device;
  ino_t inode;
  off_t size;
  Clock::time_point changed;

  bool operator==(const FileState &) const = default;
};

std::optional<FileState> stateOf(const std::string &path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  // Of the status, as that time cannot be set back.
  const auto changed = std::chrono::seconds(status.st_ctim.tv_sec) +
                       std::chrono::nanoseconds(status.st_ctim.tv_nsec);
  return FileState{status.st_dev, status.st_ino, status.st_size, Clock::time_point(changed)};
}

// Whether any later change of the file will show in its state: files are stamped by a clock that
// ticks some hundred times a second.
bool isAtRest(const FileState &state) {
  return Clock::now() - state.changed > std::chrono::milliseconds(20);
}

// A file as it was when it was read.
struct ReadPicture {
  std::string path;
  FileState state;
  bool wasAtRest;
  std::unique_ptr<Picture> picture;

  // Null for a file that is none.
  const Picture *shown() const { return picture->width() > 0 ? picture.get() : nullptr; }
  bool isStill(const std::string &file, const FileState &now) const {
    return wasAtRest && state == now && path == file;
  }
};

// The pictures of one desktop by their names. Never destroyed: the toolkit that they belong to may
// end before the process does.
struct Pictures {
  const Desktop *desktop = nullptr;
  std::map<std::string, ReadPicture, std::less<>> read;
};

Pictures &pictures() {
  static Pictures &all = *new Pictures;
  return all;
}

Pictures &picturesOf(const Desktop *desktop) {
  Pictures &known = pictures();
  if (known.desktop != desktop) forgetPictures();
  known.desktop = desktop;
  return known;
}

}  // namespace

const Picture *findPicture(std::string_view name) {
  Desktop *desktop = platform::desktopForDrawing();
  if (desktop == nullptr) return nullptr;
  auto &read = picturesOf(desktop).read;
  const auto known = read.find(name);
  std::string path = platform::findNamed("pictures", name, {".svg", ".png"});
  const std::optional<FileState> state = stateOf(path);
  if (known != read.end()) {
    if (state && known->second.isStill(path, *state)) return known->second.shown();
    read.erase(known);
  }
  if (!state) return nullptr;
  ReadPicture now{std::move(path), *state, isAtRest(*state), nullptr};
  now.picture = desktop->loadPicture(now.path);
  return now.picture == nullptr ? nullptr
                                : read.emplace(name, std::move(now)).first->second.shown();
}

void forgetPictures() { pictures().read.clear(); }

bool drawPicture(Port &surface, std::string_view name, int x, int y) {
  const Picture *picture = findPicture(name);
  return picture != nullptr && surface.drawPicture(*picture, x, y);
}

}  // namespace korvel::draw

using korvel::base::orOnFailure;
using korvel::draw::kLongestName;

int BMP_affic_desfond0(const char *name, CGrafPtr port, int x, int y) {
  if (name == nullptr) return 1;
  const std::string_view wanted = name;
  if (wanted.size() > kLongestName) return 0;  // Kept: as if it had been drawn.
  const auto draw = [&](korvel::platform::Port &surface) {
    return korvel::draw::drawPicture(surface, wanted, x, y) ? 1 : 0;
  };
  return korvel::draw::onSurface(port, draw) == 1 ? 0 : 1;
}

int BMP_affic_dimfond0(const char *name, int *cx, int *cy) {
  if (name == nullptr) return 1;
  const std::string_view wanted = name;
  if (wanted.size() > kLongestName) return 0;  // Kept: as if it had been measured.
  return orOnFailure(1, [&] {
    const korvel::platform::Picture *picture = korvel::draw::findPicture(wanted);
    if (picture == nullptr) return 1;
    if (cx != nullptr) *cx = picture->width();
    if (cy != nullptr) *cy = picture->height();
    return 0;
  });
}
