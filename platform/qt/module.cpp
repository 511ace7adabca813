// SPDX-License-Identifier: MIT
// The module's only export: the desktop on Qt Widgets.
#include <korvel/types.h>

#include "platform/desktop.h"
#include "platform/qt/privileges.h"
#include "platform/qt/qtdesktop.h"

// Named by korvel::platform::kModuleEntry.
extern "C" KORVEL_API korvel::platform::Desktop *korvel_desktop(int version);

extern "C" korvel::platform::Desktop *korvel_desktop(int version) {
  if (version != korvel::platform::kSeamVersion) return nullptr;
  korvel::platform::qt::forgetForeignCode();
  static korvel::platform::qt::QtDesktop desktop;
  return &desktop;
}
