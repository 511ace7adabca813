// SPDX-License-Identifier: MIT
// Standard output, every failure of which is noticed, and the one line for standard error.
#ifndef KORVEL_TOOLS_OUTPUT_H
#define KORVEL_TOOLS_OUTPUT_H

#include <string>
#include <string_view>

namespace korvel::tools {

void print(std::string_view utf8);

// A line of a table, given in its bytes.
void printLine(std::string_view text);

// The line on standard error that says what went wrong, one whatever arguments and paths it names.
void complain(const std::string &text);

// Writes what is left to write. To be called before the program ends with success.
void finishOutput();

}  // namespace korvel::tools

#endif
