// SPDX-License-Identifier: MIT
// For base/, strings/ and platform/: the characters of UTF-8, read from the front and written from
// the end.
#ifndef KORVEL_BASE_UTF8_H
#define KORVEL_BASE_UTF8_H

#include <bit>
#include <cstddef>
#include <string_view>

namespace korvel::base {

struct Utf8Character {
  char32_t number;
  std::size_t length;
};

// A byte that is no part of a character; no byte of CP1252 stands for this one.
constexpr Utf8Character kStrayByte = {0xFFFD, 1};

constexpr bool isStray(Utf8Character c) {
  return c.number == kStrayByte.number && c.length == kStrayByte.length;
}

// Whether the form of `length` bytes is the shortest for this number, and the number a character's.
// A form that the end of the text cuts has too small a number.
constexpr bool isCharacter(char32_t number, std::size_t length) {
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  constexpr char32_t kGreatest = 0x10FFFF;
  const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
  return number >= kLeast[length] && number <= kGreatest && !isSurrogate;
}

// The character in front of a text that is not empty.
constexpr Utf8Character firstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const auto length = static_cast<std::size_t>(std::countl_one(lead));
  if (length == 0) return {lead, 1};
  if (length == 1 || length > 4) return kStrayByte;
  char32_t number = lead & (0x7FU >> length);
  for (const char next : text.substr(1, length - 1)) {
    if ((next & 0xC0) != 0x80) return kStrayByte;
    number = number << 6 | (next & 0x3FU);
  }
  return isCharacter(number, length) ? Utf8Character{number, length} : kStrayByte;
}

// Of the characters of CP1252 and of the screen, which take three bytes at most.
constexpr std::size_t utf8Length(char16_t character) {
  return character < 0x80 ? 1 : character < 0x800 ? 2 : 3;
}

// Writes the character's bytes in front of `end`, and returns where they begin.
constexpr char *putInFront(char *end, char16_t character) {
  constexpr unsigned kLeads[] = {0, 0, 0xC0, 0xE0};
  const std::size_t length = utf8Length(character);
  unsigned rest = character;
  for (std::size_t following = 1; following < length; ++following) {
    *--end = static_cast<char>(0x80U | (rest & 0x3FU));
    rest >>= 6;
  }
  *--end = static_cast<char>(kLeads[length] | rest);
  return end;
}

}  // namespace korvel::base

#endif
