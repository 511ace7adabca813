// For strings/ and its tests only: the loops over blocks behind trimming, comparison and search.
#ifndef KORVEL_STRINGS_SCAN_H
#define KORVEL_STRINGS_SCAN_H

#include <bit>
#include <cstddef>
#include <cstring>

#include "strings/blocks.h"

namespace korvel::strings {

// The length of the n bytes at s without every c at their end.
template <typename AnyBlock>
std::size_t lengthWithoutTail(const char *s, std::size_t n, char c) {
  const AnyBlock tail = AnyBlock::filled(c);
  for (; n >= kBlock; n -= kBlock) {
    const unsigned others = ~(AnyBlock::load(s + n - kBlock, kBlock) == tail).mask() & kWholeBlock;
    if (others != 0) return n - kBlock + static_cast<std::size_t>(std::bit_width(others));
  }
  while (n > 0 && s[n - 1] == c) --n;
  return n;
}

// True when the n bytes at a and b agree; a '?' in either agrees with any byte.
template <typename AnyBlock>
bool agreeWithJokers(const char *a, const char *b, std::size_t n) {
  const AnyBlock joker = AnyBlock::filled('?');
  const auto agreeing = [&](std::size_t at, std::size_t count) {
    const AnyBlock x = AnyBlock::load(a + at, count);
    const AnyBlock y = AnyBlock::load(b + at, count);
    return (x == y) | (x == joker) | (y == joker);
  };
  std::size_t at = 0;
  for (; at + 4 * kBlock <= n; at += 4 * kBlock) {
    const AnyBlock front = agreeing(at, kBlock) & agreeing(at + kBlock, kBlock);
    const AnyBlock back = agreeing(at + 2 * kBlock, kBlock) & agreeing(at + 3 * kBlock, kBlock);
    if ((front & back).mask() != kWholeBlock) return false;
  }
  for (; at + kBlock <= n; at += kBlock) {
    if (agreeing(at, kBlock).mask() != kWholeBlock) return false;
  }
  return at == n || agreeing(at, n - at).mask() == kWholeBlock;
}

// Looks for a pattern by its first and last byte, sixteen places at a time. Where both agree, the
// bytes between are compared.
template <typename AnyBlock>
class PatternProbe {
 public:
  // 2 <= n
  PatternProbe(const char *pattern, std::size_t n)
      : pattern_(pattern),
        n_(n),
        first_(AnyBlock::filled(pattern[0])),
        last_(AnyBlock::filled(pattern[n - 1])) {}

  // True when the pattern is at one of the kBlock places from s on.
  bool hit(const char *s) const { return anyIs(s, candidates(s)); }
  bool hitInFour(const char *s) const {
    const AnyBlock c0 = candidates(s);
    const AnyBlock c1 = candidates(s + kBlock);
    const AnyBlock c2 = candidates(s + 2 * kBlock);
    const AnyBlock c3 = candidates(s + 3 * kBlock);
    if (((c0 | c1) | (c2 | c3)).mask() == 0) return false;
    return anyIs(s, c0) || anyIs(s + kBlock, c1) || anyIs(s + 2 * kBlock, c2) ||
           anyIs(s + 3 * kBlock, c3);
  }
  bool hitAt(const char *place) const {
    return place[0] == pattern_[0] && std::memcmp(place + 1, pattern_ + 1, n_ - 1) == 0;
  }

 private:
  AnyBlock candidates(const char *s) const {
    return (AnyBlock::load(s, kBlock) == first_) & (AnyBlock::load(s + n_ - 1, kBlock) == last_);
  }
  bool anyIs(const char *s, AnyBlock candidates) const {
    for (unsigned left = candidates.mask(); left != 0; left &= left - 1) {
      const char *place = s + std::countr_zero(left);
      if (std::memcmp(place + 1, pattern_ + 1, n_ - 2) == 0) return true;
    }
    return false;
  }

  const char *pattern_;
  std::size_t n_;
  AnyBlock first_;
  AnyBlock last_;
};

// Up to this length a wrong candidate is dismissed within a few nanoseconds. Beyond it, a pattern
// that resembles itself could cost the square of its length: a search in linear time takes over.
inline constexpr std::size_t kLongestProbedPattern = 256;

// True when the np bytes at p occur side by side in the ns bytes at s; 1 <= np <= ns.
template <typename AnyBlock>
bool containsRun(const char *p, std::size_t np, const char *s, std::size_t ns) {
  if (np == 1) return std::memchr(s, static_cast<unsigned char>(*p), ns) != nullptr;
  if (np > kLongestProbedPattern) return memmem(s, ns, p, np) != nullptr;
  const PatternProbe<AnyBlock> probe(p, np);
  const std::size_t places = ns - np + 1;
  std::size_t at = 0;
  for (; at + 4 * kBlock <= places; at += 4 * kBlock) {
    if (probe.hitInFour(s + at)) return true;
  }
  for (; at + kBlock <= places; at += kBlock) {
    if (probe.hit(s + at)) return true;
  }
  // The last places, with some that were probed before where there are enough.
  if (at < places && places >= kBlock) return probe.hit(s + places - kBlock);
  for (; at < places; ++at) {
    if (probe.hitAt(s + at)) return true;
  }
  return false;
}

}  // namespace korvel::strings

#endif
