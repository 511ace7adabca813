// For dialogs/ only: where things stand in a dialog, in pixels, from dialog units.
#ifndef KORVEL_DIALOGS_LAYOUT_H
#define KORVEL_DIALOGS_LAYOUT_H

#include "dialogs/families.h"
#include "platform/desktop.h"

#include <array>

namespace korvel::dialogs {

using platform::Rect;

// The whole dialog, centred on `parent`.
Rect centredOn(const Rect &parent, int width, int height);

// The button pair at the foot of a dialog of this size. Long labels make both wider.
struct ButtonPair {
  Rect ok;
  Rect cancel;
};
ButtonPair buttonPair(int width, int height, bool longLabels);

// The rectangle of field i as its place and size say.
Rect fieldRect(const Family &family, int i);

Rect popUpRect(int i);
std::array<Rect, 3> dateRects(int i);  // day, month, year

Rect groupBoxRect(int i);
Rect staticTextRect(int i);
Rect iconRect(int i);

}  // namespace korvel::dialogs

#endif
