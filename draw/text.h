// For draw/, messages/ and dialogs/ only: plain text on its way to the screen.
#ifndef KORVEL_DRAW_TEXT_H
#define KORVEL_DRAW_TEXT_H

#include <string>
#include <string_view>

#include "draw/pixels.h"
#include "platform/drawing.h"

namespace korvel::draw {

// A copy of a CP1252 text in the screen set.
std::string toScreen(std::string_view text);

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
