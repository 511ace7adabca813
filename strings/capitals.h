// For strings/ and its tests only: upper-casing in steps of 32 bytes, on machines that can.
#ifndef KORVEL_STRINGS_CAPITALS_H
#define KORVEL_STRINGS_CAPITALS_H

#include <cstddef>

namespace korvel::strings {

// Capitalises the first bytes among the n at s, as `capitalise` would. Returns how many: all but
// the last few of a long text, 0 where the text is short or the machine has no such instructions.
std::size_t capitaliseWide(char *s, std::size_t n);

}  // namespace korvel::strings

#endif
