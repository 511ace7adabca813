// SPDX-License-Identifier: MIT
// For tables/: where the lines of a table that stays in memory are, by their codes and numbers.
//
// Codes stand in an open-addressed table of line starts, a few bits of the code's hash beside each:
// the code itself is read from its line. A code that several lines bear has its first line there,
// and its further ones in a list of their own. Lines whose code holds a '?' match other codes than
// theirs; they are in neither.
#ifndef KORVEL_TABLES_INDEX_H
#define KORVEL_TABLES_INDEX_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace korvel::tables {

// A line is named by its start: the offset of its first byte in the lines.
class LineIndex {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  // The index takes at most one byte for so many bytes of lines, while it is built, too.
  static constexpr std::size_t kLeastRatio = 2;
  // Starts have to be below this.
  static constexpr std::size_t kMostBytes = std::size_t{1} << 26;

  // Indexes lines as TableReader::nextLines() gives them, fewer bytes of them than kMostBytes. They
  // stay the caller's, and in place. Throws std::bad_alloc.
  void build(std::string_view lines);

  // False when there are no codes to speak of, too many codes with a '?', or lines so short that
  // the index would be longer than it may be: find() must not be called then.
  bool hasCodes() const { return !slots_.empty(); }

  // The first line from a start on whose code is matched by `code`, a code without '?'; else kNone.
  std::size_t find(std::string_view code, std::size_t from) const;

  // The number of lines.
  int count() const { return count_; }
  // The start of the line after the first `number` ones; the size of the lines if there is none.
  std::size_t startBehind(int number) const;
  // The number of the line with a start, from 1.
  int numberAt(std::size_t start) const;
  // The line with a start, without its end.
  std::string_view lineAt(std::size_t start) const;

  // The bytes that it takes.
  std::size_t size() const;

 private:
  static constexpr std::size_t kBlock = 1024;
  static constexpr std::size_t kMostUncertain = 64;
  static constexpr std::size_t kLongestSearch = 1024;
  static constexpr std::uint32_t kFree = UINT32_MAX;

  void countLines();
  bool indexCodes();
  bool addLine(std::string_view code, std::size_t start);
  // The slot of a code: that of its first line, or a free one. kNone after too long a search.
  std::size_t slotOf(std::string_view code, std::size_t hash) const;
  std::size_t findCertain(std::string_view code, std::size_t from) const;

  std::string_view lines_;
  int count_ = 0;
  // For each block of the lines: how many line ends are in front of it.
  std::vector<int> endsBefore_;
  // Start and tag of the first line with a code; kFree.
  std::vector<std::uint32_t> slots_;
  // Sorted: the start of the first line with a code, and in the low half that of another one.
  std::vector<std::uint64_t> further_;
  // The starts of the lines whose code holds a '?'.
  std::vector<std::uint32_t> uncertain_;
};

}  // namespace korvel::tables

#endif
