// SPDX-License-Identifier: MIT
// For platform/qt/: Qt in a process that may do more than whoever started it, as a set-user-id or
// set-group-id program or one with capabilities of its own.
#ifndef KORVEL_PLATFORM_QT_PRIVILEGES_H
#define KORVEL_PLATFORM_QT_PRIVILEGES_H

namespace korvel::platform::qt {

// In such a process: takes out of the environment what would have Qt, or a library that it loads,
// run code of the starter's choice. Called before anything of Qt is.
void forgetForeignCode();

// Whether Qt, once started, would end this process: it does not trust itself with another user's
// rights, unless the application has told it to.
bool endsThisProcess();

}  // namespace korvel::platform::qt

#endif
