// SPDX-License-Identifier: MIT
// CSV as RFC 4180 describes it: fields with a delimiter between them, those between quotes may hold
// it, and two quotes there are one.
//
// Own code, and not a library's: whoever keeps a table is told the line and the field of whatever
// cannot be taken, broken quoting included, which readers for general use repair in silence or give
// no place for.
#ifndef KORVEL_TOOLS_CSV_H
#define KORVEL_TOOLS_CSV_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::tools {

// Reads rows. A row ends with CR LF, LF or CR; one without any byte is none. Stricter than the RFC
// in one thing: a line end inside quotes is refused, as no table can hold one.
class CsvReader {
 public:
  // path: how messages call the file. content: has to outlive the reader.
  CsvReader(std::string path, std::string_view content, char delimiter);

  // Reads the next row into fields. Returns false at the end.
  bool next(std::vector<std::string> &fields);
  // Whether the row just read has a first field, if only an empty one between quotes.
  bool hasCode() const { return hasCode_; }
  // Bytes read so far.
  std::size_t position() const { return position_; }
  // Throws, naming the line of the row just read and a field of it, from 0.
  [[noreturn]] void refuse(std::size_t field, const std::string &what) const;

 private:
  std::string readField(std::size_t index);
  std::string readQuoted(std::size_t index);
  std::string readPlain(std::size_t index);
  bool isAtEnd() const { return position_ == content_.size(); }
  bool isAtRowEnd() const;
  void skipRowEnd();

  const std::string path_;
  const std::string_view content_;
  const std::string plainEnd_;  // what ends a field without quotes
  std::size_t position_ = 0;
  int line_ = 0;  // of the row being read
  bool hasCode_ = false;
};

// A row as it is written, its end included.
std::string csvRow(const std::vector<std::string> &fields, char delimiter);

// The delimiter that a command line names.
char delimiterOf(const std::string &argument);

}  // namespace korvel::tools

#endif
