// SPDX-License-Identifier: MIT
// Builds the index of a table's lines, and finds lines by it.
#include "tables/index.h"

#include <algorithm>
#include <functional>

#include "strings/compare.h"
#include "tables/line.h"
#include "tables/scan.h"

namespace korvel::tables {
namespace {

bool isUncertain(std::string_view code) { return code.find('?') != std::string_view::npos; }

std::string_view codeIn(std::string_view raw, LineScratch &scratch) {
  return codeOf(textOf(keptOf(raw, scratch)));
}

std::size_t hashOf(std::string_view code) { return std::hash<std::string_view>()(code); }

constexpr std::uint32_t kTagBits = 6;
constexpr std::uint32_t kTagMask = (1U << kTagBits) - 1;
static_assert(std::uint64_t{LineIndex::kMostBytes} << kTagBits == std::uint64_t{1} << 32);

std::uint32_t tagOf(std::size_t hash) { return static_cast<std::uint32_t>(hash) & kTagMask; }

// A line with a code whose first line is another one.
std::uint64_t further(std::size_t first, std::size_t start) {
  return std::uint64_t{first} << 32 | start;
}

}  // namespace

void LineIndex::build(std::string_view lines) {
  lines_ = lines;
  countLines();
  if (indexCodes()) return;
  slots_ = {};
  further_ = {};
  uncertain_ = {};
}

void LineIndex::countLines() {
  const ScanKernel &kernel = scanKernel();
  endsBefore_.reserve(lines_.size() / kBlock + 1);
  for (std::size_t at = 0; at < lines_.size(); at += kBlock) {
    const std::string_view block = lines_.substr(at, kBlock);
    endsBefore_.push_back(count_);
    count_ += static_cast<int>(kernel.countLineEnds(block.data(), block.data() + block.size()));
  }
}

// Returns false when it cannot be, or takes too much.
bool LineIndex::indexCodes() {
  // Two thirds of the slots are in use at most.
  const std::size_t slots = static_cast<std::size_t>(count_) * 3 / 2 + 1;
  if ((size() + slots * sizeof slots_[0]) * kLeastRatio > lines_.size()) return false;
  slots_.assign(slots, kFree);
  // At once: growing would take more for a while than the index may.
  further_.reserve((lines_.size() / kLeastRatio - size()) / sizeof further_[0]);
  LineScratch scratch;
  for (std::size_t start = 0; start < lines_.size();) {
    const std::string_view line = lineAt(start);
    if (!addLine(codeIn(line, scratch), start)) return false;
    start += line.size() + 1;
  }
  std::sort(further_.begin(), further_.end());
  return size() * kLeastRatio <= lines_.size();
}

bool LineIndex::addLine(std::string_view code, std::size_t start) {
  if (code.empty()) return true;
  if (isUncertain(code)) {
    uncertain_.push_back(static_cast<std::uint32_t>(start));
    return uncertain_.size() <= kMostUncertain;
  }
  const std::size_t hash = hashOf(code);
  const std::size_t slot = slotOf(code, hash);
  if (slot == kNone) return false;
  if (slots_[slot] == kFree) {
    slots_[slot] = static_cast<std::uint32_t>(start << kTagBits) | tagOf(hash);
    return true;
  }
  if (further_.size() == further_.capacity()) return false;
  further_.push_back(further(slots_[slot] >> kTagBits, start));
  return true;
}

std::size_t LineIndex::slotOf(std::string_view code, std::size_t hash) const {
  LineScratch scratch;
  std::size_t slot = ((hash >> 32) * slots_.size()) >> 32;
  for (std::size_t i = 0; i < kLongestSearch; ++i) {
    const std::uint32_t entry = slots_[slot];
    const bool mayBeIt = (entry & kTagMask) == tagOf(hash);
    if (entry == kFree || (mayBeIt && codeIn(lineAt(entry >> kTagBits), scratch) == code)) {
      return slot;
    }
    slot = slot + 1 == slots_.size() ? 0 : slot + 1;
  }
  return kNone;
}

std::size_t LineIndex::find(std::string_view code, std::size_t from) const {
  const std::size_t certain = findCertain(code, from);
  LineScratch scratch;
  for (auto at = std::lower_bound(uncertain_.begin(), uncertain_.end(), from);
       at != uncertain_.end() && *at < certain; ++at) {
    if (strings::matches(code, codeIn(lineAt(*at), scratch))) return *at;
  }
  return certain;
}

std::size_t LineIndex::findCertain(std::string_view code, std::size_t from) const {
  const std::size_t slot = slotOf(code, hashOf(code));
  if (slot == kNone || slots_[slot] == kFree) return kNone;
  const std::size_t first = slots_[slot] >> kTagBits;
  if (first >= from) return first;
  const auto next = std::lower_bound(further_.begin(), further_.end(), further(first, from));
  return next != further_.end() && *next >> 32 == first ? static_cast<std::uint32_t>(*next) : kNone;
}

std::size_t LineIndex::startBehind(int number) const {
  if (number <= 0) return 0;
  if (number >= count_) return lines_.size();
  const auto behind = std::lower_bound(endsBefore_.begin(), endsBefore_.end(), number);
  const auto block = static_cast<std::size_t>(behind - endsBefore_.begin()) - 1;
  std::size_t start = block * kBlock;
  for (int i = endsBefore_[block]; i < number; ++i) start = lines_.find(kLineEnd, start) + 1;
  return start;
}

int LineIndex::numberAt(std::size_t start) const {
  const std::size_t block = start / kBlock;
  const char *begin = lines_.data();
  const std::size_t ends = scanKernel().countLineEnds(begin + block * kBlock, begin + start);
  return endsBefore_[block] + static_cast<int>(ends) + 1;
}

std::string_view LineIndex::lineAt(std::size_t start) const {
  return lines_.substr(start, lines_.find(kLineEnd, start) - start);
}

std::size_t LineIndex::size() const {
  return endsBefore_.size() * sizeof endsBefore_[0] + slots_.size() * sizeof slots_[0] +
         further_.size() * sizeof further_[0] + uncertain_.size() * sizeof uncertain_[0];
}

}  // namespace korvel::tables
