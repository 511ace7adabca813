// SPDX-License-Identifier: MIT
// Memory files and the memory blocks of the handles.
#include "files/memory.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include <malloc.h>

#include <korvel/files.h>

#include "files/misuse.h"
#include "files/slots.h"

constinit MFilSlot DATA_MFIL_TAB[korvel::files::kSlots] = {{nullptr, 0, -1, 0, 0},
                                                           {nullptr, 0, -1, 0, 0},
                                                           {nullptr, 0, -1, 0, 0},
                                                           {nullptr, 0, -1, 0, 0},
                                                           {nullptr, 0, -1, 0, 0}};
constinit int DATA_MFIL_ID = -1;

namespace korvel::files {
namespace {

constexpr int kLeastCapacity = 4096;
constexpr int kLeastGrowth = 4096;
constexpr int kOpen = KorvelReadWriteMode;

// A block of 0 bytes has an address too.
std::size_t allocatedSize(int size) { return static_cast<std::size_t>(std::max(size, 1)); }

void *allocated(int size) { return size < 0 ? nullptr : std::malloc(allocatedSize(size)); }

// The slot of a handle whose mode passes and whose data can be reached: the application may have
// written into the table.
MFilSlot *usableSlot(int handle, bool (*modePasses)(int mode)) {
  MFilSlot *slot = openSlot(DATA_MFIL_TAB, handle);
  const bool usable = slot != nullptr && modePasses(slot->mode) && slot->block != nullptr &&
                      slot->position >= 0 && slot->position <= slot->capacity &&
                      slot->size <= slot->capacity;
  return usable ? slot : nullptr;
}

MFilSlot *readableSlot(int handle) { return usableSlot(handle, mayRead); }

int grownCapacity(int position, int count) {
  const int growth = std::max(count, kLeastGrowth);
  return growth > INT_MAX - position ? INT_MAX : position + growth;
}

// A block of at least `size` bytes, with half as much again if there is memory for that: then many
// small growths of the capacity move the data only now and then.
char *grownBlock(char *block, int size) {
  const std::size_t wanted = allocatedSize(size);
  if (malloc_usable_size(block) >= wanted) return block;
  void *grown = std::realloc(block, wanted + wanted / 2);
  return static_cast<char *>(grown != nullptr ? grown : std::realloc(block, wanted));
}

bool grow(MFilSlot &slot, int count) {
  const int capacity = grownCapacity(slot.position, count);
  char *grown = grownBlock(slot.block, capacity);
  if (grown == nullptr) {
    // Kept: the old block is lost.
    std::free(slot.block);
    slot.block = nullptr;
    return false;
  }
  slot.block = grown;
  slot.capacity = capacity;
  return true;
}

int readNext(MFilSlot &slot, void *buffer, int count) {
  const int got = clipped(count, slot.size, slot.position);
  std::memcpy(buffer, slot.block + slot.position, static_cast<std::size_t>(got));
  slot.position += got;
  return got;
}

int readAgain(const MFilSlot &slot, void *buffer, int count) {
  const int got = std::max(0, std::min(count, slot.position));
  std::memcpy(buffer, slot.block + slot.position - got, static_cast<std::size_t>(got));
  return got;
}

int writeNext(MFilSlot &slot, const void *from, int count) {
  if (count <= 0 || count > INT_MAX - slot.position) return 0;
  if (slot.position + count > slot.capacity && !grow(slot, count)) return 0;
  std::memcpy(slot.block + slot.position, from, static_cast<std::size_t>(count));
  slot.position += count;
  slot.size = std::max(slot.size, slot.position);
  return count;
}

int seek(MFilSlot &slot, int offset) {
  if (offset < 0 || offset > slot.size) return -1;
  slot.position = offset;
  return 0;
}

}  // namespace

// The slot was left without a block; if it has one now, the application has put it there.
bool isUntouched(const MFilSlot &slot, const MFilSlot &left) {
  return slot.mode == left.mode && slot.block == left.block;
}

void release(MFilSlot &slot) { slot = {nullptr, 0, kFreeSlot, 0, 0}; }

int openMemoryFile(int wish, int minimum) {
  const int handle = takeSlot(DATA_MFIL_TAB, DATA_MFIL_ID);
  if (handle < 0) return -1;
  MFilSlot &slot = DATA_MFIL_TAB[handle];
  const int capacity = std::max({kLeastCapacity, wish, minimum});
  // Kept: the slot is in use even if there is no memory for its block.
  slot = {static_cast<char *>(allocated(capacity)), capacity, kOpen, 0, 0};
  if (slot.block != nullptr) return handle;
  leaveSlot(DATA_MFIL_TAB, handle);
  return -1;
}

void closeMemoryFile(int handle) {
  MFilSlot *slot = openSlot(DATA_MFIL_TAB, handle);
  if (slot == nullptr) return;
  std::free(slot->block);
  release(*slot);
  giveBack(handle, DATA_MFIL_ID);
}

int writeMemoryFile(int handle, const void *from, int count) {
  MFilSlot *slot = usableSlot(handle, mayWrite);
  return slot == nullptr ? 0 : writeNext(*slot, from, count);
}

}  // namespace korvel::files

