// Walks a table by candidates where its line ends are regular, and line by line where not; goes
// straight to lines whose place is known.
#include "tables/walk.h"

#include <algorithm>
#include <cstring>

namespace korvel::tables {
namespace {

std::string_view between(const char *from, const char *to) {
  return {from, static_cast<std::size_t>(to - from)};
}

// The CR that ends the line of `at`, in lines that reach up to `end`.
const char *lineEndFrom(const char *at, const char *end) {
  return static_cast<const char *>(std::memchr(at, kLineEnd, between(at, end).size()));
}

// The last CR before `end`; there is one.
const char *lineEndBefore(const char *begin, const char *end) {
  return static_cast<const char *>(memrchr(begin, kLineEnd, between(begin, end).size()));
}

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
  const char *end = lines.data() + lines.size();
  const LineEnds ends = *front == kIgnored ? LineEnds::CrLf : LineEnds::Cr;
  const int shift = ends == LineEnds::CrLf ? 1 : 0;
  Scan scan = {ends, front, end - 1 + shift};
  const ScanKernel &kernel = scanKernel();
  while (const char *candidate = kernel.next(test.pattern(), scan)) {
    if (!scan.regular) break;
    if (!test.mayBeginAt(candidate + 1)) continue;
    // A candidate at the start of a line is the last byte of the line end itself.
    const char *start = lineEndBefore(front - 1, candidate + 1) + 1;
    const char *lineEnd = lineEndFrom(candidate + 1, end);
    kept_ = keptOf(between(start, lineEnd), scratch_);
    if (test.accepts(textOf(kept_))) {
      line_ += static_cast<int>(scan.lines);
      return true;
    }
    // The line end is the next place where a candidate can be.
    scan.at = lineEnd + shift;
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

}  // namespace korvel::tables
