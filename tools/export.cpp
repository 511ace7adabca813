// SPDX-License-Identifier: MIT
// The command export, and its CSV.
#include "tools/export.h"

#include <algorithm>
#include <cctype>

#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/csv.h"
#include "tools/failure.h"
#include "tools/newfile.h"
#include "tools/output.h"
#include "tools/place.h"
#include "tools/progress.h"
#include "tools/tablefile.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

// Databases cut longer identifiers, and an index is called like its table and five letters more.
constexpr std::size_t kLongestName = 58;

std::string nameOf(const std::string &path) {
  std::string name = path.substr(path.rfind('/') + 1);
  name = name.substr(0, name.rfind('.'));
  for (char &c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  }
  return name.empty() ? "codes" : name.substr(0, kLongestName);
}

std::size_t longestRow(const TableFile &table) {
  std::size_t longest = 1;
  for (const int number : table.dataLines()) {
    longest = std::max(longest, fieldsOf(table.line(number).text).size());
  }
  return longest;
}

std::string csvOf(const ExportedTable &table, bool hasHeading, char delimiter) {
  Progress progress(table.rows());
  std::string csv;
  if (hasHeading) csv += csvRow(table.columns(), delimiter);
  for (std::size_t i = 0; i < table.rows(); ++i) {
    csv += csvRow(table.row(i), delimiter);
    progress.at(i + 1);
  }
  return csv;
}

// Where the export goes: an absolute path.
std::string outputPlace(const Arguments &arguments) {
  const std::string &output = arguments.text("output");
  if (isSameFile(output, arguments.operand(0))) {
    throw Failure(kFailed, output + ": is the table itself");
  }
  return placeOf(output);
}

void writeText(const Arguments &arguments, const std::string &text) {
  if (!arguments.has("output")) {
    print(text);
    return;
  }
  NewFile file(outputPlace(arguments), usualMode());
  file.write(text);
  file.commit();
}

}  // namespace

ExportedTable::ExportedTable(const TableFile &table)
    : table_(table), name_(nameOf(table.path())), columns_{"code"} {
  const std::size_t fields = longestRow(table);
  for (std::size_t i = 1; i < fields; ++i) columns_.push_back("column" + std::to_string(i));
}

std::size_t ExportedTable::rows() const { return table_.dataLines().size(); }

std::vector<std::string> ExportedTable::row(std::size_t i) const {
  std::vector<std::string> row;
  for (const std::string_view field : fieldsOf(table_.line(table_.dataLines()[i]).text)) {
    row.push_back(toUtf8(field));
  }
  return row;
}

std::string identifier(const std::string &name) { return '"' + name + '"'; }

std::string columnList(const ExportedTable &table, const char *behind) {
  std::string list;
  for (const std::string &column : table.columns()) {
    list += (list.empty() ? "" : ", ") + identifier(column) + behind;
  }
  return list;
}

std::string indexStatement(const ExportedTable &table) {
  return "CREATE INDEX " + identifier(table.name() + "_code") + " ON " + identifier(table.name()) +
         " (\"code\");";
}

int runExport(const Arguments &arguments) {
  const std::string format = arguments.text("format", "csv");
  const char delimiter = delimiterOf(arguments.text("delimiter", ","));
  const bool isCsv = format == "csv";
  if (!isCsv && format != "sqlite" && format != "postgres") {
    throw WrongUse("--format has to be csv, sqlite or postgres, not \"" + format + '"');
  }
  if (!isCsv && (arguments.has("header") || arguments.has("delimiter"))) {
    throw WrongUse("--header and --delimiter are for csv");
  }
  if (format == "sqlite" && !arguments.has("output")) {
    throw WrongUse("--format sqlite needs --output FILE");
  }
  const TableFile file(arguments.operand(0));
  file.requireData();
  file.requireWhole();
  const ExportedTable table(file);
  if (format == "sqlite") {
    writeSqlite(table, outputPlace(arguments));
  } else {
    writeText(arguments,
              isCsv ? csvOf(table, arguments.has("header"), delimiter) : postgresScript(table));
  }
  return kDone;
}

}  // namespace korvel::tools
