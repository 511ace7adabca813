// For dialogs/, draw/, messages/ and the tests: finds the application's resource files.
#ifndef KORVEL_PLATFORM_RESOURCES_H
#define KORVEL_PLATFORM_RESOURCES_H

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::platform {

// The path of the first existing file `<folder>/<name><ending>`, the endings tried in order, in
// the application's resource folder (szResources, else `resources` beside the executable) and then
// in the default set installed with the library; empty when there is none.
// Example: findResource("icons/2", {".svg", ".png"}).
std::string findResource(std::string_view name, std::initializer_list<std::string_view> endings);

// The name of a resource, given in the screen set, as its file has it: in UTF-8.
std::string nameOnDisk(std::string_view screenName);

// Where the default set may stand, in the order in which it is looked for, of a library whose file
// stands in the folder `library`: beside it in a build, in the data folder once installed.
std::vector<std::string> defaultResourceFolders(const std::string &library);

}  // namespace korvel::platform

#endif
