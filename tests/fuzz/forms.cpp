// SPDX-License-Identifier: MIT
// Forms of any bytes: a dialog or a line that says why there is none. The dialog's items take and
// give texts, values and entries, and it paints itself.
#include <string>

#include <QApplication>
#include <QWidget>

#include "tests/fuzz/module.h"
#include "tests/fuzz/target.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {
namespace {

using platform::Dialog;
using platform::ItemKind;

constexpr int kItems = 24;
// A window of far more pixels than any screen is not painted here.
constexpr int kLongestSide = 3000;

void use(Dialog &dialog, int item) {
  constexpr const char *kText = "\xE9t\xE9 1";
  dialog.setText(item, kText);
  require(dialog.text(item).empty() || dialog.kind(item) == ItemKind::EditText);
  dialog.selectText(item);
  dialog.setEntries(item, {"a", kText, ""});
  const int entries = dialog.entryCount(item);
  require(entries == 0 || entries == 3);
  require((entries == 3) ==
          (dialog.kind(item) == ItemKind::ListBox || dialog.kind(item) == ItemKind::PopUp));
  dialog.setValue(item, entries);
  require(dialog.value(item) >= 0 && dialog.value(item) <= 3);
  dialog.entry(item, 3);
  dialog.lastClick(item);
  dialog.setEnabled(item, false);
  dialog.setEnabled(item, true);
  dialog.setExpected(item, static_cast<platform::Expected>(item % 8), item);
  dialog.setAcceptable(item, item % 2 == 0);
}

void paint() {
  for (QWidget *window : QApplication::topLevelWidgets()) {
    if (window->width() <= kLongestSide && window->height() <= kLongestSide) window->grab();
  }
}

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace korvel::test;
  static auto &folder = *new TemporaryFolder;
  const std::string path = folder.add("dialogs/form.ui", std::string(data, data + size));
  std::string problem;
  const auto dialog = module().newDialogFromTemplate(path, nullptr, problem);
  require((dialog != nullptr) == problem.empty());
  require(problem.find('\n') == std::string::npos);
  if (dialog == nullptr) return 0;
  for (int item = 0; item <= kItems; ++item) use(*dialog, item);
  dialog->setDateParts(3, 4, 5);
  for (int item = 0; item <= kItems; ++item) dialog->setName(item, "Nom");
  paint();
  return 0;
}
