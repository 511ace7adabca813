// Runs a dialog whose layout is a template file of the resource folder.
#include "base/guard.h"
#include "dialogs/callbacks.h"
#include "dialogs/run.h"
#include "dialogs/screen.h"
#include "platform/loader.h"
#include "platform/resources.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>

namespace korvel::dialogs {

namespace {

using platform::Dialog;
using platform::ItemKind;

constexpr const char *kFolder = "dialogs/";

// Empty when there is no such template: a name leads to no other folder. One that is UTF-8 already
// is found as well.
std::string findTemplate(std::string_view name) {
  if (name.empty() || name.find('/') != name.npos) return {};
  for (const std::string &file : {platform::nameOnDisk(toScreen(name)), std::string(name)}) {
    std::string path = platform::findResource(kFolder + file, {".ui"});
    if (!path.empty()) return path;
  }
  return {};
}

// What a form says about itself may hold anything; the line stays one.
std::string inOneLine(std::string text) {
  const auto isControl = [](char c) { return (c >= 0 && c < ' ') || c == 0x7F; };
  std::replace_if(text.begin(), text.end(), isControl, '?');
  return text;
}

void report(const std::string &path, const std::string &problem) {
  std::fprintf(stderr, "korvel: dialog not shown: %s\n", inOneLine(path + ": " + problem).c_str());
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
    report(path, problem);
    return nullptr;
  }
  // A template's items are numbered by itself: none is moved.
  std::fill(std::begin(Dlg_itemOffset), std::end(Dlg_itemOffset), 0);
  std::fill(std::begin(Dlg_rkOffset), std::end(Dlg_rkOffset), 0);
  return makeCurrent(std::move(dialog));
}

}  // namespace

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int ZRVDlgBox(const char *name) {
  if (name == nullptr || !mayShowDialog()) return 0;
  const std::string path = korvel::base::orOnFailure({}, [&] { return findTemplate(name); });
  if (path.empty()) return 0;
  const DialogRef dialog = korvel::base::orOnFailure(nullptr, [&] { return openCurrent(path); });
  if (dialog != nullptr) return DlgBoxFunc(dialog);
  endDefinition();
  return 0;
}
