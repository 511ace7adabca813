// SPDX-License-Identifier: MIT
// Validity periods: two columns, DD/MM/YY, of the first and the last day on which a line is in
// force, as the library's lookup by a day takes them.
#ifndef KORVEL_TOOLS_DATES_H
#define KORVEL_TOOLS_DATES_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace korvel::tools {

// The number YYYYMMDD that the library makes of a field; 0 for what gives none.
int dayOf(std::string_view field);

// Whether a field is written as a date and is one.
bool isDate(std::string_view field);

// Whether a line is in force on a day: from the first to the last day, both included, and on every
// day where one of them is missing or no date.
bool isInForce(const std::vector<std::string_view> &fields, std::size_t column, int day);

}  // namespace korvel::tools

#endif
