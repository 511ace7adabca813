/* SPDX-License-Identifier: MIT */
/* Builds one line of rich text, piece by piece; shared by the examples. */
#ifndef COMMON_RICHLINE_H
#define COMMON_RICHLINE_H

#include <korvel/draw.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct RichLine {
  char bytes[256];
  int length;
} RichLine;

/* What does not fit any more is left out. Distances are in half characters and quarter lines. An
   escape is one without arguments, as KorvelBulletEscape. */
void lineStart(RichLine *line);
void lineText(RichLine *line, const char *text);
void lineEscape(RichLine *line, int code);
void lineTab(RichLine *line, int halfCharacters);
void lineTabEvery(RichLine *line, int halfCharacters);
void linePen(RichLine *line, int halfCharacters, int quarterLines);
void lineDrawTo(RichLine *line, int halfCharacters, int quarterLines);
void lineFrameTo(RichLine *line, int halfCharacters, int quarterLines);

/* Draws the line with its top left corner at (x, y), pen positions counted from there. */
void lineDraw(const RichLine *line, CGrafPtr port, int x, int y);

#ifdef __cplusplus
}
#endif

#endif
