// For dialogs/ only: the one dialog that may be up, from its making to its end.
#ifndef KORVEL_DIALOGS_RUN_H
#define KORVEL_DIALOGS_RUN_H

#include <memory>

#include <korvel/dialogs.h>

#include "platform/desktop.h"

// What a DialogRef refers to.
struct KorvelDialog {
  std::unique_ptr<korvel::platform::Dialog> onScreen;
};

namespace korvel::dialogs {

class Screen;

// False while a dialog is up; a call in another thread than that dialog's is told of on standard
// error, in one line.
bool mayShowDialog();

// The items of the dialog that runs; null while none does.
Screen *runningScreen();

// Makes a built dialog the current one, to be run by DlgBoxFunc, and the port of its window the
// current port. None may be up.
DialogRef makeCurrent(std::unique_ptr<platform::Dialog> dialog);

}  // namespace korvel::dialogs

#endif
