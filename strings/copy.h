// SPDX-License-Identifier: MIT
// For strings/, codecs/, tables/ and dialogs/: copies into buffers of a given capacity.
#ifndef KORVEL_STRINGS_COPY_H
#define KORVEL_STRINGS_COPY_H

#include <span>
#include <string_view>

namespace korvel::strings {

// Nothing is written after `d`. `source` may overlap it. Each is true when all of `source` and the
// terminator fit.

// Copies what fits in front of a terminator.
bool copyTerminated(std::span<char> d, std::string_view source);

// Copies the whole text and terminates it, or changes nothing.
bool copyWhole(std::span<char> d, std::string_view source);

// Appends the whole text to the one in `d` and terminates it, or changes nothing.
bool appendWhole(std::span<char> d, std::string_view source);

}  // namespace korvel::strings

#endif
