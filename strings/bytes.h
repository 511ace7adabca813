// For strings/ only: how a character handed over as an int meets the bytes of a text.
#ifndef KORVEL_STRINGS_BYTES_H
#define KORVEL_STRINGS_BYTES_H

namespace korvel::strings {

// True when c equals a byte that a text can hold: bytes are signed, and the terminator is none.
inline bool isTextByte(int c) { return c >= -128 && c <= 127 && c != 0; }

}  // namespace korvel::strings

#endif
