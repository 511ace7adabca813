// SPDX-License-Identifier: MIT
// UTF-8, in which sources are written, to CP1252, which the library reads, and back. Both measure
// first: a buffer that is too small stays as it was, and one buffer can be both.
#include <bit>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

#include <korvel/strings.h>

#include "base/cp1252.h"
#include "base/views.h"
#include "strings/misuse.h"

namespace korvel::strings {

namespace {

using namespace korvel::base;

constexpr int kTooSmall = -1;

struct Utf8Character {
  char32_t number;
  std::size_t length;
};

// A byte that is no part of a character; no byte of CP1252 stands for this one.
constexpr Utf8Character kStrayByte = {0xFFFD, 1};

// Whether the form of `length` bytes is the shortest for this number, and the number a character's.
// A form that the end of the text cuts has too small a number.
bool isCharacter(char32_t number, std::size_t length) {
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  constexpr char32_t kGreatest = 0x10FFFF;
  const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
  return number >= kLeast[length] && number <= kGreatest && !isSurrogate;
}

// The character in front of a text that is not empty.
Utf8Character firstCharacter(std::string_view text) {
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

template <typename Use>
void eachCharacter(std::string_view text, Use use) {
  while (!text.empty()) {
    const Utf8Character first = firstCharacter(text);
    use(first.number);
    text.remove_prefix(first.length);
  }
}

// The number of characters without a byte. From the front: what is written is never in front of
// what is still to be read, in one buffer.
int fromUtf8(std::string_view text, std::span<char> out) {
  std::size_t needed = 0;
  eachCharacter(text, [&](char32_t) { ++needed; });
  if (needed >= out.size()) return kTooSmall;
  int lost = 0;
  char *place = out.data();
  eachCharacter(text, [&](char32_t character) {
    const auto byte = cp1252ByteOf(character);
    if (!byte) ++lost;
    *place++ = static_cast<char>(byte.value_or('?'));
  });
  *place = '\0';
  return lost;
}

// The characters of CP1252 take three bytes at most.
constexpr std::size_t utf8Length(char16_t character) {
  return character < 0x80 ? 1 : character < 0x800 ? 2 : 3;
}

// Writes the character's bytes in front of `end`, and returns where they begin.
char *putInFront(char *end, char16_t character) {
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

char16_t characterOf(char byte) { return characterOfCp1252(static_cast<unsigned char>(byte)); }

// From the end: what is written is never behind what was read already, in one buffer.
int toUtf8(std::string_view text, std::span<char> out) {
  std::size_t needed = 0;
  for (const char byte : text) needed += utf8Length(characterOf(byte));
  if (needed >= out.size()) return kTooSmall;
  char *place = out.data() + needed;
  *place = '\0';
  for (; !text.empty(); text.remove_suffix(1)) place = putInFront(place, characterOf(text.back()));
  return 0;
}

}  // namespace

}  // namespace korvel::strings

using namespace korvel::base;
using namespace korvel::strings;

int KorvelFromUtf8(const char *utf8, char *out, int size) {
  const int lost = utf8 != nullptr ? fromUtf8(utf8, roomOf(out, size)) : kTooSmall;
  lookForMisuse([=] {
    needsConversion(Call("KorvelFromUtf8", {filled(utf8), filled(out), size}), size, lost >= 0);
  });
  return lost;
}

int KorvelToUtf8(const char *text, char *out, int size) {
  lookForMisuse([=] {
    needsCp1252(Call("KorvelToUtf8", {text, filled(out), size}), "the text", textOf(text));
  });
  const int lost = text != nullptr ? toUtf8(text, roomOf(out, size)) : kTooSmall;
  lookForMisuse([=] {
    needsConversion(Call("KorvelToUtf8", {filled(text), filled(out), size}), size, lost >= 0);
  });
  return lost;
}
