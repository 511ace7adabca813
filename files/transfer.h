// SPDX-License-Identifier: MIT
// For files/, profile/ and tables/: whole reads and writes through descriptors, however many system
// calls they take.
#ifndef KORVEL_FILES_TRANSFER_H
#define KORVEL_FILES_TRANSFER_H

#include <cstddef>

#include <sys/types.h>

namespace korvel::files {

// Both return the number of bytes, which is below `count` only at the end of the file or on an
// error.
std::size_t readAll(int descriptor, char *to, std::size_t count);
std::size_t writeAll(int descriptor, const char *from, std::size_t count);

// Opens for writing. A missing file is created with exactly `mode`, whatever the process's file
// mask. flags: further flags of open(). Returns the descriptor, or -1.
int openCreating(const char *path, int flags, mode_t mode);

}  // namespace korvel::files

#endif
