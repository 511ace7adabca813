// SPDX-License-Identifier: MIT
// The data lines of a table one after the other: their codes in a list, or each for a callback.
#include "tables/listing.h"

#include <cstring>
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

// A list of codes in a caller's buffer.
class CodeList {
 public:
  explicit CodeList(std::span<char> out) : room_(out) { strings::copyTerminated(room_, ""); }

  // Kept: a code that does not fit is left out, the separator before it is not, and shorter codes
  // may follow.
  void add(std::string_view code) {
    if (!isEmpty_) append("+");
    append(code);
  }

 private:
  void append(std::string_view text) {
    if (!strings::copyWhole(room_, text)) return;
    room_ = room_.subspan(text.size());
    isEmpty_ = isEmpty_ && text.empty();
  }

  std::span<char> room_;  // after the codes so far
  bool isEmpty_ = true;
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

// The room that a list of all codes takes, without its end.
class CodeListSize {
 public:
  void add(std::string_view code) { size_ += (size_ > 0 ? 1 : 0) + code.size(); }
  std::size_t size() const { return size_; }

 private:
  std::size_t size_ = 0;
};

// Returns whether the table was read to its end and has a begin mark.
template <typename Codes>
bool addCodes(const TablePath &path, Codes &codes) {
  TableReader table;
  if (!path || !table.open(path.text, Slots::File)) return false;
  LineReader lines(table, kListingSize);
  DataLines data;
  for (std::string_view kept; lines.next(kept);) {
    const std::string_view code = codeOf(textOf(kept, kListingSize));
    if (data.take(code)) codes.add(code);
  }
  return table.isWhole() && data.hasBegun();
}

bool listCodes(const TablePath &path, std::span<char> out) {
  CodeList codes(out);
  if (addCodes(path, codes)) return true;
  // Some of the codes are not the codes.
  strings::copyTerminated(out, "");
  return false;
}

// Tells of codes that do not fit.
void needsListRoom(const Call &call, const char *name, const char *out, int outSize) {
  needsDefaultTable(call, name);
  needsRoom(call, out, outSize);
  if (!call) return;
  CodeListSize all;
  addCodes(defaultTablePath(name), all);
  call.misusedIf(
      all.size() >= static_cast<std::size_t>(outSize),
      {"the codes need ", all.size() + 1, " bytes, and not all are listed in ", outSize});
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

bool scanTable(const char *name, int *first, int *last, TableLine_t perLine) {
  const TablePath path = tablePath(name);
  TableReader table;
  if (!path || !table.open(path.text, Slots::Memory)) return false;
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
  if (call) needsListRoom(call, name, out, outSize);
  const bool isListed = listCodes(defaultTablePath(name), roomOf(out, outSize));
  if (call) needsMarks(call, isListed);
  return isListed ? 1 : 0;
}

int ZRV_Table_scan(const char *name, int *firstLine, int *lastLine, TableLine_t perLine) {
  const Call call("ZRV_Table_scan", {name, orNull(filled(firstLine)), orNull(filled(lastLine)),
                                     orNull(given(perLine))});
  if (call) needsTable(call, name);
  const int result = scanTable(name, firstLine, lastLine, perLine) ? 1 : 0;
  if (call) needsMarks(call, result);
  return result;
}
