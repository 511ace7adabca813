// For the scan*.cpp of tables/ only: the loops, written once and compiled for each instruction set.
//
// Each of those sources has a copy of its own, and calls nothing that is compiled once for all: a
// function shared between them might be the one with the instructions that the machine lacks.
#ifndef TABLES_SCAN_KERNEL_H
#define TABLES_SCAN_KERNEL_H

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <immintrin.h>
#endif

#include "tables/scan.h"

namespace korvel::tables {
namespace {

#ifdef __AVX2__
constexpr std::ptrdiff_t kWidth = 32;
#else
constexpr std::ptrdiff_t kWidth = 16;
#endif

// Of a vector that tells places, the highest bit of each byte counts.
using Vector = std::uint8_t __attribute__((vector_size(kWidth)));

inline Vector load(const char *p) {
  Vector v;
  __builtin_memcpy(&v, p, sizeof v);
#ifdef __SSE2__
  // Keeps it in a register: a load that crosses a cache line is no operand to be read twice.
  __asm__("" : "+x"(v));
#endif
  return v;
}

inline Vector filled(std::uint8_t c) { return Vector{} + c; }

inline Vector is(Vector v, Vector c) { return reinterpret_cast<Vector>(v == c); }

inline std::uint32_t placesOf(Vector v) {
#if defined(__AVX2__)
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(reinterpret_cast<__m256i>(v)));
#elif defined(__SSE2__)
  return static_cast<std::uint32_t>(_mm_movemask_epi8(reinterpret_cast<__m128i>(v)));
#else
  std::uint32_t places = 0;
  for (int i = 0; i < kWidth; ++i) places |= static_cast<std::uint32_t>(v[i] >> 7U) << i;
  return places;
#endif
}

inline bool any(Vector v) { return placesOf(v) != 0; }

inline std::int64_t sumOf(Vector v) {
#if defined(__AVX2__)
  using Words = std::int64_t __attribute__((vector_size(kWidth)));
  const auto sums = reinterpret_cast<Words>(
      _mm256_sad_epu8(reinterpret_cast<__m256i>(v), _mm256_setzero_si256()));
  return sums[0] + sums[1] + sums[2] + sums[3];
#elif defined(__SSE2__)
  using Words = std::int64_t __attribute__((vector_size(kWidth)));
  const auto sums =
      reinterpret_cast<Words>(_mm_sad_epu8(reinterpret_cast<__m128i>(v), _mm_setzero_si128()));
  return sums[0] + sums[1];
#else
  std::int64_t sum = 0;
  for (int i = 0; i < kWidth; ++i) sum += v[i];
  return sum;
#endif
}

// Where lines begin: at the last byte of the line end before them.
struct Starts {
  Vector places;
  Vector irregular;
};

struct AfterCrLf {
  Starts operator()(const char *p, Vector here) const {
    const Vector starts = is(here, filled('\n'));
    return {starts, starts ^ is(load(p - 1), filled('\r'))};
  }
};

struct AfterCr {
  Starts operator()(const char * /*p*/, Vector here) const {
    return {is(here, filled('\r')), is(here, filled('\n'))};
  }
};

struct AtLine {
  Vector operator()(Vector /*here*/, Vector starts) const { return starts; }
};

// The code is a field, too.
struct AtField {
  Vector operator()(Vector here, Vector starts) const {
    return is(here, filled(',')) | is(here, filled('+')) | starts;
  }
};

struct AnyBytes {
  explicit AnyBytes(const Pattern & /*pattern*/) {}
  Vector operator()(const char * /*p*/) const { return filled(0xFF); }
  static Vector irregular(Vector /*here*/) { return Vector{}; }
};

// One probe, '?' in the file standing for any byte.
inline Vector probed(Vector v, Vector value) { return is(v, value) | is(v, filled('?')); }

struct ExactBytes {
  explicit ExactBytes(const Pattern &pattern)
      : offset1(pattern.pairs[0][0].offset),
        offset2(pattern.pairs[0][1].offset),
        value1(filled(pattern.pairs[0][0].value)),
        value2(filled(pattern.pairs[0][1].value)) {}
  Vector operator()(const char *p) const {
    return probed(load(p + offset1), value1) & probed(load(p + offset2), value2);
  }
  static Vector irregular(Vector /*here*/) { return Vector{}; }

