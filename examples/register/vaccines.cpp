// SPDX-License-Identifier: MIT
// Lookups in a code table. They are asked at each use: the library keeps the table in memory and
// sees when somebody has changed the file.
#include "vaccines.h"

#include <korvel/codecs.h>
#include <korvel/tables.h>

#include "text.h"

namespace registry {
namespace {

constexpr char kTable[] = "vaccins.tab";
enum Column { kLabel = 1, kMonths = 2 };

// Empty where the table does not have the code, or its line not the column.
std::string columnOf(const QString &code, Column column) {
  const std::string key = toBytes(code);
  char text[256] = "";
  ZRV_Libelle_NC(key.c_str(), static_cast<int>(key.size()), column, kTable, text, sizeof text);
  return text;
}

}  // namespace

QString vaccineLabel(const QString &code) {
  const std::string label = columnOf(code, kLabel);
  return label.empty() ? code : fromBytes(label.c_str());
}

QString vaccineCode(const QString &label) {
  char code[256] = "";
  const int isFound =
      ZRV_Code_NC(toBytes(label).c_str(), kLabel, kTable, code, static_cast<int>(sizeof code));
  return isFound != 0 ? fromBytes(code) : QString();
}

int monthsToNext(const QString &code) {
  std::string text = columnOf(code, kMonths);
  int months = 0;
  return intcod_i_sup0(text.data(), &months) == 0 ? months : 0;
}

std::string vaccineChoices() {
  static std::string choices;
  choices.clear();
  ZRV_Table_scan(kTable, nullptr, nullptr, [](char *fields) {
    const char *label = fields + std::char_traits<char>::length(fields) + 1;
    if (*fields == '\0' || *label == '\0') return;
    if (!choices.empty()) choices += '+';
    choices += label;
  });
  return choices;
}

}  // namespace registry
