#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>

#include "files/paths.h"
#include "files/transfer.h"

namespace korvel::files {
namespace {

constexpr mode_t kOpenToAll = 0777;

bool isRegularFile(const char *path) {
  struct stat status;
  return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

// The opening of a pipe must not wait for the other end; its reading and writing do.
constexpr int kAtOnce = O_NONBLOCK | O_NOCTTY;

int waiting(int descriptor) {
  if (descriptor >= 0) fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
  return descriptor;
}

int openDescriptor(const char *path, int read, int write) {
  if (read < 1) return waiting(openCreating(path, O_TRUNC | kAtOnce, kOpenToAll));
  if (write < 1 && !isRegularFile(path)) return -1;
  const int access = write < 1 ? O_RDONLY : O_RDWR;
  return waiting(retried([&] { return open(path, access | kAtOnce | O_CLOEXEC); }));
}

}  // namespace
}  // namespace korvel::files

using namespace korvel::files;

int xFile_Open(const char *path, int read, int write) {
  // Kept: with neither flag set the result is the read flag itself.
  if (read < 1 && write < 1) return read;
  return openDescriptor(PosixPath(path).text(), read, write);
}

int xFile_Close(int descriptor) { return close(descriptor); }

int xFile_Read(int descriptor, void *buffer, int count) {
  if (buffer == nullptr || count < 0) return 0;
  const ssize_t got =
      retried([&] { return read(descriptor, buffer, static_cast<std::size_t>(count)); });
  return got < 0 ? 0 : static_cast<int>(got);
}

int xFile_Write(int descriptor, const void *buffer, int count) {
  if (buffer == nullptr || count < 0) return -1;
  return static_cast<int>(
      retried([&] { return write(descriptor, buffer, static_cast<std::size_t>(count)); }));
}

int xFile_Lseek(int descriptor, int offset) {
  return static_cast<int>(lseek(descriptor, offset, SEEK_SET));
}

int xFile_GetPos(int descriptor) { return static_cast<int>(lseek(descriptor, 0, SEEK_CUR)); }

int xFile_Size(int descriptor) {
  const std::int64_t end = lseek(descriptor, 0, SEEK_END);
  lseek(descriptor, 0, SEEK_SET);
  // Kept: the result is the upper half of the length.
  return static_cast<int>(end >> 32);
}

int xFile_SetEOF(int descriptor, int length) {
  if (retried([&] { return ftruncate(descriptor, length); }) != 0) return -1;
  return lseek(descriptor, length, SEEK_SET) < 0 ? -1 : 0;
}
