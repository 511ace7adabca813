// SPDX-License-Identifier: MIT
// For tables/: the walk over the lines of a table to the first one that passes a test.
#ifndef KORVEL_TABLES_WALK_H
#define KORVEL_TABLES_WALK_H

#include <climits>
#include <string_view>

#include "tables/line.h"
#include "tables/reader.h"
#include "tables/scan.h"

namespace korvel::tables {

// What a walk looks for.
class LineTest {
 public:
  LineTest(const LineTest &) = delete;
  LineTest &operator=(const LineTest &) = delete;

  // Cheap pre-check; false rules the candidate's line out. May read kLineSize bytes from `field`,
  // and only compare them.
  virtual bool mayBeginAt(const char * /*field*/) const { return true; }

  // Whether a line after the skipped ones is the wanted one; text as line.h says.
  virtual bool accepts(std::string_view text) const = 0;

  // The code of the lines that are accepted, if each line that bears it is, or whose code matches
  // it by a '?' of its own; else "".
  std::string_view code() const { return code_; }

  // Has a candidate in every line that is accepted.
  const Pattern &pattern() const { return pattern_; }
  // Lines 1 to this number are skipped.
  int skipped() const { return skipped_; }

 protected:
  static constexpr int kEveryLine = INT_MAX;

  explicit LineTest(int skipped) : skipped_(skipped) {}
  // For lines with a field `wanted`.
  LineTest(std::string_view wanted, const Pattern &pattern, int skipped)
      : pattern_(pattern), skipped_(canBeField(wanted) ? skipped : kEveryLine) {}
  ~LineTest() = default;

  std::string_view code_;
  Pattern pattern_;
  int skipped_;
};

// One walk over a table, which to an application is loaded whole.
class TableWalk {
 public:
  // table: its name. Returns false when it cannot be loaded.
  bool open(const char *table) { return reader_.openTable(table, Slots::FileAndMemory); }

  // Walks from the first line to the wanted one. If no line passes, returns false and stops at the
  // last line. To be called once.
  bool find(const LineTest &test);

  // False once the table could not be read to its end: the line at which the walk stopped is then
  // not the last one. Without a match that is as a table that cannot be opened.
  bool isWhole() const { return reader_.isWhole(); }

  // The line at which the walk stopped: its number, or 0 when the table has none, and its kept
  // characters, valid during the walk's life.
  int line() const { return line_; }
  std::string_view kept() const { return kept_; }

 private:
  bool findIndexed(const LineIndex &index, const LineTest &test);
  // These work on lines as TableReader::nextLines() gives them.
  std::string_view behindSkipped(std::string_view lines, int skipped);
  bool findIn(std::string_view lines, const LineTest &test);
  bool findLineByLine(std::string_view lines, const LineTest &test);

  TableReader reader_;
  int line_ = 0;
  std::string_view kept_;
  LineScratch last_;  // the last line, while the next ones are read
  LineScratch scratch_;
};

// A search that an application asks for: it fills the line buffer.
enum class From { FirstLine, BehindCurrent };

// How many lines such a search skips.
int skippedLines(From from);

struct SearchEnd {
  bool found = false;
  bool atLine = false;  // a line is in the buffer: the wanted one or, without a match, the last
};

// Makes the line found the current one. After a search from the first line:
// Kept: without a match the last line becomes the current one.
SearchEnd search(const LineTest &test, From from, const char *table);

}  // namespace korvel::tables

#endif
