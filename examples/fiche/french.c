/* SPDX-License-Identifier: MIT */
/* Texts of the sources for the library; capitals and order of CP1252, by tables of its own: no
   locale is needed. */
#include "french.h"

#include <string.h>

#include <korvel/strings.h>

char *french(const char *utf8) {
  static char buffers[8][256];
  static unsigned turn;
  char *result = buffers[turn++ % 8];
  if (KorvelFromUtf8(utf8, result, sizeof buffers[0]) < 0) result[0] = '\0';
  return result;
}

static char capitalOf(unsigned char byte) {
  if (byte >= 'a' && byte <= 'z') return (char)(byte - 'a' + 'A');
  if (byte >= 0xE0 && byte != 0xF7 && byte != 0xFF) return (char)(byte - 0x20);
  if (byte == 0xFF) return (char)0x9F;
  if (byte == 0x9A || byte == 0x9C || byte == 0x9E) return (char)(byte - 0x10);
  return (char)byte;
}

void capitals(const char *cp1252, char *out, int size) {
  int length = 0;
  for (; *cp1252 && length < size - 1; cp1252++) out[length++] = capitalOf((unsigned char)*cp1252);
  out[length] = '\0';
}

/* The letter of a capital, without its accent. */
static char letterOf(unsigned char capital) {
  /* The capitals of 0xC0 to 0xDE; ligatures and other signs stay. */
  static const char kLetters[] =
      "AAAAAA\xC6"
      "CEEEEIIII\xD0NOOOOO\xD7OUUUUY\xDE";
  if (capital == 0x9F) return 'Y';
  if (capital >= 0xC0 && capital <= 0xDE) return kLetters[capital - 0xC0];
  return (char)capital;
}

void withoutAccents(char *capitals) {
  for (; *capitals; capitals++) *capitals = letterOf((unsigned char)*capitals);
}

/* What official lists write for a capital: one letter or two, or a blank. */
static const char *plainFormOf(unsigned char capital) {
  static char letter[2];
  if (capital == 0xC6) return "AE";
  if (capital == 0x8C) return "OE";
  if (capital == '-' || capital == '\'' || capital == 0x92) return " ";
  letter[0] = letterOf(capital);
  return letter;
}

void plainCapitals(const char *cp1252, char *out, int size) {
  int length = 0;
  for (; *cp1252; cp1252++) {
    const char *form = plainFormOf((unsigned char)capitalOf((unsigned char)*cp1252));
    for (; *form && length < size - 1; form++) out[length++] = *form;
  }
  out[length] = '\0';
}

int frenchOrder(const char *a, const char *b) {
  char plainA[256], plainB[256];
  plainCapitals(a, plainA, sizeof plainA);
  plainCapitals(b, plainB, sizeof plainB);
  int order = strcmp(plainA, plainB);
  return order != 0 ? order : strcmp(a, b);
}
