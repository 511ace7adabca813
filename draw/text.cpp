// Plain text: a run of at most 255 bytes, drawn or measured.
#include "draw/text.h"

#include <cstring>

#include <korvel/draw.h>
#include <korvel/strings.h>

#include "draw/ports.h"

namespace korvel::draw {

using platform::Port;

namespace {

// A run as it goes to the screen: up to its first NUL, in the screen set.
class ScreenRun {
 public:
  explicit ScreenRun(std::string_view text) {
    std::memcpy(bytes_, text.data(), text.size());
    bytes_[text.size()] = '\0';
    w2mstr(bytes_);
  }
  operator std::string_view() const { return bytes_; }

 private:
  char bytes_[kLongestRun + 1];
};

bool isRun(std::string_view text) {
  return !text.empty() && text.size() <= std::size_t{kLongestRun};
}

}  // namespace

std::string toScreen(std::string_view text) {
  std::string shown(text);
  w2mstr(shown.data());
  return shown;
}

int drawRun(Port &surface, Pixels x, Pixels y, std::string_view text) {
  return isRun(text) ? surface.drawText(toInt(x), toInt(y + char_dy), ScreenRun(text)) : 0;
}

// Needs no copy in the screen set: a byte that the conversion changes shows the same character
// there unchanged.
int runWidth(const Port &surface, std::string_view text) {
  return isRun(text) ? surface.textWidth(text.substr(0, text.find('\0'))) : 0;
}

}  // namespace korvel::draw

using korvel::draw::isText;
using korvel::draw::onSurface;
using korvel::platform::Port;

int TextOut_0(CGrafPtr port, int x, int y, const char *text, int len) {
  if (!isText(text, len)) return 0;
  return onSurface(port, [&](Port &surface) {
    return korvel::draw::drawRun(surface, x, y, {text, static_cast<std::size_t>(len)});
  });
}

int GetTextExtent_0(CGrafPtr port, const char *text, int len, int *cx, int *cy) {
  if (!isText(text, len) || len > korvel::draw::kLongestRun) return 0;
  return onSurface(port, [&](const Port &surface) {
    const int width = korvel::draw::runWidth(surface, {text, static_cast<std::size_t>(len)});
    if (cx != nullptr) *cx = width;
    if (cy != nullptr) *cy = 0;  // Kept: a run has no height.
    return width;
  });
}
