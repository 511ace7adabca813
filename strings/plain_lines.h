// SPDX-License-Identifier: MIT
// For strings/, tables/ and profile/: the lines of a text that a rewriting copies as they are.
#ifndef KORVEL_STRINGS_PLAIN_LINES_H
#define KORVEL_STRINGS_PLAIN_LINES_H

#include <cstddef>
#include <string_view>

namespace korvel::strings {

// The plain lines at the front of some lines: those that end with "\r\n", hold no other carriage
// return or line feed and have at most `limit` characters. May stop after fewer, but not before the
// first of them.
std::string_view plainLines(std::string_view lines, std::size_t limit);

}  // namespace korvel::strings

#endif
