// SPDX-License-Identifier: MIT
// Reads and writes CSV, a field at a time.
#include "tools/csv.h"

#include <algorithm>
#include <utility>

#include "tools/arguments.h"
#include "tools/failure.h"

namespace korvel::tools {
namespace {

constexpr char kQuote = '"';
constexpr std::string_view kRowEnds = "\r\n";

}  // namespace

CsvReader::CsvReader(std::string path, std::string_view content, char delimiter)
    : path_(std::move(path)),
      content_(content),
      plainEnd_(std::string(1, delimiter) + std::string(kRowEnds)) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  if (content_.starts_with(kUtf8Mark)) position_ = kUtf8Mark.size();
}

bool CsvReader::next(std::vector<std::string> &fields) {
  fields.clear();
  ++line_;
  for (; !isAtEnd() && isAtRowEnd(); ++line_) skipRowEnd();
  if (isAtEnd()) return false;
  hasCode_ = content_[position_] != plainEnd_[0];
  for (;;) {
    fields.push_back(readField(fields.size()));
    if (isAtEnd()) return true;
    if (isAtRowEnd()) break;
    ++position_;
  }
  skipRowEnd();
  return true;
}

std::string CsvReader::readField(std::size_t index) {
  const bool isQuoted = !isAtEnd() && content_[position_] == kQuote;
  std::string field = isQuoted ? readQuoted(index) : readPlain(index);
  if (field.find('\0') != std::string::npos) refuse(index, "a NUL");
  return field;
}

std::string CsvReader::readQuoted(std::size_t index) {
  std::string field;
  for (;;) {
    const std::size_t begin = position_ + 1;
    const std::size_t end = content_.find(kQuote, begin);
    if (end == std::string_view::npos) refuse(index, "its quote is never closed");
    field += content_.substr(begin, end - begin);
    position_ = end + 1;
    if (isAtEnd() || content_[position_] != kQuote) break;
    field += kQuote;
  }
  if (field.find_first_of(kRowEnds) != std::string::npos) refuse(index, "a line end inside quotes");
  if (!isAtEnd() && plainEnd_.find(content_[position_]) == std::string::npos) {
    refuse(index, "further text behind its closing quote");
  }
  return field;
}

std::string CsvReader::readPlain(std::size_t index) {
  const std::size_t end = std::min(content_.find_first_of(plainEnd_, position_), content_.size());
  std::string field(content_.substr(position_, end - position_));
  if (field.find(kQuote) != std::string::npos) refuse(index, "a quote in a field without quotes");
  position_ = end;
  return field;
}

bool CsvReader::isAtRowEnd() const {
  return kRowEnds.find(content_[position_]) != std::string_view::npos;
}

void CsvReader::skipRowEnd() {
  const bool isPair = content_.substr(position_, kRowEnds.size()) == kRowEnds;
  position_ += isPair ? 2 : 1;
}

void CsvReader::refuse(std::size_t field, const std::string &what) const {
  throw Failure(kFailed, path_ + ':' + std::to_string(line_) + ": field " +
                             std::to_string(field + 1) + ": " + what);
}

std::string csvRow(const std::vector<std::string> &fields, char delimiter) {
  const std::string quotedFor = std::string(1, delimiter) + kQuote + std::string(kRowEnds);
  std::string row;
  for (const std::string &field : fields) {
    if (&field != fields.data()) row += delimiter;
    // Without quotes an empty line would be no row, and an empty code a mistake.
    const bool needsQuotes = &field == fields.data() && field.empty();
    if (!needsQuotes && field.find_first_of(quotedFor) == std::string::npos) {
      row += field;
      continue;
    }
    row += kQuote;
    for (const char c : field) row.append(c == kQuote ? 2 : 1, c);
    row += kQuote;
  }
  return row + std::string(kRowEnds);
}

char delimiterOf(const std::string &argument) {
  if (argument == "\\t") return '\t';
  const bool isOneByte = argument.size() == 1 && static_cast<unsigned char>(argument[0]) < 0x80;
  if (!isOneByte || argument == "\"" || argument == "\r" || argument == "\n") {
    throw WrongUse("--delimiter has to be one character of ASCII and no quote or line end");
  }
  return argument[0];
}

}  // namespace korvel::tools
