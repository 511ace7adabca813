// SPDX-License-Identifier: MIT
// For platform/qt/: makes the widgets of a form.
#ifndef KORVEL_PLATFORM_QT_FORMLOADER_H
#define KORVEL_PLATFORM_QT_FORMLOADER_H

#include <string>
#include <vector>

#include "platform/qt/item.h"

class QDialog;

namespace korvel::platform::qt {

struct LoadedForm {
  std::vector<Item *> items;  // item n at n - 1, null for an unused number
  int defaultItem = 0;        // 0: none was designed
};

// Fills `window` as the form in this file says. Its items are the same as in every dialog: the form
// has no say in hits, refused characters and secrets. A label's picture is a file of the resource
// folder, which is the one above the form's.
//
// On false, `problem` says what is wrong with the form, in one line, and the window is to be thrown
// away. Nothing is written to standard error.
bool loadForm(const std::string &path, QDialog &window, HitSink &sink, LoadedForm &loaded,
              std::string &problem);

}  // namespace korvel::platform::qt

#endif
