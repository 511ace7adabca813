// SPDX-License-Identifier: MIT
// For draw/ and messages/: the chosen font, which all ports share, and its measures.
#ifndef KORVEL_DRAW_FONTS_H
#define KORVEL_DRAW_FONTS_H

#include <korvel/types.h>

#include "platform/drawing.h"

namespace korvel::draw {

constexpr const char *kDefaultFont = "Arial";

// Colours, size and style of text, in the numbers of ch_font_set_ext.
struct TextStyle {
  int fore;
  int back;
  int size;
  int style = 0;
};

// Stores the name, which may be in ch_font_FontName itself, and sets font, colours and char_dy of a
// port. An empty name is stored only, and needs no port.
void chooseFont(CGrafPtr port, const char *name, const TextStyle &style);

// Sets colours and text mode of a surface, and char_dy from its font.
void setColours(platform::Port &surface, int fore, int back);

// Ascent, descent and leading.
int lineHeight(const platform::FontMetrics &font);

}  // namespace korvel::draw

#endif
