// Changes of fields that the application's callbacks and actions ask for while the dialog is up.
#include <korvel/dialogs.h>

#include "dialogs/field_items.h"
#include "dialogs/run.h"
#include "dialogs/screen.h"

using namespace korvel::dialogs;

namespace {

// Applies a change to a field of the running dialog, if there is one. Want of memory leaves it
// undone: the application's code, through which an exception would pass, may be C.
template <typename Change>
int change(const Family &family, int i, Change apply) noexcept {
  Screen *screen = runningScreen();
  if (screen == nullptr || !isInUse(family, i)) return 0;
  try {
    apply(*screen);
  } catch (...) {
  }
  return 0;
}

}  // namespace

int ZRVDlgBox_texte_set(int i, const char *text) {
  if (text == nullptr) return 0;
  return change(kTexts, i, [=](Screen &screen) { changeText(screen, i, text); });
}

int ZRVDlgBox_texte_set_liste(int i) {
  return change(kTexts, i, [=](Screen &screen) { rebuildChoices(screen, i); });
}

int ZRVDlgBox_num_set(int i, const char *text) {
  if (text == nullptr) return 0;
  return change(kNums, i, [=](Screen &screen) { changeNumber(screen, i, text); });
}

// Kept: check boxes and integers are not changed this way.
int ZRVDlgBox_bool_set(int, int) { return 0; }
int ZRVDlgBox_int_set(int, int) { return 0; }
