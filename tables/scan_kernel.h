// For tables/scan*.cpp: the loops, written once and compiled for each instruction set.
//
// Each of those sources has a copy of its own and calls no inline function from elsewhere: of those
// the linker keeps one copy, maybe with instructions that the machine lacks.
#ifndef KORVEL_TABLES_SCAN_KERNEL_H
#define KORVEL_TABLES_SCAN_KERNEL_H

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <immintrin.h>
#endif

#include "tables/scan.h"

namespace korvel::tables {
namespace {

#if defined(__AVX2__)
constexpr std::ptrdiff_t kWidth = 32;
#else
constexpr std::ptrdiff_t kWidth = 16;
#endif

using Vector = std::uint8_t __attribute__((vector_size(kWidth)));

inline Vector load(const char *p) {
  Vector v;
  __builtin_memcpy(&v, p, sizeof v);
#if defined(__SSE2__)
  // Forces the load into a register; otherwise the compiler repeats it as a memory operand, which
  // is slow across cache lines.
  __asm__("" : "+x"(v));
#endif
  return v;
}

inline Vector filled(std::uint8_t c) { return Vector{} + c; }

// A set of places in a vector, with the operators & | ^. A place is in the set if the highest bit
// of its byte is set.
using Places = Vector;

inline Places is(Vector v, Vector c) { return reinterpret_cast<Vector>(v == c); }
inline Places highBits(Vector v) { return v; }
inline std::uint64_t bitsOf(Places places) {
#if defined(__AVX2__)
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(reinterpret_cast<__m256i>(places)));
#elif defined(__SSE2__)
  return static_cast<std::uint32_t>(_mm_movemask_epi8(reinterpret_cast<__m128i>(places)));
#else
  std::uint64_t bits = 0;
  for (int i = 0; i < kWidth; ++i) bits |= static_cast<std::uint64_t>(places[i] >> 7U) << i;
  return bits;
#endif
}
constexpr Places kEverywhere = Vector{} - std::uint8_t{1};

inline bool any(Places places) { return bitsOf(places) != 0; }

// Counts the places of the sets that comparisons gave.
class Count {
 public:
  static constexpr std::ptrdiff_t kMost = 255;  // additions

  // A place is 0xFF, that is -1.
  void add(Places places) { count_ -= places; }
  std::int64_t sum() const {
#if defined(__SSE2__)
    using Words = std::int64_t __attribute__((vector_size(kWidth)));
#if defined(__AVX2__)
    const auto sums = reinterpret_cast<Words>(
        _mm256_sad_epu8(reinterpret_cast<__m256i>(count_), _mm256_setzero_si256()));
    return sums[0] + sums[1] + sums[2] + sums[3];
#else
    const auto sums = reinterpret_cast<Words>(
        _mm_sad_epu8(reinterpret_cast<__m128i>(count_), _mm_setzero_si128()));
    return sums[0] + sums[1];
#endif
#else
    std::int64_t sum = 0;
    for (int i = 0; i < kWidth; ++i) sum += count_[i];
    return sum;
#endif
  }

 private:
  Vector count_ = {};
};

// The places where lines begin: the last bytes of the line ends before them.
struct Starts {
  Places places;
  Places irregular;
};

struct AfterCrLf {
  Starts operator()(const char *p, Vector here) const {
    const Places starts = is(here, filled('\n'));
    return {starts, starts ^ is(load(p - 1), filled('\r'))};
  }
};

struct AfterCr {
  Starts operator()(const char * /*p*/, Vector here) const {
    return {is(here, filled('\r')), is(here, filled('\n'))};
  }
};

struct AtLine {
  Places operator()(Vector /*here*/, Places starts) const { return starts; }
};

// The code is a field, too.
struct AtField {
  Places operator()(Vector here, Places starts) const {
    return is(here, filled(',')) | is(here, filled('+')) | starts;
  }
};

struct AnyBytes {
  explicit AnyBytes(const Pattern & /*pattern*/) {}
  Places operator()(const char * /*p*/) const { return kEverywhere; }
  static Places irregular(Vector /*here*/) { return Places{}; }
};

// One probe; '?' in the file equals any byte.
inline Places probed(Vector v, Vector value) { return is(v, value) | is(v, filled('?')); }

struct ExactBytes {
  explicit ExactBytes(const Pattern &pattern)
      : offset1(pattern.pairs[0][0].offset),
        offset2(pattern.pairs[0][1].offset),
        value1(filled(pattern.pairs[0][0].value)),
        value2(filled(pattern.pairs[0][1].value)) {}
  Places operator()(const char *p) const {
    return probed(load(p + offset1), value1) & probed(load(p + offset2), value2);
  }
  static Places irregular(Vector /*here*/) { return Places{}; }

