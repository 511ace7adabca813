// For strings/ and its tests only: the walks over a text behind the two character-set conversions
// and the upper-casing.
#ifndef STRINGS_CHARSETS_H
#define STRINGS_CHARSETS_H

#include <cstddef>
#include <cstring>

#include "strings/blocks.h"
#include "strings/macroman.h"

namespace korvel::strings {

// Calls step(place, count) over the n bytes at s, kBlock bytes a step and what remains in the last.
template <typename Step>
void overBlocks(char *s, std::size_t n, Step step) {
  const std::size_t rest = n % kBlock;
  for (char *end = s + (n - rest); s != end; s += kBlock) step(s, kBlock);
  if (rest != 0) step(s, rest);
}

// The two sets differ by one xor per character; what is no such character is xored with 0.
template <typename AnyBlock>
void convertToMac(char *s, std::size_t n) {
  const auto is = [](AnyBlock bytes, char c) { return bytes == AnyBlock::filled(c); };
  const auto by = [](char from, char to) { return AnyBlock::filled(static_cast<char>(from ^ to)); };
  overBlocks(s, n, [&](char *place, std::size_t count) {
    const AnyBlock b = AnyBlock::load(place, count);
    const AnyBlock change = (is(b, '\xB0') & by('\xB0', '\xA1')) |
                            (is(b, '\xE0') & by('\xE0', '\x88')) |
                            (is(b, '\xE7') & by('\xE7', '\x8D')) |
                            ((is(b, '\xE8') | is(b, '\xE9')) & by('\xE8', '\x8F')) |
                            ((is(b, '\xEA') | is(b, '\xEF')) & by('\xEA', '\x90'));
    (b ^ change).store(place, count);
  });
}

template <typename AnyBlock>
void convertFromMac(char *s, std::size_t n) {
  const auto is = [](AnyBlock bytes, char c) { return bytes == AnyBlock::filled(c); };
  const auto by = [](char from, char to) { return AnyBlock::filled(static_cast<char>(from ^ to)); };
  overBlocks(s, n, [&](char *place, std::size_t count) {
    const AnyBlock b = AnyBlock::load(place, count);
    const AnyBlock change = (is(b, '\xA1') & by('\xA1', '\xB0')) |
                            (is(b, '\x88') & by('\x88', '\xE0')) |
                            (is(b, '\x8D') & by('\x8D', '\xE7')) |
                            ((is(b, '\x8F') | is(b, '\x8E')) & by('\x8F', '\xE8'));
    (b ^ change).store(place, count);
  });
}

// ASCII letters are turned by blocks; a block with other letters goes through the table.
template <typename AnyBlock>
void capitalise(char *s, std::size_t n) {
  const AnyBlock beforeA = AnyBlock::filled('a' - 1);
  const AnyBlock afterZ = AnyBlock::filled('z' + 1);
  const AnyBlock caseBit = AnyBlock::filled('a' ^ 'A');
  overBlocks(s, n, [&](char *place, std::size_t count) {
    const AnyBlock b = AnyBlock::load(place, count);
    if (b.mask() == 0) {
      (b ^ ((b > beforeA) & (afterZ > b) & caseBit)).store(place, count);
    } else {
      for (std::size_t i = 0; i < count; ++i) place[i] = plainCapital(place[i]);
    }
  });
}

}  // namespace korvel::strings

#endif
