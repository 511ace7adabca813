// SPDX-License-Identifier: MIT
// For tables/: the texts that every table has, its lines and their fields.
//
// raw   the bytes between two carriage returns, as they are in the file
// kept  what a reader keeps of them: the first 1023 that are no line feeds
// text  what counts once the line is split: the kept characters before the first NUL, at most 1022,
//       as the second terminator of the split line takes the last place of the buffer
#ifndef KORVEL_TABLES_LINE_H
#define KORVEL_TABLES_LINE_H

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace korvel::tables {

inline constexpr std::size_t kLineSize = 1024;    // of the line buffer
inline constexpr std::size_t kListingSize = 256;  // of the listings' line buffer
inline constexpr char kLineEnd = '\r';
inline constexpr char kIgnored = '\n';
inline constexpr std::string_view kWrittenEnd = "\r\n";

inline constexpr std::string_view kVersionMark = "Version: ";
inline constexpr std::string_view kBeginMark = "#DEBUT";
inline constexpr std::string_view kEndMark = "#FIN";

// Whether a text can be a code or a column.
inline bool canBeField(std::string_view text) { return !text.empty() && text.size() < kLineSize; }

// Room for the kept characters of a line that has line feeds between them.
struct LineScratch {
  char text[kLineSize];
};

// The kept characters of a raw line: a part of it, or gathered in `scratch`.
inline std::string_view keptOf(std::string_view raw, LineScratch &scratch,
                               std::size_t size = kLineSize) {
  if (raw.starts_with(kIgnored)) raw.remove_prefix(1);
  const std::string_view first = raw.substr(0, size - 1);
  if (first.find(kIgnored) == std::string_view::npos) return first;
  std::size_t length = 0;
  for (const char c : raw) {
    if (length == size - 1) break;
    if (c != kIgnored) scratch.text[length++] = c;
  }
  return {scratch.text, length};
}

// What splitting leaves of the kept characters.
inline std::string_view textOf(std::string_view kept, std::size_t size = kLineSize) {
  const std::string_view text = kept.substr(0, size - 2);
  return text.substr(0, text.find('\0'));
}

// Walks the fields of a text. An empty field ends the walk: no field after it is reached.
template <char... Separators>
class FieldCursor {
 public:
  explicit FieldCursor(std::string_view text) : rest_(text) { takeField(); }

  std::string_view field() const { return field_; }

  // Goes on to the next field. Returns false, and stays, on the last one.
  bool next() {
    if (field_.empty()) return false;
    if (rest_.size() <= field_.size() + 1 || isEnd(rest_[field_.size() + 1])) return false;
    rest_.remove_prefix(field_.size() + 1);
    takeField();
    return true;
  }

  // Kept: a count below 1 goes to the last field, like an unsigned counter that wraps.
  void step(int columns) {
    while (columns != 1 && next()) columns -= columns > 1 ? 1 : 0;
  }

 private:
  static bool isEnd(char c) { return ((c == Separators) || ...); }
  void takeField() {
    const auto end = std::find_if(rest_.begin(), rest_.end(), [](char c) { return isEnd(c); });
    field_ = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
  }

  std::string_view rest_;
  std::string_view field_;
};

// The fields of a line's text that is not split yet.
using RawFields = FieldCursor<',', '+'>;
// The fields of a split buffer, all its bytes given: a NUL ends each, only an empty one the list.
using SplitFields = FieldCursor<'\0'>;

inline std::string_view codeOf(std::string_view text) { return RawFields(text).field(); }

// A field of a line as an application names it: its code or one of its columns.
struct FieldChoice {
  bool isCode;
  int column;
};
// The choice of the functions that take the current line: column 0 without a key is the code.
inline FieldChoice currentLineChoice(int keyLength, int column) {
  return {keyLength == 0 && column == 0, column};
}

// The field chosen: "" with `exists` false when the line does not have it.
struct ChosenField {
  std::string_view field;
  bool exists;
};
template <typename Fields>
ChosenField chosenField(Fields fields, FieldChoice choice) {
  if (choice.isCode) return {fields.field(), true};
  fields.step(choice.column);
  const bool exists = fields.next();
  return {exists ? fields.field() : "", exists};
}

// The field that a search examines: the last one when the line does not have the column.
template <typename Fields>
std::string_view examinedColumn(Fields fields, int column) {
  fields.step(column);
  fields.next();
  return fields.field();
}

}  // namespace korvel::tables

#endif
