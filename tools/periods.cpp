// SPDX-License-Identifier: MIT
// Checks validity periods: each by itself, and those of one code against each other. A day that
// ends one period and begins the next belongs to both, and is no overlap.
#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>

#include <korvel/dates.h>

#include "tools/dates.h"
#include "tools/findings.h"
#include "tools/progress.h"
#include "tools/tablefile.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

constexpr int kBeforeAll = 0;
constexpr int kAfterAll = 99999999;

struct Period {
  int first;
  int last;
  int line;
};

std::string shown(int day) {
  char text[9];
  ZRV_Inv_Date_2(std::to_string(day).c_str(), text);
  return text;
}

// A day, or the other one for an empty field; nothing for what is no date.
std::optional<int> readDay(const Line &line, const std::vector<std::string_view> &fields,
                           std::size_t column, int otherwise, Findings &findings) {
  if (column >= fields.size() || fields[column].empty()) return otherwise;
  if (isDate(fields[column])) return dayOf(fields[column]);
  findings.add(line.number, "column " + std::to_string(column) +
                                " is no date DD/MM/YY: " + quoted(fields[column]));
  return std::nullopt;
}

std::optional<Period> readPeriod(const Line &line, std::size_t column, Findings &findings) {
  const std::vector<std::string_view> fields = fieldsOf(line.text);
  const auto first = readDay(line, fields, column, kBeforeAll, findings);
  const auto last = readDay(line, fields, column + 1, kAfterAll, findings);
  if (!first || !last) return std::nullopt;
  if (*first <= *last) return Period{*first, *last, line.number};
  findings.add(line.number, "the period is reversed: it begins on " + shown(*first) +
                                " and ends on " + shown(*last));
  return std::nullopt;
}

// How a period follows the one before it, of all the one that ends the latest.
void checkFollowing(const Period &before, const Period &next, Findings &findings) {
  const std::string other = "that of line " + std::to_string(before.line);
  if (next.first < before.last) {
    findings.add(next.line, "the period overlaps " + other);
  } else if (next.first > Get_Date_Incr(before.last, 1)) {
    findings.add(next.line, "a gap before the period: it begins on " + shown(next.first) + ", " +
                                other + " ends on " + shown(before.last));
  }
}

void checkCode(std::vector<Period> &periods, Findings &findings) {
  std::sort(periods.begin(), periods.end(), [](const Period &a, const Period &b) {
    return std::tie(a.first, a.last, a.line) < std::tie(b.first, b.last, b.line);
  });
  const Period *latest = nullptr;
  for (const Period &period : periods) {
    if (latest != nullptr) checkFollowing(*latest, period, findings);
    if (latest == nullptr || period.last > latest->last) latest = &period;
  }
}

}  // namespace

void checkPeriods(const TableFile &table, std::size_t column, Findings &findings) {
  Progress progress(table.lines().size());
  std::map<std::string_view, std::vector<Period>> periods;
  for (const int number : table.dataLines()) {
    const Line &line = table.line(number);
    const auto period = readPeriod(line, column, findings);
    if (period) periods[codeOf(line.text)].push_back(*period);
    progress.at(static_cast<std::size_t>(number));
  }
  for (auto &[code, ofCode] : periods) checkCode(ofCode, findings);
}

}  // namespace korvel::tools
