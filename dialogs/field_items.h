// For dialogs/ only: how each field type lives on the screen. A further type is one row of kTypes
// (run.cpp) and the functions behind it.
#ifndef KORVEL_DIALOGS_FIELD_ITEMS_H
#define KORVEL_DIALOGS_FIELD_ITEMS_H

#include <string_view>

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

// Changes that an application asks for while the dialog is up, of a field in use.

// Puts a text into the table and onto the item; of a pop-up, chooses the choice that it is.
void changeText(Screen &screen, int i, std::string_view text);

// Builds the entries of a pop-up or the rows of a list anew from the list string.
void rebuildChoices(Screen &screen, int i);

// Puts a text onto the item and, when it is acceptable, its value into the table.
void changeNumber(Screen &screen, int i, std::string_view text);

}  // namespace korvel::dialogs

#endif
