// SPDX-License-Identifier: MIT
// For messages/: a message's lines, and the layout of its box in pixels.
#ifndef KORVEL_MESSAGES_LAYOUT_H
#define KORVEL_MESSAGES_LAYOUT_H

#include <cstddef>
#include <string>

#include "platform/geometry.h"

namespace korvel::messages {

using platform::Rect;

enum class Kind { Question, Note };

// Breaks `text` into lines, in place and at the same length: carriage returns replace its line
// ends, and in each line that is too long the first space beyond the widest column. Returns the
// number of lines, at least 2.
int wrapLines(std::string &text);

// From the top of the box to the first baseline, and from line to line.
constexpr int kFirstBaseline = 26;
constexpr int kLinePitch = 14;

constexpr Rect kIconRect{18, 18, 50, 50};

// At most `most`, unless that is unknown (below 1), but wide enough for two buttons.
int boxWidth(std::size_t captionLength, std::size_t textLength, int most);

// At most `most`, but high enough for a button; `lines` below 1 counts as 1.
int boxHeight(Kind kind, int lines, int most);

// The greatest height of a box's content on a screen.
int tallestOn(const Rect &screen);

// "Oui" is the first of two buttons; "Non" and the one button of a note are the last.
Rect firstOfTwoButtons(int width, int height);
Rect lastButton(int width, int height);

// The pane of the lines: down to the buttons, and almost to the right edge.
Rect textPane(int width, int height);

}  // namespace korvel::messages

#endif
