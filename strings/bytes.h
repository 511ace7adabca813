// SPDX-License-Identifier: MIT
// For strings/: how a character argument, an int, compares with the bytes of a text.
#ifndef KORVEL_STRINGS_BYTES_H
#define KORVEL_STRINGS_BYTES_H

namespace korvel::strings {

// True for the signed value of a byte other than the terminator.
inline bool isTextByte(int c) { return c >= -128 && c <= 127 && c != 0; }

}  // namespace korvel::strings

#endif
