// Runs a dialog whose layout is a template file of the resource folder.
#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "base/guard.h"
#include "dialogs/callbacks.h"
#include "dialogs/families.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "dialogs/screen.h"
#include "platform/loader.h"
#include "platform/resources.h"

namespace korvel::dialogs {

namespace {

using platform::Dialog;
using platform::ItemKind;

std::string findTemplate(std::string_view name) {
  return name.empty() ? std::string() : platform::findNamed("dialogs", name, {".ui"});
}

void reportNotShown(const std::string &reason) { platform::report("dialog not shown: " + reason); }

void reportMissing(const char *name) {
  reportNotShown("there is no template " + std::string(name));
}

std::optional<int> missingItem(const Dialog &dialog, const Family &family, int i) {
  const int first = itemOf(family, i);
  for (int item = first; item < first + family.itemsPerField; ++item) {
    if (dialog.kind(item) == ItemKind::None) return item;
  }
  return std::nullopt;
}

// Such a field may keep OK disabled with nothing on the screen to change that.
void reportFieldsWithoutItem(const std::string &path, const Dialog &dialog) {
  for (const Family *family : kValidatedFamilies) {
    for (int i = 0; isInUse(*family, i); ++i) {
      if (family->mandatory[i] == 0) continue;
      if (const auto item = missingItem(dialog, *family, i)) {
        platform::report(path + ": " + family->name + " " + std::to_string(i) +
                         " is mandatory, and there is no item " + std::to_string(*item));
      }
    }
  }
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

// Makes the template's dialog the current one, or returns null.
DialogRef openCurrent(const std::string &path) {
  platform::Desktop *desktop = platform::desktopWithScreen();
  if (desktop == nullptr) return nullptr;
  std::string problem;
  auto dialog = readTemplate(*desktop, path, problem);
  if (dialog == nullptr) {
    reportNotShown(path + ": " + problem);
    return nullptr;
  }
  // A template's items are numbered by itself: none is moved.
  std::fill(std::begin(Dlg_itemOffset), std::end(Dlg_itemOffset), 0);
  std::fill(std::begin(Dlg_rkOffset), std::end(Dlg_rkOffset), 0);
  reportFieldsWithoutItem(path, *dialog);
  return makeCurrent(std::move(dialog));
}

}  // namespace

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int ZRVDlgBox(const char *name) {
  if (name == nullptr || !mayShowDialog()) return 0;
  const std::string path = korvel::base::orOnFailure({}, [&] { return findTemplate(name); });
  if (path.empty()) {
    korvel::base::asFarAsMemoryAllows([&] { reportMissing(name); });
    return 0;
  }
  const DialogRef dialog = korvel::base::orOnFailure(nullptr, [&] { return openCurrent(path); });
  if (dialog != nullptr) return DlgBoxFunc(dialog);
  endDefinition();
  return 0;
}
