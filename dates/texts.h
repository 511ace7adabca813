// SPDX-License-Identifier: MIT
// For dates/ and tables/: display dates as stored ones.
#ifndef KORVEL_DATES_TEXTS_H
#define KORVEL_DATES_TEXTS_H

namespace korvel::dates {

// Stores DD/MM/YY as YYYYMMDD (9 bytes). Returns the code of ZRV_Build_Date_short.
int storeShortDate(const char *date, char *out);

}  // namespace korvel::dates

#endif
