// Builds a dialog from nothing, out of the tables.
#include "base/guard.h"
#include "dialogs/callbacks.h"
#include "dialogs/layout.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "dialogs/screen.h"
#include "dialogs/stored_text.h"
#include "platform/loader.h"
#include "platform/resources.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

namespace korvel::dialogs {

namespace {

using platform::Dialog;
using platform::ItemKind;

constexpr std::string_view kInitialTitle = "Dialogue utilisateur";
constexpr std::string_view kOkText = "OK";
constexpr std::string_view kCancelText = "Annuler";
constexpr std::size_t kLongestTitle = 255;
constexpr std::size_t kLongLabel = 9;
constexpr const char *kIconName = "icons/2";

// Adds the items of one field; returns the first one's number.
using AddItems = int (*)(Dialog &dialog, int i);

int addText(Dialog &dialog, int i) {
  if (TDBC[i] == 1) return dialog.addItem(ItemKind::PopUp, popUpRect(i), "");
  const ItemKind kind = TDBL[i] == 1 ? ItemKind::ListBox : ItemKind::EditText;
  return dialog.addItem(kind, fieldRect(kTexts, i), "");
}

int addBool(Dialog &dialog, int i) {
  return dialog.addItem(ItemKind::CheckBox, fieldRect(kBools, i),
                        toScreen(storedText(kBoolLabels, i)));
}

int addInt(Dialog &dialog, int i) {
  return dialog.addItem(ItemKind::EditText, fieldRect(kInts, i), "");
}

int addNum(Dialog &dialog, int i) {
  return dialog.addItem(ItemKind::EditText, fieldRect(kNums, i), "");
}

int addDate(Dialog &dialog, int i) {
  const auto rects = dateRects(i);
  const int first = dialog.addItem(ItemKind::EditText, rects[0], "");
  dialog.addItem(ItemKind::EditText, rects[1], "");
  dialog.addItem(ItemKind::EditText, rects[2], "");
  return first;
}

int addPush(Dialog &dialog, int i) {
  // Kept: labels of push buttons go to the screen without conversion.
  return dialog.addItem(ItemKind::PushButton, fieldRect(kPushes, i), storedText(kPushLabels, i));
}

struct Adder {
  const Family *family;
  AddItems add;
};
constexpr Adder kAdders[] = {{&kTexts, addText}, {&kBools, addBool}, {&kInts, addInt},
                             {&kNums, addNum},   {&kDates, addDate}, {&kPushes, addPush}};

int addField(Dialog &dialog, const FieldId &field) {
  const auto *adder = std::find_if(std::begin(kAdders), std::end(kAdders),
                                   [&](const Adder &a) { return a.family == field.family; });
  return adder->add(dialog, field.index);
}

// Kept: the labels of the button pair go to the screen without conversion.
void addButtonPair(Dialog &dialog, int width, int height) {
  const std::string_view ok = boundedText(OK_sz1);
  const std::string_view cancel = boundedText(OK_sz2);
  const bool longLabels = ok.size() >= kLongLabel || cancel.size() >= kLongLabel;
  const ButtonPair rects = buttonPair(width, height, longLabels);
  dialog.addItem(ItemKind::PushButton, rects.ok, ok.empty() ? kOkText : ok);
  dialog.addItem(ItemKind::PushButton, rects.cancel, cancel.empty() ? kCancelText : cancel);
  if (OK_def == platform::kOkItem || OK_def == platform::kCancelItem) {
    dialog.setDefaultItem(OK_def);
  }
}

void addFields(Dialog &dialog, const std::vector<FieldId> &order) {
  for (const FieldId &field : order) {
    recordItems(*field.family, field.index, addField(dialog, field));
  }
}

// Kept: the table's text itself is converted.
std::string_view convertedStatic(int i) {
  const std::string shown = toScreen(storedText(kStaticTexts, i));
  if (!shown.empty()) std::copy(shown.begin(), shown.end(), SDB_pszBuffer[i]);
  return storedText(kStaticTexts, i);
}

void addStatic(Dialog &dialog, int i) {
  if (SDB_type[i] < 0) {
    dialog.addGroupBox(groupBoxRect(i), convertedStatic(i));
  } else if (SDB_type[i] == 0) {
    dialog.addStaticText(staticTextRect(i), convertedStatic(i));
  } else {
    dialog.addIcon(iconRect(i), platform::findResource(kIconName, {".svg", ".png"}));
  }
}

// Where a dialog of this size goes, and the window that it stands in front of.
struct Place {
  Rect bounds;
  WindowRef parent;
};

Place findPlace(platform::Desktop &desktop, WindowRef parent, int width, int height) {
  if (parent == nullptr) parent = desktop.frontWindow();
  const auto parentBounds = desktop.windowBounds(parent);
  if (!parentBounds) return {centredOn(desktop.screenBounds(), width, height), nullptr};
  return {centredOn(*parentBounds, width, height), parent};
}

std::unique_ptr<Dialog> build(platform::Desktop &desktop, const char *title, WindowRef parent,
                              const std::vector<FieldId> &order) {
  // Kept: the size in the tables is overwritten, and scaled again by a further run.
  LDB_cx = Dlg_CoefCX(LDB_cx);
  LDB_cy = Dlg_CoefY(LDB_cy);
  const Place place = findPlace(desktop, parent, LDB_cx, LDB_cy);
  auto dialog = desktop.newDialog(place.bounds, place.parent, kInitialTitle);
  if (dialog == nullptr) return nullptr;
  dialog->setTitle(toScreen(boundedText(title != nullptr ? title : "", kLongestTitle)));
  addButtonPair(*dialog, LDB_cx, LDB_cy);
  addFields(*dialog, order);
  for (int i = 0; isInUse(kStatics, i); ++i) addStatic(*dialog, i);
  return dialog;
}

// Makes the described dialog the current one, or returns null.
DialogRef buildCurrent(const char *title, WindowRef parent) {
  const std::vector<FieldId> order = placementOrder();
  if (!fitsNumbering(order)) return nullptr;
  platform::Desktop *desktop = platform::desktopWithScreen();
  if (desktop == nullptr) return nullptr;
  auto dialog = build(*desktop, title, parent, order);
  return dialog != nullptr ? makeCurrent(std::move(dialog)) : nullptr;
}

}  // namespace

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int ZRVDlgBoxEx(const char *title, WindowRef parent) {
  if (!mayShowDialog()) return 0;
  const auto build = [&] { return buildCurrent(title, parent); };
  const DialogRef dialog = korvel::base::orOnFailure(nullptr, build);
  if (dialog != nullptr) return DlgBoxFunc(dialog);
  endDefinition();
  return 0;
}
