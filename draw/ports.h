// SPDX-License-Identifier: MIT
// For draw/, messages/ and dialogs/: ports, their surfaces, and which one is current.
#ifndef KORVEL_DRAW_PORTS_H
#define KORVEL_DRAW_PORTS_H

#include <korvel/types.h>

#include "base/guard.h"
#include "platform/desktop.h"

namespace korvel::draw {

// The surface of a port; null for a port that is null, given back, or gone with its window.
platform::Port *surfaceOf(CGrafPtr port);

// The port of a window, the same one at each call; null for null and for a window that is gone.
CGrafPtr portOf(WindowRef window);

// The current port; null when there is none or its surface is gone.
CGrafPtr currentPort();
void setCurrentPort(CGrafPtr port);

// If the port of `window` is current, none is afterwards. To be called before the window goes: a
// later window may get the same address and would then be current by accident. Allocates nothing.
void leavePortOf(WindowRef window);

// Does `work` on the surface of a port; nothing for a port without a surface. Ends where memory
// does.
template <typename Work>
void onSurface(CGrafPtr port, Work work) {
  base::asFarAsMemoryAllows([&] {
    if (platform::Port *surface = surfaceOf(port)) work(*surface);
  });
}

// The result of `work` on the surface of a port; `failure` without a surface or memory.
template <typename Work>
int onSurface(CGrafPtr port, int failure, Work work) {
  int result = failure;
  onSurface(port, [&](platform::Port &surface) { result = work(surface); });
  return result;
}

// Sets an output of an exported function, unless it is null.
inline void put(int *output, int value) {
  if (output != nullptr) *output = value;
}

}  // namespace korvel::draw

#endif
