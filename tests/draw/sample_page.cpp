// SPDX-License-Identifier: MIT
// A page that shows everything the drawing functions can do: palette, fonts and faces, opaque text,
// every escape, lines, frames, pictures, a text in the middle of its box.
#include "tests/draw/sample_page.h"

#include <string>

#include <korvel/draw.h>

namespace korvel::test {
namespace {

void drawPalette(CGrafPtr port) {
  for (int index = 0; index < 16; ++index) Rectangle_Ex(port, 8 + 21 * index, 6, 19, 14, index);
}

void drawFonts(CGrafPtr port) {
  const struct {
    const char *name;
    int fore, back, size, style;
    const char *text;
    int x, y;
  } kTexts[] = {
      {"Arial", 0, 255, 12, 0, "Arial : d\xE9j\xE0, gar\xE7on, 37,5 \xB0", 8, 24},
      {"Arial", 1, 255, 12, 1, "gras", 190, 24},
      {"Arial", 2, 255, 12, 4, "italique", 225, 24},
      {"Arial", 4, 255, 12, 2, "soulign\xE9", 275, 24},
      {"Times New Roman", 5, 255, 14, 0, "Times New Roman", 8, 40},
      {"Courier New", 6, 255, 12, 0, "Courier New", 130, 42},
      {"Arial", 15, 12, 12, 0, "sur fond bleu", 225, 42},
      {"Arial", 0, 255, 12, 8, "\xE9troit et serr\xE9", 8, 60},
      {"Arial", 0, 255, 12, 16, "large et ouvert", 90, 60},
      {"Arial", 9, 255, 24, 5, "24 points", 225, 54},
  };
  for (const auto &each : kTexts) {
    const std::string text = each.text;
    ch_font_set_ext(port, each.name, each.fore, each.back, each.size, each.style);
    TextOut_0(port, each.x, each.y, text.data(), static_cast<int>(text.size()));
  }
}

void drawRich(CGrafPtr port, int y, const std::string &text) {
  TextOut_Ext(port, 8, y, 0, 0, text.data(), static_cast<int>(text.size()));
}

void drawRichText(CGrafPtr port) {
  ch_font_set(port, "Arial", 0, 255, 12);
  std::string icons;
  for (int code = 148; code <= 161; ++code) icons += {'\xFF', static_cast<char>(code)};
  drawRich(port, 86, icons + "\xFF\xA8 puce");
  drawRich(port, 106,
           "\xFF\x8A carr\xE9\xFF\x80\x48tabul\xE9\xFF\x85\x5A\x20"
           "deux octets");
  drawRich(port, 122,
           "un\xFF\x81\x34"
           "deux\xFF\x81\x34trois\xFF\x86\x34\x20quatre");
  int y = 138;
  for (const char *amount : {"7,50", "1 250,00", "12,30"}) {
    drawRich(port, y, std::string("montant\xFF\x80\x48\xFF\x83") + amount + "\xFF\x82 EUR");
    y += 14;
  }
}

// Relative to an origin of their own: pen, line and frame, in arguments of one byte and of two.
void drawLinesOfText(CGrafPtr port) {
  const std::string text =
      "\xFF\xC8\x20\x20\xFF\xD5\x34\x2C"
      "\xFF\xC8\x20\x20\xFF\xCA\x34\x2C"
      "\xFF\xD4\x3A\x20\x20\x20\xFF\xD6\x4A\x20\x2C\x20"
      "\xFF\xC9\x3A\x20\x2C\x20\xFF\xCB\x4A\x20\x20\x20"
      "\xFF\xD3\x50\x20\xFF\xCA\x50\x2C";
  TextOut_Ext(port, 0, 0, 190, 140, text.data(), static_cast<int>(text.size()));
}

void drawLines(CGrafPtr port) {
  for (int width = 1; width <= 4; ++width) {
    Line_Ex(port, 10, 180 + 9 * width, 60, 180 + 9 * width, 4, width);
    Line_Ex(port, 70 + 9 * width, 188, 70 + 9 * width, 216, 2, width);
    LineC_Ex(port, 115, 188 + 7 * width, 170, 180 + 10 * width, RGBColor{0xCC00, 0x4400, 0x9900},
             width);
  }
}

void drawBoxes(CGrafPtr port) {
  Rectangle_Ex(port, 190, 190, 160, 26, 8);
  ch_font_printstr(port, 190, 194, 160, 4, 255, 16, "au milieu");
  Rectangle_Ex(port, 8, 226, 342, 30, 15);
  ch_font_printstr(port, 8, 232, 342, 5, 14, 14, "sur fond et au milieu");
  BMP_affic_desfond0("repouvb", port, 16, 233);
  BMP_affic_desfond0("puceb", port, 326, 233);
}

}  // namespace

void drawSamplePage(CGrafPtr port) {
  drawPalette(port);
  drawFonts(port);
  drawRichText(port);
  drawLinesOfText(port);
  drawLines(port);
  drawBoxes(port);
}

}  // namespace korvel::test