  std::size_t offset1, offset2;
  Vector value1, value2;
};

struct FoldedBytes {
  explicit FoldedBytes(const Pattern &pattern)
      : exact(pattern),
        ignore1(filled(pattern.pairs[0][0].ignore)),
        ignore2(filled(pattern.pairs[0][1].ignore)) {}
  Places operator()(const char *p) const {
    return folded(load(p + exact.offset1), ignore1, exact.value1) &
           folded(load(p + exact.offset2), ignore2, exact.value2);
  }
  static Places irregular(Vector /*here*/) { return Places{}; }

  static Places folded(Vector v, Vector ignore, Vector value) {
    return highBits(v) | is(v | ignore, value) | is(v, filled('?'));
  }

  ExactBytes exact;
  Vector ignore1, ignore2;
};

struct OneOfBytes {
  explicit OneOfBytes(const Pattern &pattern) : count(pattern.pairCount) {
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t place = 0; place < 2; ++place) {
        offset[i][place] = pattern.pairs[i][place].offset;
        value[i][place] = filled(pattern.pairs[i][place].value);
      }
    }
  }
  Places operator()(const char *p) const {
    Places found = {};
    for (std::size_t i = 0; i < count; ++i) {
      found |=
          probed(load(p + offset[i][0]), value[i][0]) & probed(load(p + offset[i][1]), value[i][1]);
    }
    return found;
  }
  static Places irregular(Vector here) { return is(here, filled('*')); }

  std::size_t count;
  std::size_t offset[Pattern::kMostPairs][2];
  Vector value[Pattern::kMostPairs][2];
};

template <typename LineStarts, typename Place, typename Bytes>
class Finder {
 public:
  explicit Finder(const Pattern &pattern)
      : bytes_(pattern), beginning_(pattern.beginning), counted_(pattern.counted) {}

  const char *next(Scan &scan) const {
    constexpr std::ptrdiff_t kPair = 2 * kWidth;
    constexpr std::ptrdiff_t kMostPairs = Count::kMost / 2;
    for (;;) {
      const char *at = scan.at;
      const std::ptrdiff_t whole = (scan.end - at) / kPair;
      const char *stop = at + (whole < kMostPairs ? whole : kMostPairs) * kPair;
      Count count;
      Places irregular = {};
      for (; at != stop; at += kPair) {
        const Step first = step(at);
        const Step second = step(at + kWidth);
        if (any(first.candidates | second.candidates) &&
            (holdsOne(at, first) || holdsOne(at + kWidth, second))) {
          break;
        }
        count.add(first.starts.places);
        count.add(second.starts.places);
        irregular |= first.starts.irregular | second.starts.irregular;
      }
      scan.lines += count.sum();
      scan.at = at;
      scan.regular = scan.regular && !any(irregular);
      if (!scan.regular || scan.at == scan.end) return nullptr;
      if (at == stop && scan.end - at >= kPair) continue;
      const char *candidate = nextInStep(scan);
      if (candidate != nullptr || !scan.regular) return candidate;
    }
  }

 private:
  struct Step {
    Starts starts;
    Places candidates;
  };

  Step step(const char *p) const {
    const Vector here = load(p);
    const Starts starts = lineStarts_(p, here);
    return {{starts.places, starts.irregular | Bytes::irregular(here)},
            place_(here, starts.places) & bytes_(p)};
  }

