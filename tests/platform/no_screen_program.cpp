// SPDX-License-Identifier: MIT
// Asks twice for a desktop with a screen, and succeeds when there is none. Standard error has only
// the line of the first call, so that the caller sees what one call says.
#include <stdio.h>

#include "platform/loader.h"

int main() {
  using korvel::platform::desktop;
  using korvel::platform::desktopWithScreen;
  const bool isFound = desktop() != nullptr;
  const bool hasScreen = desktopWithScreen() != nullptr;
  if (freopen("/dev/null", "w", stderr) == nullptr) return 2;
  const bool hasScreenNow = desktopWithScreen() != nullptr;
  return isFound && !hasScreen && !hasScreenNow ? 0 : 1;
}
