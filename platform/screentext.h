// For dialogs/, platform/ and the tests: the screen set, in which text crosses the seam.
//
// A byte below 0x80 is ASCII. The seven bytes 0x88 0x8D 0x8E 0x8F 0x90 0x95 0xA1 are the Mac
// characters à ç é è ê ï and the degree sign. Every other byte of 0x80 and above is its CP1252
// character; the five that CP1252 leaves open (0x81, 0x8D, 0x8F, 0x90, 0x9D; three of them are Mac
// characters here) stand for the control characters of the same number.
#ifndef KORVEL_PLATFORM_SCREENTEXT_H
#define KORVEL_PLATFORM_SCREENTEXT_H

#include <optional>
#include <string>
#include <string_view>

namespace korvel::platform {

// The character that a byte shows as.
char16_t characterOf(unsigned char byte);

// The byte that a typed character comes back as: à ç è é and the degree sign as their Mac bytes,
// every other one as its CP1252 byte (ê and ï too). Nothing for a character without a byte of its
// own, such as one whose CP1252 byte is among the seven above.
std::optional<unsigned char> byteOf(char16_t character);

std::u16string toCharacters(std::string_view screenText);

// The bytes of a text read back from the screen; a character without a byte, which no item lets
// in, becomes "?".
std::string toBytes(std::u16string_view characters);

// What `screenText` would be read back as after it was shown.
std::string asReadBack(std::string_view screenText);

}  // namespace korvel::platform

#endif
