// Comparison of texts and counted runs, exact and with wildcards, and search in them. The loops
// over blocks are in scan.h, where the tests reach them for each type of block.
#include "strings/compare.h"

#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

#include "base/views.h"
#include "strings/bytes.h"

namespace korvel::strings {

namespace {

constexpr std::size_t kDifferentLengths = std::string_view::npos;
constexpr int kNotFound = -1;

// A trailing star of `a` decides once `b` holds all bytes in front of it.
bool starDecides(std::string_view a, std::string_view b) {
  return a.back() == '*' && a.size() - 1 <= b.size();
}

// How many bytes of the two runs have to agree.
std::size_t comparedLength(std::string_view a, std::string_view b) {
  if (starDecides(a, b)) {
    const std::size_t front = a.size() - 1;
    // Kept: only a star of b under the last byte before the star of a is left out.
    return front > 0 && b[front - 1] == '*' ? front - 1 : front;
  }
  if (starDecides(b, a)) return b.size() - 1;
  return a.size() == b.size() ? a.size() : kDifferentLengths;
}

// Plain char is unsigned on some machines; these bytes are signed on all.
int signedByte(char c) { return static_cast<signed char>(c); }

int positionOf(const char *found, const char *s) {
  return found == nullptr ? kNotFound : static_cast<int>(found - s);
}

int findText(const char *pattern, const char *s) {
  // Kept: nothing is found in an empty text, not even the empty pattern.
  return *s == '\0' ? kNotFound : positionOf(std::strstr(s, pattern), s);
}

int findByte(int c, const char *s) {
  return isTextByte(c) ? positionOf(std::strchr(s, c), s) : kNotFound;
}

}  // namespace

bool matchesWithStar(std::string_view a, std::string_view b) {
  if (a.empty() || b.empty()) return false;
  const std::size_t n = comparedLength(a, b);
  return n != kDifferentLengths && agreeWithJokers<Block>(a.data(), b.data(), n);
}

bool contains(std::string_view s, std::string_view run) {
  return !run.empty() && run.size() <= s.size() &&
         containsRun<Block>(run.data(), run.size(), s.data(), s.size());
}

int difference(const char *a, const char *b) {
  while (*a == *b && *a != '\0') {
    ++a;
    ++b;
  }
  return signedByte(*a) - signedByte(*b);
}

}  // namespace korvel::strings

using namespace korvel::base;
using namespace korvel::strings;

int szcomp(const char *a, int la, const char *b, int lb) {
  return areEqual(bytesOf(a, la), bytesOf(b, lb)) ? 1 : 0;
}

int szcompex(const char *a, int la, const char *b, int lb) {
  return matches(bytesOf(a, la), bytesOf(b, lb)) ? 1 : 0;
}

int szcompex2(const char *a, int la, const char *b, int lb) {
  return matchesWithStar(bytesOf(a, la), bytesOf(b, lb)) ? 1 : 0;
}

int szincl(const char *p, int lp, const char *s, int ls) {
  return contains(bytesOf(s, ls), bytesOf(p, lp)) ? 1 : 0;
}

int chcomp(const char *a, const char *b) {
  return difference(a != nullptr ? a : "", b != nullptr ? b : "");
}

int chcher(const char *pattern, const char *s) {
  return pattern == nullptr || s == nullptr ? kNotFound : findText(pattern, s);
}

int chcher_c(int c, const char *s) { return s == nullptr ? kNotFound : findByte(c, s); }
