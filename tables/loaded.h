// SPDX-License-Identifier: MIT
// For tables/: a table that is in memory as a whole.
#ifndef KORVEL_TABLES_LOADED_H
#define KORVEL_TABLES_LOADED_H

#include <cstddef>
#include <cstdlib>
#include <string_view>

#include <sys/stat.h>

namespace korvel::tables {

// How many bytes around lines in memory may be read as well; their values are unspecified, except
// for the line end in front.
inline constexpr std::size_t kMargin = 2048;

// Whether a file is the same one, and as it was before.
bool isUnchanged(const struct stat &before, const struct stat &now);

// Writes a line end like the first line's in front of the lines.
void putLineEndBefore(char *lines, std::size_t size);

class LoadedTable {
 public:
  LoadedTable() = default;
  ~LoadedTable() { std::free(block_); }
  LoadedTable(const LoadedTable &) = delete;
  LoadedTable &operator=(const LoadedTable &) = delete;

  // Reads a file of that size. Returns false, with no lines, when it has fewer bytes, cannot be
  // read or does not fit into memory.
  bool read(int descriptor, std::size_t size);

  // Its lines, each ended by a carriage return, with a line end like the first one's and the margin
  // around them.
  std::string_view lines() const { return lines_; }

 private:
  char *block_ = nullptr;
  std::string_view lines_;
};

}  // namespace korvel::tables

#endif
