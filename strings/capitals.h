// SPDX-License-Identifier: MIT
// For strings/ and tables/: texts in capitals without diacritics.
#ifndef KORVEL_STRINGS_CAPITALS_H
#define KORVEL_STRINGS_CAPITALS_H

#include <span>

namespace korvel::strings {

// In place, all bytes of the span; Mac OS Roman.
void capitalise(std::span<char> text);

}  // namespace korvel::strings

#endif
