// For platform/qt/ only: makes the widgets of a form.
#ifndef KORVEL_PLATFORM_QT_FORMBUILDER_H
#define KORVEL_PLATFORM_QT_FORMBUILDER_H

#include <string>
#include <vector>

#include "platform/qt/form.h"
#include "platform/qt/item.h"

class QWidget;

namespace korvel::platform::qt {

struct BuiltForm {
  std::vector<Item *> items;  // item n at n - 1, null where there is none
  int defaultItem = 0;        // 0: none was designed
};

// Fills `window` as the form says; `folder` is where its picture files are looked for. What the
// form does not know (hits, refused characters, secrets) the items bring with them: they are those
// of every dialog. On false, `problem` says what is wrong with the form, and the window is to be
// thrown away.
bool buildForm(const Form &form, const QString &folder, QWidget &window, HitSink &sink,
               BuiltForm &built, std::string &problem);

}  // namespace korvel::platform::qt

#endif
