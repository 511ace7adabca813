// SPDX-License-Identifier: MIT
// Changes of one line of a table, made by the library in one edit: the table is the old one or the
// new one at any moment. Only a line behind a last one that has an empty field takes two.
#ifndef KORVEL_TOOLS_EDIT_H
#define KORVEL_TOOLS_EDIT_H

#include <cstddef>
#include <string>

#include "tools/tablefile.h"

namespace korvel::tools {

// Throws for a text that the library would take for a mark at the beginning of a line.
void checkNoMark(const std::string &text);
// Throws unless a text can be the code of a data line.
void checkCode(const std::string &code);
// Throws unless all of a line would be read.
void checkLength(const std::string &line);

class TableEdit {
 public:
  explicit TableEdit(const std::string &path);

  // Each throws when the library could not do it. Lines are numbered from 1.
  void replaceField(int line, std::size_t column, const std::string &text);
  void insertBefore(int line, const TableFile &table, const std::string &text);
  void insertBehind(int line, const TableFile &table, const std::string &text);
  void remove(int line);

 private:
  const std::string path_;
  const std::string name_;
};

}  // namespace korvel::tools

#endif
