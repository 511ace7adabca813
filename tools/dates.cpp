// SPDX-License-Identifier: MIT
// Reads the dates of a table by the library's own functions.
#include "tools/dates.h"

#include <string>

#include <korvel/codecs.h>
#include <korvel/dates.h>

namespace korvel::tools {
namespace {

constexpr std::size_t kWritten = 8;  // DD/MM/YY, and YYYYMMDD

bool isDigit(char c) { return c >= '0' && c <= '9'; }

int dayIn(const std::vector<std::string_view> &fields, std::size_t column) {
  return column < fields.size() ? dayOf(fields[column]) : 0;
}

}  // namespace

int dayOf(std::string_view field) {
  if (field.empty()) return 0;
  const std::string text(field.substr(0, kWritten));
  char stored[kWritten + 1];
  ZRV_Build_Date_short(text.c_str(), stored);
  int day = 0;
  NUMToLong(stored, kWritten, &day);
  return day;
}

bool isDate(std::string_view field) {
  if (field.size() != kWritten || field[2] != '/' || field[5] != '/') return false;
  for (const std::size_t i : {0, 1, 3, 4, 6, 7}) {
    if (!isDigit(field[i])) return false;
  }
  return Validate_Date(dayOf(field)) == 1;
}

bool isInForce(const std::vector<std::string_view> &fields, std::size_t column, int day) {
  const int first = dayIn(fields, column);
  const int last = dayIn(fields, column + 1);
  return first == 0 || last == 0 || (first <= day && day <= last);
}

}  // namespace korvel::tools
