// For draw/ and its tests only: pictures by name, read once.
#ifndef DRAW_PICTURES_H
#define DRAW_PICTURES_H

#include <string_view>

#include "platform/drawing.h"

namespace korvel::draw {

// The picture of that name in the resources, the library's own; null when there is none. A picture
// is read at its first use and kept, one that is missing is looked for again at each use.
const platform::Picture *findPicture(std::string_view name);

// Forgets what was read: for tests, which change files and desktops.
void forgetPictures();

}  // namespace korvel::draw

#endif
