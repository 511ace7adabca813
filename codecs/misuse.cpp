// SPDX-License-Identifier: MIT
// Misuse of numbers: buffers and widths that are too small. Texts that are no numbers are none: the
// status tells.
#include "codecs/misuse.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "codecs/integer.h"
#include "codecs/real.h"

namespace korvel::codecs {

namespace {

int lengthOf(int value) {
  char text[kIntegerSize];
  writeInteger(value, text, sizeof text);
  return static_cast<int>(std::strlen(text));
}

void needsBytes(const Call &call, int capacity, int needed) {
  call.misusedIf(capacity < needed,
                 {"a buffer of ", capacity, " bytes is too small: ", needed, " are needed"});
}

}  // namespace

void needsIntegerRoom(const Call &call, const void *buffer, int capacity, int value) {
  needsRoom(call, buffer, capacity);
  needsBytes(call, capacity, lengthOf(value) + 1);
}

void needsRealRoom(const Call &call, const void *buffer, int capacity, double value, int decimals) {
  needsRoom(call, buffer, capacity);
  call.misusedIf(decimals < 0, {"there are no ", decimals, " decimals: 0 is the least"});
  if (!call) return;
  // Behind these there are zeros.
  constexpr int kMostDecimals = 1100;
  char text[kMostDecimals + 400];
  const int shown = std::min(decimals, kMostDecimals);
  writeReal(value, text, sizeof text, shown);
  const long long needed = static_cast<long long>(std::strlen(text)) + 1 + (decimals - shown);
  needsBytes(call, capacity, static_cast<int>(std::min<long long>(needed, INT_MAX)));
}

void needsSignificantRoom(const Call &call, const void *buffer, int capacity, int digits,
                          int needed) {
  needsRoom(call, buffer, capacity);
  call.misusedIf(digits < 0, {"there are no ", digits, " digits behind the first: 0 is the least"});
  needsBytes(call, capacity, needed);
}

void needsWidth(const Call &call, const void *destination, int width, int value) {
  call.misusedIf(destination == nullptr, {"there is no destination"});
  call.misusedIf(width < lengthOf(value),
                 {"a width of ", width, " is too small: ", lengthOf(value), " are needed"});
}

void needsReadableWidth(const Call &call, int width, int widest) {
  call.needsAll();
  call.misusedIf(width < 0 || width > widest,
                 {"no number has a width of ", width, ": 0 to ", widest, " are read"});
}

void needsAnotherWriter(const Call &call) {
  call.misused({"this writes nothing: realdco_d writes reals"});
}

void needsIndex(const Call &call, int index) {
  call.needsAll();
  call.misusedIf(index < 0, {"there is no item ", index, ": 0 is the first"});
}

}  // namespace korvel::codecs
