// SPDX-License-Identifier: MIT
// For tests/fuzz/: the desktop module, linked into the program so that its paths are seen, on its
// toolkit's platform without a screen.
#ifndef KORVEL_TESTS_FUZZ_MODULE_H
#define KORVEL_TESTS_FUZZ_MODULE_H

#include <cstdlib>

#include "platform/desktop.h"

extern "C" korvel::platform::Desktop *korvel_desktop(int version);

namespace korvel::test {

inline platform::Desktop &module() {
  static platform::Desktop *const desktop = [] {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("KORVEL_UNSEEN", "1", 1);
    return korvel_desktop(platform::kSeamVersion);
  }();
  return *desktop;
}

}  // namespace korvel::test

#endif
