// SPDX-License-Identifier: MIT
// The kernel for every machine, the choice of one, and the counting of lines by it.
#include "tables/scan.h"

#include "strings/machine.h"
#include "tables/line.h"
#include "tables/scan_kernel.h"

namespace korvel::tables {

constinit const ScanKernel kBaselineKernel = {next, countLineEnds};

const ScanKernel &scanKernel() { return strings::usesAvx2() ? kAvx2Kernel : kBaselineKernel; }

// Counts the lines by pieces and, in the piece where the last one ends, one by one.
FirstLines firstLines(std::string_view lines, int most) {
  constexpr std::size_t kPiece = 4096;
  FirstLines first = {0, 0};
  while (first.bytes < lines.size()) {
    const std::string_view piece = lines.substr(first.bytes, kPiece);
    const auto ends = scanKernel().countLineEnds(piece.data(), piece.data() + piece.size());
    if (static_cast<int>(ends) >= most - first.count) break;
    first.count += static_cast<int>(ends);
    first.bytes += piece.size();
  }
  for (; first.bytes < lines.size() && first.count < most; ++first.count) {
    first.bytes = lines.find(kLineEnd, first.bytes) + 1;
  }
  if (lines.substr(first.bytes).starts_with(kIgnored)) ++first.bytes;
  return first;
}

}  // namespace korvel::tables
