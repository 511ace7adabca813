// SPDX-License-Identifier: MIT
// For codecs/, dates/ and tables/: numbers of a fixed width, without terminator.
#ifndef KORVEL_CODECS_NUM_H
#define KORVEL_CODECS_NUM_H

#include <cstdint>
#include <span>
#include <string_view>

#include "codecs/integer.h"

namespace korvel::codecs {

// Fills `destination` with the value. Returns the code of LongToNUM.
int writeNum(int value, std::span<char> destination);

// Reads a number from 0 to `limit`. Returns the code of NUMToLong, with 11 for a run without data
// and for a null `result`, too.
int readNum(std::string_view num, int *result, std::uint32_t limit = kLimit32);

}  // namespace korvel::codecs

#endif
