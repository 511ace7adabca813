// SPDX-License-Identifier: MIT
// Lists of strings that name files of one folder.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits.h>
#include <string_view>

#include <korvel/files.h>
#include <korvel/strings.h>

#include "base/views.h"
#include "files/misuse.h"
#include "files/paths.h"
#include "strings/string_list.h"

namespace korvel::files {
namespace {

constexpr char kPathSeparator = ':';

// Whether directory, ':' and item name a file. Without a directory the item is the whole path; what
// is too long for a path names no file.
// Kept: a ':' at the end of the directory is not looked for.
bool isThere(std::string_view directory, std::string_view item) {
  char path[PATH_MAX];
  const std::size_t separator = directory.empty() ? 0 : 1;
  const std::size_t length = directory.size() + separator + item.size();
  if (length >= sizeof path) return false;
  char *end = std::copy(directory.begin(), directory.end(), path);
  if (separator != 0) *end++ = kPathSeparator;
  *std::copy(item.begin(), item.end(), end) = '\0';
  return fileExists(path);
}

// The first item of the list that is missing; null if all are there.
const char *firstMissing(std::string_view directory, const char *list) {
  while (*list != '\0' && isThere(directory, list)) list += std::strlen(list) + 1;
  return *list == '\0' ? nullptr : list;
}

// Removes the missing items. Returns whether the last one was there.
bool removeMissing(std::string_view directory, char *list) {
  bool wasThere = true;
  for (char *name = list; *name != '\0';) {
    wasThere = isThere(directory, name);
    if (wasThere) {
      name += std::strlen(name) + 1;
    } else {
      strings::deleteItem(name);
    }
  }
  return wasThere;
}

}  // namespace
}  // namespace korvel::files

using namespace korvel::files;
using korvel::base::textOf;

int ChCh_Detect_Missing_File(const char *directory, const char *list, char **item) {
  lookForMisuse([=] {
    needsItems(Call("ChCh_Detect_Missing_File", {orNull(directory), list, filled(item)}),
               directory);
  });
  const char *missing = list == nullptr ? nullptr : firstMissing(textOf(directory), list);
  if (missing != nullptr && item != nullptr) *item = const_cast<char *>(missing);
  return missing == nullptr ? 0 : 1;
}

int ChCh_Remove_Missing_File(const char *directory, char *list) {
  lookForMisuse([=] {
    needsItems(Call("ChCh_Remove_Missing_File", {orNull(directory), list}), directory);
  });
  return list == nullptr || removeMissing(textOf(directory), list) ? 1 : 0;
}
