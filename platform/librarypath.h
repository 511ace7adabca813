// For platform/ only: where the library and the application's executable stand.
#ifndef KORVEL_PLATFORM_LIBRARYPATH_H
#define KORVEL_PLATFORM_LIBRARYPATH_H

#include <string>

namespace korvel::platform {

// The folder of the library's file, links resolved; of the executable where the library's objects
// are linked into it. Empty when the system cannot tell.
std::string libraryFolder();

// The folder of the executable, links resolved. Empty when the system cannot tell.
std::string executableFolder();

// True when `path` leads to a file: not to a folder, and to nothing whose content comes from
// elsewhere, such as a pipe or a device.
bool isFile(const std::string &path);

}  // namespace korvel::platform

#endif
