// SPDX-License-Identifier: MIT
// The data lines of a table one after the other: their codes in a list, or each for a callback.
#include "tables/listing.h"

#include <cstring>
#include <optional>
#include <span>
#include <string_view>

#include "base/views.h"
#include "strings/compare.h"
#include "strings/copy.h"
#include "strings/string_list.h"
#include "tables/line.h"
#include "tables/misuse.h"
#include "tables/path.h"
#include "tables/reader.h"

namespace korvel::tables {
namespace {

// A list of codes in a caller's buffer, and the room that all of them would take, without its end.
class CodeList {
 public:
  explicit CodeList(std::span<char> out) : out_(out), room_(out) { clear(); }

  // Kept: a code that does not fit is left out, the separator before it is not, and shorter codes
  // may follow.
  void add(std::string_view code) {
    needed_ += (needed_ > 0 ? 1 : 0) + code.size();
    if (!isEmpty_) append("+");
    append(code);
  }
  void clear() { strings::copyTerminated(out_, ""); }
  std::size_t needed() const { return needed_; }

 private:
  void append(std::string_view text) {
    if (!strings::copyWhole(room_, text)) return;
    room_ = room_.subspan(text.size());
    isEmpty_ = isEmpty_ && text.empty();
  }

  const std::span<char> out_;
  std::span<char> room_;  // after the codes so far
  bool isEmpty_ = true;
  std::size_t needed_ = 0;
};

// Which lines are data lines.
// Kept: a further begin mark between the marks counts as one.
class DataLines {
 public:
  // True for a data line.
  bool take(std::string_view code) {
    if (strings::matches(code, kEndMark)) inside_ = false;
    const bool isData = inside_;
    beginsHere_ = strings::matches(code, kBeginMark);
    inside_ = inside_ || beginsHere_;
    hasBegun_ = hasBegun_ || beginsHere_;
    return isData;
  }
  // Whether the line just taken is a begin mark, and whether there has been one.
  bool beginsHere() const { return beginsHere_; }
  bool hasBegun() const { return hasBegun_; }

 private:
  bool inside_ = false;
  bool beginsHere_ = false;
  bool hasBegun_ = false;
};

// Returns whether the table has a begin mark; nothing where it was not read to its end.
std::optional<bool> addCodes(const TablePath &path, CodeList &codes) {
  TableReader table;
  if (!path || !table.open(path.text, Slots::File)) return {};
  LineReader lines(table, kListingSize);
  DataLines data;
  for (std::string_view kept; lines.next(kept);) {
    const std::string_view code = codeOf(textOf(kept, kListingSize));
    if (data.take(code)) codes.add(code);
  }
  return table.isWhole() ? std::optional(data.hasBegun()) : std::nullopt;
}

std::optional<bool> listCodes(const TablePath &path, CodeList &codes) {
  const std::optional<bool> hasMarks = addCodes(path, codes);
  // Some of the codes are not the codes.
  if (!hasMarks.value_or(false)) codes.clear();
  return hasMarks;
}

// A line for the callback, which may write into it.
class SplitLine {
 public:
  char *of(std::string_view text) {
    std::memcpy(fields_, text.data(), text.size());
    std::memset(fields_ + text.size(), 0, sizeof fields_ - text.size());
    strings::cutItems(fields_);
    return fields_;
  }

 private:
  char fields_[kListingSize];
};

}  // namespace

std::optional<bool> scanTable(const char *name, int *first, int *last, TableLine_t perLine) {
  const TablePath path = tablePath(name);
  TableReader table;
  if (!path || !table.open(path.text, Slots::Memory)) return {};
  LineReader lines(table, kListingSize);
  DataLines data;
  SplitLine line;
  int before = 0;
  for (std::string_view kept; lines.next(kept); ++before) {
    if (last != nullptr) *last = before;
    const std::string_view text = textOf(kept, kListingSize);
    if (data.take(codeOf(text)) && perLine != nullptr) perLine(line.of(text));
    if (data.beginsHere() && first != nullptr && *first == 0) *first = before + 2;
  }
  return data.hasBegun();
}

}  // namespace korvel::tables

using namespace korvel::base;
using namespace korvel::tables;

int ZRV_Table_liste(const char *name, char *out, int outSize) {
  const Call call("ZRV_Table_liste", {name, filled(out), outSize});
  if (call) needsDefaultTable(call, name);
  if (call) needsRoom(call, out, outSize);
  CodeList codes(roomOf(out, outSize));
  const std::optional<bool> hasMarks = listCodes(defaultTablePath(name), codes);
  if (call) needsMarks(call, hasMarks);
  if (call) needsListRoom(call, codes.needed(), outSize);
  return hasMarks.value_or(false) ? 1 : 0;
}

int ZRV_Table_scan(const char *name, int *firstLine, int *lastLine, TableLine_t perLine) {
  const Call call("ZRV_Table_scan", {name, orNull(filled(firstLine)), orNull(filled(lastLine)),
                                     orNull(given(perLine))});
  if (call) needsTable(call, name);
  const std::optional<bool> hasMarks = scanTable(name, firstLine, lastLine, perLine);
  if (call) needsMarks(call, hasMarks);
  return hasMarks.value_or(false) ? 1 : 0;
}
