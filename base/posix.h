// SPDX-License-Identifier: MIT
// For base/, shell/, files/, profile/, tables/ and platform/: what system calls need everywhere.
#ifndef KORVEL_BASE_POSIX_H
#define KORVEL_BASE_POSIX_H

#include <cerrno>

#include <sys/stat.h>

namespace korvel::base {

// The result of a system call, repeated while signals interrupt it.
template <typename Call>
auto retried(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// Whether both describe one file, under whatever names.
inline bool isSameFile(const struct stat &a, const struct stat &b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace korvel::base

#endif
