// For draw/ and its tests only: what stands behind the ports that the library hands out.
#ifndef DRAW_PORTS_H
#define DRAW_PORTS_H

#include <korvel/types.h>

#include "platform/desktop.h"

namespace korvel::draw {

// The surface of a port; null for a port that is null, given back, or gone with its window.
platform::Port *surfaceOf(CGrafPtr port);

}  // namespace korvel::draw

#endif
