// For tables/ only: from a table's name to the path of its file.
#ifndef KORVEL_TABLES_PATH_H
#define KORVEL_TABLES_PATH_H

namespace korvel::tables {

inline constexpr int kPathSize = 256;

// A colon path; "" for none.
struct TablePath {
  // What stands behind the terminator is not set.
  TablePath() { text[0] = '\0'; }

  char text[kPathSize];

  // False when there is none: no directory, a null name or 256 characters and more.
  explicit operator bool() const { return text[0] != '\0'; }
};

// Where a table's file stands: its path, and the folder that must exist for it; null: any.
struct TablePlace {
  TablePath path;
  const char *folder = nullptr;
};

// The place of a table, as tablePath says but without looking whether the folder exists: whoever
// opens the file finds that out.
TablePlace tablePlace(const char *name);

// The path of a table. The directory of setDirTables goes first and takes the name as it stands;
// szDirTables must be an existing directory and adds ".tab".
TablePath tablePath(const char *name);

// The same in szDirTables, whatever setDirTables has set.
TablePath defaultTablePath(const char *name);

}  // namespace korvel::tables

#endif
