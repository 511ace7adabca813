// The chosen font: its name and offset, which all ports share, and its measures.
#include "draw/fonts.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <korvel/desktop.h>
#include <korvel/draw.h>
#include <korvel/strings.h>

#include "draw/palette.h"
#include "draw/ports.h"

extern "C" {
constinit char ch_font_FontName[80] = "";
constinit int char_dy = 0;
}

namespace korvel::draw {

using platform::Port;

namespace {

// Kept: 2 is underlined and 4 italic, the other way round from the bits of a face.
constexpr struct {
  int style;
  unsigned face;
} kFaceOfStyle[] = {
    {1, platform::kBold},     {2, platform::kUnderline}, {4, platform::kItalic},
    {8, platform::kCondense}, {16, platform::kExtend},
};

unsigned faceOf(int style) {
  unsigned face = 0;
  for (const auto &each : kFaceOfStyle) {
    if ((style & each.style) != 0) face |= each.face;
  }
  return face;
}

// The name may be the buffer itself.
void chooseFont(const char *name) {
  const std::size_t length = strnlen(name, sizeof ch_font_FontName - 1);
  std::memmove(ch_font_FontName, name, length);
  ch_font_FontName[length] = '\0';
}

}  // namespace

std::string chosenFont() {
  // Counted, as the application may have filled the buffer to its last byte.
  std::string name(ch_font_FontName, strnlen(ch_font_FontName, sizeof ch_font_FontName));
  w2mstr(name.data());
  return name;
}

void setColours(Port &surface, int fore, int back) {
  surface.setForeground(paletteColour(fore));
  if (back != kTransparent) surface.setBackground(paletteColour(back));
  surface.setOpaqueText(back != kTransparent);
  char_dy = surface.fontMetrics().ascent + 1;
}

int lineHeight(const platform::FontMetrics &font) {
  return font.ascent + font.descent + font.leading;
}

}  // namespace korvel::draw

using korvel::draw::onSurface;
using korvel::platform::FontMetrics;
using korvel::platform::Port;

int ch_font_set_ext(CGrafPtr port, const char *name, int fore, int back, int size, int style) {
  if (name == nullptr) return 0;
  if (*name == '\0') {
    *ch_font_FontName = '\0';
    return 0;
  }
  return onSurface(port, [&](Port &surface) {
    korvel::draw::chooseFont(name);
    if (surface.setFont(korvel::draw::chosenFont(), korvel::draw::faceOf(style))) {
      surface.setFontSize(size);
    }
    korvel::draw::setColours(surface, fore, back);
    return 0;
  });
}

int ch_font_set(CGrafPtr port, const char *name, int fore, int back, int size) {
  return ch_font_set_ext(port, name, fore, back, size, 0);
}

// Kept: the port argument is not used.
int ch_font_metrics(CGrafPtr, int *height, int *widMax, int *leading) {
  CGrafPtr current = nullptr;
  GetPort(&current);
  return onSurface(current, [&](const Port &surface) {
    const FontMetrics font = surface.fontMetrics();
    if (height != nullptr) *height = font.ascent + font.descent;
    if (widMax != nullptr) *widMax = font.widest;
    if (leading != nullptr) *leading = font.leading;
    return 0;
  });
}
