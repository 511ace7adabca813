// For tables/ and its tests only: the lines that a rewriting hands on as they came in.
#ifndef KORVEL_TABLES_UNCHANGED_H
#define KORVEL_TABLES_UNCHANGED_H

#include <cstddef>
#include <string_view>

namespace korvel::tables {

// Whole lines at the beginning of some bytes, each of at most 1023 characters and ended by CR LF,
// with no CR and no LF besides.
struct UnchangedLines {
  std::size_t bytes;
  int count;
};

// As many of them as there are, up to `most`.
UnchangedLines unchangedLines(std::string_view bytes, int most);

}  // namespace korvel::tables

#endif
