// SPDX-License-Identifier: MIT
// For tables/: from a table's name to the path of its file.
#ifndef KORVEL_TABLES_PATH_H
#define KORVEL_TABLES_PATH_H

#include "files/paths.h"

namespace korvel::tables {

// A colon path; "" for none.
struct TablePath {
  // Sets no byte after the terminator.
  TablePath() { text[0] = '\0'; }

  char text[files::kPathSize];

  // False when there is none: no directory, a null name or 256 characters and more.
  explicit operator bool() const { return text[0] != '\0'; }
};

// The path of a table, and the folder that must exist for it; null: any.
struct TablePlace {
  TablePath path;
  const char *folder = nullptr;
};

// The place of a table. The folder is not looked for: opening the file tells.
TablePlace tablePlace(const char *name);

// The path of a table. A directory set by setDirTables comes first and takes the name as it is;
// szDirTables must be an existing directory and adds ".tab".
TablePath tablePath(const char *name);

// The same in szDirTables, whatever setDirTables has set.
TablePath defaultTablePath(const char *name);

}  // namespace korvel::tables

#endif
