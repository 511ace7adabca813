// What the field types have in common.
#include "dialogs/families.h"

#include <algorithm>
#include <iterator>

namespace korvel::dialogs {

namespace {

void clearField(const Family &family, int i) {
  family.x[i] = family.y[i] = family.cx[i] = family.cy[i] = 0;
  if (family.rank != nullptr) family.rank[i] = -1;
  if (family.init != nullptr) family.init[i] = 0;
  if (family.mandatory != nullptr) family.mandatory[i] = 1;
  if (family.valid != nullptr) family.valid[i] = 1;
}

bool familyIsValid(const Family &family) {
  const int *flags = family.valid;
  return std::all_of(flags, flags + fieldCount(family), [](int flag) { return flag == 1; });
}

}  // namespace

bool define(const Family &family, int n, int firstItem) {
  if (n < 0 || n > family.capacity) return false;
  *family.inUse = 1;
  *family.count = n;
  if (family.firstItem != nullptr) *family.firstItem = firstItem;
  for (int i = 0; i < n; ++i) clearField(family, i);
  return true;
}

int fieldCount(const Family &family) { return std::clamp(*family.count, 0, family.capacity); }

bool hasField(const Family &family, int i) { return i >= 0 && i < fieldCount(family); }

bool isInUse(const Family &family, int i) { return *family.inUse != 0 && hasField(family, i); }

void place(const Family &family, int i, int x, int y, int cx, int cy) {
  if (!hasField(family, i)) return;
  family.x[i] = static_cast<short>(x);
  family.y[i] = static_cast<short>(y);
  family.cx[i] = static_cast<short>(cx);
  family.cy[i] = static_cast<short>(cy);
}

void place(const Family &family, int i, int x, int y, int cx, int cy, int rank) {
  if (!hasField(family, i)) return;
  place(family, i, x, y, cx, cy);
  family.rank[i] = static_cast<short>(rank);
}

void setMandatory(const Family &family, int i, int on) {
  if (!hasField(family, i)) return;
  family.mandatory[i] = on != 0 ? 1 : 0;
  if (on == 0) family.valid[i] = 1;
}

int validFlag(const Family &family, int i) { return hasField(family, i) ? family.valid[i] : 0; }

bool allValid() {
  return std::all_of(
      std::begin(kValidatedFamilies), std::end(kValidatedFamilies),
      [](const Family *family) { return *family->inUse == 0 || familyIsValid(*family); });
}

void endUse() {
  for (const Family *family : kItemFamilies) *family->inUse = 0;
  *kStatics.inUse = 0;
  HDB = 0;
}

}  // namespace korvel::dialogs
