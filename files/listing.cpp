// SPDX-License-Identifier: MIT
// Listings of folders given as colon paths; shell/ lists POSIX paths.
#include "shell/listing.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <korvel/files.h>

#include "base/guard.h"
#include "files/misuse.h"
#include "files/paths.h"
#include "files/rows.h"

namespace korvel::files {
namespace {

std::string_view withoutOuterStars(std::string_view pattern) {
  const bool starBehind = pattern.ends_with('*');
  if (pattern.starts_with('*')) pattern.remove_prefix(1);
  if (starBehind && !pattern.empty()) pattern.remove_suffix(1);
  return pattern;
}

// Kept: a directory given with a final ":" gets a second one.
void makeColonPath(char *row, std::string_view directory) {
  const std::string_view posix = rowText(row);
  const std::string_view name = posix.substr(posix.rfind('/') + 1);
  if (directory.size() + 1 + name.size() >= kRowSize) {
    row[0] = '\0';
    return;
  }
  std::memmove(row + directory.size() + 1, name.data(), name.size());
  row[directory.size() + 1 + name.size()] = '\0';
  directory.copy(row, directory.size());
  row[directory.size()] = ':';
}

int findFiles(char *list, const char *directory, int rows, std::string_view pattern) {
  const PosixPath folder = PosixPath::ofTools(directory);
  const int found = shell::findFiles(list, folder.text(), rows, withoutOuterStars(pattern));
  for (int i = 0; i < std::min(rows, found); ++i) makeColonPath(list + kRowSize * i, directory);
  return found;
}

int processFiles(const char *directory, std::string_view pattern, FileVisit_t visit) {
  const PosixPath folder = PosixPath::ofTools(directory);
  return shell::processFiles(folder.text(), withoutOuterStars(pattern), visit);
}

}  // namespace
}  // namespace korvel::files

using namespace korvel::files;
using korvel::base::guarded;

int Dir_FindFiles(char *list, const char *directory, int rows, const char *pattern) {
  const Call call("Dir_FindFiles", {orNull(filled(list)), directory, rows, pattern});
  if (call) needsListing(call, list, directory, rows);
  if (directory == nullptr || pattern == nullptr || rows < 0 || (list == nullptr && rows > 0))
    return 0;
  const int found = guarded(0, [&] { return findFiles(list, directory, rows, pattern); });
  if (call) needsRowsFor(call, rows, found);
  return found;
}

int Dir_ProcessFiles(const char *directory, const char *pattern, FileVisit_t visit) {
  lookForMisuse([=] {
    needsFolderToList(Call("Dir_ProcessFiles", {directory, pattern, given(visit)}), directory);
  });
  if (directory == nullptr || pattern == nullptr || visit == nullptr) return 0;
  return guarded(0, [&] { return processFiles(directory, pattern, visit); });
}
