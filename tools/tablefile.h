// SPDX-License-Identifier: MIT
// A table as it is in its file, with lines and fields counted as the library counts them: a line
// ends at a carriage return or at the end of the file, line feeds are ignored, and 1022 characters
// of it are read. What the library does not tell, how a line ends and what it drops, is here too.
#ifndef KORVEL_TOOLS_TABLEFILE_H
#define KORVEL_TOOLS_TABLEFILE_H

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::tools {

inline constexpr std::size_t kLineRoom = 1022;
inline constexpr std::string_view kBeginMark = "#DEBUT";
inline constexpr std::string_view kEndMark = "#FIN";
inline constexpr std::string_view kVersionMark = "Version: ";
inline constexpr std::string_view kLineEnd = "\r\n";
inline constexpr std::string_view kSeparators = ",+";

enum class Ending { Full, NoLineFeed, Missing };

struct Line {
  int number = 0;          // from 1
  std::string_view text;   // what is read of it
  std::string_view bytes;  // all that stands there but its end
  std::size_t length = 0;  // its characters, line feeds left out
  std::size_t feeds = 0;   // line feeds that belong to no line end
  Ending ending = Ending::Full;
};

// The fields of a line, the code first. An empty one is a field like any other.
std::vector<std::string_view> fieldsOf(std::string_view text);
std::string_view codeOf(std::string_view text);

// Whether the library takes two texts of equal length for the same, '?' for any character.
bool matches(std::string_view a, std::string_view b);

// A mark, as the library recognises it.
inline bool isBeginMark(std::string_view code) { return matches(code, kBeginMark); }
inline bool isEndMark(std::string_view code) { return matches(code, kEndMark); }

// The mark that a code would count as; empty for none.
std::string_view markOf(std::string_view code);

// The same line with commas between its fields.
std::string withCommas(std::string_view text);

class TableFile {
 public:
  // Reads the file at a path of the system.
  explicit TableFile(const std::string &path);
  TableFile(const TableFile &) = delete;
  TableFile &operator=(const TableFile &) = delete;

  const std::string &path() const { return path_; }
  std::span<const Line> lines() const { return lines_; }
  const Line &line(int number) const { return lines_[static_cast<std::size_t>(number) - 1]; }
  // The number of the first line "#DEBUT"; 0 without one.
  int begin() const { return begin_; }
  // The numbers of the lines between the marks, which are the only ones that commands look at and
  // change.
  std::span<const int> dataLines() const { return data_; }

  // Throws unless there is a line "#DEBUT", without which a file is no table.
  void requireData() const;
  // Throws unless the library reads all of every line.
  void requireWhole() const;
  // Throws for a table of which the library, which writes every line anew, would drop something.
  // Line feeds do not count in front of the first line.
  void requireEditable(int first = 1) const;

 private:
  void split();
  Line lineOf(std::string_view bytes);
  void findData();

  std::string path_;
  std::string content_;
  std::deque<std::string> gathered_;  // the texts of lines with line feeds between them
  std::vector<Line> lines_;
  std::vector<int> data_;
  int begin_ = 0;
};

// The number of fields that most of the data lines have; 0 without any.
std::size_t usualFields(const TableFile &table);

// The content of a file.
std::string contentOf(const std::string &path);

}  // namespace korvel::tools

#endif
