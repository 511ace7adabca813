// SPDX-License-Identifier: MIT
// For files/, profile/ and tables/: what an application can do wrong with files and paths, found
// and told.
#ifndef KORVEL_FILES_MISUSE_H
#define KORVEL_FILES_MISUSE_H

#include <cerrno>

#include "base/misuse.h"

namespace korvel::files {

using base::Call;
using base::filled;
using base::given;
using base::lookForMisuse;
using base::orNull;

// A colon path that is short enough to name something.
void needsPath(const Call &call, const char *path);

// The same of a folder that is there, and of what is in a folder that is there.
void needsFolder(const Call &call, const char *path);
void needsPathInFolder(const Call &call, const char *path);

// The same of a folder to list and of an entry to remove or rename, which follow BSDMAC2UNIX.
void needsFolderToList(const Call &call, const char *path);
void needsEntry(const Call &call, const char *path);

// Free slots for files or for memory files.
void needsFileSlots(const Call &call, int count);
void needsMemorySlots(const Call &call, int count);

// Flags and, for File_Open, a free slot and a path that fits into it; and that the opening
// succeeded. makes: whether it makes a file that is not there.
void needsFlags(const Call &call, int read, int write);
void needsToOpen(const Call &call, int read, int write);
void needsInSlot(const Call &call, const char *path, int result);
void needsOpened(const Call &call, const char *path, int result, bool makes);

// A handle, open or not; one of an open file; one that may be read or written.
void needsHandleNumber(const Call &call, int handle);
void needsHandle(const Call &call, int handle);
void needsReading(const Call &call, int handle, int count);
void needsWriting(const Call &call, int handle, int count);
void needsOffset(const Call &call, int handle, int offset);
void needsLength(const Call &call, int handle, int length);

// The same of memory files; an offset in front of the last `behind` bytes.
void needsMemoryHandle(const Call &call, int handle);
void needsMemoryTransfer(const Call &call, int handle, int count);
void needsMemoryWriting(const Call &call, int handle, int count);
void needsMemoryOffset(const Call &call, int handle, int offset, int behind);

// An open descriptor, and a count; one that may be read, one that has a position, and one with a
// number of 0 or above.
void needsDescriptor(const Call &call, int descriptor);
void needsTransfer(const Call &call, int descriptor, int count);
void needsReadable(const Call &call, int descriptor);
void needsSeekable(const Call &call, int descriptor);
void needsOffsetOf(const Call &call, int descriptor, const char *what, int number);

// A number of 0 or above. `what`: "the offset", say.
void needsNotNegative(const Call &call, const char *what, int number);

// That the system has done it. Why it has not is in errno, which is 0 where it has not refused.
void needsDone(const Call &call, bool isDone);

// What the system says of an error, as it stands in a line.
const char *refusal(int error);

// A work after which errno is its own: where misuse is told, it is 0 when the work begins. In the
// end it is as without lines.
class ErrnoOfWork {
 public:
  explicit ErrnoOfWork(const Call &call)
      : isAsked_(static_cast<bool>(call)), before_(isAsked_ ? errno : 0) {
    if (isAsked_) errno = 0;
  }
  ~ErrnoOfWork() {
    if (isAsked_ && errno == 0) errno = before_;
  }
  ErrnoOfWork(const ErrnoOfWork &) = delete;
  ErrnoOfWork &operator=(const ErrnoOfWork &) = delete;

 private:
  const bool isAsked_;
  const int before_;
};

// What renaming asks for, and the room for the result of MAC2UNIX.
void needsPaths(const Call &call, const char *oldPath, const char *newPath);
void needsShortPath(const Call &call, int length);

// A folder to list, rows for the files, and enough of them.
void needsRows(const Call &call, const void *list, int rows);
void needsListing(const Call &call, const void *list, const char *directory, int rows);
void needsRowsFor(const Call &call, int rows, int found);

// A list of files, in a folder or with their paths.
void needsItems(const Call &call, const char *directory);

}  // namespace korvel::files

#endif
