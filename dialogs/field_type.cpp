// What the kinds of fields have in common: the description of a field in its tables.
#include "dialogs/field_type.h"

#include <algorithm>

namespace korvel::dialogs {

namespace {

void clearField(const FieldType &type, int i) {
  type.x[i] = type.y[i] = type.cx[i] = type.cy[i] = 0;
  if (type.rank != nullptr) type.rank[i] = -1;
  if (type.init != nullptr) type.init[i] = 0;
  if (type.mandatory != nullptr) type.mandatory[i] = 1;
  if (type.valid != nullptr) type.valid[i] = 1;
}

}  // namespace

bool define(const FieldType &type, int n, int firstItem) {
  if (n < 0 || n > type.capacity) return false;
  *type.inUse = 1;
  *type.count = n;
  if (type.firstItem != nullptr) *type.firstItem = firstItem;
  for (int i = 0; i < n; ++i) clearField(type, i);
  return true;
}

bool hasField(const FieldType &type, int i) {
  return i >= 0 && i < std::min(*type.count, type.capacity);
}

bool isInUse(const FieldType &type, int i) { return *type.inUse != 0 && hasField(type, i); }

void place(const FieldType &type, int i, int x, int y, int cx, int cy) {
  if (!hasField(type, i)) return;
  type.x[i] = static_cast<short>(x);
  type.y[i] = static_cast<short>(y);
  type.cx[i] = static_cast<short>(cx);
  type.cy[i] = static_cast<short>(cy);
}

void place(const FieldType &type, int i, int x, int y, int cx, int cy, int rank) {
  if (!hasField(type, i)) return;
  place(type, i, x, y, cx, cy);
  type.rank[i] = static_cast<short>(rank);
}

void setMandatory(const FieldType &type, int i, int on) {
  if (!hasField(type, i)) return;
  type.mandatory[i] = on != 0 ? 1 : 0;
  if (on == 0) type.valid[i] = 1;
}

int validFlag(const FieldType &type, int i) { return hasField(type, i) ? type.valid[i] : 0; }

bool allValid() {
  bool all = true;
  forEachValidatedField([&](const FieldType &type, int i) { all = all && type.valid[i] == 1; });
  return all;
}

}  // namespace korvel::dialogs
