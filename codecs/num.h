// For codecs/, dates/ and tables/: numbers of a fixed width, without terminator.
#ifndef KORVEL_CODECS_NUM_H
#define KORVEL_CODECS_NUM_H

#include <cstdint>
#include <span>
#include <string_view>

#include "codecs/integer.h"

namespace korvel::codecs {

// Fills `destination` with the value. The codes are those of LongToNUM.
int writeNum(int value, std::span<char> destination);

// Reads a number from 0 to `limit`. The codes are those of NUMToLong; 11, too, for a run without
// data and where there is no `result`.
int readNum(std::string_view num, int *result, std::uint32_t limit = kLimit32);

}  // namespace korvel::codecs

#endif
