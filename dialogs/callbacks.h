// For dialogs/ only: the application's two callbacks, called with the tables as they stand.
#ifndef KORVEL_DIALOGS_CALLBACKS_H
#define KORVEL_DIALOGS_CALLBACKS_H

#include <korvel/dialogs.h>

namespace korvel::dialogs {

// Calls `callback` for the field with this identifier, and returns its result.
int callGlobal(DlgBoxGlobal_t callback, int identifier, int *redisplay, int capacity);

// Calls the final callback, and returns its result.
int callFinal(WindowRef window);

// Ends a definition, as every end of a run does: in-use flags, title flag and callbacks are reset.
void endDefinition();

}  // namespace korvel::dialogs

#endif
