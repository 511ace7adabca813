// SPDX-License-Identifier: MIT
// For tables/ and dialogs/: the data lines of a table, one after the other.
#ifndef KORVEL_TABLES_LISTING_H
#define KORVEL_TABLES_LISTING_H

#include <optional>

#include <korvel/tables.h>

namespace korvel::tables {

// The rule of ZRV_Table_scan. Returns whether the table has a begin mark; nothing where it could
// not be read.
std::optional<bool> scanTable(const char *name, int *first, int *last, TableLine_t perLine);

}  // namespace korvel::tables

#endif
