// For draw/ and messages/ only: the chosen font, which all ports share, and its measures.
#ifndef KORVEL_DRAW_FONTS_H
#define KORVEL_DRAW_FONTS_H

#include <korvel/types.h>

#include "platform/drawing.h"

namespace korvel::draw {

constexpr const char *kDefaultFont = "Arial";

// How a port draws text. Colours are palette indexes; `back` may be KorvelTransparent. `style` is
// the sum that ch_font_set_ext takes.
struct TextStyle {
  int fore;
  int back;
  int size;
  int style = 0;
};

// Stores the name, which may be the buffer of the chosen font itself, and sets font, colours and
// char_dy of a port. An empty name is only stored, and needs no port.
void chooseFont(CGrafPtr port, const char *name, const TextStyle &style);

// Sets colours and text mode of a surface, and char_dy from its font.
void setColours(platform::Port &surface, int fore, int back);

// Height and gap of a line of text.
int lineHeight(const platform::FontMetrics &font);

}  // namespace korvel::draw

#endif
