// For strings/ and tables/: texts in capitals without diacritics.
#ifndef KORVEL_STRINGS_CAPITALS_H
#define KORVEL_STRINGS_CAPITALS_H

#include <cstddef>
#include <span>

namespace korvel::strings {

// In place, all bytes of the span; Mac OS Roman.
void capitalise(std::span<char> text);

// Its two parts. The first capitalises what it can of the n bytes at s in steps of 64, and returns
// how many: 0 where the text is short or the machine has no 256-bit instructions.
std::size_t capitaliseWide(char *s, std::size_t n);
void capitaliseBlocks(char *s, std::size_t n);

}  // namespace korvel::strings

#endif
