// For files/ only: the rows of a file list.
#ifndef KORVEL_FILES_ROWS_H
#define KORVEL_FILES_ROWS_H

#include <cstddef>
#include <cstring>
#include <string_view>

namespace korvel::files {

constexpr std::size_t kRowSize = 256;

// The text of a row; one without a terminator ends before its last byte.
inline std::string_view rowText(const char *row) { return {row, strnlen(row, kRowSize - 1)}; }

}  // namespace korvel::files

#endif
