// SPDX-License-Identifier: MIT
// The command import. The table is written beside its place; the library then gives it its name, in
// one step and after edits of the old one.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <korvel/tables.h>

#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/csv.h"
#include "tools/edit.h"
#include "tools/failure.h"
#include "tools/heading.h"
#include "tools/newfile.h"
#include "tools/place.h"
#include "tools/progress.h"
#include "tools/tablefile.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

bool isUtf8(const Arguments &arguments) {
  const std::string encoding = arguments.text("encoding", "utf-8");
  if (encoding == "utf-8" || encoding == "UTF-8") return true;
  if (encoding == "cp1252" || encoding == "CP1252") return false;
  throw WrongUse("--encoding has to be utf-8 or cp1252, not \"" + encoding + '"');
}

std::optional<char> replacementOf(const Arguments &arguments) {
  if (!arguments.has("replace")) return std::nullopt;
  const std::string text = fieldText(arguments.text("replace"));
  if (text.size() != 1) throw WrongUse("--replace has to be one character");
  return text[0];
}

// Makes the fields of a table's line of those of a row.
class FieldMaker {
 public:
  FieldMaker(const CsvReader &csv, bool isUtf8, std::optional<char> replacement)
      : csv_(csv), isUtf8_(isUtf8), replacement_(replacement) {}

  std::string lineOf(const std::vector<std::string> &row) const {
    if (!csv_.hasCode()) csv_.refuse(0, "the code is empty (\"\" if it has to be)");
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) line += ',';
      line += fieldOf(row[i], i);
    }
    checkMark(line);
    if (line.size() > kLineRoom) {
      csv_.refuse(row.size() - 1, "the line has " + std::to_string(line.size()) +
                                      " characters, a table's " + std::to_string(kLineRoom));
    }
    return line;
  }

 private:
  std::string fieldOf(const std::string &csv, std::size_t index) const {
    std::string field = isUtf8_ ? decoded(csv, index) : csv;
    for (char &c : field) {
      if (kSeparators.find(c) != std::string_view::npos) {
        c = replaced(index,
                     std::string("a \"") + c + "\", which separates fields, in " + quoted(field));
      }
    }
    return field;
  }

  std::string decoded(const std::string &csv, std::size_t index) const {
    try {
      return fromUtf8(csv, [&](std::string_view character) {
        return replaced(index, '"' + std::string(character) + "\" is no character of CP1252");
      });
    } catch (const NotUtf8 &) {
      csv_.refuse(index, quoted(csv) + " is not UTF-8 (--encoding cp1252?)");
    }
  }

  // What stands in the place of something that a table cannot hold.
  char replaced(std::size_t index, const std::string &what) const {
    if (!replacement_) csv_.refuse(index, what + " (--replace C puts C there)");
    return *replacement_;
  }

  void checkMark(const std::string &line) const {
    const std::string_view code = codeOf(line);
    const std::string_view mark = markOf(code);
    if (!mark.empty()) csv_.refuse(0, quoted(code) + " would count as the mark " + quoted(mark));
  }

  const CsvReader &csv_;
  const bool isUtf8_;
  const std::optional<char> replacement_;
};

std::string tableOf(const Arguments &arguments, const Heading &heading) {
  const std::string content = contentOf(arguments.operand(0));
  CsvReader csv(arguments.operand(0), content, delimiterOf(arguments.text("delimiter", ",")));
  const bool isEncodedUtf8 = isUtf8(arguments);
  if (!isEncodedUtf8 && csv.position() > 0) {
    throw Failure(kFailed, arguments.operand(0) + ": is UTF-8, as the mark it begins with says");
  }
  const FieldMaker maker(csv, isEncodedUtf8, replacementOf(arguments));
  Progress progress(content.size());
  std::string table;
  const auto add = [&](std::string_view line) { (table += line) += kLineEnd; };
  add(heading.title);
  add(heading.versionLine());
  add(kBeginMark);
  std::vector<std::string> row;
  if (arguments.has("header")) csv.next(row);
  while (csv.next(row)) {
    add(maker.lineOf(row));
    progress.at(csv.position());
  }
  add(kEndMark);
  return table;
}

}  // namespace

int runImport(const Arguments &arguments) {
  const Heading heading = headingOf(arguments);
  if (isSameFile(arguments.operand(0), arguments.operand(1))) {
    throw Failure(kFailed, arguments.operand(1) + ": is the CSV file itself");
  }
  const std::string table = tableOf(arguments, heading);
  const FolderLock lock(arguments.operand(1));
  const std::string place = placeOf(arguments.operand(1));
  const std::string name = libraryName(place, NewFile::kPattern.size());
  // Whoever makes a table by the library opens it to all, too.
  NewFile file(place, 0666);
  const std::string newName = libraryName(file.path());
  file.write(table);
  file.finish();
  Progress progress(1);
  progress.beforeCall(1);
  if (ZRV_Table_modify(newName.c_str(), name.c_str(), heading.version.c_str(),
                       heading.title.c_str()) != 1) {
    failToWrite(place);
  }
  return kDone;
}

}  // namespace korvel::tools
