// SPDX-License-Identifier: MIT
// The command diff: two tables compared code by code, whatever the order of their lines.
#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/tablefile.h"
#include "tools/text.h"

namespace korvel::tools {
namespace {

using Lines = std::vector<std::string>;

// The lines of each code, sorted. What stands between the fields is no difference.
std::map<std::string, Lines> linesByCode(const TableFile &table) {
  Progress progress(table.lines().size());
  std::map<std::string, Lines> lines;
  for (const int number : table.dataLines()) {
    const std::string_view text = table.line(number).text;
    lines[std::string(codeOf(text))].push_back(withCommas(text));
    progress.at(static_cast<std::size_t>(number));
  }
  for (auto &[code, ofCode] : lines) std::sort(ofCode.begin(), ofCode.end());
  return lines;
}

Lines without(const Lines &lines, const Lines &others) {
  Lines rest;
  std::set_difference(lines.begin(), lines.end(), others.begin(), others.end(),
                      std::back_inserter(rest));
  return rest;
}

void printChange(const char *what, const std::string &line) { print(what + toUtf8(line) + '\n'); }

// Prints how the lines of one code differ. Returns whether they do.
bool printDifference(const Lines &oldLines, const Lines &newLines) {
  const Lines gone = without(oldLines, newLines);
  const Lines come = without(newLines, oldLines);
  const std::size_t changed = std::min(gone.size(), come.size());
  for (std::size_t i = 0; i < changed; ++i) {
    printChange("changed: ", gone[i]);
    printChange("     to: ", come[i]);
  }
  for (std::size_t i = changed; i < gone.size(); ++i) printChange("removed: ", gone[i]);
  for (std::size_t i = changed; i < come.size(); ++i) printChange("added:   ", come[i]);
  return !gone.empty() || !come.empty();
}

}  // namespace

int runDiff(const Arguments &arguments) {
  const TableFile oldTable(arguments.operand(0));
  oldTable.requireData();
  oldTable.requireWhole();
  const TableFile newTable(arguments.operand(1));
  newTable.requireData();
  newTable.requireWhole();
  auto oldLines = linesByCode(oldTable);
  auto newLines = linesByCode(newTable);
  // A code of either table has a place in both.
  for (const auto &[code, lines] : newLines) oldLines.try_emplace(code);
  Progress progress(oldLines.size());
  std::size_t compared = 0;
  bool isEqual = true;
  for (const auto &[code, lines] : oldLines) {
    if (printDifference(lines, newLines[code])) isEqual = false;
    progress.at(++compared);
  }
  return isEqual ? kDone : kUnlike;
}

}  // namespace korvel::tools
