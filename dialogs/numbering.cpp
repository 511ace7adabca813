// Which item stands for which field. Offsets are read from exported tables in which anything may
// stand: sums are made in 64 bits and indexes checked.
#include "dialogs/numbering.h"

#include <algorithm>
#include <cstdio>

constinit int Dlg_itemOffset[korvel::dialogs::kNumberedItems] = {};
constinit int Dlg_rkOffset[korvel::dialogs::kNumberedItems] = {};

namespace korvel::dialogs {

namespace {

bool isNumbered(long long number) { return number >= 0 && number < kNumberedItems; }

void refuse(const FieldId &field, const char *what, int number) {
  std::fprintf(stderr,
               "korvel: dialog not shown: %s %d would need %s %d, beyond the last one, %d\n",
               field.family->name, field.index, what, number, kNumberedItems - 1);
}

}  // namespace

long long identifierOf(const Family &family, int i) {
  return *family.firstItem + static_cast<long long>(family.itemsPerField) * i;
}

int itemOf(const Family &family, int i) {
  const int rank = family.rank[i];
  if (rank < 0) return static_cast<short>(identifierOf(family, i));
  if (!isNumbered(rank)) return 0;
  return static_cast<short>(static_cast<long long>(rank) - Dlg_rkOffset[rank]);
}

int identifierOf(int item) {
  const long long offset = isNumbered(item) ? Dlg_itemOffset[item] : 0;
  return static_cast<int>(item - offset);
}

std::optional<int> fieldOf(const Family &family, long long identifier) {
  // Kept: the two identifiers just below a type of three items each count as its field 0, since
  // the division truncates toward zero.
  const long long index = (identifier - *family.firstItem) / family.itemsPerField;
  if (index < 0 || index >= family.capacity) return std::nullopt;
  const int i = static_cast<int>(index);
  return isInUse(family, i) ? std::optional(i) : std::nullopt;
}

void recordItems(const Family &family, int i, int firstItem) {
  const int rank = family.rank[i];
  for (int item = firstItem; item < firstItem + family.itemsPerField; ++item) {
    if (isNumbered(item)) {
      Dlg_itemOffset[item] = static_cast<int>(item - identifierOf(family, i));
    }
  }
  if (isNumbered(rank)) Dlg_rkOffset[rank] = rank - firstItem;
}

std::vector<FieldId> placementOrder() {
  std::vector<FieldId> fields;
  for (const Family *family : kItemFamilies) {
    for (int i = 0; isInUse(*family, i); ++i) {
      if (family->rank[i] >= 0) fields.push_back({family, i});
    }
  }
  std::stable_sort(fields.begin(), fields.end(), [](const FieldId &a, const FieldId &b) {
    return a.family->rank[a.index] < b.family->rank[b.index];
  });
  return fields;
}

bool fitsNumbering(const std::vector<FieldId> &order) {
  int nextItem = kFirstFieldItem;
  for (const FieldId &field : order) {
    const int rank = field.family->rank[field.index];
    nextItem += field.family->itemsPerField;
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
