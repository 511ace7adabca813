// SPDX-License-Identifier: MIT
// Windows of the host application, which become owners of dialogs and surfaces to draw on.
#include <korvel/desktop.h>

#include "base/guard.h"
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

using namespace korvel::platform;

WindowRef KorvelWidgetWindow(void *qwidget) {
  if (qwidget == nullptr) return nullptr;
  return korvel::base::guarded(nullptr, [&] { return hostWindow(qwidget); });
}
