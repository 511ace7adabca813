// For messages/ only: where things stand in a message box, in pixels.
#ifndef KORVEL_MESSAGES_LAYOUT_H
#define KORVEL_MESSAGES_LAYOUT_H

#include <cstddef>

#include "messages/flags.h"
#include "platform/geometry.h"

namespace korvel::messages {

using platform::Rect;

// Baseline of the first line below the top of the box, and from line to line.
constexpr int kFirstBaseline = 26;
constexpr int kLinePitch = 14;

constexpr Rect kIconRect{18, 18, 50, 50};

// Never beyond `most`, unless that is not known (below 1), nor without a place for the buttons.
int boxWidth(std::size_t captionLength, std::size_t textLength, int most);

// The same; `lines` below 1 counts as 1.
int boxHeight(Kind kind, int lines, int most);

// A box of this size in the middle of `owner`, with no negative corner.
Rect centredOn(const Rect &owner, int width, int height);

// The most that the content of a box may be high on a screen.
int tallestOn(const Rect &screen);

struct ButtonPair {
  Rect yes;
  Rect no;
};
ButtonPair questionButtons(int width, int height);
Rect noteButton(int width, int height);

// Where the lines are shown: as far as the buttons, and almost to the right edge.
Rect textPane(int width, int height);

}  // namespace korvel::messages

#endif
