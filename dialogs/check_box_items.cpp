// Check boxes on the screen.
#include "dialogs/field_items.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"

namespace korvel::dialogs {

namespace {

void show(Screen &screen, int i) {
  // A control of 0 to 1: whatever lies above is on, whatever lies below is off.
  screen.setChecked(itemOf(kBools, i), BDB_bFlags[i] > 0);
}

Hit handle(Screen &screen, int i) {
  BDB_bFlags[i] = screen.isChecked(itemOf(kBools, i)) ? 0 : 1;
  show(screen, i);
  return Hit::Changed;
}

}  // namespace

// Kept: clearing a check box shows its value.
constexpr FieldType kBoolType{&kBools, show, handle, show, show};

}  // namespace korvel::dialogs
