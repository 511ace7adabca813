// SPDX-License-Identifier: MIT
// For dialogs/: the one dialog that may be up, from its making to its end, and changes of its
// fields.
#ifndef KORVEL_DIALOGS_RUN_H
#define KORVEL_DIALOGS_RUN_H

#include <memory>
#include <string>

#include "base/guard.h"
#include "dialogs/callbacks.h"
#include "dialogs/field_type.h"
#include "platform/desktop.h"

// What a DialogRef refers to.
struct KorvelDialog {
  std::unique_ptr<korvel::platform::Dialog> onScreen;
};

namespace korvel::dialogs {

class Screen;

// False while a dialog is up, after one line on standard error if that dialog belongs to another
// thread.
bool mayShowDialog();

// Writes the reason to standard error, in one line.
void reportNotShown(const std::string &reason);

// Makes a dialog the current one, and the port of its window the current port. Null for null. No
// dialog may be up.
DialogRef makeCurrent(std::unique_ptr<platform::Dialog> dialog);

// Runs the current dialog to its end and disposes of it. Returns what ZRVDlgBoxEx returns. Does
// nothing for any other dialog, and for one that is running.
int runCurrent(DialogRef dialog);

// Runs the dialog that `open` returns. If it returns none, the definition ends as by a cancel.
template <typename Open>
int runOpened(Open open) {
  const auto openCurrent = [&] { return makeCurrent(open()); };
  if (DialogRef dialog = base::guarded(nullptr, openCurrent)) return runCurrent(dialog);
  endDefinition();
  return 0;
}

// The items of the dialog that runs; null while none does.
Screen *runningScreen();

// Applies a change that the application asks for to a field of the running dialog, if there is one.
template <typename Change>
void changeField(const FieldType &type, int i, Change change) {
  Screen *screen = runningScreen();
  if (screen != nullptr && isInUse(type, i)) catchingAll([&] { change(*screen); });
}

}  // namespace korvel::dialogs

#endif
