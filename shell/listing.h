// SPDX-License-Identifier: MIT
// For shell/ and files/: the files of a folder, as the tools list them.
#ifndef KORVEL_SHELL_LISTING_H
#define KORVEL_SHELL_LISTING_H

#include <cstddef>
#include <string_view>

#include <korvel/shell.h>

namespace korvel::shell {

// The size of one row in an application's list of files.
inline constexpr std::size_t kRowSize = 256;

// As BSDDir_FindFiles, with nothing null and max not negative (out is not used for 0).
int findFiles(char *out, const char *folder, int max, std::string_view pattern);

// As BSDDir_ProcessFiles, with nothing null.
int processFiles(const char *folder, std::string_view pattern, FileVisit_t visit);

}  // namespace korvel::shell

#endif
