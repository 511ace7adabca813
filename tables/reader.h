// SPDX-License-Identifier: MIT
// For tables/: the file of a table, read in large blocks, or as it is in memory.
//
// An application sees of it what it would see of a file that is first loaded whole into a memory
// file: the same slots are taken and given back, and without a free one nothing is read. In fact
// one block at a time is read, when it is asked for, or none of a table that is kept in memory.
// Only a reading during which the application runs loads the whole file.
#ifndef KORVEL_TABLES_READER_H
#define KORVEL_TABLES_READER_H

#include <cstddef>
#include <string_view>

#include <sys/stat.h>

#include "tables/kept.h"
#include "tables/line.h"
#include "tables/loaded.h"

namespace korvel::tables {

// Which slots a reading needs free, and keeps to its end.
enum class Slots {
  File,           // a file handle
  FileAndMemory,  // both; for readings during which nothing of the application runs
  Memory,         // both at first; the file is read whole and its handle given back
};

// The content of a table file. kMargin bytes in front of and after what a call returns may be read
// as well; their values are unspecified, except for the line end that nextLines() puts in front.
class TableReader {
 public:
  static constexpr std::size_t kLargestBlock = 256 * 1024;

  // How much is read at once, up to kLargestBlock. A variable so that tests can end a block
  // anywhere.
  static std::size_t blockSize;

  TableReader() = default;
  ~TableReader() { close(); }
  TableReader(const TableReader &) = delete;
  TableReader &operator=(const TableReader &) = delete;

  // Opens the file at a colon path. Returns false, holding nothing, when it does not open, a slot
  // is missing or there is no memory.
  bool open(const char *path, Slots slots);

  // The same for a table by its name.
  bool openTable(const char *name, Slots slots);

  // From the start on, reads through a descriptor of the caller's instead of the file handle's own.
  void readThrough(int descriptor);

  // Both return a view that is valid until the next call, empty at the end of the file. A file that
  // is cut short meanwhile ends there; what it grows by is not read.

  // The next bytes of the file; not of a table in memory.
  std::string_view next();

  // The next whole lines, each ended by a carriage return, with a line end like the first one's in
  // front of them. A line whose end is in a later block is put together from its kept characters;
  // the last line gains an end if the file has none. What was begun when a reading broke off is no
  // line. Of a table in memory, all lines at once.
  std::string_view nextLines();

  // Where the lines are that nextLines() gives; null where the file is read.
  const LineIndex *index() const { return index_; }

  // False when the file's size is not known, a read failed or the file was cut short: what was
  // returned is not all of it.
  bool isWhole() const { return isWhole_; }

  // The file, open for reading; it remains the reader's.
  int descriptor() const { return descriptor_; }

  // Gives everything back but the file handle, which stays open.
  void leaveOpen();

  // Gives everything back but a table that was loaded whole, which goes with the reader.
  void close();

 private:
  bool start(int file, Slots slots, const struct stat &status);
  void measure();
  bool load();
  bool prepare(Slots slots, const struct stat &status);
  bool takeBuffer();
  void giveBackBuffer();

  int file_ = -1;        // handle
  int memory_ = -1;      // handle
  int descriptor_ = -1;  // the file's
  int size_ = 0;         // of the file
  int position_ = 0;     // after the last byte given
  bool isWhole_ = true;
  char *buffer_ = nullptr;  // null: the table is in memory
  LoadedTable own_;
  std::string_view loaded_;  // the lines of a table in memory that are left
  const LineIndex *index_ = nullptr;
  std::string_view begun_;  // the beginning of a line that the last block did not end
  LineScratch scratch_;
};

// One line after the other, for callers that want them all.
class LineReader {
 public:
  // size: of the line buffer that says how many characters are kept, at most kLineSize
  explicit LineReader(TableReader &table, std::size_t size = kLineSize)
      : table_(table), size_(size) {}

  // The kept characters of the next line, valid until the next call. Returns false at the end.
  bool next(std::string_view &kept);

 private:
  TableReader &table_;
  std::size_t size_;
  std::string_view lines_;  // that are left
  LineScratch scratch_;
};

}  // namespace korvel::tables

#endif
