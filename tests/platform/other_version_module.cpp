// SPDX-License-Identifier: MIT
// A module built for another version of the seam, for the loader to refuse.
#include <korvel/types.h>

#include "platform/desktop.h"

extern "C" KORVEL_API korvel::platform::Desktop *korvel_desktop(int version);

extern "C" korvel::platform::Desktop *korvel_desktop(int) { return nullptr; }
