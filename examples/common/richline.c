/* SPDX-License-Identifier: MIT */
/* Escapes and their arguments as bytes (draw.h). */
#include "richline.h"

#include <string.h>

void lineStart(RichLine *line) { line->length = 0; }

static void put(RichLine *line, const char *bytes, int count) {
  if (count > (int)sizeof line->bytes - line->length) return;
  memcpy(line->bytes + line->length, bytes, (size_t)count);
  line->length += count;
}

void lineText(RichLine *line, const char *text) { put(line, text, (int)strlen(text)); }

void lineEscape(RichLine *line, int code) {
  const char bytes[] = {(char)KorvelEscape, (char)code};
  put(line, bytes, sizeof bytes);
}

/* Two bytes, the lower one first, each 32 above what it counts. */
static void putDistance(RichLine *line, int distance) {
  const char bytes[] = {(char)(distance % 224 + 32), (char)(distance / 224 + 32)};
  put(line, bytes, sizeof bytes);
}

static void putPlace(RichLine *line, int code, int halfCharacters, int quarterLines) {
  lineEscape(line, code);
  putDistance(line, halfCharacters);
  putDistance(line, quarterLines);
}

void lineTab(RichLine *line, int halfCharacters) {
  lineEscape(line, KorvelWideTabEscape);
  putDistance(line, halfCharacters);
}

void lineTabEvery(RichLine *line, int halfCharacters) {
  lineEscape(line, KorvelWideTabEveryEscape);
  putDistance(line, halfCharacters);
}

void linePen(RichLine *line, int halfCharacters, int quarterLines) {
  putPlace(line, KorvelWidePenEscape, halfCharacters, quarterLines);
}

void lineDrawTo(RichLine *line, int halfCharacters, int quarterLines) {
  putPlace(line, KorvelWideLineEscape, halfCharacters, quarterLines);
}

void lineFrameTo(RichLine *line, int halfCharacters, int quarterLines) {
  putPlace(line, KorvelWideFrameEscape, halfCharacters, quarterLines);
}

void lineDraw(const RichLine *line, CGrafPtr port, int x, int y) {
  TextOut_Ext(port, 0, 0, x, y, line->bytes, line->length);
}
