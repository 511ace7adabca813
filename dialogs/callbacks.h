// For dialogs/ only: calls of the application's two callbacks, and what they may throw.
#ifndef KORVEL_DIALOGS_CALLBACKS_H
#define KORVEL_DIALOGS_CALLBACKS_H

#include "dialogs/field_type.h"

namespace korvel::dialogs {

// Calls `callback` for field i, and returns its result.
int callGlobal(DlgBoxGlobal_t callback, const FieldType &type, int i, int *redisplay, int capacity);

// The same outside a run, where nothing is redisplayed.
void callGlobalFor(const FieldType &type, int i, DlgBoxGlobal_t callback = DlgBoxGlobal_fonct);

// Calls the final callback, and returns its result.
int callFinal(WindowRef window);

// Ends a definition, as every end of a run does: takes all types and the title out of use and the
// callbacks out of their slots. Values, counts and flags stay.
void endDefinition();

// Does `work`, in which code of the application may run, until something is thrown: by that code
// or for want of memory. The caller's caller may be C or the toolkit, neither of which may be
// unwound.
template <typename Work>
void untilThrown(Work work) noexcept {
  try {
    work();
  } catch (...) {
  }
}

}  // namespace korvel::dialogs

#endif
