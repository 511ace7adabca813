// SPDX-License-Identifier: MIT
// For dialogs/: places and sizes in pixels, from dialog units. A unit is 2 pixels across; down it
// is 7/4 of a pixel in places and 5/4 in heights, truncated toward zero.
#ifndef KORVEL_DIALOGS_LAYOUT_H
#define KORVEL_DIALOGS_LAYOUT_H

#include "dialogs/field_type.h"
#include "platform/geometry.h"

namespace korvel::dialogs {

using platform::Rect;

constexpr int pixelsAcross(int units) { return static_cast<int>(2LL * units); }
constexpr int pixelsDown(int units) { return static_cast<int>(7LL * units / 4); }
constexpr int pixelsHigh(int units) { return static_cast<int>(5LL * units / 4); }

// The size in pixels of a dialog whose size is given in dialog units: one without a width or height
// has room for its button pair, and no side is longer than kLargestSide.
struct Size {
  int width;
  int height;
};
constexpr int kLargestSide = 16384;
Size shownSize(int cx, int cy, bool longLabels);

// Moves and shortens a rectangle to lie inside the dialog along each side that was cut to
// kLargestSide. Along other sides it may lie outside.
Rect heldInside(Rect rect, const Size &dialog);

// The button pair at the foot of a dialog of this size. Long labels make both wider.
struct ButtonPair {
  Rect ok;
  Rect cancel;
};
ButtonPair buttonPair(const Size &dialog, bool longLabels);

// The rectangle of field i by its place and size.
Rect fieldRect(const FieldType &type, int i);

}  // namespace korvel::dialogs

#endif
