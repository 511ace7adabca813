// Lists of strings that name files of one folder.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits.h>
#include <string_view>

#include <korvel/files.h>
#include <korvel/strings.h>

namespace korvel::files {
namespace {

constexpr char kPathSeparator = ':';

// True when directory, ':' and item name a file. No directory: the item is the whole path. Kept: a
// ':' at the end of the directory is not looked for. What is too long for a path names no file.
bool fileExists(std::string_view directory, std::string_view item) {
  char path[PATH_MAX];
  const std::size_t separator = directory.empty() ? 0 : 1;
  const std::size_t length = directory.size() + separator + item.size();
  if (length >= sizeof path) return false;
  char *end = std::copy(directory.begin(), directory.end(), path);
  if (separator != 0) *end++ = kPathSeparator;
  *std::copy(item.begin(), item.end(), end) = '\0';
  return File_Is_Existing(path) == 1;
}

std::string_view textOf(const char *s) { return s == nullptr ? std::string_view() : s; }

}  // namespace
}  // namespace korvel::files

using namespace korvel::files;

int ChCh_Detect_Missing_File(const char *directory, const char *list, char **item) {
  if (list == nullptr) return 0;
  for (const char *name = list; *name != '\0'; name += std::strlen(name) + 1) {
    if (fileExists(textOf(directory), name)) continue;
    if (item != nullptr) *item = const_cast<char *>(name);
    return 1;
  }
  return 0;
}

int ChCh_Remove_Missing_File(const char *directory, char *list) {
  int exists = 1;
  for (char *name = list; name != nullptr && *name != '\0';) {
    exists = fileExists(textOf(directory), name) ? 1 : 0;
    if (exists == 1)
      name += std::strlen(name) + 1;
    else
      ChCh_Delete_Item(name);
  }
  return exists;
}
