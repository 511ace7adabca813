// SPDX-License-Identifier: MIT
// The commands set, insert and delete.
#include "tools/edit.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

#include <korvel/tables.h>

#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/failure.h"
#include "tools/place.h"
#include "tools/progress.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

constexpr const char *kUnknown =
    "N\xE9"
    "ant";

std::string joined(const std::vector<std::string> &fields) {
  std::string line;
  for (const std::string &field : fields) line += (&field == fields.data() ? "" : ",") + field;
  return line;
}

// The numbers of the data lines of exactly this code, '?' being a letter like any other.
std::vector<int> linesOf(const TableFile &table, const std::string &code) {
  std::vector<int> numbers;
  const auto hasCode = [&](int number) { return codeOf(table.line(number).text) == code; };
  std::copy_if(table.dataLines().begin(), table.dataLines().end(), std::back_inserter(numbers),
               hasCode);
  return numbers;
}

std::vector<int> linesFound(const TableFile &table, const std::string &argument) {
  table.requireData();
  std::vector<int> numbers = linesOf(table, tableText(argument));
  if (numbers.empty()) {
    throw Failure(kUnlike, table.path() + ": code \"" + argument + "\" not found");
  }
  return numbers;
}

// The line of a code that an edit takes: the first one, or the one that is asked for.
int lineChosen(const TableFile &table, const std::string &code, std::optional<int> wanted) {
  const std::vector<int> numbers = linesFound(table, code);
  if (!wanted) return numbers.front();
  if (std::find(numbers.begin(), numbers.end(), *wanted) != numbers.end()) return *wanted;
  throw Failure(kUnlike, table.path() + ": line " + std::to_string(*wanted) +
                             " has not the code \"" + code + '"');
}

// The fields of a new line, as many as most lines have.
std::vector<std::string> newFields(const std::vector<std::string> &texts, std::size_t usual) {
  std::vector<std::string> fields;
  fields.reserve(texts.size());
  for (const std::string &text : texts) fields.push_back(fieldText(text));
  checkCode(fields[0]);
  if (usual > 0 && fields.size() > usual) {
    throw Failure(kFailed, std::to_string(texts.size() - 1) +
                               " columns given, where the lines have " + std::to_string(usual - 1));
  }
  fields.resize(std::max(usual, fields.size()), kUnknown);
  return fields;
}

// Empty fields end what the library replaces in a line, so that such a line gives way to a new one.
bool replacesInPlace(const std::vector<std::string_view> &fields, std::size_t column) {
  return column == 0 || std::none_of(fields.begin(), fields.begin() + static_cast<long>(column) + 1,
                                     [](std::string_view field) { return field.empty(); });
}

}  // namespace

void checkNoMark(const std::string &text) {
  const std::string_view mark = markOf(text);
  if (mark.empty()) return;
  throw Failure(kFailed, quoted(text) + " would count as the mark " + quoted(mark));
}

void checkCode(const std::string &code) {
  if (code.empty()) throw Failure(kFailed, "a code cannot be empty");
  checkNoMark(code);
}

void checkLength(const std::string &line) {
  if (line.size() <= kLineRoom) return;
  throw Failure(kFailed, "the line would have " + std::to_string(line.size()) +
                             " characters, of which " + std::to_string(kLineRoom) + " are read");
}

TableEdit::TableEdit(const std::string &path) : path_(placeOf(path)), name_(nameForEdit(path_)) {}

void TableEdit::replaceField(int line, std::size_t column, const std::string &text) {
  // A key of no length and column 0 are the code.
  const int keyLength = column == 0 ? 0 : 1;
  ZRV_Libelle_NC_set_ligne(line);
  if (ZRV_Libelle_NC_idem_replace("", keyLength, static_cast<int>(column), name_.c_str(),
                                  text.c_str()) != 1) {
    failToWrite(path_);
  }
}

