// SPDX-License-Identifier: MIT
// Prints, and fails where that cannot be done, as on a disk that is full.
#include "tools/output.h"

#include <cstdio>

#include <unistd.h>

#include "tools/failure.h"
#include "tools/progress.h"
#include "tools/text.h"

namespace korvel::tools {

void print(std::string_view utf8) {
  static const bool isOnTerminal = isatty(STDOUT_FILENO) == 1;
  if (isOnTerminal) hideBar();
  if (std::fwrite(utf8.data(), 1, utf8.size(), stdout) != utf8.size()) {
    throw fileFailure("standard output");
  }
}

void printLine(std::string_view text) { print(toUtf8(text) + '\n'); }

void complain(const std::string &text) {
  std::fflush(stdout);
  std::fprintf(stderr, "korvel-tables: %s\n", onOneLine(text).c_str());
}

void finishOutput() {
  if (std::fflush(stdout) != 0) throw fileFailure("standard output");
}

}  // namespace korvel::tools
