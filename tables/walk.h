// For tables/ only: the walk over the lines of a table to the one that is wanted.
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

  // Whether a candidate is worth looking at its line: what begins at `field` must be compared only.
  // As many bytes as a line keeps may be read there.
  virtual bool mayBeginAt(const char * /*field*/) const { return true; }

  // Whether a line behind the skipped ones is the wanted one; text as line.h says.
  virtual bool accepts(std::string_view text) const = 0;

  // Has a candidate in every line that is accepted.
  const Pattern &pattern() const { return pattern_; }
  // No line up to this number is asked about.
  int skipped() const { return skipped_; }

 protected:
  static constexpr int kEveryLine = INT_MAX;

  explicit LineTest(int skipped) : skipped_(skipped) {}
  ~LineTest() = default;

  Pattern pattern_;
  int skipped_;
};

// One walk over a table that is loaded whole, as far as an application can tell.
class TableWalk {
 public:
  // table: its name. Returns false when it cannot be loaded.
  bool open(const char *table) { return reader_.openTable(table, Slots::FileAndMemory); }

  // Walks from the first line to the one wanted. Without it, returns false and stands at the last
  // line, if there is any. Once only.
  bool find(const LineTest &test);

  // The line at which the walk stands: its number, or 0 when the table has none, and its kept
  // characters, valid as long as the walk.
  int line() const { return line_; }
  std::string_view kept() const { return kept_; }

 private:
  // Whole lines: from behind one CR to a later one.
  struct Stretch {
    const char *firstEnd;
    const char *lastEnd;

    std::size_t size() const { return static_cast<std::size_t>(lastEnd - firstEnd); }
  };

  bool findInBlock(std::string_view block, const LineTest &test);
  bool findInStretch(Stretch stretch, const LineTest &test);
  void skipLines(Stretch &stretch, int count);
  bool findByCandidates(Stretch stretch, const LineTest &test, bool &regular);
  bool findLineByLine(Stretch stretch, const LineTest &test);
  bool finishGathered(const LineTest &test);
  bool accept(std::string_view kept, const LineTest &test);
  bool acceptRaw(std::string_view raw, const LineTest &test);
  void rememberLast(std::string_view kept);

  TableReader reader_;
  int line_ = 0;
  std::string_view kept_;
  LineGatherer gathered_;  // the beginning of a line whose end is not read yet
  LineGatherer last_;      // the last line before that
  LineGatherer scratch_;
};

}  // namespace korvel::tables

#endif
