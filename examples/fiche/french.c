#include "french.h"

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

void printFrench(FILE *out, const char *cp1252) {
  for (; *cp1252; cp1252++) {
    unsigned character = characterOf((unsigned char)*cp1252);
    if (character < 0x80) {
      fputc((int)character, out);
    } else if (character < 0x800) {
      fprintf(out, "%c%c", 0xC0 | character >> 6, 0x80 | (character & 0x3F));
    } else {
      fprintf(out, "%c%c%c", 0xE0 | character >> 12, 0x80 | (character >> 6 & 0x3F),
              0x80 | (character & 0x3F));
    }
  }
}
