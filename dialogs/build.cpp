// SPDX-License-Identifier: MIT
// Builds a dialog out of the tables alone, without a template.
#include "dialogs/build.h"

#include <memory>
#include <vector>

#include "dialogs/misuse.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "dialogs/static_texts.h"
#include "dialogs/stored_text.h"
#include "platform/loader.h"
#include "strings/charsets.h"

namespace korvel::dialogs {

namespace {

using platform::Dialog;
using platform::ItemKind;

constexpr std::string_view kInitialTitle = "Dialogue utilisateur";
constexpr std::string_view kOkText = "OK";
constexpr std::string_view kCancelText = "Annuler";
constexpr std::size_t kLongestTitle = 255;
constexpr std::size_t kLongLabel = 9;

bool hasLongLabels() {
  return boundedText(OK_sz1).size() >= kLongLabel || boundedText(OK_sz2).size() >= kLongLabel;
}

// Kept: labels of buttons go to the screen without conversion.
void addButtonPair(Builder &builder) {
  const std::string_view ok = boundedText(OK_sz1);
  const std::string_view cancel = boundedText(OK_sz2);
  const ButtonPair rects = buttonPair(builder.size, hasLongLabels());
  builder.addItem(ItemKind::PushButton, rects.ok, ok.empty() ? kOkText : ok);
  builder.addItem(ItemKind::PushButton, rects.cancel, cancel.empty() ? kCancelText : cancel);
  if (OK_def == platform::kOkItem || OK_def == platform::kCancelItem) {
    builder.dialog.setDefaultItem(OK_def);
  }
}

void addFields(Builder &builder, const std::vector<FieldId> &order) {
  for (const auto &[type, i] : order) recordItems(*type, i, type->add(builder, i));
}

// An empty dialog of this size, in the middle of its parent or, without one, of the screen.
std::unique_ptr<Dialog> newDialog(platform::Desktop &desktop, WindowRef parent, const Size &size) {
  if (parent == nullptr) parent = desktop.frontWindow();
  const auto parentBounds = desktop.windowBounds(parent);
  const Rect around = parentBounds ? *parentBounds : desktop.screenBounds();
  return desktop.newDialog(platform::centredOn(around, size.width, size.height),
                           parentBounds ? parent : nullptr, kInitialTitle);
}

std::unique_ptr<Dialog> build(platform::Desktop &desktop, const char *title, WindowRef parent,
                              const std::vector<FieldId> &order) {
  const Size size = shownSize(LDB_cx, LDB_cy, hasLongLabels());
  // Kept: the size in the tables is overwritten with pixels.
  LDB_cx = pixelsAcross(LDB_cx);
  LDB_cy = pixelsDown(LDB_cy);
  auto dialog = newDialog(desktop, parent, size);
  if (dialog == nullptr) return nullptr;
  dialog->setTitle(strings::toMac(boundedText(title, kLongestTitle)));
  Builder builder{*dialog, size};
  addButtonPair(builder);
  addFields(builder, order);
  addStatics(builder);
  return dialog;
}

// The described dialog, or null.
std::unique_ptr<Dialog> open(const char *title, WindowRef parent) {
  const std::vector<FieldId> order = placementOrder();
  if (!fitsNumbering(order)) return nullptr;
  platform::Desktop *desktop = platform::desktopWithScreen();
  return desktop == nullptr ? nullptr : build(*desktop, title, parent, order);
}

}  // namespace

int runBuilt(const char *title, WindowRef parent) {
  return mayShowDialog() ? runOpened([&] { return open(title, parent); }) : 0;
}

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int ZRVDlgBoxEx(const char *title, WindowRef parent) {
  lookForMisuse([=] { tellOfDescription(title, parent); });
  return runBuilt(title != nullptr ? title : "", parent);
}
