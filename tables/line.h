// For tables/ and its tests only: what a line is, and its fields.
//
// raw   the bytes between two carriage returns, as they stand in the file
// kept  what a reader keeps of them: the first 1023 that are no line feeds
// text  what counts once the line is split: the kept characters before the first NUL, at most 1022,
//       as the second terminator of the split line takes the last place of the buffer
#ifndef KORVEL_TABLES_LINE_H
#define KORVEL_TABLES_LINE_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace korvel::tables {

inline constexpr std::size_t kLineSize = 1024;    // of the line buffer
inline constexpr std::size_t kListingSize = 256;  // of the listings' line buffer
inline constexpr char kLineEnd = '\r';
inline constexpr char kIgnored = '\n';

inline bool isSeparator(char c) { return c == ',' || c == '+'; }

// Gathers the kept characters of a line that comes in pieces.
class LineGatherer {
 public:
  explicit LineGatherer(std::size_t size = kLineSize) : most_(size - 1) {}

  void append(std::string_view raw);
  void clear() { length_ = 0; }

  std::string_view kept() const { return {text_, length_}; }
  // At the end of the file this tells whether there is a last line.
  bool empty() const { return length_ == 0; }

 private:
  std::size_t most_;
  std::size_t length_ = 0;
  char text_[kLineSize];
};

// The kept characters of a whole raw line; in `scratch` if they do not stand side by side in it.
std::string_view keptOf(std::string_view raw, LineGatherer &scratch, std::size_t size = kLineSize);

// What splitting leaves of the kept characters.
inline std::string_view textOf(std::string_view kept, std::size_t size = kLineSize) {
  const std::string_view text = kept.substr(0, size - 2);
  const void *nul = text.empty() ? nullptr : std::memchr(text.data(), '\0', text.size());
  if (nul == nullptr) return text;
  return text.substr(0, static_cast<std::size_t>(static_cast<const char *>(nul) - text.data()));
}

// Walks the fields of a text. An empty field ends the walk: no field behind it is reached.
template <typename IsSeparator>
class FieldCursor {
 public:
  explicit FieldCursor(std::string_view text, IsSeparator isEnd = {}) : rest_(text), isEnd_(isEnd) {
    takeField();
  }

  std::string_view field() const { return field_; }

  // Goes on to the next field. Returns false, and stays, on the last one.
  bool next() {
    if (field_.empty()) return false;
    if (rest_.size() <= field_.size() + 1 || isEnd_(rest_[field_.size() + 1])) return false;
    rest_.remove_prefix(field_.size() + 1);
    takeField();
    return true;
  }

  // Kept: a count of 0 and below steps to the last field (as 2^32 - 1 steps would).
  void step(int columns) {
    if (columns <= 0) {
      while (next()) {
      }
      return;
    }
    for (; columns > 1 && next(); --columns) {
    }
  }

 private:
  void takeField() {
    const auto end = std::find_if(rest_.begin(), rest_.end(), isEnd_);
    field_ = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
  }

  std::string_view rest_;
  std::string_view field_;
  [[no_unique_address]] IsSeparator isEnd_;
};

struct EndsRawField {
  bool operator()(char c) const { return isSeparator(c); }
};
struct EndsSplitField {
  bool operator()(char c) const { return c == '\0'; }
};

// The fields of a line's text that is not split yet.
using RawFields = FieldCursor<EndsRawField>;
// The fields of a split buffer, all its bytes given: a NUL ends each, only an empty one the list.
using SplitFields = FieldCursor<EndsSplitField>;

inline std::string_view codeOf(std::string_view text) { return RawFields(text).field(); }

// The field that a lookup gives for a column: "" with `exists` false when there is none.
struct Column {
  std::string_view field;
  bool exists;
};
template <typename Fields>
Column lookedUpColumn(Fields fields, int column) {
  fields.step(column);
  const bool exists = fields.next();
  return {exists ? fields.field() : std::string_view(), exists};
}

// The field that a search examines: the last one when there is none.
template <typename Fields>
std::string_view examinedColumn(Fields fields, int column) {
  fields.step(column);
  fields.next();
  return fields.field();
}

}  // namespace korvel::tables

#endif
