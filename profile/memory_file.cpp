// SPDX-License-Identifier: MIT
// Files read into memory files, and memory files filled piece by piece.
#include "profile/memory_file.h"

#include <cerrno>
#include <climits>
#include <cstddef>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>

#include "base/numbers.h"
#include "base/posix.h"
#include "files/memory.h"
#include "files/paths.h"
#include "files/transfer.h"

namespace korvel::profile {
namespace {

ssize_t readSome(int descriptor, char *to, std::size_t count) {
  return base::retried([&] { return read(descriptor, to, count); });
}

}  // namespace

InputFile::~InputFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

// Whether it is a regular file is known once it is open; until then opening a pipe must not wait
// for the other end.
bool InputFile::open(const char *path) {
  const auto openAt = [this](const files::PosixPath &posix) {
    constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    descriptor_ = base::retried([&] { return ::open(posix.text(), kFlags); });
    return descriptor_ >= 0;
  };
  if (!openAt(files::PosixPath::withoutVolumeCheck(path)) && !openAt(files::PosixPath(path)))
    return false;
  struct stat status;
  if (fstat(descriptor_, &status) != 0) return false;
  size_ = status.st_size;
  return S_ISREG(status.st_mode);
}

MemoryFile::MemoryFile(off_t size) {
  errno = 0;
  handle_ = files::openMemoryFile(1, base::clampToInt(size));
  isWithoutMemory_ = !isOpen() && errno == ENOMEM;
}

MemoryFile::~MemoryFile() { files::closeMemoryFile(handle_); }

bool MemoryFile::load(int descriptor, off_t size) {
  if (size >= INT_MAX) return false;
  MFilSlot &slot = DATA_MFIL_TAB[handle_];
  const ssize_t got = readSome(descriptor, slot.block, static_cast<std::size_t>(slot.capacity));
  if (got < 0) return false;
  slot.size = slot.position = static_cast<int>(got);
  if (got == size && got < slot.capacity) return true;
  // The file has changed since it was opened, or does not report its size.
  char piece[16384];
  for (;;) {
    const ssize_t more = readSome(descriptor, piece, sizeof piece);
    if (more <= 0) return more == 0;
    if (files::writeMemoryFile(handle_, piece, static_cast<int>(more)) != more) return false;
  }
}

bool MemoryFile::append(std::string_view piece) {
  if (piece.size() > INT_MAX) return false;
  const int count = static_cast<int>(piece.size());
  return files::writeMemoryFile(handle_, piece.data(), count) == count;
}

void MemoryFile::clear() {
  MFilSlot &slot = DATA_MFIL_TAB[handle_];
  slot.size = slot.position = 0;
}

std::string_view MemoryFile::bytes() const {
  const MFilSlot &slot = DATA_MFIL_TAB[handle_];
  return {slot.block, static_cast<std::size_t>(slot.size)};
}

}  // namespace korvel::profile
