// SPDX-License-Identifier: MIT
// Runs a dialog whose layout is a template file of the resource folder.
#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

#include "base/guard.h"
#include "dialogs/field_type.h"
#include "dialogs/misuse.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "platform/loader.h"
#include "platform/resources.h"

namespace korvel::dialogs {

namespace {

using platform::Dialog;
using platform::ItemKind;

// Such a field may keep OK disabled, and nothing on the screen could change that.
void reportFieldsWithoutItem(const std::string &path, const Dialog &dialog) {
  forEachValidatedField([&](const FieldType &type, int i) {
    if (type.flags.mandatory[i] == 0) return;
    if (const auto item = missingItem(dialog, type, i)) {
      platform::report(path + ": " + type.name + " " + std::to_string(i) +
                       " is mandatory, and there is no item " + std::to_string(*item));
    }
  });
}

std::unique_ptr<Dialog> readTemplate(platform::Desktop &desktop, const std::string &path,
                                     std::string &problem) {
  auto dialog = desktop.newDialogFromTemplate(path, desktop.frontWindow(), problem);
  if (dialog == nullptr) return nullptr;
  for (const int item : {platform::kOkItem, platform::kCancelItem}) {
    if (dialog->kind(item) != ItemKind::None) continue;
    problem = "there is no item " + std::to_string(item);
    return nullptr;
  }
  return dialog;
}

// The template's dialog, or null.
std::unique_ptr<Dialog> open(const char *name, const std::string &path) {
  platform::Desktop *desktop = platform::desktopWithScreen();
  if (desktop == nullptr) return nullptr;
  std::string problem;
  auto dialog = readTemplate(*desktop, path, problem);
  if (dialog == nullptr) {
    reportNotShown(path + ": " + problem);
    return nullptr;
  }
  // A template numbers its items itself: none is moved.
  std::fill(std::begin(Dlg_itemOffset), std::end(Dlg_itemOffset), 0);
  std::fill(std::begin(Dlg_rkOffset), std::end(Dlg_rkOffset), 0);
  reportFieldsWithoutItem(path, *dialog);
  lookForMisuse([&] { tellOfTemplate(name, *dialog); });
  return dialog;
}

int runTemplate(const char *name) {
  if (!mayShowDialog()) return 0;
  const std::string path = platform::findNamed("dialogs", name, {".ui"});
  if (*name != '\0' && !path.empty()) return runOpened([&] { return open(name, path); });
  reportNotShown("there is no template " + platform::inUtf8(name));
  return 0;
}

}  // namespace

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int ZRVDlgBox(const char *name) {
  lookForMisuse([=] { needsTemplate(Call("ZRVDlgBox", {name})); });
  if (name == nullptr) return 0;
  return korvel::base::guarded(0, [&] { return runTemplate(name); });
}
