// For strings/ only: how a character argument, an int, compares with the bytes of a text.
#ifndef KORVEL_STRINGS_BYTES_H
#define KORVEL_STRINGS_BYTES_H

namespace korvel::strings {

// Bytes are signed, and the terminator is no byte of the text.
inline bool isTextByte(int c) { return c >= -128 && c <= 127 && c != 0; }

}  // namespace korvel::strings

#endif
