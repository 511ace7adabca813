// SPDX-License-Identifier: MIT
// For files/ and tables/: the rule by which both handle tables hand out their slots.
#ifndef KORVEL_FILES_SLOTS_H
#define KORVEL_FILES_SLOTS_H

#include <algorithm>

#include <korvel/files.h>

namespace korvel::files {

constexpr int kSlots = 5;
constexpr int kFreeSlot = KorvelFreeMode;

// Some failures inside the library leave a slot in use whose handle no application knows. It is the
// library's own until the application changes it; `left` is the slot as it was left.
template <typename Slot>
struct OwnSlot {
  bool isOwn = false;
  Slot left = {};
};
template <typename Slot>
inline constinit OwnSlot<Slot> ownSlots[kSlots] = {};

bool isUntouched(const FileSlot &slot, const FileSlot &left);
bool isUntouched(const MFilSlot &slot, const MFilSlot &left);
// Frees a slot of the library's own.
void release(FileSlot &slot);
void release(MFilSlot &slot);

// Makes a slot in use the library's own.
template <typename Slot>
void leaveSlot(const Slot (&table)[kSlots], int handle) {
  ownSlots<Slot>[handle] = {true, table[handle]};
}

template <typename Slot>
bool isOwn(const Slot (&table)[kSlots], int handle) {
  const OwnSlot<Slot> &own = ownSlots<Slot>[handle];
  return own.isOwn && isUntouched(table[handle], own.left);
}

// The handle that the rule gives next; -1 when no slot is free.
template <typename Slot>
int nextSlot(const Slot (&table)[kSlots], int &highest) {
  if (highest < kSlots - 1) {
    // Kept: the slot above the counter is used without a look at its mode. It is in use only if the
    // application lowered the counter, as the library lowers it only for a slot that is closed.
    highest = std::max(highest, -1) + 1;
    return highest;
  }
  for (int handle = 0; handle < kSlots; ++handle) {
    if (table[handle].mode == kFreeSlot) return handle;
  }
  return -1;
}

// The slot for a new handle: a free one, else one of the library's own, else -1. `highest` is the
// table's counter.
template <typename Slot>
int takeSlot(Slot (&table)[kSlots], int &highest) {
  int handle = nextSlot(table, highest);
  for (int own = 0; handle < 0 && own < kSlots; ++own) {
    if (isOwn(table, own)) handle = own;
  }
  if (handle < 0) return -1;
  if (isOwn(table, handle)) release(table[handle]);
  ownSlots<Slot>[handle].isOwn = false;
  return handle;
}

// The counter falls only when the highest handle is closed.
inline void giveBack(int handle, int &highest) {
  if (handle == highest) highest = handle - 1;
}

inline bool isHandle(int handle) { return handle >= 0 && handle < kSlots; }

// The slot of a handle in use; null for any other number.
template <typename Slot>
Slot *openSlot(Slot (&table)[kSlots], int handle) {
  return isHandle(handle) && table[handle].mode != kFreeSlot ? &table[handle] : nullptr;
}

inline bool mayRead(int mode) { return mode == 0 || mode == 2; }
inline bool mayWrite(int mode) { return mode == 1 || mode == 2; }

// How many of `count` bytes there are between the position and the end, at least 0.
inline int clipped(int count, int size, int position) {
  const long long rest = static_cast<long long>(size) - position;
  return static_cast<int>(std::max(0LL, std::min<long long>(count, rest)));
}

}  // namespace korvel::files

#endif
