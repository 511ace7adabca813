// SPDX-License-Identifier: MIT
// For tables/: what an application can tell of the file through which a table is rewritten.
//
// To an application, an edit goes through a file named like the table with '_' for its last
// character. The content is really written to an unnamed file; two effects of the named one are
// kept: a file handle is in use meanwhile, and a file already under that name is consumed.
#ifndef KORVEL_TABLES_TEMPORARY_H
#define KORVEL_TABLES_TEMPORARY_H

#include <limits.h>

#include "tables/path.h"

namespace korvel::tables {

// A file handle taken as an opening for writing would take it, without a file.
class WritingHandle {
 public:
  WritingHandle() = default;
  ~WritingHandle() { giveBack(); }
  WritingHandle(const WritingHandle &) = delete;
  WritingHandle &operator=(const WritingHandle &) = delete;

  // The slot's name is the colon path, cut to what the slot holds. Returns false when no slot is
  // free.
  bool take(const char *path);

  // As a closing does.
  void giveBack();
  // As an opening that fails does: the counter stays raised.
  void dropUnopened();

 private:
  int handle_ = -1;
};

// The path of the temporary file of a table.
TablePath temporaryPath(const TablePath &table);

// A file that is there under the temporary's name.
class LeftOver {
 public:
  LeftOver() = default;
  ~LeftOver() { close(); }
  LeftOver(const LeftOver &) = delete;
  LeftOver &operator=(const LeftOver &) = delete;

  // Opens the file under the temporary's name, if there is one. False if it could not be written
  // through: a folder, say. The table itself and another user's file are left alone. Once a file is
  // open, further calls keep it. table: POSIX path
  bool openFor(const char *table);

  // Kept: bytes of the old temporary beyond the new content end up in the table. Reads from an
  // offset on; returns the number of bytes, 0 at the end, -1 when they cannot be read.
  long read(long offset, char *to, unsigned long size) const;

  // Kept: the rewriting uses up the old temporary. Its bytes can still be read.
  void consume();

 private:
  void close();

  char path_[PATH_MAX] = "";
  int file_ = -1;
};

}  // namespace korvel::tables

#endif
