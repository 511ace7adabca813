// SPDX-License-Identifier: MIT
// For dialogs/: calls of the application's two callbacks, and of code that may throw.
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

// Takes all types, the title and both callbacks out of use, as each end of a run does. Values,
// counts and flags stay.
void endDefinition();

// Does `work`, and ends it at whatever is thrown: by the application's code, or for want of memory.
// For calls from C or from the toolkit, neither of which an exception may pass through.
template <typename Work>
void catchingAll(Work work) noexcept {
  try {
    work();
  } catch (...) {
  }
}

}  // namespace korvel::dialogs

#endif
