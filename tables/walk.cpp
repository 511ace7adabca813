// SPDX-License-Identifier: MIT
// Walks a table by candidates where its line ends are regular, and line by line where not; goes
// straight to lines whose place is known.
#include "tables/walk.h"

#include <algorithm>
#include <cstring>

#include <korvel/tables.h>

#include "tables/state.h"

namespace korvel::tables {
namespace {

// The last one of some lines, without its end.
std::string_view lastOf(std::string_view lines) {
  lines.remove_suffix(1);
  return lines.substr(lines.rfind(kLineEnd) + 1);
}

}  // namespace

bool TableWalk::find(const LineTest &test) {
  const LineIndex *index = reader_.index();
  if (index != nullptr && index->hasCodes() && !test.code().empty()) {
    return findIndexed(*index, test);
  }
  for (auto lines = reader_.nextLines(); !lines.empty(); lines = reader_.nextLines()) {
    if (findIn(behindSkipped(lines, test.skipped()), test)) return true;
    const std::string_view last = keptOf(lastOf(lines), scratch_);
    std::memcpy(last_.text, last.data(), last.size());
    kept_ = {last_.text, last.size()};
  }
  return false;
}

bool TableWalk::findIndexed(const LineIndex &index, const LineTest &test) {
  const std::size_t start = index.find(test.code(), index.startBehind(test.skipped()));
  const bool found = start != LineIndex::kNone;
  line_ = found ? index.numberAt(start) : index.count();
  kept_ = keptOf(index.lineAt(found ? start : index.startBehind(line_ - 1)), scratch_);
  return found;
}

std::string_view TableWalk::behindSkipped(std::string_view lines, int skipped) {
  if (line_ >= skipped) return lines;
  const LineIndex *index = reader_.index();
  const FirstLines passed =
      index == nullptr ? firstLines(lines, skipped - line_)
                       : FirstLines{index->startBehind(skipped), std::min(skipped, index->count())};
  line_ += passed.count;
  lines.remove_prefix(passed.bytes);
  if (lines.starts_with(kIgnored)) lines.remove_prefix(1);
  return lines;
}

bool TableWalk::findIn(std::string_view lines, const LineTest &test) {
  if (lines.empty()) return false;
  // The byte in front of the lines is the last one of a line end.
  const char *front = lines.data() - 1;
  const LineEnds ends = *front == kIgnored ? LineEnds::CrLf : LineEnds::Cr;
  const int shift = ends == LineEnds::CrLf ? 1 : 0;
  Scan scan = {ends, front, front + lines.size() + shift};
  const ScanKernel &kernel = scanKernel();
  while (const char *candidate = kernel.next(test.pattern(), scan)) {
    if (!scan.regular) break;
    if (!test.mayBeginAt(candidate + 1)) continue;
    // A candidate at the start of a line is the last byte of the line end itself.
    const auto place = static_cast<std::size_t>(candidate + 1 - lines.data());
    const std::size_t start = lines.substr(0, place).rfind(kLineEnd) + 1;
    const std::size_t end = lines.find(kLineEnd, place);
    kept_ = keptOf(lines.substr(start, end - start), scratch_);
    if (test.accepts(textOf(kept_))) {
      line_ += static_cast<int>(scan.lines);
      return true;
    }
    // The line end is the next place where a candidate can be.
    scan.at = lines.data() + end + shift;
  }
  if (!scan.regular) return findLineByLine(lines, test);
  line_ += static_cast<int>(scan.lines);
  return false;
}

bool TableWalk::findLineByLine(std::string_view lines, const LineTest &test) {
  while (!lines.empty()) {
    const std::size_t end = lines.find(kLineEnd);
    ++line_;
    kept_ = keptOf(lines.substr(0, end), scratch_);
    if (test.accepts(textOf(kept_))) return true;
    lines.remove_prefix(end + 1);
  }
  return false;
}

int skippedLines(From from) { return from == From::FirstLine ? 0 : std::max(ZRV_Libelle_NC_il, 0); }

SearchEnd search(const LineTest &test, From from, const char *table) {
  if (from == From::FirstLine) forgetLine();
  TableWalk walk;
  if (!walk.open(table)) return {};
  const bool found = walk.find(test);
  if (!found && !walk.isWhole()) return {};
  const bool atLine = walk.line() > 0;
  if (atLine) storeSplit(walk.kept());
  if (found || from == From::FirstLine) setCurrentLine(walk.line());
  return {found, atLine};
}

}  // namespace korvel::tables
