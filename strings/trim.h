// SPDX-License-Identifier: MIT
// For strings/ and codecs/: trimming of terminated texts in place.
#ifndef KORVEL_STRINGS_TRIM_H
#define KORVEL_STRINGS_TRIM_H

namespace korvel::strings {

// Removes every `c` at the end, or at the start, of the text. A `c` that cannot be in a text (0, or
// outside the range of a signed byte) removes nothing. Returns the new length.
int trimEnd(char *s, int c);
int trimStart(char *s, int c);

inline void trimBlanks(char *s) {
  trimEnd(s, ' ');
  trimStart(s, ' ');
}

}  // namespace korvel::strings

#endif
