// SPDX-License-Identifier: MIT
// For tables/scan*.cpp: the loops, written once and compiled for each instruction set.
//
// Each of those sources has a copy of its own and calls no inline function from elsewhere but a
// vector's: of those the linker keeps one copy, maybe with instructions that the machine lacks.
#ifndef KORVEL_TABLES_SCAN_KERNEL_H
#define KORVEL_TABLES_SCAN_KERNEL_H

#include <cstddef>
#include <cstdint>

#include "strings/vectors.h"
#include "tables/scan.h"

namespace korvel::tables {
namespace {

using Vector = strings::WidestVector;
constexpr std::ptrdiff_t kWidth = Vector::kSize;

// A set of places in a vector: those whose byte has the highest bit set.
using Places = Vector;

inline bool any(Places places) { return places.moveMask() != 0; }

// Counts the places of the sets that comparisons gave.
class Count {
 public:
  static constexpr std::ptrdiff_t kMost = 255;  // additions

  // A place is 0xFF, that is -1.
  void add(Places places) { count_ = count_ - places; }
  std::int64_t sum() const { return count_.sum(); }

 private:
  Vector count_;
};

// The places where lines begin: the last bytes of the line ends before them.
struct Starts {
  Places places;
  Places irregular;
};

struct AfterCrLf {
  Starts operator()(const char *p, Vector here) const {
    const Places starts = here == '\n';
    return {starts, starts ^ (Vector::load(p - 1) == '\r')};
  }
};

struct AfterCr {
  Starts operator()(const char * /*p*/, Vector here) const { return {here == '\r', here == '\n'}; }
};

struct AtLine {
  Places operator()(Vector /*here*/, Places starts) const { return starts; }
};

// The code is a field, too.
struct AtField {
  Places operator()(Vector here, Places starts) const {
    return (here == ',') | (here == '+') | starts;
  }
};

struct AnyBytes {
  explicit AnyBytes(const Pattern & /*pattern*/) {}
  Places operator()(const char * /*p*/) const { return Vector::broadcast('\xFF'); }
  static Places irregular(Vector /*here*/) { return {}; }
};

// One probe; '?' in the file equals any byte.
inline Places probed(Vector v, Vector value) { return (v == value) | (v == '?'); }

struct ExactBytes {
  explicit ExactBytes(const Pattern &pattern)
      : offset1(pattern.pairs[0][0].offset),
        offset2(pattern.pairs[0][1].offset),
        value1(Vector::broadcast(pattern.pairs[0][0].value)),
        value2(Vector::broadcast(pattern.pairs[0][1].value)) {}
  Places operator()(const char *p) const {
    return probed(Vector::load(p + offset1), value1) & probed(Vector::load(p + offset2), value2);
  }
  static Places irregular(Vector /*here*/) { return {}; }

  std::size_t offset1, offset2;
  Vector value1, value2;
};

struct FoldedBytes {
  explicit FoldedBytes(const Pattern &pattern)
      : exact(pattern),
        ignore1(Vector::broadcast(pattern.pairs[0][0].ignore)),
        ignore2(Vector::broadcast(pattern.pairs[0][1].ignore)) {}
  Places operator()(const char *p) const {
    return folded(Vector::load(p + exact.offset1), ignore1, exact.value1) &
           folded(Vector::load(p + exact.offset2), ignore2, exact.value2);
  }
  static Places irregular(Vector /*here*/) { return {}; }

  static Places folded(Vector v, Vector ignore, Vector value) {
    return v | ((v | ignore) == value) | (v == '?');
  }

  ExactBytes exact;
  Vector ignore1, ignore2;
};

struct OneOfBytes {
  explicit OneOfBytes(const Pattern &pattern) : count(pattern.pairCount) {
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t place = 0; place < 2; ++place) {
        offset[i][place] = pattern.pairs[i][place].offset;
        value[i][place] = Vector::broadcast(pattern.pairs[i][place].value);
      }
    }
  }
  Places operator()(const char *p) const {
    Places found;
    for (std::size_t i = 0; i < count; ++i) {
      found |= probed(Vector::load(p + offset[i][0]), value[i][0]) &
               probed(Vector::load(p + offset[i][1]), value[i][1]);
    }
    return found;
  }
  static Places irregular(Vector here) { return here == '*'; }

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
      Places irregular;
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
    const Vector here = Vector::load(p);
    const Starts starts = lineStarts_(p, here);
    return {{starts.places, starts.irregular | Bytes::irregular(here)},
            place_(here, starts.places) & bytes_(p)};
  }

  // One step, which may pass the end.
  const char *nextInStep(Scan &scan) const {
    constexpr std::uint32_t kAll = ~std::uint32_t{0};
    const Step here = step(scan.at);
    const std::ptrdiff_t rest = scan.end - scan.at;
    const std::ptrdiff_t width = rest < kWidth ? rest : kWidth;
    const std::uint32_t inside = kAll >> (32 - width);
    const std::uint32_t starts = here.starts.places.moveMask() & inside;
    scan.regular = (here.starts.irregular.moveMask() & inside) == 0;
    const std::uint32_t left = worthAReturn(scan.at, here.candidates.moveMask() & inside);
    if (left == 0) {
      scan.lines += __builtin_popcount(starts);
      scan.at += width;
      return nullptr;
    }
    const int place = __builtin_ctz(left);
    scan.lines += __builtin_popcount(starts & (kAll >> (31 - place)));
    scan.at += place + 1;
    return scan.at - 1;
  }

  bool holdsOne(const char *at, const Step &step) const {
    return worthAReturn(at, step.candidates.moveMask()) != 0;
  }
  // The candidates without those in front of the first that is not dismissed.
  std::uint32_t worthAReturn(const char *at, std::uint32_t candidates) const {
    while (candidates != 0 && isDismissed(at + __builtin_ctz(candidates))) {
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
    for (; from != stop; from += kWidth) count.add(Vector::load(from) == '\r');
    lines += count.sum();
  }
  for (; from != to; ++from) lines += *from == '\r';
  return static_cast<std::size_t>(lines);
}

}  // namespace
}  // namespace korvel::tables

#endif
