// SPDX-License-Identifier: MIT
// Plain text: a run of at most 255 bytes, drawn or measured.
#include "draw/text.h"

#include <korvel/draw.h>

#include "base/numbers.h"
#include "base/views.h"
#include "draw/misuse.h"
#include "draw/ports.h"
#include "strings/charsets.h"

namespace korvel::draw {

using base::clampToInt;
using platform::Port;

namespace {

bool isRun(std::string_view text) {
  return !text.empty() && text.size() <= std::size_t{kLongestRun};
}

std::string_view upToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

int drawRun(Port &surface, Pixels x, Pixels y, std::string_view text) {
  if (!isRun(text)) return 0;
  char shown[kLongestRun];
  const std::size_t length = upToNul(text).copy(shown, sizeof shown);
  strings::convertToMac({shown, length});
  return surface.drawText(clampToInt(x), clampToInt(y + char_dy), {shown, length});
}

// Needs no copy in the screen set: a byte that the conversion changes shows the same character
// there unchanged.
int runWidth(const Port &surface, std::string_view text) {
  return isRun(text) ? surface.textWidth(upToNul(text)) : 0;
}

}  // namespace korvel::draw

using namespace korvel::draw;
using korvel::base::bytesOf;

int TextOut_0(CGrafPtr port, int x, int y, const char *text, int len) {
  lookForMisuse([=] {
    needsRun(Call("TextOut_0", {port, x, y, shownRun(text, len), len}), port, text, len);
  });
  if (!isText(text, len)) return 0;
  return onSurface(port, 0,
                   [&](Port &surface) { return drawRun(surface, x, y, bytesOf(text, len)); });
}

int GetTextExtent_0(CGrafPtr port, const char *text, int len, int *cx, int *cy) {
  lookForMisuse([=] {
    needsRun(Call("GetTextExtent_0",
                  {port, shownRun(text, len), len, orNull(filled(cx)), orNull(filled(cy))}),
             port, text, len);
  });
  if (!isText(text, len) || len > kLongestRun) return 0;
  return onSurface(port, 0, [&](const Port &surface) {
    const int width = runWidth(surface, bytesOf(text, len));
    put(cx, width);
    put(cy, 0);  // Kept: a run has no height.
    return width;
  });
}