  std::size_t offset1, offset2;
  Vector value1, value2;
};

struct FoldedBytes {
  explicit FoldedBytes(const Pattern &pattern)
      : exact(pattern),
        ignore1(filled(pattern.pairs[0][0].ignore)),
        ignore2(filled(pattern.pairs[0][1].ignore)) {}
  Vector operator()(const char *p) const {
    return folded(load(p + exact.offset1), ignore1, exact.value1) &
           folded(load(p + exact.offset2), ignore2, exact.value2);
  }
  static Vector irregular(Vector /*here*/) { return Vector{}; }

  // v itself has the highest bit set where it is a byte from 0x80 on.
  static Vector folded(Vector v, Vector ignore, Vector value) {
    return v | is(v | ignore, value) | is(v, filled('?'));
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
  Vector operator()(const char *p) const {
    Vector found = {};
    for (std::size_t i = 0; i < count; ++i) {
      found |=
          probed(load(p + offset[i][0]), value[i][0]) & probed(load(p + offset[i][1]), value[i][1]);
    }
    return found;
  }
  static Vector irregular(Vector here) { return is(here, filled('*')); }

  std::size_t count;
  std::size_t offset[Pattern::kMostPairs][2];
  Vector value[Pattern::kMostPairs][2];
};

template <typename LineStarts, typename Place, typename Bytes>
class Finder {
 public:
  explicit Finder(const Pattern &pattern) : bytes_(pattern) {}

  const char *next(Scan &scan) const {
    // A byte of `count` holds as many.
    constexpr std::ptrdiff_t kMostSteps = 254;
    for (;;) {
      const char *at = scan.at;
      const std::ptrdiff_t whole = (scan.end - at) / (2 * kWidth);
      const char *stop = at + (whole < kMostSteps / 2 ? whole : kMostSteps / 2) * (2 * kWidth);
      Vector count = {};
      Vector irregular = {};
      for (; at != stop; at += 2 * kWidth) {
        const Step first = step(at);
        const Step second = step(at + kWidth);
        if (any(first.candidates | second.candidates)) break;
        // A place is 0xFF, that is -1.
        count = count - first.starts.places - second.starts.places;
        irregular |= first.starts.irregular | second.starts.irregular;
      }
      scan.lines += sumOf(count);
      scan.at = at;
      scan.regular = scan.regular && !any(irregular);
      if (!scan.regular || scan.at == scan.end) return nullptr;
      if (at == stop && scan.end - at >= 2 * kWidth) continue;
      const char *candidate = nextInStep(scan);
      if (candidate != nullptr || !scan.regular) return candidate;
    }
  }

 private:
  struct Step {
    Starts starts;
    Vector candidates;
  };

  Step step(const char *p) const {
    const Vector here = load(p);
    const Starts starts = lineStarts_(p, here);
    return {{starts.places, starts.irregular | Bytes::irregular(here)},
            place_(here, starts.places) & bytes_(p)};
  }

  // One step, which may pass the end.
  const char *nextInStep(Scan &scan) const {
    const Step here = step(scan.at);
    const std::ptrdiff_t rest = scan.end - scan.at;
    const std::ptrdiff_t width = rest < kWidth ? rest : kWidth;
    const std::uint32_t inside = ~std::uint32_t{0} >> (32 - width);
    const std::uint32_t candidates = placesOf(here.candidates) & inside;
    const std::uint32_t starts = placesOf(here.starts.places) & inside;
    scan.regular = (placesOf(here.starts.irregular) & inside) == 0;
    if (candidates == 0) {
      scan.lines += __builtin_popcount(starts);
      scan.at += width;
      return nullptr;
    }
    const int place = __builtin_ctz(candidates);
    scan.lines += __builtin_popcount(starts & (~std::uint32_t{0} >> (31 - place)));
    const char *candidate = scan.at + place;
    scan.at = candidate + 1;
    return candidate;
  }

  LineStarts lineStarts_;
  Place place_;
  Bytes bytes_;
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
  constexpr std::ptrdiff_t kMostSteps = 255;
  std::int64_t lines = 0;
  while (to - from >= kWidth) {
    const std::ptrdiff_t whole = (to - from) / kWidth;
    const char *stop = from + (whole < kMostSteps ? whole : kMostSteps) * kWidth;
    Vector count = {};
    for (; from != stop; from += kWidth) count -= is(load(from), filled('\r'));
    lines += sumOf(count);
  }
  for (; from != to; ++from) lines += *from == '\r';
  return static_cast<std::size_t>(lines);
}

}  // namespace
}  // namespace korvel::tables

#endif
