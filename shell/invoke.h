// SPDX-License-Identifier: MIT
// For shell/: commands run to their end.
#ifndef KORVEL_SHELL_INVOKE_H
#define KORVEL_SHELL_INVOKE_H

#include <span>
#include <string_view>

#include <korvel/shell.h>

namespace korvel::shell {

// All return the close status, -1 for a command that could not be started.

// Reads the beginning of the output, which a terminator ends; nothing if there is no room.
int runTool(const char *command, std::span<char> output = {});
int feedTool(const char *command, std::string_view input);
// Hands over the output line by line until a non-zero result.
int forEachLine(const char *command, ToolLine_t perLine);

}  // namespace korvel::shell

#endif