// In one edit: a line end in a text makes a further line.
void TableEdit::insertBefore(int line, const TableFile &table, const std::string &text) {
  const std::string_view code = codeOf(table.line(line).text);
  replaceField(line, 0, text + std::string(kLineEnd) + std::string(code));
}

void TableEdit::insertBehind(int line, const TableFile &table, const std::string &text) {
  if (line < static_cast<int>(table.lines().size())) {
    insertBefore(line + 1, table, text);
    return;
  }
  const std::vector<std::string_view> fields = fieldsOf(table.line(line).text);
  const std::size_t last = fields.size() - 1;
  if (replacesInPlace(fields, last)) {
    replaceField(line, last, std::string(fields[last]) + std::string(kLineEnd) + text);
    return;
  }
  ZRV_Libelle_NC_set_ligne(line);
  if (ZRV_Libelle_NC_idem_insert("", 0, name_.c_str(), 1) != 1) failToWrite(path_);
  replaceField(line + 1, 0, text);
}

void TableEdit::remove(int line) {
  ZRV_Libelle_NC_set_ligne(line);
  if (ZRV_Libelle_NC_idem_delete("", 0, name_.c_str()) != 1) failToWrite(path_);
}

int runSet(const Arguments &arguments) {
  const auto column = static_cast<std::size_t>(numberOf(arguments.operand(2), 0, "COLUMN"));
  const std::optional<int> wanted = arguments.number("line", 1);
  const std::string text = fieldText(arguments.operand(3));
  if (column == 0) checkCode(text);
  const FolderLock lock(arguments.operand(0));
  const TableFile table(arguments.operand(0));
  table.requireEditable();
  const int number = lineChosen(table, arguments.operand(1), wanted);
  const std::vector<std::string_view> fields = fieldsOf(table.line(number).text);
  if (column >= fields.size()) {
    throw Failure(kFailed, table.path() + ':' + std::to_string(number) + ": no column " +
                               std::to_string(column) + ", the line has " +
                               std::to_string(fields.size() - 1));
  }
  std::vector<std::string> changed(fields.begin(), fields.end());
  changed[column] = text;
  checkLength(joined(changed));
  TableEdit edit(table.path());
  Progress progress(1);
  progress.beforeCall(1);
  if (replacesInPlace(fields, column)) {
    edit.replaceField(number, column, text);
  } else {
    edit.insertBefore(number, table, joined(changed));
    edit.remove(number + 1);
  }
  return kDone;
}

int runInsert(const Arguments &arguments) {
  const FolderLock lock(arguments.operand(0));
  const TableFile table(arguments.operand(0));
  table.requireEditable();
  const int before = arguments.has("after")
                         ? lineChosen(table, arguments.text("after"), std::nullopt)
                     : table.dataLines().empty() ? table.begin()
                                                 : table.dataLines().back();
  const std::vector<std::string> texts(arguments.operands().begin() + 1,
                                       arguments.operands().end());
  const std::string line = joined(newFields(texts, usualFields(table)));
  checkLength(line);
  Progress progress(1);
  progress.beforeCall(1);
  TableEdit(table.path()).insertBehind(before, table, line);
  return kDone;
}

// From the last line to the first, so that the numbers of the others stay.
int runDelete(const Arguments &arguments) {
  const std::optional<int> wanted = arguments.number("line", 1);
  const bool all = arguments.has("all");
  if (all && wanted) throw WrongUse("--all and --line exclude each other");
  const FolderLock lock(arguments.operand(0));
  const TableFile table(arguments.operand(0));
  table.requireEditable();
  std::vector<int> numbers = linesFound(table, arguments.operand(1));
  if (!all) numbers = {lineChosen(table, arguments.operand(1), wanted)};
  TableEdit edit(table.path());
  Progress progress(numbers.size());
  progress.beforeCall(0);
  for (std::size_t left = numbers.size(); left > 0; --left) {
    edit.remove(numbers[left - 1]);
    progress.at(numbers.size() - left + 1);
  }
  return kDone;
}

}  // namespace korvel::tools
