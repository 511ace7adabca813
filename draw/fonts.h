// For draw/ only: what fonts.cpp and the centred text share.
#ifndef KORVEL_DRAW_FONTS_H
#define KORVEL_DRAW_FONTS_H

#include <string>

#include "platform/drawing.h"

namespace korvel::draw {

constexpr const char *kDefaultFont = "Arial";

// ch_font_FontName as it goes to the screen.
std::string chosenFont();

// Sets colours and text mode of a surface, and char_dy from its font.
void setColours(platform::Port &surface, int fore, int back);

// Height and gap of a line of text.
int lineHeight(const platform::FontMetrics &font);

}  // namespace korvel::draw

#endif
