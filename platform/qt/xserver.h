// SPDX-License-Identifier: MIT
// For platform/qt/: the X server that shows the windows, and its end.
//
// Under Wayland the toolkit itself watches the compositor, and ends the process with a line of its
// own the next time that it handles events.
#ifndef KORVEL_PLATFORM_QT_XSERVER_H
#define KORVEL_PLATFORM_QT_XSERVER_H

namespace korvel::platform::qt {

// Whether a new connection to the server of DISPLAY can be made.
bool xServerAnswers();

// Whether the running application is one of X11, and its server has gone away: the toolkit would
// end the process at its next event.
bool xServerHasGone();

// When the server goes away under a dialog, the toolkit says so in a line and ends the process. Has
// the library below it say nothing more, unless the application listens there.
void keepLastWordsShort();

}  // namespace korvel::platform::qt

#endif
