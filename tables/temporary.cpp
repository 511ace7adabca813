// SPDX-License-Identifier: MIT
// The handle and the left-over file of an edit's temporary.
#include "tables/temporary.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>

#include "base/posix.h"
#include "files/slots.h"
#include "strings/copy.h"

namespace korvel::tables {
namespace {

void replaceLast(char *path) { path[std::strlen(path) - 1] = '_'; }

// In a folder that is open to all, any user may have put it there.
bool isAnotherUsers(const struct stat &file) { return file.st_uid != geteuid(); }

}  // namespace

bool WritingHandle::take(const char *path) {
  giveBack();
  handle_ = files::takeSlot(DATA_FILE_TAB, DATA_FILE_ID);
  if (handle_ < 0) return false;
  FileSlot &slot = DATA_FILE_TAB[handle_];
  slot.mode = files::kFreeSlot;
  slot.position = 0;
  strings::copyTerminated(slot.name, path);
  return true;
}

void WritingHandle::giveBack() {
  if (handle_ < 0) return;
  DATA_FILE_TAB[handle_].size = 0;
  files::giveBack(handle_, DATA_FILE_ID);
  handle_ = -1;
}

void WritingHandle::dropUnopened() { handle_ = -1; }

TablePath temporaryPath(const TablePath &table) {
  TablePath path = table;
  replaceLast(path.text);
  return path;
}

bool LeftOver::openFor(const char *table) {
  if (file_ >= 0) return true;
  if (*table == '\0' || !strings::copyWhole(path_, table)) return false;
  replaceLast(path_);
  constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  file_ = base::retried([this] { return open(path_, kFlags); });
  struct stat left;
  if (file_ < 0) {
    // Another user's file need not be readable.
    return errno == ENOENT || (errno == EACCES && lstat(path_, &left) == 0 &&
                               S_ISREG(left.st_mode) && isAnotherUsers(left));
  }
  struct stat rewritten;
  const bool isKnown = fstat(file_, &left) == 0 && stat(table, &rewritten) == 0;
  const bool isTable = isKnown && base::isSameFile(left, rewritten);
  const bool isFile = isKnown && S_ISREG(left.st_mode);
  if (!isFile || isTable || isAnotherUsers(left)) close();
  return isFile;
}

long LeftOver::read(long offset, char *to, unsigned long size) const {
  if (file_ < 0) return 0;
  return base::retried([&] { return pread(file_, to, size, offset); });
}

void LeftOver::consume() {
  if (file_ >= 0 && path_[0] != '\0') unlink(path_);
  path_[0] = '\0';
}

void LeftOver::close() {
  if (file_ >= 0) ::close(file_);
  file_ = -1;
}

}  // namespace korvel::tables
