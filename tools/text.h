// SPDX-License-Identifier: MIT
// Texts between the two character sets: tables hold CP1252, everything else is UTF-8.
//
// The five bytes that are no character of CP1252 stand for the controls of the same number, so that
// whatever a table holds comes back as it was.
#ifndef KORVEL_TOOLS_TEXT_H
#define KORVEL_TOOLS_TEXT_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace korvel::tools {

// The bytes of the character that a UTF-8 text begins with; 0 where the text is no UTF-8.
std::size_t firstCharacter(std::string_view text);

// The byte of a character of UTF-8 in CP1252.
std::optional<char> byteOf(std::string_view character);

// Whether a byte is a character of CP1252.
bool isCharacter(char byte);

std::string toUtf8(std::string_view text);

// Thrown for a text that is no UTF-8.
struct NotUtf8 {};

// missing: gives the byte for a character that has none, or throws.
using Missing = std::function<char(std::string_view character)>;
std::string fromUtf8(std::string_view utf8, const Missing &missing);

// A text of a table as messages show it: UTF-8 between quotes, controls by their numbers, and no
// more than a line has room for.
std::string quoted(std::string_view text);

// Any bytes as one line of UTF-8: controls, and what is no UTF-8, by their numbers.
std::string onOneLine(std::string_view text);

// The same text with the capitals of its letters.
std::string capitals(std::string_view text);

}  // namespace korvel::tools

#endif
