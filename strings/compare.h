// SPDX-License-Identifier: MIT
// For strings/, tables/ and dialogs/: comparison of texts and byte runs.
#ifndef KORVEL_STRINGS_COMPARE_H
#define KORVEL_STRINGS_COMPARE_H

#include <cstddef>
#include <string_view>

namespace korvel::strings {

// True when the n bytes at a and b agree; a '?' in either agrees with any byte.
bool agree(const char *a, const char *b, std::size_t n);

// An empty run matches nothing.
inline bool matches(std::string_view a, std::string_view b) {
  return !a.empty() && a.size() == b.size() && agree(a.data(), b.data(), a.size());
}

// As matches; a '*' at the end of a run matches any rest. Where both runs end in one, `a` decides.
bool matchesWithStar(std::string_view a, std::string_view b);

// a[i] - b[i] of the first bytes that differ, as signed bytes; 0 for equal texts.
int difference(const char *a, const char *b);

}  // namespace korvel::strings

#endif
