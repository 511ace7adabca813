// A module that was built for a seam of another version.
#include <korvel/types.h>

#include "platform/desktop.h"

extern "C" KORVEL_API korvel::platform::Desktop *korvel_desktop(int version);

extern "C" korvel::platform::Desktop *korvel_desktop(int) { return nullptr; }
