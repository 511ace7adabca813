// SPDX-License-Identifier: MIT
// For codecs/, dialogs/ and profile/: the codec of integers behind the exported functions.
#ifndef KORVEL_CODECS_INTEGER_H
#define KORVEL_CODECS_INTEGER_H

#include <cstdint>

namespace korvel::codecs {

inline constexpr std::uint32_t kLimit16 = 32767;
inline constexpr std::uint32_t kLimit32 = 2147483647;

// Room for every integer of 16 bits, or of 32 bits, and its terminator.
inline constexpr int kShortSize = 7;
inline constexpr int kIntegerSize = 12;

// A null pointer counts as an empty text to the readers and as no room to the writer.

// Trims the text in place and reads a magnitude of 0 to `limit`. Returns the code of intcod_l.
int readInteger(char *text, std::uint32_t limit, int *value);

// As readInteger, and 1 for a value below `bound`. Such a value is stored, too.
int readIntegerFrom(int bound, char *text, std::uint32_t limit, int *value);

// Writes the value. Returns the code of intdco_l, with 1 for a capacity below `safeSize`, which is
// at most kIntegerSize.
int writeInteger(int value, char *buffer, int capacity, int safeSize = kIntegerSize);

}  // namespace korvel::codecs

#endif
