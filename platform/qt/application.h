// SPDX-License-Identifier: MIT
// For platform/qt/: the QApplication that everything on the screen needs.
#ifndef KORVEL_PLATFORM_QT_APPLICATION_H
#define KORVEL_PLATFORM_QT_APPLICATION_H

#include <string>

namespace korvel::platform::qt {

// Ensures an application that can show windows from this thread: the host application's own when it
// has one, else one of ours, made at the first call that finds a screen and kept until the process
// ends. On false, `problem` says why in one line.
bool ensureApplication(std::string &problem);

// Ensures an application that can draw fonts and pictures: the host application's own or one as
// above, else one of ours without a screen. Once that is made there will be no screen in this
// process. False when the host's application has no fonts, or Qt cannot do without a screen.
bool ensureDrawing();

}  // namespace korvel::platform::qt

#endif
