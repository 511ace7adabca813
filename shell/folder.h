// SPDX-License-Identifier: MIT
// For shell/: the names in a folder, read as "ls -1F" and "grep -i" print them.
#ifndef KORVEL_SHELL_FOLDER_H
#define KORVEL_SHELL_FOLDER_H

#include <cstddef>
#include <string>
#include <string_view>

namespace korvel::shell {

// Whether the shell and grep take the pattern for nothing but its bytes.
bool meansItself(std::string_view pattern);

// What `ls -1F 'folder/' | grep -i 'pattern'` prints for a pattern that means itself, with text as
// bytes. Where the tools print more than `limit` bytes, these are the same; otherwise executables
// have no mark, unless their name ends like one. To know them takes a call for each.
std::string listingOf(std::string_view folder, std::string_view pattern,
                      std::size_t limit = std::string::npos);

}  // namespace korvel::shell

#endif
