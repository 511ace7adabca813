// Number fields on the screen.
#include <string>

#include "dialogs/field_items.h"
#include "dialogs/field_values.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"

namespace korvel::dialogs {

namespace {

void write(Screen &screen, int item, int i) {
  screen.setText(item, DecimalText::ofNumber(NDB_dNums[i], NDB_iChiff[i]).view());
}

void fill(Screen &screen, int i) {
  if (NDB_bInit[i] == 0) {
    // Kept: unlike an integer field, a field never set leaves its item as it was built.
    if (NDB_bMand[i] != 0) NDB_bOK[i] = 0;
    return;
  }
  const int item = itemOf(kNums, i);
  write(screen, item, i);
  screen.select(item);
  if (!storedNumberIsAcceptable(i)) NDB_bOK[i] = 0;
}

Hit handle(Screen &screen, int i) {
  const std::string text = screen.text(itemOf(kNums, i));
  if (text.empty()) {
    NDB_bOK[i] = NDB_bMand[i] != 0 ? 0 : 1;
  } else {
    NDB_bOK[i] = acceptNumber(i, text) ? 1 : 0;
  }
  return Hit::Edited;
}

void show(Screen &screen, int i) {
  write(screen, itemOf(kNums, i), i);
  NDB_bOK[i] = storedNumberIsAcceptable(i) ? 1 : 0;
}

void clear(Screen &screen, int i) {
  screen.setText(itemOf(kNums, i), "");
  NDB_bOK[i] = NDB_bMand[i] != 0 ? 0 : 1;
}

}  // namespace

void changeNumber(Screen &screen, int i, std::string_view text) {
  const std::string shown(text);  // as a validator may change what it is read from
  screen.setText(itemOf(kNums, i), shown);
  const bool isMissing = NDB_bMand[i] != 0 && shown.empty();
  NDB_bOK[i] = !isMissing && acceptNumber(i, shown) ? 1 : 0;
}

constexpr FieldType kNumType{&kNums, fill, handle, show, clear};

}  // namespace korvel::dialogs
