// SPDX-License-Identifier: MIT
// For strings/, draw/, messages/ and dialogs/: texts of the application (CP1252) as the screen
// takes them (Mac OS Roman), and back.
#ifndef KORVEL_STRINGS_CHARSETS_H
#define KORVEL_STRINGS_CHARSETS_H

#include <span>
#include <string>
#include <string_view>

namespace korvel::strings {

// In place, all bytes of the span.
void convertToMac(std::span<char> text);
void convertToWindows(std::span<char> text);

std::string toMac(std::string_view text);
std::string toWindows(std::string text);

}  // namespace korvel::strings

#endif
