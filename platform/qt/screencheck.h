// SPDX-License-Identifier: MIT
// For platform/qt/: which of Qt's platforms can be started in this process.
//
// Starting a QApplication on a platform that does not work ends the process, so everything that can
// be checked is checked before.
#ifndef KORVEL_PLATFORM_QT_SCREENCHECK_H
#define KORVEL_PLATFORM_QT_SCREENCHECK_H

#include <string>

namespace korvel::platform::qt {

struct PlatformChoice {
  std::string name;     // as Qt's option -platform takes it; empty: there is none
  std::string problem;  // why there is none, in one line
};

// The first entry of QT_QPA_PLATFORM that can be started when that is set; else X11 when its
// server answers; else Wayland when its compositor answers. `starts` tries a platform out where
// nothing else tells whether it can be started.
PlatformChoice choosePlatform(bool (*starts)(const std::string &platform));

// Empty when the platform of this name shows its windows to somebody, as X11 and Wayland do, or
// KORVEL_UNSEEN is 1, which says that it is meant when nobody sees them.
std::string whyUnseen(const std::string &name);

// Whether Qt can be started where there is no screen at all.
bool hasOffscreenPlatform();
constexpr const char *kOffscreenPlatform = "offscreen";

}  // namespace korvel::platform::qt

#endif
