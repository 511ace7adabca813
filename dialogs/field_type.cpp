// SPDX-License-Identifier: MIT
// What all kinds of fields share: taking into use, placing, flags, and the validation of all.
#include "dialogs/field_type.h"

#include <algorithm>
#include <iterator>

#include "dialogs/names.h"

namespace korvel::dialogs {

namespace {

void clearField(const FieldType &type, int i) {
  type.place.x[i] = type.place.y[i] = type.place.cx[i] = type.place.cy[i] = 0;
  if (type.place.rank != nullptr) type.place.rank[i] = -1;
  if (type.flags.init != nullptr) type.flags.init[i] = 0;
  if (type.flags.mandatory != nullptr) type.flags.mandatory[i] = 1;
  if (type.flags.valid != nullptr) type.flags.valid[i] = 1;
}

bool isAcceptable(const FieldType &type, int i) {
  return type.flags.init[i] == 0 ? type.flags.mandatory[i] == 0 : type.storedIsAcceptable(i);
}

void validate() {
  forEachValidatedField(
      [](const FieldType &type, int i) { type.flags.valid[i] = isAcceptable(type, i) ? 1 : 0; });
}

}  // namespace

bool define(const FieldType &type, int n, int firstItem) {
  if (n < 0 || n > type.capacity) return false;
  *type.use.inUse = 1;
  *type.use.count = n;
  if (type.use.firstItem != nullptr) *type.use.firstItem = firstItem;
  for (int i = 0; i < n; ++i) clearField(type, i);
  forgetNames(type);
  return true;
}

bool hasField(const FieldType &type, int i) {
  return i >= 0 && i < std::min(*type.use.count, type.capacity);
}

bool isInUse(const FieldType &type, int i) { return *type.use.inUse != 0 && hasField(type, i); }

void place(const FieldType &type, int i, int x, int y, int cx, int cy) {
  if (!hasField(type, i)) return;
  type.place.x[i] = static_cast<short>(x);
  type.place.y[i] = static_cast<short>(y);
  type.place.cx[i] = static_cast<short>(cx);
  type.place.cy[i] = static_cast<short>(cy);
}

void place(const FieldType &type, int i, int x, int y, int cx, int cy, int rank) {
  if (!hasField(type, i)) return;
  place(type, i, x, y, cx, cy);
  type.place.rank[i] = static_cast<short>(rank);
}

void setMandatory(const FieldType &type, int i, int on) {
  if (!hasField(type, i)) return;
  type.flags.mandatory[i] = on != 0 ? 1 : 0;
  if (on == 0) type.flags.valid[i] = 1;
}

int validFlag(const FieldType &type, int i) { return hasField(type, i) ? type.flags.valid[i] : 0; }

std::span<const int> validFlags(const FieldType &type) {
  if (type.flags.valid == nullptr || *type.use.inUse == 0) return {};
  const int fields = std::clamp(*type.use.count, 0, type.capacity);
  return {type.flags.valid, static_cast<std::size_t>(fields)};
}

bool allValid() {
  return std::all_of(std::begin(kFieldTypes), std::end(kFieldTypes), [](const FieldType *type) {
    const std::span<const int> flags = validFlags(*type);
    return std::all_of(flags.begin(), flags.end(), [](int flag) { return flag == 1; });
  });
}

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int ZRVDlgBox_valid() {
  validate();
  return allValid() ? 1 : 0;
}
