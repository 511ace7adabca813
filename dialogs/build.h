// SPDX-License-Identifier: MIT
// For dialogs/: dialogs built from the tables.
#ifndef KORVEL_DIALOGS_BUILD_H
#define KORVEL_DIALOGS_BUILD_H

#include <string_view>

#include <korvel/types.h>

#include "dialogs/layout.h"
#include "platform/desktop.h"

namespace korvel::dialogs {

// A dialog while it is built.
struct Builder {
  platform::Dialog &dialog;
  Size size;

  // Adds an item, held inside the dialog; returns its number.
  int addItem(platform::ItemKind kind, const Rect &rect, std::string_view title = {}) {
    return dialog.addItem(kind, heldInside(rect, size), title);
  }
};

// Builds the described dialog and runs it to its end. Returns what ZRVDlgBoxEx returns.
int runBuilt(const char *title, WindowRef parent);

}  // namespace korvel::dialogs

#endif
