// SPDX-License-Identifier: MIT
// For platform/: the folders of the library and of the application's executable.
#ifndef KORVEL_PLATFORM_LIBRARYPATH_H
#define KORVEL_PLATFORM_LIBRARYPATH_H

#include <string>

namespace korvel::platform {

// The folder of the library's file, links resolved; the folder of the executable if the library's
// objects are linked into that. Empty when the system cannot tell.
std::string libraryFolder();

// The folder of the executable, links resolved. Empty when the system cannot tell.
std::string executableFolder();

// True when `path` leads to a regular file, not to a folder, a pipe or a device.
bool isFile(const std::string &path);

}  // namespace korvel::platform

#endif
