// For draw/ and its tests only: pictures by name, kept as long as their files stay the same.
#ifndef KORVEL_DRAW_PICTURES_H
#define KORVEL_DRAW_PICTURES_H

#include <chrono>
#include <string_view>

#include "platform/drawing.h"

namespace korvel::draw {

// The picture of that name in the resources, the library's own and valid until the next call; null
// when there is no such file or it cannot be read. The file is read at the first use, and again
// when its content or another file has taken its place. Reading that failed is tried again a second
// later: it may have failed for want of memory or of file descriptors.
const platform::Picture *findPicture(std::string_view name);

// Whether any later change of a file will show in the time of its last change: files are stamped by
// a clock that ticks some hundred times a second. A file of the future is such a file, too: a later
// change would be stamped with an earlier time.
bool isAtRest(std::chrono::system_clock::time_point changed,
              std::chrono::system_clock::time_point now);

// Forgets what was read: for tests, which change files and desktops.
void forgetPictures();

}  // namespace korvel::draw

#endif
