// SPDX-License-Identifier: MIT
// For tables/ and dialogs/: the data lines of a table, one after the other.
#ifndef KORVEL_TABLES_LISTING_H
#define KORVEL_TABLES_LISTING_H

#include <korvel/tables.h>

namespace korvel::tables {

// The rule of ZRV_Table_scan. Returns whether the table has a begin mark.
bool scanTable(const char *name, int *first, int *last, TableLine_t perLine);

}  // namespace korvel::tables

#endif
