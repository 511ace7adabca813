// For draw/ and its tests only: pictures by name, read once as long as their files stay the same.
#ifndef KORVEL_DRAW_PICTURES_H
#define KORVEL_DRAW_PICTURES_H

#include <string_view>

#include "platform/drawing.h"

namespace korvel::draw {

// The picture of that name in the resources, the library's own and valid until the next call; null
// when there is none, or none that can be read. Its file is read at the first use, and again when
// another one, or other content, stands in its place.
const platform::Picture *findPicture(std::string_view name);

// Forgets what was read: for tests, which change files and desktops.
void forgetPictures();

}  // namespace korvel::draw

#endif
