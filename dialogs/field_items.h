// For dialogs/ only: how each field type lives on the screen. A further type is one row of kTypes
// (run.cpp) and the functions behind it.
#ifndef KORVEL_DIALOGS_FIELD_ITEMS_H
#define KORVEL_DIALOGS_FIELD_ITEMS_H

#include "dialogs/families.h"

namespace korvel::dialogs {

class Screen;

// What a hit on a field's item led to.
enum class Hit {
  Edited,    // its value and flag are up to date: OK follows, then the global callback if valid
  Changed,   // the global callback is called
  Accepted,  // as Edited, and then the dialog ends
  Refused    // back to waiting, nothing was stored
};

struct FieldType {
  const Family *family;
  void (*fill)(Screen &screen, int i);   // null: its items are shown as built
  Hit (*handle)(Screen &screen, int i);  // a hit on one of its items
  void (*show)(Screen &screen, int i);   // brings the table's value to the screen
  void (*clear)(Screen &screen, int i);  // empties it on the screen; null, like show: cannot be
                                         // named for redisplay
};

extern const FieldType kTextType;
extern const FieldType kBoolType;
extern const FieldType kIntType;
extern const FieldType kNumType;
extern const FieldType kDateType;
extern const FieldType kPushType;

}  // namespace korvel::dialogs

#endif
