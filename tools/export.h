// SPDX-License-Identifier: MIT
// What the forms of an export share: the rows of a table, and where they go.
#ifndef KORVEL_TOOLS_EXPORT_H
#define KORVEL_TOOLS_EXPORT_H

#include <cstddef>
#include <string>
#include <vector>

namespace korvel::tools {

class TableFile;

// A table whose fields are cut and turned into UTF-8 one row after the other.
class ExportedTable {
 public:
  explicit ExportedTable(const TableFile &table);

  // The table's name without its extension, as identifiers of a database may be written.
  const std::string &name() const { return name_; }
  // "code", "column1", "column2"...: as many as the longest row has fields.
  const std::vector<std::string> &columns() const { return columns_; }
  std::size_t rows() const;
  std::vector<std::string> row(std::size_t i) const;

 private:
  const TableFile &table_;
  std::string name_;
  std::vector<std::string> columns_;
};

// An identifier between quotes, as SQL has them.
std::string identifier(const std::string &name);
// The columns with commas between them. behind: what follows each name.
std::string columnList(const ExportedTable &table, const char *behind = "");
std::string indexStatement(const ExportedTable &table);

// Writes a database, which replaces the file at an absolute path.
void writeSqlite(const ExportedTable &table, const std::string &place);

// A script for psql.
std::string postgresScript(const ExportedTable &table);

}  // namespace korvel::tools

#endif
