/* SPDX-License-Identifier: MIT */
/* Bytes, capitals and order of CP1252, by tables of its own: no locale is needed. */
#include "french.h"

#include <string.h>

/* The characters of the bytes 0x80 to 0x9F; 0 where CP1252 has none. The other bytes of 0x80 and
   above are the characters of the same number. */
static const unsigned kUpper[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

static unsigned characterOf(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? kUpper[byte - 0x80] : byte;
}

static char byteOf(unsigned character) {
  for (unsigned byte = 0; byte < 256; byte++)
    if (characterOf((unsigned char)byte) == character) return (char)byte;
  return '?';
}

char *french(const char *utf8) {
  static char buffers[8][256];
  static unsigned turn;
  char *result = buffers[turn++ % 8], *out = result;
  const unsigned char *in = (const unsigned char *)utf8;
  while (*in && out < result + 255) {
    unsigned character = *in++;
    unsigned following = character >= 0xE0 ? 2 : character >= 0xC0 ? 1 : 0;
    if (following > 0) character &= following == 2 ? 0x0F : 0x1F;
    for (; following > 0 && *in; following--) character = character << 6 | (*in++ & 0x3F);
    *out++ = byteOf(character);
  }
  *out = '\0';
  return result;
}

int utf8(const char *cp1252, char *out, int size) {
  for (; *cp1252 && size > 3; cp1252++) {
    unsigned character = characterOf((unsigned char)*cp1252);
    unsigned length = character < 0x80 ? 1 : character < 0x800 ? 2 : 3;
    static const unsigned char kLead[] = {0, 0, 0xC0, 0xE0};
    for (unsigned i = length - 1; i > 0; i--) {
      out[i] = (char)(0x80 | (character & 0x3F));
      character >>= 6;
    }
    out[0] = (char)(kLead[length] | character);
    out += length;
    size -= (int)length;
  }
  *out = '\0';
  return *cp1252 == '\0';
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
