// SPDX-License-Identifier: MIT
// Misuse of files: handles that are not open, counts below 0, paths that are none.
#include "files/misuse.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>

#include <fcntl.h>
#include <unistd.h>

#include <korvel/files.h>

#include "base/views.h"
#include "files/paths.h"
#include "files/slots.h"

namespace korvel::files {

using base::ErrnoKept;
using base::Quoted;

namespace {

// The slots above the counter are free whatever their mode.
template <typename Slot>
int freeSlots(const Slot (&table)[kSlots], int highest) {
  const auto isFree = [&](const Slot &slot) {
    const auto handle = static_cast<int>(&slot - table);
    return handle > highest || slot.mode == kFreeSlot || isOwn(table, handle);
  };
  return static_cast<int>(std::count_if(std::begin(table), std::end(table), isFree));
}

template <typename Slot>
void needsOpenSlot(const Call &call, const Slot (&table)[kSlots], int handle, const char *opens) {
  needsHandleNumber(call, handle);
  call.misusedIf(isHandle(handle) && table[handle].mode == kFreeSlot,
                 {"handle ", handle, " is not open: ", opens, " gives handles"});
}

void needsCount(const Call &call, int count) { needsNotNegative(call, "the count", count); }

void needsRoomBehind(const Call &call, int position, int count) {
  call.misusedIf(count > INT_MAX - std::max(position, 0),
                 {"the file would have more than ", INT_MAX, " bytes"});
}

// A colon path whose form `rule` gives.
void needsPath(const Call &call, const char *path, PosixPath (*rule)(const char *)) {
  const std::string_view text = base::textOf(path);
  call.needsAll();
  call.misusedIf(text.empty(), {"an empty path names nothing"});
  needsColonPath(call, text);
  if (!call) return;
  const ErrnoKept kept;
  const bool isNothing = rule(path).length() == 0;
  call.misusedIf(isNothing && text.size() < kPathSize,
                 {"the volume ", Quoted(text), " is dropped from the path, and nothing is left"});
  call.misusedIf(isNothing,
                 {"a path of ", text.size(), " characters is too long to name anything"});
}

PosixPath ofFiles(const char *mac) { return PosixPath(mac); }

void needsThere(const Call &call, std::string_view folder, bool (*exists)(const char *)) {
  char path[kPathSize];
  if (folder.empty() || folder.size() >= sizeof path) return;
  const bool hasEnd = folder.ends_with(':');
  const std::string_view shown = folder.substr(0, folder.size() - (hasEnd ? 1 : 0));
  *std::copy(folder.begin(), folder.end(), path) = '\0';
  const ErrnoKept kept;
  if (!exists(path)) call.misused({"there is no folder ", Quoted(shown)});
}

// The folder that a colon path leads through to its last name. Its ':' says that the volume alone
// is one, too.
void needsThereAround(const Call &call, std::string_view path, bool (*exists)(const char *)) {
  needsThere(call, path.substr(0, path.rfind(':') + 1), exists);
}

}  // namespace

void needsPath(const Call &call, const char *path) { needsPath(call, path, ofFiles); }

void needsFolder(const Call &call, const char *path) {
  needsPath(call, path);
  if (call) needsThere(call, base::textOf(path), folderExists);
}

void needsPathInFolder(const Call &call, const char *path) {
  needsPath(call, path);
  if (call) needsThereAround(call, base::textOf(path), folderExists);
}

void needsFolderToList(const Call &call, const char *path) {
  needsPath(call, path, PosixPath::ofTools);
  if (call) needsThere(call, base::textOf(path), toolsFindFolder);
}

void needsEntry(const Call &call, const char *path) {
  needsPath(call, path, PosixPath::ofTools);
  if (call) needsThereAround(call, base::textOf(path), toolsFindFolder);
}

void needsFileSlots(const Call &call, int count) {
  const int free = freeSlots(DATA_FILE_TAB, DATA_FILE_ID);
  call.misusedIf(free == 0, {"all ", kSlots, " file handles are open: close one with File_Close"});
  call.misusedIf(free < count, {"it takes ", count, " file handles, and ", free,
                                " is free: close one with File_Close"});
}

void needsMemorySlots(const Call &call, int count) {
  const int free = freeSlots(DATA_MFIL_TAB, DATA_MFIL_ID);
  call.misusedIf(free == 0, {"all ", kSlots, " memory files are open: close one with MFil_Close"});
  call.misusedIf(free < count, {"it takes ", count, " memory files, and ", free,
                                " is free: close one with MFil_Close"});
}

void needsFlags(const Call &call, int read, int write) {
  call.misusedIf(read < 1 && write < 1, {"neither reading nor writing is asked for"});
}

void needsToOpen(const Call &call, int read, int write) {
  call.needsAll();
  needsFlags(call, read, write);
  needsFileSlots(call, 1);
}

void needsInSlot(const Call &call, const char *path, int result) {
  if (result >= 0 || !call) return;
  needsPathInFolder(call, path);
  if (!call) return;
  call.misusedIf(std::strlen(path) >= sizeof FileSlot::name,
                 {"a path of ", std::strlen(path), " characters does not fit into a slot: at most ",
                  sizeof FileSlot::name - 1, " do"});
}

void needsOpened(const Call &call, const char *path, int result, bool makes) {
  if (result >= 0 || !call) return;
  const ErrnoKept kept;
  needsPathInFolder(call, path);
  if (!call) return;
  call.misusedIf(folderExists(path), {Quoted(path), " is a folder"});
  if (fileExists(path))
    call.misused(
        {Quoted(path), " cannot be opened so: its rights, its size or its kind forbid it"});
  call.misusedIf(makes, {Quoted(path), " cannot be made: its folder or the disk forbids it"});
}

void needsHandleNumber(const Call &call, int handle) {
  call.misusedIf(!isHandle(handle),
                 {"there is no handle ", handle, ": handles are from 0 to ", kSlots - 1});
}

void needsHandle(const Call &call, int handle) {
  needsOpenSlot(call, DATA_FILE_TAB, handle, "File_Open");
  call.needsAll();
}

void needsReading(const Call &call, int handle, int count) {
  needsHandle(call, handle);
  call.misusedIf(call && !mayRead(DATA_FILE_TAB[handle].mode),
                 {"handle ", handle, " is open for writing only"});
  needsCount(call, count);
}

void needsWriting(const Call &call, int handle, int count) {
  needsHandle(call, handle);
  call.misusedIf(call && !mayWrite(DATA_FILE_TAB[handle].mode),
                 {"handle ", handle, " is open for reading only"});
  needsCount(call, count);
  if (call) needsRoomBehind(call, DATA_FILE_TAB[handle].position, count);
}

void needsOffset(const Call &call, int handle, int offset) {
  needsHandle(call, handle);
  needsNotNegative(call, "the offset", offset);
}

void needsLength(const Call &call, int handle, int length) {
  needsHandle(call, handle);
  needsNotNegative(call, "the length", length);
}

void needsMemoryHandle(const Call &call, int handle) {
  needsOpenSlot(call, DATA_MFIL_TAB, handle, "MFil_Open");
  call.needsAll();
}

void needsMemoryTransfer(const Call &call, int handle, int count) {
  needsMemoryHandle(call, handle);
  needsCount(call, count);
}

void needsMemoryWriting(const Call &call, int handle, int count) {
  needsMemoryTransfer(call, handle, count);
  if (call) needsRoomBehind(call, DATA_MFIL_TAB[handle].position, count);
}

void needsMemoryOffset(const Call &call, int handle, int offset, int behind) {
  needsMemoryHandle(call, handle);
  if (!call) return;
  const int last = DATA_MFIL_TAB[handle].size - behind;
  call.misusedIf(offset < 0 || offset > last,
                 {"there is no offset ", offset, ": the last one is ", last});
}

void needsDescriptor(const Call &call, int descriptor) {
  call.needsAll();
  const ErrnoKept kept;
  call.misusedIf(fcntl(descriptor, F_GETFD) < 0, {"descriptor ", descriptor, " is not open"});
}

void needsTransfer(const Call &call, int descriptor, int count) {
  needsDescriptor(call, descriptor);
  needsCount(call, count);
}

void needsReadable(const Call &call, int descriptor) {
  const ErrnoKept kept;
  call.misusedIf(call && (fcntl(descriptor, F_GETFL) & O_ACCMODE) == O_WRONLY,
                 {"descriptor ", descriptor, " is open for writing only"});
}

void needsSeekable(const Call &call, int descriptor) {
  needsDescriptor(call, descriptor);
  const ErrnoKept kept;
  call.misusedIf(call && lseek(descriptor, 0, SEEK_CUR) < 0,
                 {"descriptor ", descriptor, " has no position: it is a pipe or the like"});
}

void needsOffsetOf(const Call &call, int descriptor, const char *what, int number) {
  needsDescriptor(call, descriptor);
  needsNotNegative(call, what, number);
}

void needsNotNegative(const Call &call, const char *what, int number) {
  call.misusedIf(number < 0, {what, " is ", number, ", and 0 is the least"});
}

const char *refusal(int error) {
  const char *description = strerrordesc_np(error);
  return description == nullptr ? "it does not say why" : description;
}

void needsDone(const Call &call, bool isDone) {
  if (errno == 0)
    call.misusedIf(!isDone, {"not all of it is done: the file has changed, or is full"});
  call.misusedIf(!isDone, {"the system refuses: ", refusal(errno)});
}

void needsPaths(const Call &call, const char *oldPath, const char *newPath) {
  needsEntry(call, oldPath);
  needsEntry(call, newPath);
}

void needsShortPath(const Call &call, int length) {
  call.misusedIf(length == 0, {"the path of the system would have more than ", kPathSize - 1,
                               " characters, and is not written"});
}

void needsRows(const Call &call, const void *list, int rows) {
  needsNotNegative(call, "the number of rows", rows);
  call.misusedIf(list == nullptr && rows > 0, {"there is no list of ", rows, " rows"});
}

void needsListing(const Call &call, const void *list, const char *directory, int rows) {
  needsRows(call, list, rows);
  needsFolderToList(call, directory);
}

void needsRowsFor(const Call &call, int rows, int found) {
  call.misusedIf(rows > 0 && found > rows,
                 {found, " files are found, and the list has ", rows, " rows"});
}

void needsItems(const Call &call, const char *directory) {
  call.needsAll();
  if (call && !base::textOf(directory).empty()) needsFolder(call, directory);
}

}  // namespace korvel::files
