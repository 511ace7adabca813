// SPDX-License-Identifier: MIT
// Comparison of texts and counted runs, exact and with wildcards, and search in them.
#include "strings/compare.h"

#include <bit>
#include <cstddef>
#include <cstring>

#include <korvel/strings.h>

#include "base/views.h"
#include "strings/bytes.h"
#include "strings/misuse.h"
#include "strings/vectors.h"

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

// Looks for a pattern by its first and last byte, sixteen places at a time. Where both agree, the
// bytes between are compared.
class PatternProbe {
 public:
  // 2 <= n
  PatternProbe(const char *pattern, std::size_t n)
      : pattern_(pattern),
        n_(n),
        first_(Vector::broadcast(pattern[0])),
        last_(Vector::broadcast(pattern[n - 1])) {}

  // True when the pattern is at one of the kVectorSize places from s on.
  bool hit(const char *s) const { return anyIs(s, candidates(s)); }
  bool hitInFour(const char *s) const {
    const Vector c0 = candidates(s);
    const Vector c1 = candidates(s + kVectorSize);
    const Vector c2 = candidates(s + 2 * kVectorSize);
    const Vector c3 = candidates(s + 3 * kVectorSize);
    if (((c0 | c1) | (c2 | c3)).moveMask() == 0) return false;
    return anyIs(s, c0) || anyIs(s + kVectorSize, c1) || anyIs(s + 2 * kVectorSize, c2) ||
           anyIs(s + 3 * kVectorSize, c3);
  }
  bool hitAt(const char *place) const {
    return place[0] == pattern_[0] && std::memcmp(place + 1, pattern_ + 1, n_ - 1) == 0;
  }

 private:
  Vector candidates(const char *s) const {
    return (Vector::load(s) == first_) & (Vector::load(s + n_ - 1) == last_);
  }
  bool anyIs(const char *s, Vector candidates) const {
    for (unsigned left = candidates.moveMask(); left != 0; left &= left - 1) {
      const char *place = s + std::countr_zero(left);
      if (std::memcmp(place + 1, pattern_ + 1, n_ - 2) == 0) return true;
    }
    return false;
  }

  const char *pattern_;
  std::size_t n_;
  Vector first_;
  Vector last_;
};

// Up to this length a wrong candidate is dismissed within a few nanoseconds. Beyond it, a pattern
// that resembles itself could cost the square of its length: a search in linear time takes over.
constexpr std::size_t kLongestProbedPattern = 256;

bool contains(std::string_view text, std::string_view run) {
  if (run.empty() || run.size() > text.size()) return false;
  const char *const s = text.data();
  if (run.size() == 1) return text.find(run[0]) != std::string_view::npos;
  if (run.size() > kLongestProbedPattern) {
    return memmem(s, text.size(), run.data(), run.size()) != nullptr;
  }
  const PatternProbe probe(run.data(), run.size());
  const std::size_t places = text.size() - run.size() + 1;
  std::size_t at = 0;
  for (; at + 4 * kVectorSize <= places; at += 4 * kVectorSize) {
    if (probe.hitInFour(s + at)) return true;
  }
  for (; at + kVectorSize <= places; at += kVectorSize) {
    if (probe.hit(s + at)) return true;
  }
  // The last places, with some that were probed before where there are enough.
  if (at < places && places >= kVectorSize) return probe.hit(s + places - kVectorSize);
  for (; at < places; ++at) {
    if (probe.hitAt(s + at)) return true;
  }
  return false;
}

bool areEqual(std::string_view a, std::string_view b) { return !a.empty() && a == b; }

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

bool agree(const char *a, const char *b, std::size_t n) {
  const Vector joker = Vector::broadcast('?');
  const auto agreeing = [&](std::size_t at, std::size_t count) {
    const Vector x = Vector::load(a + at, count);
    const Vector y = Vector::load(b + at, count);
    return (x == y) | (x == joker) | (y == joker);
  };
  std::size_t at = 0;
  for (; at + 4 * kVectorSize <= n; at += 4 * kVectorSize) {
    const Vector front = agreeing(at, kVectorSize) & agreeing(at + kVectorSize, kVectorSize);
    const Vector back =
        agreeing(at + 2 * kVectorSize, kVectorSize) & agreeing(at + 3 * kVectorSize, kVectorSize);
    if ((front & back).moveMask() != Vector::kFullMask) return false;
  }
  for (; at + kVectorSize <= n; at += kVectorSize) {
    if (agreeing(at, kVectorSize).moveMask() != Vector::kFullMask) return false;
  }
  return at == n || agreeing(at, n - at).moveMask() == Vector::kFullMask;
}

bool matchesWithStar(std::string_view a, std::string_view b) {
  if (a.empty() || b.empty()) return false;
  const std::size_t n = comparedLength(a, b);
  return n != kDifferentLengths && agree(a.data(), b.data(), n);
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
  lookForMisuse([=] {
    needsLengths(Call("szcomp", {shownRun(a, la), la, shownRun(b, lb), lb}), {la, lb});
  });
  return areEqual(bytesOf(a, la), bytesOf(b, lb)) ? 1 : 0;
}

int szcompex(const char *a, int la, const char *b, int lb) {
  lookForMisuse([=] {
    needsLengths(Call("szcompex", {shownRun(a, la), la, shownRun(b, lb), lb}), {la, lb});
  });
  return matches(bytesOf(a, la), bytesOf(b, lb)) ? 1 : 0;
}

int szcompex2(const char *a, int la, const char *b, int lb) {
  lookForMisuse([=] {
    needsLengths(Call("szcompex2", {shownRun(a, la), la, shownRun(b, lb), lb}), {la, lb});
  });
  return matchesWithStar(bytesOf(a, la), bytesOf(b, lb)) ? 1 : 0;
}

int szincl(const char *p, int lp, const char *s, int ls) {
  lookForMisuse([=] {
    needsLengths(Call("szincl", {shownRun(p, lp), lp, shownRun(s, ls), ls}), {lp, ls});
  });
  return contains(bytesOf(s, ls), bytesOf(p, lp)) ? 1 : 0;
}

int chcomp(const char *a, const char *b) {
  lookForMisuse([=] { Call("chcomp", {a, b}).needsAll(); });
  return difference(a != nullptr ? a : "", b != nullptr ? b : "");
}

int chcher(const char *pattern, const char *s) {
  lookForMisuse([=] { Call("chcher", {pattern, s}).needsAll(); });
  return pattern == nullptr || s == nullptr ? kNotFound : findText(pattern, s);
}

int chcher_c(int c, const char *s) {
  lookForMisuse([=] { needsCharacter(Call("chcher_c", {c, s}), c); });
  return s == nullptr ? kNotFound : findByte(c, s);
}
