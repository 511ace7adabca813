// For files/ and tables/ only: the rule by which both handle tables hand out their slots.
#ifndef KORVEL_FILES_SLOTS_H
#define KORVEL_FILES_SLOTS_H

#include <algorithm>

namespace korvel::files {

constexpr int kSlots = 5;
constexpr int kFreeSlot = -1;  // mode of a slot that is not in use

// The slot for a new handle; -1: none is free. `highest` is the table's counter.
template <typename Slot>
int takeSlot(const Slot (&table)[kSlots], int &highest) {
  if (highest < kSlots - 1) {
    // Kept: the slot above the counter is used without a look at its mode. As only the closing of
    // an open slot lowers the counter, it is in use only if the application lowered it.
    highest = std::max(highest, -1) + 1;
    return highest;
  }
  for (int handle = 0; handle < kSlots; ++handle) {
    if (table[handle].mode == kFreeSlot) return handle;
  }
  return -1;
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

// How many of `count` bytes there are from the position to the end; 0 where that is less.
inline int clipped(int count, int size, int position) {
  const long long rest = static_cast<long long>(size) - position;
  return static_cast<int>(std::max(0LL, std::min<long long>(count, rest)));
}

}  // namespace korvel::files

#endif
