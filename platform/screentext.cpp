// SPDX-License-Identifier: MIT
// The tables of the screen set, which belong to no toolkit.
#include "platform/screentext.h"

#include <algorithm>
#include <array>
#include <cstddef>

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

// CP1252 from 0x80 to 0x9F, after the table of the Unicode consortium (CP1252.TXT). Every byte
// outside that range is the character of the same number.
constexpr unsigned kFirstOwn = 0x80;
constexpr std::array<char16_t, 32> kCp1252 = {
    u'€', 0x81, u'‚', u'ƒ', u'„', u'…', u'†', u'‡', u'ˆ', u'‰', u'Š', u'‹', u'Œ', 0x8D, u'Ž', 0x8F,
    0x90, u'‘', u'’', u'“', u'”', u'•', u'–', u'—', u'˜', u'™', u'š', u'›', u'œ', 0x9D, u'ž', u'Ÿ',
};

constexpr bool isMacByte(unsigned byte) {
  return std::any_of(std::begin(kMacBytes), std::end(kMacBytes),
                     [byte](const MacByte &mac) { return mac.byte == byte; });
}

constexpr std::array<char16_t, 256> charactersOfBytes() {
  std::array<char16_t, 256> characters{};
  for (unsigned byte = 0; byte < characters.size(); ++byte)
    characters[byte] = static_cast<char16_t>(byte);
  std::copy(kCp1252.begin(), kCp1252.end(), characters.begin() + kFirstOwn);
  for (const MacByte &mac : kMacBytes) characters[mac.byte] = mac.character;
  return characters;
}

constexpr std::array<char16_t, 256> kCharacters = charactersOfBytes();

std::optional<unsigned char> typedMacByteOf(char16_t character) {
  for (const MacByte &mac : kMacBytes)
    if (mac.isTyped && mac.character == character) return mac.byte;
  return std::nullopt;
}

std::optional<unsigned char> cp1252ByteOf(char16_t character) {
  const auto own = std::find(kCp1252.begin(), kCp1252.end(), character);
  if (own != kCp1252.end())
    return static_cast<unsigned char>(kFirstOwn + static_cast<unsigned>(own - kCp1252.begin()));
  const bool isOutsideOwn = character < 0x80 || (character >= 0xA0 && character <= 0xFF);
  if (isOutsideOwn) return static_cast<unsigned char>(character);
  return std::nullopt;
}

}  // namespace

char16_t characterOf(unsigned char byte) { return kCharacters[byte]; }

std::optional<unsigned char> byteOf(char16_t character) {
  if (character < 0x80) return static_cast<unsigned char>(character);
  if (const auto mac = typedMacByteOf(character)) return mac;
  const auto byte = cp1252ByteOf(character);
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
