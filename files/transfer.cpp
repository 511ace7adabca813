// SPDX-License-Identifier: MIT
// Whole reads and writes, and files created with their exact mode.
#include "files/transfer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/posix.h"

namespace korvel::files {

std::size_t readAll(int descriptor, char *to, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = base::retried([&] { return read(descriptor, to + done, count - done); });
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

std::size_t writeAll(int descriptor, const char *from, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t put = base::retried([&] { return write(descriptor, from + done, count - done); });
    if (put <= 0) break;
    done += static_cast<std::size_t>(put);
  }
  return done;
}

// The mask belongs to the whole process, other threads included, so it is left alone and the new
// file's mode is set instead.
int openCreating(const char *path, int flags, mode_t mode) {
  struct stat status;
  const bool isThere = stat(path, &status) == 0;
  const int descriptor =
      base::retried([&] { return open(path, O_WRONLY | O_CREAT | O_CLOEXEC | flags, mode); });
  if (descriptor >= 0 && !isThere) static_cast<void>(fchmod(descriptor, mode));
  return descriptor;
}

}  // namespace korvel::files
