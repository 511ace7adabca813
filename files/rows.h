// SPDX-License-Identifier: MIT
// For files/: the rows of a file list.
#ifndef KORVEL_FILES_ROWS_H
#define KORVEL_FILES_ROWS_H

#include <cstddef>
#include <cstring>
#include <string_view>

#include "shell/listing.h"

namespace korvel::files {

using shell::kRowSize;

// The text of a row; without a terminator it ends before the last byte.
inline std::string_view rowText(const char *row) { return {row, strnlen(row, kRowSize - 1)}; }

}  // namespace korvel::files

#endif
