// SPDX-License-Identifier: MIT
// For shell/: how command texts are put together.
#ifndef KORVEL_SHELL_COMMAND_H
#define KORVEL_SHELL_COMMAND_H

#include <cstring>
#include <string>
#include <string_view>

namespace korvel::shell {

// `path` between single quotes.
// Kept: nothing is escaped, so a single quote in the path breaks the command.
inline std::string quoted(std::string_view path) {
  std::string text;
  text.reserve(path.size() + 2);
  text += '\'';
  text += path;
  text += '\'';
  return text;
}

// Whether the shell or the tool may take `path` for something else: a quote ends the quoting, a
// leading "-" makes it an option. Then only running the command can tell the outcome.
inline bool textDecides(const char *path) {
  return path[0] == '-' || std::strchr(path, '\'') != nullptr;
}

}  // namespace korvel::shell

#endif
