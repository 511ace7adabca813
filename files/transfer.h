// For files/ and tables/ only: reading and writing through descriptors, interruptions and short
// transfers gathered.
#ifndef KORVEL_FILES_TRANSFER_H
#define KORVEL_FILES_TRANSFER_H

#include <cerrno>
#include <cstddef>

#include <sys/types.h>

namespace korvel::files {

// The result of a system call, made again as long as a signal interrupts it.
template <typename Call>
auto retried(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// Both return the number of bytes, which is less than `count` only at the end of the file or on an
// error.
std::size_t readAll(int descriptor, char *to, std::size_t count);
std::size_t writeAll(int descriptor, const char *from, std::size_t count);

// Opens for writing and creates a missing file with the mode `mode`, whatever the process's file
// mask. `flags` are further ones. Returns the descriptor, or -1.
int openCreating(const char *path, int flags, mode_t mode);

}  // namespace korvel::files

#endif
