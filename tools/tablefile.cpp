// SPDX-License-Identifier: MIT
// Reads a table whole and cuts it into lines.
#include "tools/tablefile.h"

#include <algorithm>
#include <cerrno>
#include <map>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/strings.h>

#include "tools/failure.h"
#include "tools/progress.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

constexpr char kReturn = '\r';
constexpr char kFeed = '\n';

bool isSeparator(char c) { return kSeparators.find(c) != std::string_view::npos; }

// A descriptor for the time of a reading.
class OpenFile {
 public:
  explicit OpenFile(const std::string &path) : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (file_ < 0) throw fileFailure(path);
  }
  ~OpenFile() { close(file_); }
  OpenFile(const OpenFile &) = delete;
  OpenFile &operator=(const OpenFile &) = delete;
  int descriptor() const { return file_; }
  // 0 for what has none, as a pipe.
  std::size_t size() const {
    struct stat status;
    return fstat(file_, &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
  }

 private:
  int file_;
};

}  // namespace

std::string contentOf(const std::string &path) {
  constexpr std::size_t kBlock = std::size_t{1} << 20;
  const OpenFile file(path);
  Progress progress(file.size());
  std::string content;
  for (;;) {
    const std::size_t before = content.size();
    content.resize(before + kBlock);
    const ssize_t got = read(file.descriptor(), content.data() + before, kBlock);
    if (got < 0 && errno != EINTR) throw fileFailure(path);
    content.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got == 0) return content;
    progress.at(content.size());
  }
}

std::vector<std::string_view> fieldsOf(std::string_view text) {
  std::vector<std::string_view> fields;
  for (;;) {
    const std::string_view field = codeOf(text);
    fields.push_back(field);
    if (field.size() == text.size()) return fields;
    text.remove_prefix(field.size() + 1);
  }
}

std::string_view codeOf(std::string_view text) {
  const auto end = std::find_if(text.begin(), text.end(), isSeparator);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

bool matches(std::string_view a, std::string_view b) {
  return szcompex(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size())) == 1;
}

std::string_view markOf(std::string_view code) {
  if (isBeginMark(code)) return kBeginMark;
  return isEndMark(code) ? kEndMark : std::string_view();
}

std::string withCommas(std::string_view text) {
  std::string line(text);
  std::replace_if(line.begin(), line.end(), isSeparator, ',');
  return line;
}

TableFile::TableFile(const std::string &path) : path_(path), content_(contentOf(path)) {
  split();
  findData();
}

void TableFile::split() {
  Progress progress(content_.size());
  std::string_view rest = content_;
  while (!rest.empty()) {
    const std::size_t end = rest.find(kReturn);
    const bool isEnded = end != std::string_view::npos;
    Line line = lineOf(rest.substr(0, end));
    rest.remove_prefix(isEnded ? end + 1 : rest.size());
    if (!isEnded) {
      line.ending = Ending::Missing;
    } else if (rest.starts_with(kFeed)) {
      rest.remove_prefix(1);
    } else {
      line.ending = Ending::NoLineFeed;
    }
    // Line feeds alone are no line.
    if (!isEnded && line.length == 0 && !lines_.empty()) {
      lines_.back().feeds += line.feeds;
    } else if (isEnded || line.length > 0) {
      line.number = static_cast<int>(lines_.size()) + 1;
      lines_.push_back(line);
    }
    progress.at(content_.size() - rest.size());
  }
}

Line TableFile::lineOf(std::string_view bytes) {
  Line line;
  line.bytes = bytes;
  line.feeds = static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), kFeed));
  line.length = bytes.size() - line.feeds;
  line.text = bytes;
  if (line.feeds > 0) {
    std::string &gathered = gathered_.emplace_back(bytes);
    std::erase(gathered, kFeed);
    line.text = gathered;
  }
  line.text = line.text.substr(0, kLineRoom);
  line.text = line.text.substr(0, line.text.find('\0'));
  return line;
}

void TableFile::findData() {
  bool isInside = false;
  for (const Line &line : lines_) {
    const std::string_view code = codeOf(line.text);
    const bool begins = isBeginMark(code);
    if (isEndMark(code)) isInside = false;
    if (isInside && !begins) data_.push_back(line.number);
    if (begins && begin_ == 0) begin_ = line.number;
    isInside = isInside || begins;
  }
}

void TableFile::requireData() const {
  if (begin_ == 0) throw Failure(kFailed, path_ + ": is no table: it has no line \"#DEBUT\"");
}

void TableFile::requireWhole() const {
  for (const Line &line : lines_) {
    if (line.text.size() == line.length) continue;
    throw Failure(kFailed, path_ + ':' + std::to_string(line.number) + ": of " +
                               std::to_string(line.length) + " characters only " +
                               std::to_string(line.text.size()) + " are read");
  }
}

void TableFile::requireEditable(int first) const {
  requireData();
  requireWhole();
  for (const Line &line : lines_) {
    if (line.feeds > 0 && line.number >= first)
      throw Failure(kFailed, path_ + ':' + std::to_string(line.number) +
                                 ": a line feed inside the line would be lost");
  }
}

std::size_t usualFields(const TableFile &table) {
  std::map<std::size_t, int> counts;
  for (const int number : table.dataLines()) ++counts[fieldsOf(table.line(number).text).size()];
  const auto most =
      std::max_element(counts.begin(), counts.end(),
                       [](const auto &a, const auto &b) { return a.second < b.second; });
  return most == counts.end() ? 0 : most->first;
}

}  // namespace korvel::tools
