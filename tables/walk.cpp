#include "tables/walk.h"

#include <algorithm>
#include <cstring>

namespace korvel::tables {
namespace {

const char *endOf(std::string_view s) { return s.data() + s.size(); }

std::string_view between(const char *from, const char *to) {
  return {from, static_cast<std::size_t>(to - from)};
}

// The CR that ends the line in which `at` stands; there is one.
const char *lineEndFrom(const char *at, const char *last) {
  return static_cast<const char *>(std::memchr(at, kLineEnd, between(at, last).size() + 1));
}

// The last CR before `end`; null: there is none.
const char *lineEndBefore(const char *begin, const char *end) {
  return static_cast<const char *>(memrchr(begin, kLineEnd, between(begin, end).size()));
}

LineEnds lineEndsFrom(const char *firstEnd) {
  return firstEnd[1] == kIgnored ? LineEnds::CrLf : LineEnds::Cr;
}

}  // namespace

bool TableWalk::find(const LineTest &test) {
  for (auto block = reader_.next(); !block.empty(); block = reader_.next()) {
    if (findInBlock(block, test)) return true;
  }
  return !gathered_.empty() && finishGathered(test);
}

// What stands before the first CR of a block belongs to a line of the block before, what stands
// behind the last one to a line of the next: both are gathered. Between them are whole lines.
bool TableWalk::findInBlock(std::string_view block, const LineTest &test) {
  const char *begin = block.data();
  const char *lastEnd = lineEndBefore(begin, endOf(block));
  if (lastEnd == nullptr) {
    gathered_.append(block);
    return false;
  }
  const Stretch stretch = {lineEndFrom(begin, lastEnd), lastEnd};
  gathered_.append(between(begin, stretch.firstEnd));
  if (finishGathered(test)) return true;
  if (stretch.firstEnd != lastEnd) {
    if (findInStretch(stretch, test)) return true;
    rememberLast(keptOf(between(lineEndBefore(begin, lastEnd) + 1, lastEnd), scratch_));
  }
  gathered_.append(between(lastEnd + 1, endOf(block)));
  return false;
}

bool TableWalk::finishGathered(const LineTest &test) {
  ++line_;
  rememberLast(gathered_.kept());
  gathered_.clear();
  return accept(last_.kept(), test);
}

void TableWalk::rememberLast(std::string_view kept) {
  last_.clear();
  last_.append(kept);
  kept_ = last_.kept();
}

bool TableWalk::accept(std::string_view kept, const LineTest &test) {
  if (line_ <= test.skipped() || !test.accepts(textOf(kept))) return false;
  kept_ = kept;
  return true;
}

bool TableWalk::acceptRaw(std::string_view raw, const LineTest &test) {
  return accept(keptOf(raw, scratch_), test);
}

bool TableWalk::findInStretch(Stretch stretch, const LineTest &test) {
  if (line_ < test.skipped()) skipLines(stretch, test.skipped() - line_);
  const int before = line_;
  bool regular = true;
  if (findByCandidates(stretch, test, regular)) return true;
  if (regular) return false;
  line_ = before;
  return findLineByLine(stretch, test);
}

// Counts the lines by pieces and, in the piece where the last one ends, one by one.
void TableWalk::skipLines(Stretch &stretch, int count) {
  constexpr std::size_t kPiece = 4096;
  const ScanKernel &kernel = kernelFor(stretch.size());
  const char *at = stretch.firstEnd + 1;
  const char *end = stretch.lastEnd + 1;
  while (at != end) {
    const char *pieceEnd = at + std::min(kPiece, between(at, end).size());
    const auto lines = static_cast<int>(kernel.countLineEnds(at, pieceEnd));
    if (lines >= count) break;
    count -= lines;
    line_ += lines;
    at = pieceEnd;
  }
  for (; at != end && count > 0; --count, ++line_) at = lineEndFrom(at, stretch.lastEnd) + 1;
  stretch.firstEnd = at - 1;
}

bool TableWalk::findByCandidates(Stretch stretch, const LineTest &test, bool &regular) {
  if (stretch.size() == 0) return false;
  const LineEnds ends = lineEndsFrom(stretch.firstEnd);
  const int shift = ends == LineEnds::CrLf ? 1 : 0;
  Scan scan = {ends, stretch.firstEnd + shift, stretch.lastEnd + shift};
  const ScanKernel &kernel = kernelFor(stretch.size());
  const int before = line_;
  while (const char *candidate = kernel.next(test.pattern(), scan)) {
    if (!scan.regular) break;
    if (!test.mayBeginAt(candidate + 1)) continue;
    line_ = before + static_cast<int>(scan.lines);
    // A candidate at the start of a line is the last byte of the line end itself.
    const char *start = lineEndBefore(stretch.firstEnd, candidate + 1) + 1;
    const char *end = lineEndFrom(candidate + 1, stretch.lastEnd);
    if (acceptRaw(between(start, end), test)) return true;
    // The line end is the next place where a candidate can stand.
    scan.at = end + shift;
  }
  regular = scan.regular;
  line_ = before + static_cast<int>(scan.lines);
  return false;
}

bool TableWalk::findLineByLine(Stretch stretch, const LineTest &test) {
  const char *start = stretch.firstEnd + 1;
  while (start <= stretch.lastEnd) {
    const char *end = lineEndFrom(start, stretch.lastEnd);
    ++line_;
    if (acceptRaw(between(start, end), test)) return true;
    start = end + 1;
  }
  return false;
}

}  // namespace korvel::tables
