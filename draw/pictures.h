// SPDX-License-Identifier: MIT
// For draw/: pictures by name, kept as long as their files stay the same.
#ifndef KORVEL_DRAW_PICTURES_H
#define KORVEL_DRAW_PICTURES_H

#include <chrono>
#include <string_view>

#include "platform/drawing.h"

namespace korvel::draw {

// The picture of that name in the resources, valid until the next call; null when there is no such
// file or it cannot be read. The file is read at the first use, and again when it has changed or
// another file is in its place. A file that could not be read is tried again a second later: memory
// or file descriptors may have run out.
const platform::Picture *findPicture(std::string_view name);

// False when there is no such picture or no memory to draw it.
bool drawPicture(platform::Port &surface, std::string_view name, int x, int y);

// Whether any later change of a file will show in the time of its last change: the file system's
// clock ticks some hundred times a second. That is so for a time in the future, too: a later change
// sets an earlier time.
bool isAtRest(std::chrono::system_clock::time_point changed,
              std::chrono::system_clock::time_point now);

// Forgets all pictures: for tests, which change files and desktops.
void forgetPictures();

}  // namespace korvel::draw

#endif
