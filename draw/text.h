// SPDX-License-Identifier: MIT
// For draw/: plain text, drawn or measured.
#ifndef KORVEL_DRAW_TEXT_H
#define KORVEL_DRAW_TEXT_H

#include <string_view>

#include "draw/pixels.h"
#include "platform/drawing.h"

namespace korvel::draw {

// The longest run that is drawn or measured.
constexpr int kLongestRun = 255;

// Draws a CP1252 text up to its first NUL, its top at (x, y) and its baseline char_dy below that.
// Returns its width; 0 for a text beyond the longest run, which is not drawn.
int drawRun(platform::Port &surface, Pixels x, Pixels y, std::string_view text);

// The width that drawRun returns.
int runWidth(const platform::Port &surface, std::string_view text);

// Whether `text` and `len` are a text. A null text is one with length 0.
constexpr bool isText(const char *text, int len) {
  return len == 0 || (len > 0 && text != nullptr);
}

}  // namespace korvel::draw

#endif
