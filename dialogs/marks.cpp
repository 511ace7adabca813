// The marks on the screen of items that keep OK disabled. They are worked out over all kinds of
// fields, as several fields may lead to one item.
#include "dialogs/marks.h"

#include <algorithm>

#include "dialogs/field_type.h"
#include "dialogs/numbering.h"
#include "dialogs/screen.h"

namespace korvel::dialogs {

namespace {

std::size_t mostItems() {
  int items = 0;
  for (const FieldType *type : kFieldTypes) {
    if (type->flags.valid != nullptr) items += type->capacity * type->itemsPerField;
  }
  return static_cast<std::size_t>(items);
}

// Several fields may lead to one item, which is marked while one of them is not acceptable.
void collectUnacceptable(std::vector<int> &items) {
  items.clear();
  forEachValidatedField([&](const FieldType &type, int i) {
    if (type.flags.valid[i] == 1) return;
    const int first = itemOf(type, i);
    for (int item = first; item < first + type.itemsPerField; ++item) items.push_back(item);
  });
  std::sort(items.begin(), items.end());
  items.erase(std::unique(items.begin(), items.end()), items.end());
}

bool contains(const std::vector<int> &items, int item) {
  return std::binary_search(items.begin(), items.end(), item);
}

}  // namespace

Marks::Marks() {
  marked_.reserve(mostItems());
  wanted_.reserve(mostItems());
}

void Marks::follow(Screen &screen) noexcept {
  if (marked_.empty() && allValid()) return;
  collectUnacceptable(wanted_);
  for (const int item : wanted_) {
    if (!contains(marked_, item)) screen.setAcceptable(item, false);
  }
  for (const int item : marked_) {
    if (!contains(wanted_, item)) screen.setAcceptable(item, true);
  }
  marked_.swap(wanted_);
}

}  // namespace korvel::dialogs
