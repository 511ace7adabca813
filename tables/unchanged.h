// For tables/: the lines that a rewriting copies as they are.
#ifndef KORVEL_TABLES_UNCHANGED_H
#define KORVEL_TABLES_UNCHANGED_H

#include <cstddef>
#include <string_view>

namespace korvel::tables {

// Whole lines at the beginning of some bytes: each has at most 1023 characters, ends with CR LF and
// holds no other CR or LF.
struct UnchangedLines {
  std::size_t bytes;
  int count;
};

// All of them, up to `most`.
UnchangedLines unchangedLines(std::string_view bytes, int most);

}  // namespace korvel::tables

#endif
