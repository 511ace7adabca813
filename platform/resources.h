// SPDX-License-Identifier: MIT
// For dialogs/, draw/ and platform/: finds the application's resource files.
#ifndef KORVEL_PLATFORM_RESOURCES_H
#define KORVEL_PLATFORM_RESOURCES_H

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::platform {

// The path of the first file `<name><ending>` that exists, the endings tried in order: first in the
// application's resource folder (szResources, else `resources` beside the executable), then in the
// default set installed with the library. Empty when there is none.
// Example: findResource("icons/2", {".svg", ".png"}).
std::string findResource(std::string_view name, std::initializer_list<std::string_view> endings);

// findResource for a file `<folder>/<name><ending>`. The name comes from the application in CP1252,
// the file has it in UTF-8; a name that is UTF-8 already is found, too. Empty also for a name with
// a '/', which would lead to another folder.
// Example: findNamed("pictures", "puceb", {".svg", ".png"}).
std::string findNamed(std::string_view folder, std::string_view name,
                      std::initializer_list<std::string_view> endings);

// A name from the application as its file has it.
std::string inUtf8(std::string_view name);

// The folders of the default set, in order, of a library whose file is in the folder `library`:
// beside the file in a build, in the data folder once installed.
std::vector<std::string> defaultResourceFolders(const std::string &library);

}  // namespace korvel::platform

#endif
