// SPDX-License-Identifier: MIT
// What is wrong with a table: gathered by several checks, printed in the order of the lines.
#ifndef KORVEL_TOOLS_FINDINGS_H
#define KORVEL_TOOLS_FINDINGS_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace korvel::tools {

class TableFile;

class Findings {
 public:
  void add(int line, std::string what) { findings_.emplace_back(line, std::move(what)); }
  bool empty() const { return findings_.empty(); }
  void print(const std::string &path);

 private:
  std::vector<std::pair<int, std::string>> findings_;
};

// Checks the validity periods of the codes. column: of the first day in force; the next one has the
// last day.
void checkPeriods(const TableFile &table, std::size_t column, Findings &findings);

}  // namespace korvel::tools

#endif
