// SPDX-License-Identifier: MIT
// The commands that print what is in a table: show, list, find and search.
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <korvel/dates.h>
#include <korvel/strings.h>

#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/dates.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/tablefile.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

using Fields = std::vector<std::string_view>;

std::string_view columnOf(const Fields &fields, std::size_t column) {
  return column < fields.size() ? fields[column] : std::string_view("");
}

// Prints the first data line that is wanted, or all; each whole, or one column of it. Returns the
// exit code.
int printWanted(const TableFile &table, bool all, std::optional<int> column,
                const std::function<bool(const Fields &)> &isWanted) {
  Progress progress(table.lines().size());
  int exitCode = kUnlike;
  for (const int number : table.dataLines()) {
    progress.at(static_cast<std::size_t>(number));
    const std::string_view text = table.line(number).text;
    const Fields fields = fieldsOf(text);
    if (!isWanted(fields)) continue;
    printLine(column ? columnOf(fields, static_cast<std::size_t>(*column)) : text);
    exitCode = kDone;
    if (!all) break;
  }
  return exitCode;
}

// What is sought, in the bytes of a table; nothing for a text that no table can hold.
std::optional<std::string> soughtText(const std::string &argument) {
  try {
    return tableText(argument);
  } catch (const Failure &) {
    return std::nullopt;
  }
}

int notFound(const TableFile &table, const std::string &what) {
  complain(table.path() + ": " + what + " not found");
  return kUnlike;
}

// A day on which lines have to be in force, and the column that says since when they are.
struct Day {
  int date;
  std::size_t column;
};

std::optional<Day> dayWanted(const Arguments &arguments) {
  const std::optional<int> date = arguments.number("date", 0);
  const std::optional<int> column = arguments.number("dates", 1);
  if (date.has_value() != column.has_value()) throw WrongUse("--date and --dates go together");
  if (!date) return std::nullopt;
  if (Validate_Date(*date) != 1) {
    throw WrongUse("--date has to be a day YYYYMMDD, not \"" + arguments.text("date") + '"');
  }
  return Day{*date, static_cast<std::size_t>(*column)};
}

// The text as the library compares it where case does not count.
std::string withoutCase(std::string_view text) {
  std::string capital(text);
  strupr(capital.data());
  return capital;
}

// Small letters and capitals alike: as the library takes them, and as a person does, who finds "É"
// by "é".
bool matchesInAnyCase(std::string_view label, std::string_view field) {
  return matches(withoutCase(label), withoutCase(field)) ||
         matches(capitals(label), capitals(field));
}

}  // namespace

int runShow(const Arguments &arguments) {
  const TableFile table(arguments.operand(0));
  Progress progress(table.lines().size());
  for (const Line &line : table.lines()) {
    printLine(line.text);
    progress.at(static_cast<std::size_t>(line.number));
  }
  return kDone;
}

int runList(const Arguments &arguments) {
  const TableFile table(arguments.operand(0));
  table.requireData();
  Progress progress(table.lines().size());
  for (const int number : table.dataLines()) {
    printLine(codeOf(table.line(number).text));
    progress.at(static_cast<std::size_t>(number));
  }
  return kDone;
}

int runFind(const Arguments &arguments) {
  const std::optional<Day> day = dayWanted(arguments);
  const std::optional<int> column = arguments.number("column", 0);
  const TableFile table(arguments.operand(0));
  table.requireData();
  const std::optional<std::string> code = soughtText(arguments.operand(1));
  const auto isWanted = [&](const Fields &fields) {
    return code && matches(*code, fields[0]) && (!day || isInForce(fields, day->column, day->date));
  };
  if (printWanted(table, arguments.has("all"), column, isWanted) == kDone) return kDone;
  return notFound(table, "code \"" + arguments.operand(1) + '"' + (day ? " in force" : ""));
}

int runSearch(const Arguments &arguments) {
  const auto column = static_cast<std::size_t>(arguments.number("column", 0).value_or(1));
  const TableFile table(arguments.operand(0));
  table.requireData();
  const std::optional<std::string> label = soughtText(arguments.operand(1));
  const auto compare = arguments.has("ignore-case") ? matchesInAnyCase : matches;
  const auto isWanted = [&](const Fields &fields) {
    return label && compare(*label, columnOf(fields, column));
  };
  if (printWanted(table, arguments.has("all"), std::nullopt, isWanted) == kDone) return kDone;
  return notFound(table, "label \"" + arguments.operand(1) + '"');
}

}  // namespace korvel::tools
