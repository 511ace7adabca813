// SPDX-License-Identifier: MIT
// The table of open files behind the numbered handles.
#include "files/handles.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>

#include "base/posix.h"
#include "files/misuse.h"
#include "files/paths.h"
#include "files/slots.h"
#include "files/transfer.h"

constinit FileSlot DATA_FILE_TAB[korvel::files::kSlots] = {{"", -1, -1, 0, 0},
                                                           {"", -1, -1, 0, 0},
                                                           {"", -1, -1, 0, 0},
                                                           {"", -1, -1, 0, 0},
                                                           {"", -1, -1, 0, 0}};
constinit int DATA_FILE_ID = -1;

namespace korvel::files {

constinit int highestReference = std::numeric_limits<decltype(FileSlot::reference)>::max();

namespace {

constexpr int kNoSlot = KorvelNoSlotStatus;
constexpr int kRefused = KorvelNotOpenedStatus;
constexpr int kNoFlag = KorvelNoFlagStatus;
constexpr int kFailed = -1;

enum Mode {
  kReading = KorvelReadMode,
  kWriting = KorvelWriteMode,
  kReadingAndWriting = KorvelReadWriteMode
};

bool isSet(int flag) { return flag >= 1; }

// Colon paths name folders and what has bytes. A pipe, whose opening could wait for ever, is
// neither.
bool hasBytes(const struct stat &status) {
  return S_ISREG(status.st_mode) || S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode);
}

int openExisting(const char *path, int access) {
  return base::retried([&] { return open(path, access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
}

// A file that may not be written may become writable by the change of mode. After any other error
// the mode is left alone: where the volume is missing, openToAll() would take the path from the
// root, to a file that nobody asked for.
int openWriting(const char *mac, const char *path) {
  constexpr mode_t kReadableAndWritableByAll = 0666;
  const int descriptor = openCreating(path, O_NONBLOCK | O_NOCTTY, kReadableAndWritableByAll);
  if (descriptor < 0 && errno != EACCES) return descriptor;
  openToAll(mac);
  return descriptor >= 0 ? descriptor : openExisting(path, O_WRONLY);
}

int openReading(const char *mac) {
  const PosixPath path = PosixPath::withoutVolumeCheck(mac);
  const int descriptor = path.length() == 0 ? -1 : openExisting(path.text(), O_RDONLY);
  return descriptor >= 0 ? descriptor : openExisting(PosixPath(mac).text(), O_RDONLY);
}

int openDescriptor(const char *mac, int mode) {
  if (mode == kReading) return openReading(mac);
  const PosixPath path(mac);
  return mode == kWriting ? openWriting(mac, path.text()) : openExisting(path.text(), O_RDWR);
}

// Whether the slot can hold what was opened. Sets the slot's size.
bool admit(FileSlot &slot, int descriptor, struct stat &status) {
  if (descriptor > highestReference) return false;
  if (fstat(descriptor, &status) != 0) {
    status = {};
    slot.size = 0;
    return true;
  }
  if (!hasBytes(status) || status.st_size > INT_MAX) return false;
  slot.size = static_cast<int>(status.st_size);
  return true;
}

// Takes over the descriptor; -1 is refused.
int openInto(FileSlot &slot, int descriptor, int mode, struct stat &status) {
  if (descriptor < 0) return kRefused;
  if (!admit(slot, descriptor, status)) {
    close(descriptor);
    return kRefused;
  }
  slot.reference = static_cast<short>(descriptor);
  slot.mode = mode;
  return 0;
}

// The handle of the next slot, still marked as free; -1 if there is none.
int takeFreeSlot() {
  const int handle = takeSlot(DATA_FILE_TAB, DATA_FILE_ID);
  if (handle < 0) return kNoSlot;
  DATA_FILE_TAB[handle].mode = kFreeSlot;
  DATA_FILE_TAB[handle].position = 0;
  return handle;
}

int openFile(const char *path, int read, int write) {
  const int handle = takeFreeSlot();
  if (handle < 0) return kNoSlot;
  FileSlot &slot = DATA_FILE_TAB[handle];
  const std::size_t length = path == nullptr ? sizeof slot.name : std::strlen(path);
  if (length >= sizeof slot.name) return kRefused;
  std::memcpy(slot.name, path, length + 1);
  if (!isSet(read) && !isSet(write)) return kNoFlag;
  const int mode = !isSet(write) ? kReading : isSet(read) ? kReadingAndWriting : kWriting;
  struct stat status;
  const int result = openInto(slot, openDescriptor(path, mode), mode, status);
  return result == 0 ? handle : result;
}

int openWithDescriptor(const char *path, int descriptor, struct stat &status) {
  const int handle = takeFreeSlot();
  if (handle < 0) {
    if (descriptor >= 0) close(descriptor);
    return kNoSlot;
  }
  FileSlot &slot = DATA_FILE_TAB[handle];
  const std::size_t length = strnlen(path, sizeof slot.name - 1);
  std::memcpy(slot.name, path, length);
  slot.name[length] = '\0';
  const int result = openInto(slot, descriptor, kReading, status);
  return result == 0 ? handle : result;
}

// After any error the descriptor is gone, and its number may soon be someone else's: the slot
// forgets it.
bool closeDescriptor(FileSlot &slot) {
  if (close(slot.reference) == 0 || errno == EINTR) return true;
  slot.reference = -1;
  return false;
}

void restoreOffset(const FileSlot &slot) { lseek(slot.reference, slot.position, SEEK_SET); }

int readOrRestore(const FileSlot &slot, void *buffer, int count) {
  const auto wish = static_cast<std::size_t>(count);
  if (buffer != nullptr && readAll(slot.reference, static_cast<char *>(buffer), wish) == wish)
    return count;
  restoreOffset(slot);
  return kFailed;
}

int readNext(FileSlot &slot, void *buffer, int count) {
  if (!mayRead(slot.mode)) return 0;
  const int wish = clipped(count, slot.size, slot.position);
  const int got = wish == 0 ? 0 : readOrRestore(slot, buffer, wish);
  if (got > 0) slot.position += got;
  return got;
}

int readAgain(const FileSlot &slot, void *buffer, int count) {
  if (!mayRead(slot.mode)) return 0;
  const int wish = std::min(count, slot.position);
  if (wish <= 0) return 0;
  if (lseek(slot.reference, -static_cast<off_t>(wish), SEEK_CUR) < 0) return kFailed;
  return readOrRestore(slot, buffer, wish);
}

int writeNext(FileSlot &slot, const void *buffer, int count) {
  if (!mayWrite(slot.mode) || count < 0) return 0;
  if (count > 0 && (buffer == nullptr || count > INT_MAX - std::max(slot.position, 0)))
    return kFailed;
  const auto put = static_cast<int>(
      writeAll(slot.reference, static_cast<const char *>(buffer), static_cast<std::size_t>(count)));
  if (put > 0 || count == 0) slot.size = std::max(slot.size, slot.position + put);
  if (put != count) {
    restoreOffset(slot);
    return kFailed;
  }
  slot.position += count;
  return count;
}

int seek(FileSlot &slot, int offset) {
  if (lseek(slot.reference, offset, SEEK_SET) < 0) return kFailed;
  slot.position = offset;
  return 0;
}

int setLength(FileSlot &slot, int length) {
  if (base::retried([&] { return ftruncate(slot.reference, length); }) != 0) return kFailed;
  lseek(slot.reference, length, SEEK_SET);
  slot.position = length;
  return 0;
}

}  // namespace

bool isUntouched(const FileSlot &slot, const FileSlot &left) {
  return slot.mode == left.mode && slot.reference == left.reference &&
         slot.position == left.position;
}

void release(FileSlot &slot) {
  if (slot.reference >= 0) close(slot.reference);
  slot.mode = kFreeSlot;
  slot.size = 0;
  slot.position = 0;
}

int openInFolder(const char *folder, const char *path, struct stat &status) {
  // A file that opens proves that its folder is there.
  const int descriptor = openReading(path);
  if (descriptor < 0 && !folderExists(folder)) return kNoSlot;
  return openWithDescriptor(path, descriptor, status);
}

int openForReading(const char *path, struct stat &status) {
  return openWithDescriptor(path, openReading(path), status);
}

std::uint64_t lengthOf(const char *path) {
  const int descriptor = openReading(path);
  struct stat status = {};
  const bool isFile = descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  struct stat ignored;
  const int handle = openWithDescriptor(path, descriptor, ignored);
  if (handle >= 0) closeOwn(handle);
  const bool opened = handle >= 0 || (handle == kRefused && isFile && status.st_size > INT_MAX);
  return isFile && opened ? static_cast<std::uint64_t>(status.st_size) : 0;
}

bool closeFile(int handle) {
  FileSlot *slot = openSlot(DATA_FILE_TAB, handle);
  if (slot == nullptr || !closeDescriptor(*slot)) return false;
  slot->size = 0;
  slot->position = 0;
  slot->mode = kFreeSlot;
  giveBack(handle, DATA_FILE_ID);
  return true;
}

void closeOwn(int handle) {
  if (!closeFile(handle)) leaveOpen(handle);
}

void leaveOpen(int handle) { leaveSlot(DATA_FILE_TAB, handle); }

}  // namespace korvel::files

using namespace korvel::files;

int File_Open(const char *path, int read, int write) {
  const Call call("File_Open", {path, read, write});
  if (call) needsToOpen(call, read, write);
  const int result = openFile(path, read, write);
  if (call) needsInSlot(call, path, result);
  if (call) needsOpened(call, path, result, !isSet(read));
  return result;
}

int File_Close(int handle) {
  const Call call("File_Close", {handle});
  if (call) needsHandle(call, handle);
  const int result = closeFile(handle) ? 0 : kFailed;
  if (call) needsDone(call, result == 0);
  return result;
}

int File_Size(int handle) {
  lookForMisuse([=] { needsHandleNumber(Call("File_Size", {handle}), handle); });
  return isHandle(handle) ? DATA_FILE_TAB[handle].size : kFailed;
}

int File_GetPos(int handle) {
  lookForMisuse([=] { needsHandleNumber(Call("File_GetPos", {handle}), handle); });
  return isHandle(handle) ? DATA_FILE_TAB[handle].position : kFailed;
}

int File_Read(int handle, void *buffer, int count) {
  const Call call("File_Read", {handle, filled(buffer), count});
  if (call) needsReading(call, handle, count);
  const ErrnoOfWork errnoOfWork(call);
  const int result = isHandle(handle) ? readNext(DATA_FILE_TAB[handle], buffer, count) : kFailed;
  if (call) needsDone(call, result >= 0);
  return result;
}

int File_Re_Read(int handle, void *buffer, int count) {
  const Call call("File_Re_Read", {handle, filled(buffer), count});
  if (call) needsReading(call, handle, count);
  const ErrnoOfWork errnoOfWork(call);
  const int result = isHandle(handle) ? readAgain(DATA_FILE_TAB[handle], buffer, count) : kFailed;
  if (call) needsDone(call, result >= 0);
  return result;
}

int File_Write(int handle, const void *buffer, int count) {
  const Call call("File_Write", {handle, filled(buffer), count});
  if (call) needsWriting(call, handle, count);
  const ErrnoOfWork errnoOfWork(call);
  const int result = isHandle(handle) ? writeNext(DATA_FILE_TAB[handle], buffer, count) : kFailed;
  if (call) needsDone(call, result >= 0);
  return result;
}

int File_Lseek(int handle, int offset) {
  const Call call("File_Lseek", {handle, offset});
  if (call) needsOffset(call, handle, offset);
  FileSlot *slot = openSlot(DATA_FILE_TAB, handle);
  const int result = slot == nullptr ? kFailed : seek(*slot, offset);
  if (call) needsDone(call, result == 0);
  return result;
}

int File_SetEOF(int handle, int length) {
  const Call call("File_SetEOF", {handle, length});
  if (call) needsLength(call, handle, length);
  FileSlot *slot = openSlot(DATA_FILE_TAB, handle);
  const int result = slot == nullptr ? kFailed : setLength(*slot, length);
  if (call) needsDone(call, result == 0);
  return result;
}
