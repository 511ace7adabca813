// For tables/ and its tests only: what an application can tell of the file through which a table is
// rewritten.
//
// That file is called like the table, but for its last character, which is '_'. In fact the new
// content stands in a file without a name, and nobody meets the other one. Two things remain: it
// takes a file handle as long as it is written, and one of that name that this user left there is
// gone through.
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

  // The slot's name is the beginning of a colon path that is too long for it. Returns false when no
  // slot is free.
  bool take(const char *path);

  // As by a closing.
  void giveBack();
  // As by an opening that fails: the counter stays raised.
  void dropUnopened();

 private:
  int handle_ = -1;
};

// The path of the temporary file of a table.
TablePath temporaryPath(const TablePath &table);

// A file that stands where the temporary file would.
class LeftOver {
 public:
  LeftOver() = default;
  ~LeftOver() { close(); }
  LeftOver(const LeftOver &) = delete;
  LeftOver &operator=(const LeftOver &) = delete;

  // Looks for that of the table at a POSIX path. Returns false when what stands there is no file
  // that could be written through: a folder, say. The table itself is none, nor is another user's
  // file. One that is open already stays the one.
  bool openFor(const char *table);

  // Kept: what it holds behind the new content becomes part of that. The bytes from an offset on,
  // up to as many as the buffer holds; their number, 0 at the end, -1 when they cannot be read.
  long read(long offset, char *to, unsigned long size) const;

  // Kept: the rewriting uses it up. Its bytes can be read still.
  void consume();

 private:
  void close();

  char path_[PATH_MAX] = "";
  int file_ = -1;
};

}  // namespace korvel::tables

#endif
