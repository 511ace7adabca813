// SPDX-License-Identifier: MIT
// Reads a whole file and makes lines of it.
#include "tables/loaded.h"

#include <cstring>

#include <unistd.h>

#include "base/posix.h"
#include "tables/line.h"

namespace korvel::tables {
namespace {

bool isSameTime(const timespec &a, const timespec &b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// Makes lines of the bytes from `begin` to `end`, after which there is room for a line end.
std::string_view asLines(char *begin, char *end) {
  while (begin != end && *begin == kIgnored) ++begin;
  const auto size = static_cast<std::size_t>(end - begin);
  const auto *lastEnd = static_cast<const char *>(memrchr(begin, kLineEnd, size));
  char *rest = lastEnd == nullptr ? begin : begin + (lastEnd + 1 - begin);
  LineScratch scratch;
  const bool isLine = !keptOf({rest, static_cast<std::size_t>(end - rest)}, scratch).empty();
  if (isLine) *end++ = kLineEnd;
  const auto length = static_cast<std::size_t>((isLine ? end : rest) - begin);
  if (length > 0) putLineEndBefore(begin, length);
  return {begin, length};
}

}  // namespace

bool isUnchanged(const struct stat &before, const struct stat &now) {
  return base::isSameFile(before, now) && before.st_size == now.st_size &&
         isSameTime(before.st_mtim, now.st_mtim) && isSameTime(before.st_ctim, now.st_ctim);
}

void putLineEndBefore(char *lines, std::size_t size) {
  const auto *end = static_cast<const char *>(std::memchr(lines, kLineEnd, size));
  lines[-2] = kLineEnd;
  lines[-1] = end[1] == kIgnored ? kIgnored : kLineEnd;
}

bool LoadedTable::read(int descriptor, std::size_t size) {
  std::free(block_);
  lines_ = {};
  block_ = static_cast<char *>(std::calloc(1, kMargin + size + 1 + kMargin));
  if (block_ == nullptr) return false;
  char *begin = block_ + kMargin;
  for (std::size_t done = 0; done < size;) {
    const auto at = static_cast<off_t>(done);
    const ssize_t got =
        base::retried([&] { return pread(descriptor, begin + done, size - done, at); });
    if (got <= 0) return false;
    done += static_cast<std::size_t>(got);
  }
  lines_ = asLines(begin, begin + size);
  return true;
}

}  // namespace korvel::tables
