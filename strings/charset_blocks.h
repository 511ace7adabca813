// For strings/ and its tests only: the loops over blocks behind the two character-set conversions
// and the capitals.
#ifndef KORVEL_STRINGS_CHARSET_BLOCKS_H
#define KORVEL_STRINGS_CHARSET_BLOCKS_H

#include <bit>
#include <cstddef>
#include <cstdint>

#include "strings/blocks.h"
#include "strings/macroman.h"

namespace korvel::strings {

// Calls step(place, count) for the n bytes at s, kBlock bytes at a time and the rest at the end.
template <typename Step>
void overBlocks(char *s, std::size_t n, Step step) {
  const std::size_t rest = n % kBlock;
  for (char *end = s + (n - rest); s != end; s += kBlock) step(s, kBlock);
  if (rest != 0) step(s, rest);
}

template <typename AnyBlock>
AnyBlock isByte(AnyBlock b, char c) {
  return b == AnyBlock::filled(c);
}

// The exclusive or of `from` and `to`.
template <typename AnyBlock>
AnyBlock change(char from, char to) {
  return AnyBlock::filled(static_cast<char>(from ^ to));
}

// From CP1252. The bytes without a change stay. The e with grave and with
// acute share one; so do the e with circumflex and the i with diaeresis.
template <typename AnyBlock>
void convertBlocksToMac(char *s, std::size_t n) {
  overBlocks(s, n, [](char *place, std::size_t count) {
    const AnyBlock b = AnyBlock::load(place, count);
    const AnyBlock changes =
        (isByte(b, '\xB0') & change<AnyBlock>('\xB0', '\xA1')) |
        (isByte(b, '\xE0') & change<AnyBlock>('\xE0', '\x88')) |
        (isByte(b, '\xE7') & change<AnyBlock>('\xE7', '\x8D')) |
        ((isByte(b, '\xE8') | isByte(b, '\xE9')) & change<AnyBlock>('\xE8', '\x8F')) |
        ((isByte(b, '\xEA') | isByte(b, '\xEF')) & change<AnyBlock>('\xEA', '\x90'));
    (b ^ changes).store(place, count);
  });
}

// To CP1252. Kept: e circumflex and i diaeresis go to the Mac set and are never brought back.
template <typename AnyBlock>
void convertBlocksToWindows(char *s, std::size_t n) {
  overBlocks(s, n, [](char *place, std::size_t count) {
    const AnyBlock b = AnyBlock::load(place, count);
    const AnyBlock changes =
        (isByte(b, '\xA1') & change<AnyBlock>('\xA1', '\xB0')) |
        (isByte(b, '\x88') & change<AnyBlock>('\x88', '\xE0')) |
        (isByte(b, '\x8D') & change<AnyBlock>('\x8D', '\xE7')) |
        ((isByte(b, '\x8F') | isByte(b, '\x8E')) & change<AnyBlock>('\x8F', '\xE8'));
    (b ^ changes).store(place, count);
  });
}

// The ASCII letters of a block as capitals. 'z' is shifted up to 127, the largest signed byte: one
// signed comparison then finds 'a' to 'z'.
template <typename AnyBlock>
AnyBlock asciiCapitals(AnyBlock b) {
  constexpr char kShift = '\x7F' - 'z';
  const AnyBlock isSmall =
      b + AnyBlock::filled(kShift) > AnyBlock::filled(static_cast<char>('a' - 1 + kShift));
  return b ^ (isSmall & AnyBlock::filled('a' ^ 'A'));
}

// Looks up the bytes of s whose bits are set in `marked`.
inline void capitaliseMarked(char *s, std::uint64_t marked) {
  for (; marked != 0; marked &= marked - 1) {
    char &c = s[std::countr_zero(marked)];
    c = plainCapital(c);
  }
}

inline constexpr std::size_t kStretch = 4 * kBlock;

// Four blocks at once: a single test rules out accents in all of them.
template <typename AnyBlock>
void capitaliseStretch(char *s) {
  const AnyBlock b0 = AnyBlock::load(s, kBlock);
  const AnyBlock b1 = AnyBlock::load(s + kBlock, kBlock);
  const AnyBlock b2 = AnyBlock::load(s + 2 * kBlock, kBlock);
  const AnyBlock b3 = AnyBlock::load(s + 3 * kBlock, kBlock);
  asciiCapitals(b0).store(s, kBlock);
  asciiCapitals(b1).store(s + kBlock, kBlock);
  asciiCapitals(b2).store(s + 2 * kBlock, kBlock);
  asciiCapitals(b3).store(s + 3 * kBlock, kBlock);
  if ((b0 | b1 | b2 | b3).mask() == 0) return;
  const std::uint64_t front = b0.mask() | (b1.mask() << kBlock);
  const std::uint64_t back = b2.mask() | (b3.mask() << kBlock);
  capitaliseMarked(s, front | (back << (2 * kBlock)));
}

// ASCII letters are changed by blocks, every other byte is looked up.
template <typename AnyBlock>
void capitaliseBlocks(char *s, std::size_t n) {
  const std::size_t rest = n % kStretch;
  for (const char *end = s + (n - rest); s != end; s += kStretch) capitaliseStretch<AnyBlock>(s);
  overBlocks(s, rest, [](char *place, std::size_t count) {
    const AnyBlock b = AnyBlock::load(place, count);
    asciiCapitals(b).store(place, count);
    if (b.mask() == 0) return;
    if (count == kBlock) return capitaliseMarked(place, b.mask());
    for (std::size_t i = 0; i < count; ++i) place[i] = plainCapital(place[i]);
  });
}

}  // namespace korvel::strings

#endif
