// SPDX-License-Identifier: MIT
// Which item belongs to which field. The exported tables may hold anything: sums are made in 64
// bits, and indexes checked.
#include "dialogs/numbering.h"

#include <algorithm>
#include <string>

#include "dialogs/run.h"
#include "platform/desktop.h"

constinit int Dlg_itemOffset[korvel::dialogs::kNumberedItems] = {};
constinit int Dlg_rkOffset[korvel::dialogs::kNumberedItems] = {};

namespace korvel::dialogs {

namespace {

bool isNumbered(long long number) { return number >= 0 && number < kNumberedItems; }

void refuse(const FieldId &field, const char *what, int number) {
  reportNotShown(field.type->name + (' ' + std::to_string(field.index)) + " would need " + what +
                 ' ' + std::to_string(number) + ", beyond the last one, " +
                 std::to_string(kNumberedItems - 1));
}

}  // namespace

long long identifierOf(const FieldType &type, int i) {
  return *type.use.firstItem + static_cast<long long>(type.itemsPerField) * i;
}

int itemOf(const FieldType &type, int i) {
  const int rank = type.place.rank[i];
  if (rank < 0) return static_cast<short>(identifierOf(type, i));
  if (!isNumbered(rank)) return 0;
  return static_cast<short>(static_cast<long long>(rank) - Dlg_rkOffset[rank]);
}

std::optional<int> missingItem(const platform::Dialog &dialog, const FieldType &type, int i) {
  const int first = itemOf(type, i);
  for (int item = first; item < first + type.itemsPerField; ++item) {
    if (dialog.kind(item) == platform::ItemKind::None) return item;
  }
  return std::nullopt;
}

int identifierOf(int item) {
  const long long offset = isNumbered(item) ? Dlg_itemOffset[item] : 0;
  return static_cast<int>(item - offset);
}

std::optional<int> fieldOf(const FieldType &type, long long identifier) {
  // Kept: the division truncates toward zero. The two identifiers below a date's first one are thus
  // that date's, too.
  const long long index = (identifier - *type.use.firstItem) / type.itemsPerField;
  if (index < 0 || index >= type.capacity) return std::nullopt;
  const int i = static_cast<int>(index);
  return isInUse(type, i) ? std::optional(i) : std::nullopt;
}

void recordItems(const FieldType &type, int i, int firstItem) {
  const int rank = type.place.rank[i];
  for (int item = firstItem; item < firstItem + type.itemsPerField; ++item) {
    if (isNumbered(item)) {
      Dlg_itemOffset[item] = static_cast<int>(item - identifierOf(type, i));
    }
  }
  if (isNumbered(rank)) Dlg_rkOffset[rank] = rank - firstItem;
}

std::vector<FieldId> placementOrder() {
  std::vector<FieldId> fields;
  forEachField([&](const FieldType &type, int i) {
    if (type.place.rank[i] >= 0) fields.push_back({&type, i});
  });
  std::stable_sort(fields.begin(), fields.end(), [](const FieldId &a, const FieldId &b) {
    return a.type->place.rank[a.index] < b.type->place.rank[b.index];
  });
  return fields;
}

bool fitsNumbering(const std::vector<FieldId> &order) {
  int nextItem = kFirstFieldItem;
  for (const FieldId &field : order) {
    const int rank = field.type->place.rank[field.index];
    nextItem += field.type->itemsPerField;
    if (!isNumbered(nextItem - 1)) {
      refuse(field, "item", nextItem - 1);
      return false;
    }
    if (!isNumbered(rank)) {
      refuse(field, "rank", rank);
      return false;
    }
  }
  return true;
}

}  // namespace korvel::dialogs
