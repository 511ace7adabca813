// For draw/ only: plain text on a surface, before any limit of the interface but the longest run.
#ifndef KORVEL_DRAW_TEXT_H
#define KORVEL_DRAW_TEXT_H

#include <string_view>

#include "draw/pixels.h"
#include "platform/drawing.h"

namespace korvel::draw {

// The longest run that is drawn or measured.
constexpr int kLongestRun = 255;

// Draws a CP1252 text with its top at (x, y), char_dy above its baseline. Returns its width; 0 for
// a text beyond the longest run, which is not drawn.
int drawRun(platform::Port &surface, Pixels x, Pixels y, std::string_view text);

// The width that drawRun returns.
int runWidth(const platform::Port &surface, std::string_view text);

// True for a text that can be walked: with a length of 0, a null text is one.
constexpr bool isText(const char *text, int len) {
  return len == 0 || (len > 0 && text != nullptr);
}

}  // namespace korvel::draw

#endif
