// SPDX-License-Identifier: MIT
// For tables/: finds, in a stretch of whole lines, the places where a search may have its match, a
// vector of bytes at a step.
//
// A place found is only a candidate: the caller compares its line by the rules. In a regular
// stretch every line that matches has a candidate.
#ifndef KORVEL_TABLES_SCAN_H
#define KORVEL_TABLES_SCAN_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korvel::tables {

// A byte at an offset from the start of a line or field. '?' in the file equals any byte.
struct Probe {
  std::size_t offset;   // from the byte before the line or field
  std::uint8_t ignore;  // bits that are not compared; 0xFF for any byte
  std::uint8_t value;   // with the ignored bits set

  static constexpr Probe exact(std::size_t offset, char c) {
    return {offset, 0, static_cast<std::uint8_t>(c)};
  }
};

// The bytes that make a place a candidate.
struct Pattern {
  enum class Start { OfLine, OfField };
  enum class Bytes {
    Any,     // any line or field is a candidate
    Exact,   // both bytes of pairs[0] are at their offsets
    Folded,  // the same, without the ignored bits; a byte from 0x80 on may be any letter
    OneOf    // both bytes of one of the pairs; a stretch with a '*' in it is irregular
  };
  static constexpr std::size_t kMostPairs = 4;

  Start start = Start::OfLine;
  Bytes bytes = Bytes::Any;
  std::size_t pairCount = 0;
  Probe pairs[kMostPairs][2] = {};
  // The first eight bytes of the line or field in memory order, and the bits of them that every
  // candidate must share; '?' in the file equals any byte here, too.
  std::uint64_t beginning = 0;
  std::uint64_t counted = 0;
};

// How the lines of a regular stretch end: all with CR LF, and there is no other CR or LF; or all
// with CR, and there is no LF.
enum class LineEnds { CrLf, Cr };

// A stretch of whole lines while it is searched, with a line end in front of it. The
// kMargin bytes around it may be read, too.
struct Scan {
  LineEnds ends;
  const char *at;          // the last byte of the line end in front of the next line
  const char *end;         // CrLf: after the last CR; Cr: the last CR
  std::int64_t lines = 0;  // number of lines that begin before `at`
  bool regular = true;     // false: a match may have no candidate
};

// The search compiled for one instruction set: the baseline or AVX2.
struct ScanKernel {
  // The next candidate: the byte before its line or field, with scan.at after it and its line
  // counted in scan.lines. Null when there are no more. Once scan.regular is false the result means
  // nothing.
  const char *(*next)(const Pattern &pattern, Scan &scan);
  // The number of CRs in [from, to).
  std::size_t (*countLineEnds)(const char *from, const char *to);
};
extern const ScanKernel kBaselineKernel;
extern const ScanKernel kAvx2Kernel;

// The faster one of those that this machine runs.
const ScanKernel &scanKernel();

struct FirstLines {
  std::size_t bytes;
  int count;
};

// The first ones of some whole lines: `most` of them, or all.
FirstLines firstLines(std::string_view lines, int most);

}  // namespace korvel::tables

#endif
