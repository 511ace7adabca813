// SPDX-License-Identifier: MIT
// For dialogs/ and platform/: the screen set, in which text crosses the seam.
//
// A byte below 0x80 is ASCII. The seven bytes 0x88 0x8D 0x8E 0x8F 0x90 0x95 0xA1 are the Mac
// characters à ç é è ê ï and the degree sign. Every other byte from 0x80 on is its CP1252
// character. CP1252 leaves 0x81, 0x8D, 0x8F, 0x90 and 0x9D open: those that are no Mac characters
// here are the control characters of the same number.
#ifndef KORVEL_PLATFORM_SCREENTEXT_H
#define KORVEL_PLATFORM_SCREENTEXT_H

#include <optional>
#include <string>
#include <string_view>

namespace korvel::platform {

// The character that a byte shows.
char16_t characterOf(unsigned char byte);

// The byte that typing a character gives: the Mac byte of à ç è é and the degree sign, the CP1252
// byte of every other character (ê and ï, too). Nothing for a character without a byte of its own,
// such as one whose CP1252 byte is among the seven above.
std::optional<unsigned char> byteOf(char16_t character);

std::u16string toCharacters(std::string_view screenText);

// The bytes of a text read back from the screen. A character without a byte, which no item accepts,
// becomes "?".
std::string toBytes(std::u16string_view characters);

// The bytes read back after `screenText` was shown.
std::string asReadBack(std::string_view screenText);

}  // namespace korvel::platform

#endif