using namespace korvel::files;

int MFil_Open(const char *name, int wish, int minimum) {
  lookForMisuse([=] { needsMemorySlots(Call("MFil_Open", {orNull(name), wish, minimum}), 1); });
  return openMemoryFile(wish, minimum);
}

int MFil_Close(int handle) {
  lookForMisuse([=] { needsMemoryHandle(Call("MFil_Close", {handle}), handle); });
  closeMemoryFile(handle);
  return 0;
}

int MFil_Read(int handle, void *buffer, int count) {
  lookForMisuse([=] {
    needsMemoryTransfer(Call("MFil_Read", {handle, filled(buffer), count}), handle, count);
  });
  MFilSlot *slot = readableSlot(handle);
  return slot == nullptr || buffer == nullptr ? 0 : readNext(*slot, buffer, count);
}

int MFil_Re_Read(int handle, void *buffer, int count) {
  lookForMisuse([=] {
    needsMemoryTransfer(Call("MFil_Re_Read", {handle, filled(buffer), count}), handle, count);
  });
  const MFilSlot *slot = readableSlot(handle);
  return slot == nullptr || buffer == nullptr ? 0 : readAgain(*slot, buffer, count);
}

int MFil_Write(int handle, const void *buffer, int count) {
  lookForMisuse([=] {
    needsMemoryWriting(Call("MFil_Write", {handle, filled(buffer), count}), handle, count);
  });
  return buffer == nullptr ? 0 : writeMemoryFile(handle, buffer, count);
}

int MFil_Lseek(int handle, int offset) {
  lookForMisuse([=] {
    needsMemoryOffset(Call("MFil_Lseek", {handle, offset}), handle, offset, 0);
  });
  MFilSlot *slot = openSlot(DATA_MFIL_TAB, handle);
  return slot == nullptr ? -1 : seek(*slot, offset);
}

int MFil_GetPos(int handle) {
  lookForMisuse([=] { needsHandleNumber(Call("MFil_GetPos", {handle}), handle); });
  return isHandle(handle) ? DATA_MFIL_TAB[handle].position : -1;
}

int MFil_Size(int handle) {
  lookForMisuse([=] { needsHandleNumber(Call("MFil_Size", {handle}), handle); });
  return isHandle(handle) ? DATA_MFIL_TAB[handle].size : -1;
}

char *MFil_LockPtr(int handle, int offset) {
  lookForMisuse([=] {
    needsMemoryOffset(Call("MFil_LockPtr", {handle, offset}), handle, offset, 1);
  });
  const MFilSlot *slot = readableSlot(handle);
  const bool isInside = slot != nullptr && offset >= 0 && offset < slot->size;
  return isInside ? slot->block + offset : nullptr;
}

int MFil_UnLockPtr(int /*handle*/) { return 0; }

void *GlobalAlloc(int flags, int size) {
  lookForMisuse([=] { needsNotNegative(Call("GlobalAlloc", {flags, size}), "the size", size); });
  return allocated(size);
}

void *GlobalReAlloc(void *block, int size) {
  lookForMisuse([=] {
    needsNotNegative(Call("GlobalReAlloc", {orNull(block), size}), "the size", size);
  });
  return size < 0 ? nullptr : std::realloc(block, allocatedSize(size));
}

int GlobalFree(void *block) {
  std::free(block);
  return 0;
}

void *GlobalLock(void *block) { return block; }

int GlobalUnlock(void * /*block*/) { return 0; }
