// SPDX-License-Identifier: MIT
// The command check: everything that can be said of a table without knowing what it is about. What
// needs dates is in periods.cpp.
#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/failure.h"
#include "tools/findings.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/tablefile.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

std::string many(std::size_t count, const char *one) {
  return count == 1 ? std::string("a ") + one : std::to_string(count) + ' ' + one + 's';
}

std::string inLine(int number) { return "line " + std::to_string(number); }

// ---- Bytes ----

// Whether the bytes of a character of UTF-8 are as well what ends a word of French in CP1252: an
// accented letter, and signs behind it.
bool mayEndWord(std::string_view character) {
  constexpr std::string_view kLetters =
      "\xC7\xC8\xC9\xCA\xCB\xCE\xCF\xD4\xD9\xDB\xDC\xE0\xE2\xE7\xE8\xE9\xEA\xEB\xEE\xEF\xF4";
  constexpr std::string_view kSigns = "\x85\x91\x92\x93\x94\x96\x97\x99\xA0\xAB\xAE\xB0\xB7\xBB";
  return kLetters.find(character[0]) != std::string_view::npos &&
         character.find_first_not_of(kSigns, 1) == std::string_view::npos;
}

bool isUtf8(std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size();) {
    const std::size_t length = firstCharacter(bytes.substr(i));
    if (length == 0) return false;
    i += length;
  }
  return true;
}

// Whether the first bytes of a text are rather a character of UTF-8 than several of CP1252. A
// letter that CP1252 has too is worth the doubt anywhere; any other one only where all of the line
// can be UTF-8.
bool isRatherUtf8(std::string_view character, bool isLineUtf8) {
  if (character.size() < 2) return false;
  return byteOf(character) || (isLineUtf8 && !mayEndWord(character));
}

// The first place of a line that is not CP1252 as it should be.
void checkBytes(const Line &line, Findings &findings) {
  std::size_t i = 0;
  if (line.number == 1 && line.bytes.starts_with(kUtf8Mark)) {
    findings.add(1, "UTF-8: the file begins with a byte order mark");
    i = kUtf8Mark.size();
  }
  const bool isLineUtf8 = isUtf8(line.bytes);
  for (; i < line.bytes.size(); ++i) {
    const char byte = line.bytes[i];
    if (static_cast<unsigned char>(byte) < 0x80) continue;
    const std::string_view rest = line.bytes.substr(i);
    const std::string_view bytes = rest.substr(0, firstCharacter(rest));
    if (isRatherUtf8(bytes, isLineUtf8)) {
      findings.add(line.number,
                   "UTF-8: \"" + std::string(bytes) + "\" will be read as " + quoted(bytes));
      return;
    }
    if (!isCharacter(byte)) {
      char number[8];
      std::snprintf(number, sizeof number, "%02X", static_cast<unsigned char>(byte));
      findings.add(line.number, std::string("the byte ") + number + " is no character of CP1252");
      return;
    }
  }
}

void checkEnd(const Line &line, Findings &findings) {
  if (line.feeds > 0) {
    findings.add(line.number,
                 many(line.feeds, "line feed") + " without a carriage return in front");
  }
  if (line.ending == Ending::NoLineFeed) {
    findings.add(line.number, "the line ends with a carriage return alone");
  }
  if (line.ending == Ending::Missing && !line.bytes.ends_with('\n')) {
    findings.add(line.number, "the last line has no line end");
  }
}

void checkLength(const Line &line, Findings &findings) {
  if (line.bytes.find('\0') != std::string_view::npos) {
    findings.add(line.number, "a NUL: what follows it in the line is not read");
  }
  if (line.length > kLineRoom) {
    findings.add(line.number, std::to_string(line.length) + " characters, of which " +
                                  std::to_string(kLineRoom) + " are read");
  }
}

// ---- Heading and marks ----

bool isVersion(const Line &line) { return line.text.starts_with(kVersionMark); }

void checkHeading(const TableFile &table, Findings &findings) {
  const int begin = table.begin();
  const int last = static_cast<int>(table.lines().size());
  const auto isHeading = [&](int number) {
    return number <= last && (begin == 0 || number < begin);
  };
  if (!isHeading(1) || isVersion(table.line(1))) {
    findings.add(1, "heading: the title is missing");
  } else if (table.line(1).text.empty()) {
    findings.add(1, "heading: the title is empty");
  }
  if (isHeading(2) ? !isVersion(table.line(2)) : !isHeading(1) || !isVersion(table.line(1))) {
    findings.add(std::min(begin == 1 ? 1 : 2, last),
                 "heading: no line \"Version: \" behind the title");
  }
  if (begin == 0) {
    findings.add(std::min(3, last), "the mark \"#DEBUT\" is missing");
  } else if (begin > 3) {
    findings.add(begin, "heading: \"#DEBUT\" belongs in line 3");
  }
}

// Both marks, wherever they are.
class Marks {
 public:
  explicit Marks(Findings &findings) : findings_(findings) {}

