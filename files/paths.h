// SPDX-License-Identifier: MIT
// For files/, profile/ and tables/: colon paths, and what they name.
#ifndef KORVEL_FILES_PATHS_H
#define KORVEL_FILES_PATHS_H

#include "shell/posix_path.h"

namespace korvel::files {

using shell::kPathSize;
using shell::PosixPath;

// As File_Is_Existing and Dir_Is_Existing.
bool fileExists(const char *mac);
bool folderExists(const char *mac);

// Whether what BSDMAC2UNIX gives is a folder.
bool toolsFindFolder(const char *mac);

// As BSDMACchmodrwx, but by system calls for every path.
void openToAll(const char *mac);

}  // namespace korvel::files

#endif
