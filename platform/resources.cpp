// SPDX-License-Identifier: MIT
// Finds resource files: the application's own first, then those installed with the library.
#include "platform/resources.h"

#include <iterator>

#include <korvel/desktop.h>

#include "base/utf8.h"
#include "platform/librarypath.h"
#include "platform/screentext.h"

constinit char szResources[256] = "";

namespace korvel::platform {
namespace {

std::string applicationFolder() {
  // Counted, as the application may have filled the buffer to its last byte.
  const std::string_view buffer(szResources, sizeof szResources);
  const std::string_view chosen = buffer.substr(0, buffer.find('\0'));
  return chosen.empty() ? executableFolder() + "/resources" : std::string(chosen);
}

std::string findIn(const std::string &folder, std::string_view name,
                   std::initializer_list<std::string_view> endings) {
  for (const std::string_view ending : endings) {
    std::string path = folder + "/";
    path.append(name).append(ending);
    if (isFile(path)) return path;
  }
  return {};
}

// A character of the screen set: none needs more than three bytes.
void appendUtf8(std::string &utf8, char16_t character) {
  char bytes[3];
  utf8.append(base::putInFront(std::end(bytes), character), std::end(bytes));
}

}  // namespace

// The name is not converted to the screen set first: a byte that the conversion changes shows the
// same character there unchanged.
std::string inUtf8(std::string_view name) {
  std::string utf8;
  for (const char byte : name) appendUtf8(utf8, characterOf(static_cast<unsigned char>(byte)));
  return utf8;
}

std::vector<std::string> defaultResourceFolders(const std::string &library) {
  return {library + "/resources", library + "/" KORVEL_INSTALLED_RESOURCES};
}

std::string findResource(std::string_view name, std::initializer_list<std::string_view> endings) {
  std::string own = findIn(applicationFolder(), name, endings);
  if (!own.empty()) return own;
  for (const std::string &folder : defaultResourceFolders(libraryFolder())) {
    std::string path = findIn(folder, name, endings);
    if (!path.empty()) return path;
  }
  return {};
}

std::string findNamed(std::string_view folder, std::string_view name,
                      std::initializer_list<std::string_view> endings) {
  if (name.find('/') != name.npos) return {};
  const std::string prefix = std::string(folder) + '/';
  const std::string utf8 = inUtf8(name);
  std::string path = findResource(prefix + utf8, endings);
  if (path.empty() && utf8 != name) path = findResource(prefix + std::string(name), endings);
  return path;
}

}  // namespace korvel::platform
