// SPDX-License-Identifier: MIT
// For profile/: skips bytes that do not matter to the search for a key.
#ifndef KORVEL_PROFILE_SCAN_H
#define KORVEL_PROFILE_SCAN_H

#include <cstddef>

#include "profile/lines.h"

namespace korvel::profile {

// Returns the first byte of a text that is a '[', a line feed not after a carriage return, or the
// '=' after the key at a line's start; without one, the start of the last partial vector. The key
// is not empty and holds no '\r', '\n' or '['.
const char *scan(Stretch text, Stretch key);

// How many bytes in front of the text are read.
inline std::size_t scanReach(Stretch key) { return key.size() + 2; }

// The same, compiled for every machine and for AVX2.
const char *scanBaseline(Stretch text, Stretch key);
const char *scanAvx2(Stretch text, Stretch key);

}  // namespace korvel::profile

#endif
