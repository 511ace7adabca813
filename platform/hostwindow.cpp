#include <korvel/desktop.h>

#include "base/guard.h"
#include "platform/desktop.h"
#include "platform/loader.h"

extern "C" WindowRef KorvelWidgetWindow(void *qwidget) {
  if (qwidget == nullptr) return nullptr;
  return korvel::base::orOnFailure(nullptr, [&] {
    korvel::platform::Desktop *desktop = korvel::platform::desktop();
    return desktop == nullptr ? nullptr : desktop->hostWindow(qwidget);
  });
}
