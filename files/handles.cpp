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

constexpr int kNoSlot = -1;
constexpr int kRefused = -2;
constexpr int kNoFlag = -3;
constexpr int kFailed = -1;

enum Mode { kReading = 0, kWriting = 1, kReadingAndWriting = 2 };

bool isSet(int flag) { return flag >= 1; }

// What lies under a colon path is a folder or something with bytes in it. A pipe, whose opening
// could wait forever, is neither.
bool hasBytes(const struct stat &status) {
  return S_ISREG(status.st_mode) || S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode);
}

int openExisting(const char *path, int access) {
  return retried([&] { return open(path, access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
}

// A file that may not be written may become writable by the change of mode. Nothing else that
// cannot be opened has its mode changed: where the volume is missing, the path of that change leads
// from the root to a file that nobody asked for.
int openWriting(const char *mac, const char *path) {
  constexpr mode_t kReadableAndWritableByAll = 0666;
  const int descriptor = openCreating(path, O_NONBLOCK | O_NOCTTY, kReadableAndWritableByAll);
  if (descriptor < 0 && errno != EACCES) return descriptor;
  openToAll(mac);
  return descriptor >= 0 ? descriptor : openExisting(path, O_WRONLY);
}

// What can be opened is opened without a look at the volume first.
int openUnlooked(const char *mac) {
  const PosixPath path = PosixPath::unlooked(mac);
  return path.length() == 0 ? -1 : openExisting(path.text(), O_RDONLY);
}

int openDescriptor(const char *mac, int mode) {
  const int descriptor = mode == kReading ? openUnlooked(mac) : -1;
  if (descriptor >= 0) return descriptor;
  const PosixPath path(mac);
  switch (mode) {
    case kWriting:
      return openWriting(mac, path.text());
    case kReading:
      return openExisting(path.text(), O_RDONLY);
    default:
      return openExisting(path.text(), O_RDWR);
  }
}

// True when the slot can hold what was opened; its size is set then.
bool admit(FileSlot &slot, int descriptor) {
  if (descriptor > highestReference) return false;
  struct stat status;
  if (fstat(descriptor, &status) != 0) {
    slot.size = 0;
    return true;
  }
  if (!hasBytes(status) || status.st_size > INT_MAX) return false;
  slot.size = static_cast<int>(status.st_size);
  return true;
}

// Takes over the descriptor, if it is one.
int openInto(FileSlot &slot, int descriptor, int mode) {
  if (descriptor < 0) return kRefused;
  if (!admit(slot, descriptor)) {
    close(descriptor);
    return kRefused;
  }
  slot.reference = static_cast<short>(descriptor);
  slot.mode = mode;
  return 0;
}

// The handle of the next slot, which is free still; -1: there is none.
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
  const int result = openInto(slot, openDescriptor(path, mode), mode);
  return result == 0 ? handle : result;
}

int openWithDescriptor(const char *path, int descriptor) {
  const int handle = takeFreeSlot();
  if (handle < 0) {
    if (descriptor >= 0) close(descriptor);
    return kNoSlot;
  }
  FileSlot &slot = DATA_FILE_TAB[handle];
  const std::size_t length = strnlen(path, sizeof slot.name - 1);
  std::memcpy(slot.name, path, length);
  slot.name[length] = '\0';
  const int result = openInto(slot, descriptor, kReading);
  return result == 0 ? handle : result;
}

// Whatever the error, the descriptor is gone, and its number may soon be someone else's: the slot
// forgets it.
bool closeDescriptor(FileSlot &slot) {
  if (close(slot.reference) == 0 || errno == EINTR) return true;
  slot.reference = -1;
  return false;
}

void putMarkBack(const FileSlot &slot) { lseek(slot.reference, slot.position, SEEK_SET); }

int readMarked(const FileSlot &slot, void *buffer, int count) {
  const auto wish = static_cast<std::size_t>(count);
  if (buffer != nullptr && readAll(slot.reference, static_cast<char *>(buffer), wish) == wish)
    return count;
  putMarkBack(slot);
  return kFailed;
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

int openInFolder(const char *folder, const char *path) {
  // A file that opens tells that its folder is there.
  const int descriptor = openDescriptor(path, kReading);
  if (descriptor < 0 && Dir_Is_Existing(folder) != 1) return kNoSlot;
  return openWithDescriptor(path, descriptor);
}

int openForReading(const char *path) {
  return openWithDescriptor(path, openDescriptor(path, kReading));
}

std::uint64_t lengthOf(const char *path) {
  const int descriptor = openDescriptor(path, kReading);
  struct stat status = {};
  const bool isFile = descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  const int handle = openWithDescriptor(path, descriptor);
  if (handle >= 0) closeOwn(handle);
  const bool opened = handle >= 0 || (handle == kRefused && isFile && status.st_size > INT_MAX);
  return isFile && opened ? static_cast<std::uint64_t>(status.st_size) : 0;
}

void closeOwn(int handle) {
  if (File_Close(handle) != 0) leaveOpen(handle);
}

void leaveOpen(int handle) { leaveSlot(DATA_FILE_TAB, handle); }

}  // namespace korvel::files

using namespace korvel::files;

int File_Open(const char *path, int read, int write) { return openFile(path, read, write); }

int File_Close(int handle) {
  FileSlot *slot = openSlot(DATA_FILE_TAB, handle);
  if (slot == nullptr || !closeDescriptor(*slot)) return kFailed;
  slot->size = 0;
  slot->position = 0;
  slot->mode = kFreeSlot;
  giveBack(handle, DATA_FILE_ID);
  return 0;
}

int File_Size(int handle) { return isHandle(handle) ? DATA_FILE_TAB[handle].size : kFailed; }

int File_GetPos(int handle) { return isHandle(handle) ? DATA_FILE_TAB[handle].position : kFailed; }

int File_Read(int handle, void *buffer, int count) {
  if (!isHandle(handle)) return kFailed;
  FileSlot &slot = DATA_FILE_TAB[handle];
  if (!mayRead(slot.mode)) return 0;
  const int wish = clipped(count, slot.size, slot.position);
  const int got = wish == 0 ? 0 : readMarked(slot, buffer, wish);
  if (got > 0) slot.position += got;
  return got;
}

int File_Re_Read(int handle, void *buffer, int count) {
  if (!isHandle(handle)) return kFailed;
  const FileSlot &slot = DATA_FILE_TAB[handle];
  if (!mayRead(slot.mode)) return 0;
  const int wish = std::min(count, slot.position);
  if (wish <= 0) return 0;
  if (lseek(slot.reference, -static_cast<off_t>(wish), SEEK_CUR) < 0) return kFailed;
  return readMarked(slot, buffer, wish);
}

int File_Write(int handle, const void *buffer, int count) {
  if (!isHandle(handle)) return kFailed;
  FileSlot &slot = DATA_FILE_TAB[handle];
  if (!mayWrite(slot.mode) || count < 0) return 0;
  if (count > 0 && (buffer == nullptr || count > INT_MAX - std::max(slot.position, 0)))
    return kFailed;
  const auto put = static_cast<int>(
      writeAll(slot.reference, static_cast<const char *>(buffer), static_cast<std::size_t>(count)));
  if (put > 0 || count == 0) slot.size = std::max(slot.size, slot.position + put);
  if (put != count) {
    putMarkBack(slot);
    return kFailed;
  }
  slot.position += count;
  return count;
}

int File_Lseek(int handle, int offset) {
  FileSlot *slot = openSlot(DATA_FILE_TAB, handle);
  if (slot == nullptr || lseek(slot->reference, offset, SEEK_SET) < 0) return kFailed;
  slot->position = offset;
  return 0;
}

int File_SetEOF(int handle, int length) {
  FileSlot *slot = openSlot(DATA_FILE_TAB, handle);
  if (slot == nullptr) return kFailed;
  if (retried([&] { return ftruncate(slot->reference, length); }) != 0) return kFailed;
  lseek(slot->reference, length, SEEK_SET);
  slot->position = length;
  return 0;
}
