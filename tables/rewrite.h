// SPDX-License-Identifier: MIT
// For tables/: the one way in which a table is rewritten.
//
// The old file is read in large blocks, a few of which are in memory at any time. Lines that stay
// and end with CR LF are copied many at a time; of other lines a reader's characters and CR LF are
// written. The new content takes the old one's place in one step: a kill, a full disk or a failure
// at any moment leaves the old table or the new one, whole, with the old owner and mode. A table
// that is a symbolic link stays one.
#ifndef KORVEL_TABLES_REWRITE_H
#define KORVEL_TABLES_REWRITE_H

#include <climits>
#include <cstddef>
#include <initializer_list>
#include <string_view>

#include <sys/stat.h>

#include "files/lock.h"
#include "files/paths.h"
#include "files/replace.h"
#include "tables/line.h"
#include "tables/path.h"
#include "tables/reader.h"
#include "tables/rebuild.h"
#include "tables/temporary.h"

namespace korvel::tables {

// Whether both POSIX paths are spellings of one name; a link is not followed.
bool isOneEntry(const char *a, const char *b);

// Whether this process may make files in the folder of a POSIX path. errno says why not.
bool mayWriteFolderOf(const char *path);

// Whether this process may remove or replace the file at a POSIX path: of a sticky folder not every
// one.
bool mayRemove(const char *path);

// Writes into the replacement: gathers small pieces and passes large ones straight on.
class RewriteOutput final : public LineSink {
 public:
  explicit RewriteOutput(files::Replacement &to) : to_(to) {}

  void write(std::string_view piece) override;
  void writeLine(std::initializer_list<std::string_view> parts);

  // Writes what is gathered. Returns false when anything could not be written.
  bool flush();
  bool failed() const { return failed_; }
  // Bytes written so far.
  std::size_t size() const { return size_; }

 private:
  static constexpr std::size_t kGathered = 16 * 1024;
  static constexpr std::size_t kLarge = 4 * 1024;

  void handOn(std::string_view piece);

  files::Replacement &to_;
  bool failed_ = false;
  std::size_t size_ = 0;
  std::size_t length_ = 0;
  char gathered_[kGathered];
};

// What a rewriting does to the lines that it changes.
class LineEdit {
 public:
  static constexpr int kNoLine = INT_MAX;

  LineEdit(const LineEdit &) = delete;
  LineEdit &operator=(const LineEdit &) = delete;

  // Called before the first line, once per attempt.
  virtual void restart() = 0;
  // The next line to change after a line, or kNoLine. Called with 0 at the start, and after each
  // apply().
  virtual int nextAfter(int line) const = 0;
  // Writes what takes the line's place, line end included. kept: its characters. Returns false to
  // leave the table as it is after all; no further line is read then.
  virtual bool apply(int line, std::string_view kept, RewriteOutput &output) = 0;
  // Called after the last line: false leaves the table as it is.
  virtual bool isWanted() const { return true; }

 protected:
  LineEdit() = default;
  ~LineEdit() = default;
};

// One rewriting of one table. The table is locked for other edits until the object is destroyed.
//
// A program that does not take the lock may change the table meanwhile. So it is looked at again
// just before the new one takes its place; if it is not what was read, the edit starts again, with
// three attempts in all.
class TableRewrite {
 public:
  explicit TableRewrite(const TablePath &path) : TableRewrite(path, path) {}
  // newPath: the colon path of the table afterwards; a file with that path gives way.
  TableRewrite(const TablePath &path, const TablePath &newPath);

  enum class Result {
    Unopened,  // the table does not open or cannot be replaced
    Failed,    // not everything could be read and written, or the edit gave up
    Done       // the new table is in place, or is not wanted
  };

  // Waits for the table and edits it. Takes two file handles meanwhile, the table's and a
  // WritingHandle. Unless the result is Done, the table is unchanged.
  Result run(LineEdit &edit);

 private:
  // What gets the new path: nothing, as it is the old path; the file; or the symbolic link that the
  // table is, while its file stays where it is. Unknown: the system does not tell which.
  enum class Move { Nothing, File, Link, Unknown };

  Move moveOfEntry() const;
  bool begin();
  bool takeLocks();
  bool takeTargetLock(files::Patience &patience);
  bool openTemporary();
  bool openTarget();
  bool copy(LineEdit &edit);
  bool copyLines(LineEdit &edit, RewriteOutput &output);
  bool appendLeftOver(RewriteOutput &output) const;
  bool isAsRead() const;
  bool commit();
  bool finishMovingFile(bool wasUnused);
  bool moveLink();
  void giveBack();

  TablePath colonPath_;
  files::PosixPath path_;
  files::PosixPath newPath_;
  Move move_;
  files::FileLock lock_;
  files::FileLock targetLock_;  // of the table that gives way
  struct stat asRead_ = {};
  bool hasChanged_ = false;  // since it was read
  TableReader reader_;
  WritingHandle handle_;
  LeftOver leftOver_;
  files::Replacement replacement_;
};

}  // namespace korvel::tables

#endif
