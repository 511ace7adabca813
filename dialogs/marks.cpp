// SPDX-License-Identifier: MIT
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

void appendItems(std::vector<int> &items, const FieldType &type, int i) {
  const int first = itemOf(type, i);
  for (int item = first; item < first + type.itemsPerField; ++item) items.push_back(item);
}

// Several fields may lead to one item, which is marked while one of them is not acceptable.
void collectUnacceptable(std::vector<int> &items) {
  items.clear();
  for (const FieldType *type : kFieldTypes) {
    const std::span<const int> flags = validFlags(*type);
    for (std::size_t i = 0; i < flags.size(); ++i) {
      if (flags[i] != 1) appendItems(items, *type, static_cast<int>(i));
    }
  }
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
