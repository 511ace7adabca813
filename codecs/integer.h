// For codecs/ only: the integer codec behind the exported functions.
#ifndef KORVEL_CODECS_INTEGER_H
#define KORVEL_CODECS_INTEGER_H

#include <cstdint>

namespace korvel::codecs {

inline constexpr std::uint32_t kLimit16 = 32767;
inline constexpr std::uint32_t kLimit32 = 2147483647;

// Room for every 32-bit integer and its terminator.
inline constexpr int kIntegerSize = 12;

// Trims the text in place and reads a magnitude of 0 to `limit`; the codes are those of intcod_l.
int readInteger(char *text, std::uint32_t limit, int *value);

// Writes the value; the codes are those of intdco_l with `safeSize`, at most kIntegerSize, as the
// capacity from which a fitting text is not kBelowSafeSize.
int writeInteger(int value, char *buffer, int capacity, int safeSize);

}  // namespace korvel::codecs

#endif
