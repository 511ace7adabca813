// For tables/ and its tests only: finding, in a stretch of whole lines, the places where a search
// may have its match, a whole vector of bytes at a step.
//
// A place found is only a candidate: whoever asks compares the line by the rules. No line that
// matches is without a candidate, as long as the stretch is regular.
#ifndef KORVEL_TABLES_SCAN_H
#define KORVEL_TABLES_SCAN_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace korvel::tables {

// A byte at some distance behind the start of a line or field. '?' in the file stands for any.
struct Probe {
  std::size_t offset;   // from the byte before the line or field
  std::uint8_t ignore;  // bits that do not count; 0xFF for any byte
  std::uint8_t value;   // with those bits set

  static constexpr Probe exact(std::size_t offset, char c) {
    return {offset, 0, static_cast<std::uint8_t>(c)};
  }
  static constexpr Probe any(std::size_t offset) { return {offset, 0xFF, 0xFF}; }
};

// What stands at a candidate.
struct Pattern {
  enum class Start { OfLine, OfField };
  enum class Bytes {
    Any,     // any line or field is a candidate
    Exact,   // both bytes of pairs[0] stand at their offsets
    Folded,  // the same, their ignored bits set; a byte from 0x80 on may be any letter
    OneOf    // both bytes of one of the pairs; a stretch that holds a '*' is not regular
  };
  static constexpr std::size_t kMostPairs = 4;

  Start start = Start::OfLine;
  Bytes bytes = Bytes::Any;
  std::size_t pairCount = 0;
  Probe pairs[kMostPairs][2] = {};
  // The first eight bytes of the line or field as they stand in memory, and the bits of them that
  // every candidate must share; '?' in the file stands for any byte here, too.
  std::uint64_t beginning = 0;
  std::uint64_t counted = 0;
};

// How lines are told apart in a regular stretch: each ends with a CR LF, and there is no CR and no
// LF besides, or each ends with a CR and there is no LF.
enum class LineEnds { CrLf, Cr };

// A stretch from one CR to a later one while it is being searched. What stands in the
// TableReader::kMargin bytes around it may be read.
struct Scan {
  LineEnds ends;
  const char *at;          // CrLf: behind the first CR; Cr: the first CR
  const char *end;         // CrLf: behind the last CR; Cr: the last CR
  std::int64_t lines = 0;  // number of lines that begin before `at`
  bool regular = true;     // false: there may be matches without a candidate
};

// A way to search: on what every machine of its kind has, on AVX2, on AVX-512.
struct ScanKernel {
  // The next candidate, the byte before its line or field, with scan.at behind it and that line
  // counted in scan.lines. Null when there is no more, or when the stretch is not regular.
  const char *(*next)(const Pattern &pattern, Scan &scan);
  // The number of CRs in [from, to).
  std::size_t (*countLineEnds)(const char *from, const char *to);
};
extern const ScanKernel kPlainKernel;
#ifdef __x86_64__
extern const ScanKernel kAvx2Kernel;
extern const ScanKernel kAvx512Kernel;
#endif

// Those that this machine runs, the fastest one last.
std::span<const ScanKernel *const> usableKernels();
// The one for so many bytes. A process that searches little is not worth asking the machine what it
// can do.
const ScanKernel &kernelFor(std::size_t bytes);
// For tests: the one to use in any case; null for none.
extern const ScanKernel *imposedKernel;

}  // namespace korvel::tables

#endif
