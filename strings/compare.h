// For strings/, tables/ and dialogs/: comparison of texts and byte runs, and search in them.
#ifndef KORVEL_STRINGS_COMPARE_H
#define KORVEL_STRINGS_COMPARE_H

#include <string_view>

#include "strings/scan.h"

namespace korvel::strings {

// An empty run equals nothing, matches nothing and is found nowhere.

inline bool areEqual(std::string_view a, std::string_view b) { return !a.empty() && a == b; }

// '?' in either run matches any byte.
inline bool matches(std::string_view a, std::string_view b) {
  return !a.empty() && a.size() == b.size() && agreeWithJokers<Block>(a.data(), b.data(), a.size());
}

// As matches; a '*' at the end of a run matches any rest. Where both runs end in one, `a` decides.
bool matchesWithStar(std::string_view a, std::string_view b);

bool contains(std::string_view s, std::string_view run);

// a[i] - b[i] of the first bytes that differ, as signed bytes; 0 for equal texts.
int difference(const char *a, const char *b);

}  // namespace korvel::strings

#endif
