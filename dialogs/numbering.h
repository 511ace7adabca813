// SPDX-License-Identifier: MIT
// For dialogs/: which item belongs to which field, both ways.
#ifndef KORVEL_DIALOGS_NUMBERING_H
#define KORVEL_DIALOGS_NUMBERING_H

#include <optional>
#include <vector>

#include "dialogs/field_type.h"

namespace korvel::platform {
class Dialog;
}

namespace korvel::dialogs {

// Entries of the numbering tables: items and ranks run from 0 to one less.
constexpr int kNumberedItems = 128;

// The first item that the fields may take; the button pair comes first.
constexpr int kFirstFieldItem = 3;

// The first item of field i: by its rank, or fixed when it has none. Always a 16-bit number; 0,
// which is no item, for a rank beyond the tables.
int itemOf(const FieldType &type, int i);

// The first of the items of field i that a dialog does not have.
std::optional<int> missingItem(const platform::Dialog &dialog, const FieldType &type, int i);

// The identifier of field i. They count up from the first field's, which may be any number: it may
// need more than 32 bits.
long long identifierOf(const FieldType &type, int i);

// The identifier of an item by the numbering tables.
int identifierOf(int item);

// The index of the field in use that an identifier names; nothing if the type has no such field.
std::optional<int> fieldOf(const FieldType &type, long long identifier);

// Enters the items of field i, which has a rank, into the numbering tables.
void recordItems(const FieldType &type, int i, int firstItem);

struct FieldId {
  const FieldType *type;
  int index;
};

// The fields in use that have a rank, in the order in which their items are placed: by rank, then
// by type, then by index.
std::vector<FieldId> placementOrder();

// Whether ranks and items of these fields fit into the numbering tables. If not, one line on
// standard error names the first field that does not.
bool fitsNumbering(const std::vector<FieldId> &order);

}  // namespace korvel::dialogs

#endif
