// SPDX-License-Identifier: MIT
// For base/, strings/ and platform/: the characters of CP1252, the set of the application's texts.
#ifndef KORVEL_BASE_CP1252_H
#define KORVEL_BASE_CP1252_H

#include <algorithm>
#include <array>
#include <optional>

namespace korvel::base {

// The bytes from 0x80 to 0x9F, after the table of the Unicode consortium (CP1252.TXT). It leaves
// 0x81, 0x8D, 0x8F, 0x90 and 0x9D open: here they are the control characters of the same number.
// Every byte outside that range is the character of the same number, too.
constexpr unsigned kFirstOwn = 0x80;
constexpr std::array<char16_t, 32> kCp1252 = {
    u'€', 0x81, u'‚', u'ƒ', u'„', u'…', u'†', u'‡', u'ˆ', u'‰', u'Š', u'‹', u'Œ', 0x8D, u'Ž', 0x8F,
    0x90, u'‘', u'’', u'“', u'”', u'•', u'–', u'—', u'˜', u'™', u'š', u'›', u'œ', 0x9D, u'ž', u'Ÿ',
};

constexpr char16_t characterOfCp1252(unsigned char byte) {
  const unsigned own = byte - kFirstOwn;
  return own < kCp1252.size() ? kCp1252[own] : byte;
}

// Nothing for a character that CP1252 does not have.
constexpr std::optional<unsigned char> cp1252ByteOf(char32_t character) {
  const bool isOutsideOwn =
      character < kFirstOwn || (character >= kFirstOwn + kCp1252.size() && character <= 0xFF);
  if (isOutsideOwn) return static_cast<unsigned char>(character);
  const auto own = std::find(kCp1252.begin(), kCp1252.end(), character);
  if (own == kCp1252.end()) return std::nullopt;
  return static_cast<unsigned char>(kFirstOwn + static_cast<unsigned>(own - kCp1252.begin()));
}

}  // namespace korvel::base

#endif
