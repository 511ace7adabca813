// SPDX-License-Identifier: MIT
// An export as a script for psql: a table, its rows as COPY reads them, and an index on its code.
#include "tools/export.h"
#include "tools/progress.h"

namespace korvel::tools {
namespace {

// A value as COPY reads it.
std::string copied(const std::string &value) {
  std::string text;
  for (const char c : value) {
    switch (c) {
      case '\\':
        text += "\\\\";
        break;
      case '\t':
        text += "\\t";
        break;
      default:
        text += c;
    }
  }
  return text;
}

// Columns that the row does not have are NULL.
std::string copiedRow(const std::vector<std::string> &row, std::size_t columns) {
  std::string line;
  for (std::size_t i = 0; i < columns; ++i) {
    if (i > 0) line += '\t';
    line += i < row.size() ? copied(row[i]) : "\\N";
  }
  line += '\n';
  return line;
}

}  // namespace

std::string postgresScript(const ExportedTable &table) {
  Progress progress(table.rows());
  const std::string name = identifier(table.name());
  std::string script =
      "\\set ON_ERROR_STOP on\n"
      "SET client_encoding = 'UTF8';\n"
      "BEGIN;\n"
      "CREATE TABLE " +
      name + " (" + columnList(table, " text") + ");\n" + "COPY " + name + " (" +
      columnList(table) + ") FROM stdin;\n";
  for (std::size_t i = 0; i < table.rows(); ++i) {
    script += copiedRow(table.row(i), table.columns().size());
    progress.at(i + 1);
  }
  return script + "\\.\n" + indexStatement(table) + "\nCOMMIT;\n";
}

}  // namespace korvel::tools