  void take(const Line &line) {
    const std::string_view code = codeOf(line.text);
    if (isBeginMark(code)) {
      takeMark(line, code, kBeginMark, begin_);
    } else if (isEndMark(code)) {
      if (begin_ == 0) findings_.add(line.number, "\"#FIN\" in front of \"#DEBUT\"");
      takeMark(line, code, kEndMark, end_);
    } else if (end_ > begin_ && begin_ > 0) {
      findings_.add(line.number, "a line behind \"#FIN\" is no data line");
    }
  }

  void finish(int lastLine) {
    if (end_ == 0 || end_ < begin_) findings_.add(lastLine, "the mark \"#FIN\" is missing");
  }

 private:
  void takeMark(const Line &line, std::string_view code, std::string_view mark, int &seen) {
    if (code != mark) {
      findings_.add(line.number,
                    "the code " + quoted(code) + " counts as the mark " + quoted(mark));
    } else if (line.text != mark) {
      findings_.add(line.number, "the mark " + quoted(mark) + " has further fields");
    }
    if (seen != 0)
      findings_.add(line.number, quoted(mark) + " stands in " + inLine(seen) + " already");
    seen = line.number;
  }

  Findings &findings_;
  int begin_ = 0;
  int end_ = 0;
};

// ---- Data lines ----

void checkCode(const Line &line, std::string_view code, Findings &findings) {
  if (line.text.empty()) {
    findings.add(line.number, "an empty line, which has no code");
  } else if (code.empty()) {
    findings.add(line.number, "the code is empty");
  }
  if (code.find('?') != std::string_view::npos) {
    findings.add(line.number, "the code " + quoted(code) + ": its \"?\" equals any character");
  }
  if (code.find('*') != std::string_view::npos) {
    findings.add(line.number,
                 "the code " + quoted(code) + ": at its end a \"*\" equals whatever follows");
  }
}

bool endsWithBlank(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\xA0";
  return !text.empty() && kBlanks.find(text.back()) != std::string_view::npos;
}

void checkBlanks(const Line &line, const std::vector<std::string_view> &fields,
                 Findings &findings) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (!endsWithBlank(fields[i])) continue;
    findings.add(line.number, (i == 0 ? "the code" : "column " + std::to_string(i)) +
                                  " ends with a blank: " + quoted(fields[i]));
  }
}

class DataLines {
 public:
  DataLines(std::size_t usual, Findings &findings) : usual_(usual), findings_(findings) {}

  void take(const Line &line) {
    const std::vector<std::string_view> fields = fieldsOf(line.text);
    checkCode(line, fields[0], findings_);
    checkBlanks(line, fields, findings_);
    if (line.text.empty()) return;
    if (fields.size() != usual_) {
      findings_.add(line.number, many(fields.size(), "field") + ", where most lines have " +
                                     std::to_string(usual_));
    }
    const auto [earlier, isNew] = seen_.emplace(withCommas(line.text), line.number);
    if (!isNew) findings_.add(line.number, "repeats " + inLine(earlier->second));
  }

 private:
  const std::size_t usual_;
  Findings &findings_;
  std::unordered_map<std::string, int> seen_;
};

// ---- The whole ----

void checkLines(const TableFile &table, Findings &findings) {
  Progress progress(table.lines().size());
  Marks marks(findings);
  DataLines data(usualFields(table), findings);
  auto next = table.dataLines().begin();
  for (const Line &line : table.lines()) {
    checkBytes(line, findings);
    checkEnd(line, findings);
    checkLength(line, findings);
    marks.take(line);
    if (next != table.dataLines().end() && *next == line.number) {
      data.take(line);
      ++next;
    } else if (endsWithBlank(line.text)) {
      findings.add(line.number, "the line ends with a blank");
    }
    progress.at(static_cast<std::size_t>(line.number));
  }
  marks.finish(static_cast<int>(table.lines().size()));
}

// Also what is found before it throws counts.
void checkTable(const TableFile &table, std::optional<int> dates, Findings &findings) {
  if (table.lines().empty()) {
    findings.add(1, "the file is empty: no heading, no marks");
    return;
  }
  checkHeading(table, findings);
  checkLines(table, findings);
  const std::size_t usual = usualFields(table);
  if (dates && usual > 0 && static_cast<std::size_t>(*dates) >= usual) {
    throw Failure(kFailed, table.path() + ": --dates " + std::to_string(*dates) +
                               ": most lines have no such column");
  }
  if (dates) checkPeriods(table, static_cast<std::size_t>(*dates), findings);
}

}  // namespace

// A table that cannot be read does not keep the others from being checked.
int runCheck(const Arguments &arguments) {
  const std::optional<int> dates = arguments.number("dates", 1);
  int exitCode = kDone;
  for (const std::string &path : arguments.operands()) {
    Findings findings;
    try {
      checkTable(TableFile(path), dates, findings);
    } catch (const Failure &failure) {
      exitCode = failure.exitCode();
      complain(failure.what());
    }
    findings.print(path);
    if (!findings.empty()) exitCode = std::max(exitCode, kUnlike);
  }
  return exitCode;
}

}  // namespace korvel::tools
