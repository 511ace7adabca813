// SPDX-License-Identifier: MIT
// Windows of the host application, which become owners of dialogs and surfaces to draw on.
#include <korvel/desktop.h>

#include "base/guard.h"
#include "base/misuse.h"
#include "platform/desktop.h"
#include "platform/loader.h"

namespace korvel::platform {
namespace {

WindowRef hostWindow(void *widget) {
  Desktop *found = desktop();
  return found == nullptr ? nullptr : found->hostWindow(widget);
}

}  // namespace
}  // namespace korvel::platform

using namespace korvel::base;
using namespace korvel::platform;

WindowRef KorvelWidgetWindow(void *qwidget) {
  lookForMisuse([=] { Call("KorvelWidgetWindow", {filled(qwidget)}).needsAll(); });
  if (qwidget == nullptr) return nullptr;
  return guarded(nullptr, [&] { return hostWindow(qwidget); });
}
