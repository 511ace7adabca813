// The data lines of a table one after the other: their codes in a list, or each for a callback.
#include <algorithm>
#include <cstring>
#include <string_view>

#include <korvel/strings.h>
#include <korvel/tables.h>

#include "tables/line.h"
#include "tables/markers.h"
#include "tables/path.h"
#include "tables/reader.h"

namespace korvel::tables {
namespace {

bool isMark(std::string_view field, std::string_view mark) {
  return szcompex(field.data(), static_cast<int>(field.size()), mark.data(),
                  static_cast<int>(mark.size())) == 1;
}

// A list of codes in a caller's buffer.
class CodeList {
 public:
  CodeList(char *out, int size) : out_(out), room_(out == nullptr ? 0 : std::max(size, 0)) {
    if (room_ > 0) out_[0] = '\0';
  }
  // Kept: a code that does not fit is left out, the separator before it is not, and shorter codes
  // may follow.
  void add(std::string_view code) {
    if (length_ > 0) append("+");
    append(code);
  }

 private:
  void append(std::string_view text) {
    if (static_cast<long>(text.size()) >= room_ - static_cast<long>(length_)) return;
    std::memcpy(out_ + length_, text.data(), text.size());
    length_ += text.size();
    out_[length_] = '\0';
  }

  char *out_;
  long room_;
  std::size_t length_ = 0;
};

// Which lines are data lines. Kept: a further begin mark between the marks counts as one.
class DataLines {
 public:
  // True for a data line.
  bool take(std::string_view code) {
    if (isMark(code, kEndMark)) inside_ = false;
    const bool isData = inside_;
    beginsHere_ = isMark(code, kBeginMark);
    inside_ = inside_ || beginsHere_;
    begun_ = begun_ || beginsHere_;
    return isData;
  }
  // Whether the line just taken is a begin mark, and whether there has been one.
  bool beginsHere() const { return beginsHere_; }
  bool begun() const { return begun_; }

 private:
  bool inside_ = false;
  bool beginsHere_ = false;
  bool begun_ = false;
};

int listCodes(const TablePath &path, CodeList codes) {
  TableReader table;
  if (!path || !table.open(path.text, Slots::File)) return 0;
  LineReader lines(table, kListingSize);
  DataLines data;
  for (std::string_view kept; lines.next(kept);) {
    const std::string_view code = codeOf(textOf(kept, kListingSize));
    if (data.take(code)) codes.add(code);
  }
  return data.begun() ? 1 : 0;
}

// A line for the callback, which may write into it.
class SplitLine {
 public:
  char *of(std::string_view text) {
    std::memcpy(fields_, text.data(), text.size());
    std::memset(fields_ + text.size(), 0, sizeof fields_ - text.size());
    ChCh_Cut(fields_);
    return fields_;
  }

 private:
  char fields_[kListingSize];
};

int scan(const TablePath &path, int *first, int *last, TableLine_t perLine) {
  TableReader table;
  if (!path || !table.open(path.text, Slots::Memory)) return 0;
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
  return data.begun() ? 1 : 0;
}

}  // namespace
}  // namespace korvel::tables

using namespace korvel::tables;

int ZRV_Table_liste(const char *name, char *out, int outSize) {
  return listCodes(defaultTablePath(name), CodeList(out, outSize));
}

int ZRV_Table_scan(const char *name, int *firstLine, int *lastLine, TableLine_t perLine) {
  return scan(tablePath(name), firstLine, lastLine, perLine);
}
