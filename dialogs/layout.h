// For dialogs/ only: where things stand in a dialog, in pixels, from dialog units.
#ifndef KORVEL_DIALOGS_LAYOUT_H
#define KORVEL_DIALOGS_LAYOUT_H

#include <array>

#include "dialogs/families.h"
#include "platform/desktop.h"

namespace korvel::dialogs {

using platform::Rect;

// How large a dialog is shown whose size is told in dialog units: one without a width or height has
// room for its button pair, and no side is longer than kLargestSide.
struct Size {
  int width;
  int height;
};
constexpr int kLargestSide = 16384;
Size shownSize(int cx, int cy, bool longLabels);

// A rectangle in a dialog of this size. What lies outside is moved to the edge, and made no longer
// than it, where the dialog was held to kLargestSide: there it would lie inside otherwise.
Rect heldInside(Rect rect, const Size &dialog);

// The button pair at the foot of a dialog of this size. Long labels make both wider.
struct ButtonPair {
  Rect ok;
  Rect cancel;
};
ButtonPair buttonPair(const Size &dialog, bool longLabels);

// The rectangle of field i as its place and size say.
Rect fieldRect(const Family &family, int i);

Rect popUpRect(int i);
Rect dateRect(int i);                             // of all three items
std::array<Rect, 3> dateParts(const Rect &date);  // day, month, year

Rect groupBoxRect(int i);
Rect staticTextRect(int i);
Rect iconRect(int i);

}  // namespace korvel::dialogs

#endif
