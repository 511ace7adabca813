// For draw/ and its tests only: what stands behind the ports that the library hands out.
#ifndef KORVEL_DRAW_PORTS_H
#define KORVEL_DRAW_PORTS_H

#include <korvel/types.h>

#include "base/guard.h"
#include "platform/desktop.h"

namespace korvel::draw {

// The surface of a port; null for a port that is null, given back, or gone with its window.
platform::Port *surfaceOf(CGrafPtr port);

// The result of `work` on the surface of a port; 0 for a port that has none, and without memory.
template <typename Work>
int onSurface(CGrafPtr port, Work work) {
  return base::orOnFailure(0, [&] {
    platform::Port *surface = surfaceOf(port);
    return surface == nullptr ? 0 : work(*surface);
  });
}

}  // namespace korvel::draw

#endif
