// Builds a dialog from nothing, out of the tables.
#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

#include "base/guard.h"
#include "dialogs/callbacks.h"
#include "dialogs/layout.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "dialogs/screen.h"
#include "dialogs/stored_text.h"
#include "platform/loader.h"
#include "platform/resources.h"

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

// A dialog while it is filled.
struct Built {
  Dialog &dialog;
  Size size;

  int addItem(ItemKind kind, const Rect &rect, std::string_view title) {
    return dialog.addItem(kind, heldInside(rect, size), title);
  }
};

// Adds the items of one field; returns the first one's number.
using AddItems = int (*)(Built &built, int i);

int addText(Built &built, int i) {
  if (TDBC[i] == 1) return built.addItem(ItemKind::PopUp, popUpRect(i), "");
  const ItemKind kind = TDBL[i] == 1 ? ItemKind::ListBox : ItemKind::EditText;
  return built.addItem(kind, fieldRect(kTexts, i), "");
}

int addBool(Built &built, int i) {
  return built.addItem(ItemKind::CheckBox, fieldRect(kBools, i),
                       toScreen(storedText(kBoolLabels, i)));
}

int addInt(Built &built, int i) {
  return built.addItem(ItemKind::EditText, fieldRect(kInts, i), "");
}

int addNum(Built &built, int i) {
  return built.addItem(ItemKind::EditText, fieldRect(kNums, i), "");
}

int addDate(Built &built, int i) {
  const auto rects = dateParts(heldInside(dateRect(i), built.size));
  const int first = built.addItem(ItemKind::EditText, rects[0], "");
  built.addItem(ItemKind::EditText, rects[1], "");
  built.addItem(ItemKind::EditText, rects[2], "");
  return first;
}

int addPush(Built &built, int i) {
  // Kept: labels of push buttons go to the screen without conversion.
  return built.addItem(ItemKind::PushButton, fieldRect(kPushes, i), storedText(kPushLabels, i));
}

struct Adder {
  const Family *family;
  AddItems add;
};
constexpr Adder kAdders[] = {{&kTexts, addText}, {&kBools, addBool}, {&kInts, addInt},
                             {&kNums, addNum},   {&kDates, addDate}, {&kPushes, addPush}};

int addField(Built &built, const FieldId &field) {
  const auto *adder = std::find_if(std::begin(kAdders), std::end(kAdders),
                                   [&](const Adder &a) { return a.family == field.family; });
  return adder->add(built, field.index);
}

bool hasLongLabels() {
  return boundedText(OK_sz1).size() >= kLongLabel || boundedText(OK_sz2).size() >= kLongLabel;
}

// Kept: the labels of the button pair go to the screen without conversion.
void addButtonPair(Built &built) {
  const std::string_view ok = boundedText(OK_sz1);
  const std::string_view cancel = boundedText(OK_sz2);
  const ButtonPair rects = buttonPair(built.size, hasLongLabels());
  built.addItem(ItemKind::PushButton, rects.ok, ok.empty() ? kOkText : ok);
  built.addItem(ItemKind::PushButton, rects.cancel, cancel.empty() ? kCancelText : cancel);
  if (OK_def == platform::kOkItem || OK_def == platform::kCancelItem) {
    built.dialog.setDefaultItem(OK_def);
  }
}

void addFields(Built &built, const std::vector<FieldId> &order) {
  for (const FieldId &field : order) {
    recordItems(*field.family, field.index, addField(built, field));
  }
}

// Kept: the table's text itself is converted.
std::string_view convertedStatic(int i) {
  const std::string shown = toScreen(storedText(kStaticTexts, i));
  if (!shown.empty()) std::copy(shown.begin(), shown.end(), SDB_pszBuffer[i]);
  return storedText(kStaticTexts, i);
}

void addStatic(Built &built, int i) {
  if (SDB_type[i] < 0) {
    built.dialog.addGroupBox(heldInside(groupBoxRect(i), built.size), convertedStatic(i));
  } else if (SDB_type[i] == 0) {
    built.dialog.addStaticText(heldInside(staticTextRect(i), built.size), convertedStatic(i));
  } else {
    built.dialog.addIcon(heldInside(iconRect(i), built.size),
                         platform::findResource(kIconName, {".svg", ".png"}));
  }
}

// Where a dialog of this size goes, and the window that it stands in front of.
struct Place {
  Rect bounds;
  WindowRef parent;
};

Place findPlace(platform::Desktop &desktop, WindowRef parent, const Size &size) {
  if (parent == nullptr) parent = desktop.frontWindow();
  const auto parentBounds = desktop.windowBounds(parent);
  if (!parentBounds) return {centredOn(desktop.screenBounds(), size.width, size.height), nullptr};
  return {centredOn(*parentBounds, size.width, size.height), parent};
}

std::unique_ptr<Dialog> build(platform::Desktop &desktop, const char *title, WindowRef parent,
                              const std::vector<FieldId> &order) {
  const Size size = shownSize(LDB_cx, LDB_cy, hasLongLabels());
  // Kept: the size in the tables is overwritten, and scaled again by a further run.
  LDB_cx = Dlg_CoefCX(LDB_cx);
  LDB_cy = Dlg_CoefY(LDB_cy);
  const Place place = findPlace(desktop, parent, size);
  auto dialog = desktop.newDialog(place.bounds, place.parent, kInitialTitle);
  if (dialog == nullptr) return nullptr;
  dialog->setTitle(toScreen(boundedText(title != nullptr ? title : "", kLongestTitle)));
  Built built{*dialog, size};
  addButtonPair(built);
  addFields(built, order);
  for (int i = 0; isInUse(kStatics, i); ++i) addStatic(built, i);
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
