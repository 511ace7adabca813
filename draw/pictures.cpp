// Pictures by name, drawn or measured.
#include "draw/pictures.h"

#include <korvel/desktop.h>
#include <korvel/draw.h>
#include <korvel/strings.h>

#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <string>

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

// The pictures read from one resource folder on one desktop.
class Pictures {
 public:
  // Forgets them all when the folder or the desktop has changed.
  void standOn(const Desktop *desktop) {
    const bool isSame =
        desktop == desktop_ && std::memcmp(folder_.data(), szResources, folder_.size()) == 0;
    if (isSame) return;
    forget();
    desktop_ = desktop;
    std::memcpy(folder_.data(), szResources, folder_.size());
  }
  const Picture *find(std::string_view name) const {
    const auto found = read_.find(name);
    return found == read_.end() ? nullptr : found->second.get();
  }
  const Picture *keep(std::string_view name, std::unique_ptr<Picture> picture) {
    return (read_[std::string(name)] = std::move(picture)).get();
  }
  void forget() { read_.clear(); }

 private:
  std::map<std::string, std::unique_ptr<Picture>, std::less<>> read_;
  const Desktop *desktop_ = nullptr;
  std::array<char, sizeof szResources> folder_{};
};

std::string onScreen(std::string_view name) {
  std::string text(name);
  w2mstr(text.data());
  return text;
}

// Empty when there is no such picture. A name that is UTF-8 already is found as well.
std::string findFile(std::string_view name) {
  for (const std::string &file : {platform::nameOnDisk(onScreen(name)), std::string(name)}) {
    std::string path = platform::findResource("pictures/" + file, {".svg", ".png"});
    if (!path.empty()) return path;
  }
  return {};
}

// Never destroyed: the toolkit that the pictures belong to may end before the process does.
Pictures &pictures() {
  static Pictures &all = *new Pictures;
  return all;
}

}  // namespace

const Picture *findPicture(std::string_view name) {
  Desktop *desktop = platform::desktopForDrawing();
  if (desktop == nullptr) return nullptr;
  Pictures &known = pictures();
  known.standOn(desktop);
  if (const Picture *picture = known.find(name)) return picture;
  const std::string path = findFile(name);
  std::unique_ptr<Picture> picture = path.empty() ? nullptr : desktop->loadPicture(path);
  return picture == nullptr ? nullptr : known.keep(name, std::move(picture));
}

void forgetPictures() { pictures().forget(); }

bool drawPicture(Port &surface, std::string_view name, int x, int y) {
  const Picture *picture = findPicture(name);
  if (picture != nullptr) surface.drawPicture(*picture, x, y);
  return picture != nullptr;
}

}  // namespace korvel::draw

using korvel::draw::kLongestName;
using korvel::draw::surfaceOf;

int BMP_affic_desfond0(const char *name, CGrafPtr port, int x, int y) {
  if (name == nullptr) return 1;
  const std::string_view wanted = name;
  if (wanted.size() > kLongestName) return 0;  // Kept: as if it had been drawn.
  korvel::platform::Port *surface = surfaceOf(port);
  return surface != nullptr && korvel::draw::drawPicture(*surface, wanted, x, y) ? 0 : 1;
}

int BMP_affic_dimfond0(const char *name, int *cx, int *cy) {
  if (name == nullptr) return 1;
  const std::string_view wanted = name;
  if (wanted.size() > kLongestName) return 0;  // Kept: as if it had been measured.
  const korvel::platform::Picture *picture = korvel::draw::findPicture(wanted);
  if (picture == nullptr) return 1;
  if (cx != nullptr) *cx = picture->width();
  if (cy != nullptr) *cy = picture->height();
  return 0;
}
