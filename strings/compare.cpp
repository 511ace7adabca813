// Comparison of counted byte runs, exact and with wildcards, and search of one in another.
#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

#include "strings/scan.h"

namespace {

using korvel::strings::Block;

struct Run {
  const char *bytes;
  int length;

  bool endsWithStar() const { return bytes[length - 1] == '*'; }
  // i < length; there is no byte in front of the run.
  bool hasStarAt(int i) const { return i >= 0 && bytes[i] == '*'; }
};

bool areRuns(Run a, Run b) {
  return a.bytes != nullptr && b.bytes != nullptr && a.length >= 1 && b.length >= 1;
}

// A trailing star of `a` decides as soon as `b` holds all bytes in front of it.
bool starDecides(Run a, Run b) { return a.endsWithStar() && a.length - 1 <= b.length; }

constexpr int kDifferentLengths = -1;

// How many bytes of the two runs have to agree.
int comparedLength(Run a, Run b) {
  if (starDecides(a, b)) {
    const int front = a.length - 1;
    // Kept: only a star of b under the last byte before the star of a is left out.
    return b.hasStarAt(front - 1) ? front - 1 : front;
  }
  if (starDecides(b, a)) return b.length - 1;
  return a.length == b.length ? a.length : kDifferentLengths;
}

bool agree(Run a, Run b, int n) {
  return korvel::strings::agreeWithJokers<Block>(a.bytes, b.bytes, static_cast<std::size_t>(n));
}

}  // namespace

int szcomp(const char *a, int la, const char *b, int lb) {
  if (!areRuns({a, la}, {b, lb}) || la != lb) return 0;
  return std::memcmp(a, b, static_cast<std::size_t>(la)) == 0 ? 1 : 0;
}

int szcompex(const char *a, int la, const char *b, int lb) {
  if (!areRuns({a, la}, {b, lb}) || la != lb) return 0;
  return agree({a, la}, {b, lb}, la) ? 1 : 0;
}

int szcompex2(const char *a, int la, const char *b, int lb) {
  if (!areRuns({a, la}, {b, lb})) return 0;
  const int n = comparedLength({a, la}, {b, lb});
  if (n == kDifferentLengths) return 0;
  return agree({a, la}, {b, lb}, n) ? 1 : 0;
}

int szincl(const char *p, int lp, const char *s, int ls) {
  if (!areRuns({p, lp}, {s, ls}) || lp > ls) return 0;
  return korvel::strings::containsRun<Block>(p, static_cast<std::size_t>(lp), s,
                                             static_cast<std::size_t>(ls))
             ? 1
             : 0;
}
