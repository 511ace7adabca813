// SPDX-License-Identifier: MIT
// Prints findings the way compilers do, so that editors lead to the line.
#include "tools/findings.h"

#include <algorithm>

#include "tools/output.h"

namespace korvel::tools {

void Findings::print(const std::string &path) {
  std::stable_sort(findings_.begin(), findings_.end(),
                   [](const auto &a, const auto &b) { return a.first < b.first; });
  for (const auto &[line, what] : findings_) {
    std::string place = path;
    (place += ':') += std::to_string(line);
    tools::print((place += ": ") += what + '\n');
  }
}

}  // namespace korvel::tools
