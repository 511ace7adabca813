// SPDX-License-Identifier: MIT
// For dialogs/, draw/, messages/ and platform/: where the library finds its desktop.
#ifndef KORVEL_PLATFORM_LOADER_H
#define KORVEL_PLATFORM_LOADER_H

#include <string>

namespace korvel::platform {

class Desktop;

// The desktop, loading its module at the first call: from the path in the environment variable
// KORVEL_DESKTOP when that is set (which a process with raised privileges does not look at), else
// korvel-qt.so beside the library, else in the folder korvel/ beside the library. Null when no
// module can be loaded; standard error then says why, in one line. A failed load is tried again at
// the next call.
Desktop *desktop();

// The same for drawing, which comes in many calls: the line on standard error is written once.
Desktop *desktopForDrawing();

// The desktop when it has a screen to show windows on, else null after one line on standard error.
Desktop *desktopWithScreen();

// Writes a line of the library to standard error. Its text may come from anywhere: control
// characters become question marks.
void report(std::string line);

// For tests: the desktop to use from now on; null returns to the module. Returns the one before.
Desktop *setDesktop(Desktop *desktop);

}  // namespace korvel::platform

#endif
