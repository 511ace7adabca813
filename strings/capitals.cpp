// SPDX-License-Identifier: MIT
// Texts in capitals: ASCII letters are changed by vectors, every other byte is looked up.
#include "strings/capitals.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include <korvel/strings.h>

#include "strings/misuse.h"
#include "strings/vectors.h"

namespace korvel::strings {

namespace {

// The capital without diacritics of each byte from 0x80 on.
//
// Letters: the Unicode consortium's table of Mac OS Roman (APPLE/ROMAN.TXT). Their capital: the
// first character of the canonical decomposition, in upper case (the Unicode character database).
// So capitals with diacritics lose them, too.
// ae, oe and o with a stroke have no decomposition and stay letters of their own. Dotless i becomes
// I. Sharp s, the ligatures fi and fl, the micro sign, pi, f with a hook and the ordinals have no
// capital of one byte and stay, as do signs and lone accents.
constexpr std::array<unsigned char, 128> kPlainCapitals = {
    // clang-format off
    'A',  'A',  'C',  'E',  'N',  'O',  'U',  'A',  // 80: Ä Å Ç É Ñ Ö Ü á
    'A',  'A',  'A',  'A',  'A',  'C',  'E',  'E',  // 88: à â ä ã å ç é è
    'E',  'E',  'I',  'I',  'I',  'I',  'N',  'O',  // 90: ê ë í ì î ï ñ ó
    'O',  'O',  'O',  'O',  'U',  'U',  'U',  'U',  // 98: ò ô ö õ ú ù û ü
    0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7,  // A0: † ° ¢ £ § • ¶ ß
    0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF,  // A8: ® © ™ ´ ¨ ≠ Æ Ø
    0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6, 0xB7,  // B0: ∞ ± ≤ ≥ ¥ µ ∂ ∑
    0xB8, 0xB9, 0xBA, 0xBB, 0xBC, 0xBD, 0xAE, 0xAF,  // B8: ∏ π ∫ ª º Ω æ ø
    0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC7,  // C0: ¿ ¡ ¬ √ ƒ ≈ ∆ «
    0xC8, 0xC9, 0xCA, 'A',  'A',  'O',  0xCE, 0xCE,  // C8: » … (no-break space) À Ã Õ Œ œ
    0xD0, 0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6, 0xD7,  // D0: – — “ ” ‘ ’ ÷ ◊
    'Y',  'Y',  0xDA, 0xDB, 0xDC, 0xDD, 0xDE, 0xDF,  // D8: ÿ Ÿ ⁄ € ‹ › ﬁ ﬂ
    0xE0, 0xE1, 0xE2, 0xE3, 0xE4, 'A',  'E',  'A',  // E0: ‡ · ‚ „ ‰ Â Ê Á
    'E',  'E',  'I',  'I',  'I',  'I',  'O',  'O',  // E8: Ë È Í Î Ï Ì Ó Ô
    0xF0, 'O',  'U',  'U',  'U',  'I',  0xF6, 0xF7,  // F0: (private sign) Ò Ú Û Ù ı ˆ ˜
    0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF,  // F8: ¯ ˘ ˙ ˚ ¸ ˝ ˛ ˇ
    // clang-format on
};

// Of a byte that is no small ASCII letter.
char plainCapital(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x80 ? c : static_cast<char>(kPlainCapitals[byte - 0x80U]);
}

// The ASCII letters of a vector as capitals. 'z' is shifted up to 127, the largest signed byte: one
// signed comparison then finds 'a' to 'z'.
Vector asciiCapitals(Vector v) {
  constexpr char kShift = '\x7F' - 'z';
  const Vector isSmall =
      v + Vector::broadcast(kShift) > Vector::broadcast(static_cast<char>('a' - 1 + kShift));
  return v ^ (isSmall & Vector::broadcast('a' ^ 'A'));
}

// Looks up the bytes of s whose bits are set in `marked`.
void capitaliseMarked(char *s, std::uint64_t marked) {
  for (; marked != 0; marked &= marked - 1) {
    char &c = s[std::countr_zero(marked)];
    c = plainCapital(c);
  }
}

constexpr std::size_t kStretch = 4 * kVectorSize;

// Four vectors at once: a single test rules out bytes to look up in all of them.
void capitaliseStretch(char *s) {
  std::uint64_t marked = 0;
  for (std::size_t i = 0; i < kStretch; i += kVectorSize) {
    const Vector v = Vector::load(s + i);
    asciiCapitals(v).store(s + i);
    marked |= std::uint64_t{v.moveMask()} << i;
  }
  capitaliseMarked(s, marked);
}

}  // namespace

void capitalise(std::span<char> text) {
  char *s = text.data();
  const std::size_t rest = text.size() % kStretch;
  for (const char *end = s + (text.size() - rest); s != end; s += kStretch) capitaliseStretch(s);
  overVectors(s, rest, [](char *place, std::size_t count) {
    const Vector v = Vector::load(place, count);
    asciiCapitals(v).store(place, count);
    if (v.moveMask() == 0) return;
    if (count == kVectorSize) return capitaliseMarked(place, v.moveMask());
    for (std::size_t i = 0; i < count; ++i) place[i] = plainCapital(place[i]);
  });
}

}  // namespace korvel::strings

using namespace korvel::strings;

char *strupr(char *s) {
  lookForMisuse([=] { Call("strupr", {s}).needsAll(); });
  if (s != nullptr) capitalise({s, std::strlen(s)});
  return s;
}
