// SPDX-License-Identifier: MIT
// The tables of the screen set, which belong to no toolkit.
#include "platform/screentext.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/cp1252.h"

namespace korvel::platform {
namespace {

struct MacByte {
  unsigned char byte;
  char16_t character;
  bool isTyped;  // typing the character gives this byte
};

constexpr MacByte kMacBytes[] = {
    {0x88, u'à', true}, {0x8D, u'ç', true},  {0x8E, u'é', true},  {0x8F, u'è', true},
    {0xA1, u'°', true}, {0x90, u'ê', false}, {0x95, u'ï', false},
};

constexpr bool isMacByte(unsigned byte) {
  return std::any_of(std::begin(kMacBytes), std::end(kMacBytes),
                     [byte](const MacByte &mac) { return mac.byte == byte; });
}

constexpr std::array<char16_t, 256> charactersOfBytes() {
  std::array<char16_t, 256> characters{};
  for (unsigned byte = 0; byte < characters.size(); ++byte)
    characters[byte] = base::characterOfCp1252(static_cast<unsigned char>(byte));
  for (const MacByte &mac : kMacBytes) characters[mac.byte] = mac.character;
  return characters;
}

constexpr std::array<char16_t, 256> kCharacters = charactersOfBytes();

std::optional<unsigned char> typedMacByteOf(char16_t character) {
  for (const MacByte &mac : kMacBytes)
    if (mac.isTyped && mac.character == character) return mac.byte;
  return std::nullopt;
}

}  // namespace

char16_t characterOf(unsigned char byte) { return kCharacters[byte]; }

std::optional<unsigned char> byteOf(char16_t character) {
  if (character < 0x80) return static_cast<unsigned char>(character);
  if (const auto mac = typedMacByteOf(character)) return mac;
  const auto byte = base::cp1252ByteOf(character);
  if (byte && isMacByte(*byte)) return std::nullopt;
  return byte;
}

std::u16string toCharacters(std::string_view screenText) {
  std::u16string characters(screenText.size(), u'\0');
  std::transform(screenText.begin(), screenText.end(), characters.begin(),
                 [](char byte) { return characterOf(static_cast<unsigned char>(byte)); });
  return characters;
}

std::string toBytes(std::u16string_view characters) {
  std::string bytes(characters.size(), '\0');
  std::transform(characters.begin(), characters.end(), bytes.begin(), [](char16_t character) {
    return static_cast<char>(byteOf(character).value_or('?'));
  });
  return bytes;
}

std::string asReadBack(std::string_view screenText) { return toBytes(toCharacters(screenText)); }

}  // namespace korvel::platform
