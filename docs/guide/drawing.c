/* SPDX-License-Identifier: MIT */
/* Draws a card of measures into an image and writes it as a PNG file; no screen is needed. */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

enum { kWidth = 460, kHeight = 300, kLeft = 20, kRight = 250 };

/* ---- Rich text: escapes of two or more bytes among the characters ---- */

typedef struct Line {
  char bytes[256];
  int length;
} Line;

static void addBytes(Line *line, const char *bytes, int count) {
  if (line->length + count > (int)sizeof line->bytes) return;
  memcpy(line->bytes + line->length, bytes, (size_t)count);
  line->length += count;
}

static void addText(Line *line, const char *text) { addBytes(line, text, (int)strlen(text)); }

static void addEscape(Line *line, int code) {
  const char bytes[] = {(char)KorvelEscape, (char)code};
  addBytes(line, bytes, 2);
}

/* A tab to a place, in halves of the width of an X: 0 to 223. */
static void addTab(Line *line, int place) {
  const char byte = (char)(32 + place);
  addEscape(line, KorvelTabEscape);
  addBytes(line, &byte, 1);
}

/* A dot, a word, and a number that ends at its column. */
static void drawMeasure(CGrafPtr port, int y, const char *name, const char *value) {
  Line line = {"", 0};
  addEscape(&line, KorvelDotEscape);
  addText(&line, french(name));
  addTab(&line, 44);
  addEscape(&line, KorvelRightAlignEscape);
  addText(&line, french(value));
  addEscape(&line, KorvelLeftAlignEscape);
  TextOut_Ext(port, 0, 0, kLeft, y, line.bytes, line.length);
}

static void drawHeading(CGrafPtr port, const char *folderEscape, const char *text) {
  ch_font_set_ext(port, "Arial", KorvelNavy, KorvelTransparent, 18, KorvelBold);
  Line line = {"", 0};
  addBytes(&line, folderEscape, 2);
  addText(&line, french(text));
  TextOut_Ext(port, 0, 0, kLeft, 14, line.bytes, line.length);
  Line_Ex(port, kLeft, 44, kWidth - kLeft, 44, KorvelNavy, 2);
}

/* ---- Lines and rectangles ---- */

/* A weight of 60 to 70 kg, from left to right. */
static void drawCurve(CGrafPtr port, const double *weights, int count) {
  const int bottom = 250, step = 45;
  Rectangle_Ex(port, kRight, 70, kWidth - kLeft - kRight, bottom - 70, KorvelWhite);
  for (int kg = 62; kg < 70; kg += 2) {
    int y = bottom - (kg - 60) * 18;
    Line_Ex(port, kRight + 1, y, kWidth - kLeft - 2, y, KorvelSilver, 1);
  }
  for (int i = 1; i < count; i++)
    Line_Ex(port, kRight + (i - 1) * step, bottom - (int)(18 * (weights[i - 1] - 60)),
            kRight + i * step, bottom - (int)(18 * (weights[i] - 60)), KorvelRed, 2);
  ch_font_printstr(port, kRight, bottom + 6, kWidth - kLeft - kRight, KorvelGrey, KorvelTransparent,
                   11, "Poids, en kg, de 60 \340 70");
}

int main(void) {
  const double weights[] = {68.5, 67.0, 66.5, 65.0, 64.5};
  const char folder[] = {(char)KorvelEscape, (char)KorvelBlueOpenFolderEscape};
  CGrafPtr port = KorvelImagePort(kWidth, kHeight);
  if (!port) return 1;
  drawHeading(port, folder, "Lefèvre Françoise");
  ch_font_set(port, "Arial", KorvelBlack, KorvelTransparent, 13);
  drawMeasure(port, 70, "Poids (kg)", "64,5");
  drawMeasure(port, 92, "Taille (m)", "1,68");
  drawMeasure(port, 114, "Pouls", "72");
  drawMeasure(port, 136, "Température (°C)", "37,1");
  drawCurve(port, weights, 5);
  int saved = KorvelPortSave(port, "drawing.png");
  KorvelPortRelease(port);
  puts(saved ? "drawing.png" : "Le dessin ne peut pas être écrit.");
  return saved ? 0 : 1;
}