  // One step, which may pass the end.
  const char *nextInStep(Scan &scan) const {
    constexpr std::uint64_t kAll = ~std::uint64_t{0};
    const Step here = step(scan.at);
    const std::ptrdiff_t rest = scan.end - scan.at;
    const std::ptrdiff_t width = rest < kWidth ? rest : kWidth;
    const std::uint64_t inside = kAll >> (64 - width);
    const std::uint64_t starts = bitsOf(here.starts.places) & inside;
    scan.regular = (bitsOf(here.starts.irregular) & inside) == 0;
    const std::uint64_t left = worthAReturn(scan.at, bitsOf(here.candidates) & inside);
    if (left == 0) {
      scan.lines += __builtin_popcountll(starts);
      scan.at += width;
      return nullptr;
    }
    const int place = __builtin_ctzll(left);
    scan.lines += __builtin_popcountll(starts & (kAll >> (63 - place)));
    scan.at += place + 1;
    return scan.at - 1;
  }

  bool holdsOne(const char *at, const Step &step) const {
    return worthAReturn(at, bitsOf(step.candidates)) != 0;
  }
  // The candidates without those in front of the first that is not dismissed.
  std::uint64_t worthAReturn(const char *at, std::uint64_t candidates) const {
    while (candidates != 0 && isDismissed(at + __builtin_ctzll(candidates))) {
      candidates &= candidates - 1;
    }
    return candidates;
  }
  // The first bytes rule most candidates out without a return. A '?' among them is left to the
  // caller's comparison.
  bool isDismissed(const char *candidate) const {
    std::uint64_t bytes = 0;
    __builtin_memcpy(&bytes, candidate + 1, sizeof bytes);
    return ((bytes ^ beginning_) & counted_) != 0 && !holdsQuestionMark(bytes);
  }
  static bool holdsQuestionMark(std::uint64_t bytes) {
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    const std::uint64_t different = bytes ^ ('?' * kOnes);
    return ((different - kOnes) & ~different & (0x80 * kOnes)) != 0;
  }

  LineStarts lineStarts_;
  Place place_;
  Bytes bytes_;
  std::uint64_t beginning_;
  std::uint64_t counted_;
};

template <typename LineStarts, typename Place>
const char *nextAt(const Pattern &pattern, Scan &scan) {
  switch (pattern.bytes) {
    case Pattern::Bytes::Exact:
      return Finder<LineStarts, Place, ExactBytes>(pattern).next(scan);
    case Pattern::Bytes::Folded:
      return Finder<LineStarts, Place, FoldedBytes>(pattern).next(scan);
    case Pattern::Bytes::OneOf:
      return Finder<LineStarts, Place, OneOfBytes>(pattern).next(scan);
    default:
      return Finder<LineStarts, Place, AnyBytes>(pattern).next(scan);
  }
}

template <typename LineStarts>
const char *nextAfter(const Pattern &pattern, Scan &scan) {
  return pattern.start == Pattern::Start::OfLine ? nextAt<LineStarts, AtLine>(pattern, scan)
                                                 : nextAt<LineStarts, AtField>(pattern, scan);
}

const char *next(const Pattern &pattern, Scan &scan) {
  return scan.ends == LineEnds::CrLf ? nextAfter<AfterCrLf>(pattern, scan)
                                     : nextAfter<AfterCr>(pattern, scan);
}

std::size_t countLineEnds(const char *from, const char *to) {
  std::int64_t lines = 0;
  while (to - from >= kWidth) {
    const std::ptrdiff_t whole = (to - from) / kWidth;
    const char *stop = from + (whole < Count::kMost ? whole : Count::kMost) * kWidth;
    Count count;
    for (; from != stop; from += kWidth) count.add(is(load(from), filled('\r')));
    lines += count.sum();
  }
  for (; from != to; ++from) lines += *from == '\r';
  return static_cast<std::size_t>(lines);
}

}  // namespace
}  // namespace korvel::tables

#endif
