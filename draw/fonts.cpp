// SPDX-License-Identifier: MIT
// The chosen font: its name and offset, which all ports share, and its measures.
#include "draw/fonts.h"

#include <cstring>

#include <korvel/draw.h>

#include "draw/misuse.h"
#include "draw/palette.h"
#include "draw/ports.h"
#include "strings/charsets.h"

constinit char ch_font_FontName[80] = "";
constinit int char_dy = 0;

namespace korvel::draw {

using platform::Port;

namespace {

// Kept: 2 is underlined and 4 italic, the other way round from the bits of a face.
constexpr struct {
  int style;
  unsigned face;
} kFaceOfStyle[] = {
    {KorvelBold, platform::kBold},       {KorvelUnderlined, platform::kUnderline},
    {KorvelItalic, platform::kItalic},   {KorvelCondensed, platform::kCondense},
    {KorvelExtended, platform::kExtend},
};

unsigned faceOf(int style) {
  unsigned face = 0;
  for (const auto &each : kFaceOfStyle) {
    if ((style & each.style) != 0) face |= each.face;
  }
  return face;
}

void storeName(const char *name) {
  const std::size_t length = strnlen(name, sizeof ch_font_FontName - 1);
  std::memmove(ch_font_FontName, name, length);
  ch_font_FontName[length] = '\0';
}

void putMetrics(const Port *surface, int *height, int *widest, int *leading) {
  if (surface == nullptr) return;
  const platform::FontMetrics font = surface->fontMetrics();
  put(height, font.ascent + font.descent);
  put(widest, font.widest);
  put(leading, font.leading);
}

}  // namespace

void chooseFont(CGrafPtr port, const char *name, const TextStyle &style) {
  if (*name == '\0') {
    *ch_font_FontName = '\0';
    return;
  }
  Port *surface = surfaceOf(port);
  if (surface == nullptr) return;
  storeName(name);
  if (surface->setFont(strings::toMac(ch_font_FontName), faceOf(style.style))) {
    surface->setFontSize(style.size);
  }
  setColours(*surface, style.fore, style.back);
}

void setColours(Port &surface, int fore, int back) {
  surface.setForeground(paletteColour(fore));
  if (back != KorvelTransparent) surface.setBackground(paletteColour(back));
  surface.setOpaqueText(back != KorvelTransparent);
  char_dy = surface.fontMetrics().ascent + 1;
}

int lineHeight(const platform::FontMetrics &font) {
  return font.ascent + font.descent + font.leading;
}

}  // namespace korvel::draw

using namespace korvel::draw;
using korvel::base::asFarAsMemoryAllows;

int ch_font_set_ext(CGrafPtr port, const char *name, int fore, int back, int size, int style) {
  lookForMisuse([=] {
    needsFont(Call("ch_font_set_ext", {port, name, fore, back, size, style}), port, name, fore,
              back, size);
  });
  if (name == nullptr) return 0;
  asFarAsMemoryAllows([&] { chooseFont(port, name, {fore, back, size, style}); });
  return 0;
}

int ch_font_set(CGrafPtr port, const char *name, int fore, int back, int size) {
  lookForMisuse([=] {
    needsFont(Call("ch_font_set", {port, name, fore, back, size}), port, name, fore, back, size);
  });
  if (name == nullptr) return 0;
  asFarAsMemoryAllows([&] { chooseFont(port, name, {fore, back, size}); });
  return 0;
}

// Kept: the port argument is not used.
int ch_font_metrics(CGrafPtr port, int *height, int *widMax, int *leading) {
  lookForMisuse([=] {
    needsCurrentPort(Call("ch_font_metrics", {orNull(port), orNull(filled(height)),
                                              orNull(filled(widMax)), orNull(filled(leading))}));
  });
  asFarAsMemoryAllows([&] { putMetrics(surfaceOf(currentPort()), height, widMax, leading); });
  return 0;
}
