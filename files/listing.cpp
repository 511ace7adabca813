#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include <korvel/files.h>

#include "files/paths.h"
#include "files/rows.h"

namespace korvel::files {
namespace {

// A pattern without its outer stars. text() is null where there is no memory for it.
class TrimmedPattern {
 public:
  explicit TrimmedPattern(std::string_view pattern) {
    const bool starBehind = pattern.ends_with('*');
    if (pattern.starts_with('*')) pattern.remove_prefix(1);
    if (starBehind && !pattern.empty()) pattern.remove_suffix(1);
    text_.reset(new (std::nothrow) char[pattern.size() + 1]);
    if (text_ == nullptr) return;
    pattern.copy(text_.get(), pattern.size());
    text_[pattern.size()] = '\0';
  }
  const char *text() const { return text_.get(); }

 private:
  std::unique_ptr<char[]> text_;
};

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

int findFiles(char *list, const char *directory, int rows, const char *pattern) {
  const PosixPath folder = PosixPath::ofTools(directory);
  const TrimmedPattern trimmed(pattern);
  if (trimmed.text() == nullptr) return 0;
  const int found = BSDDir_FindFiles(list, folder.text(), rows, trimmed.text());
  for (int i = 0; i < std::min(rows, found); ++i) makeColonPath(list + kRowSize * i, directory);
  return found;
}

int processFiles(const char *directory, const char *pattern, FileVisit_t visit) {
  const PosixPath folder = PosixPath::ofTools(directory);
  const TrimmedPattern trimmed(pattern);
  return trimmed.text() == nullptr ? 0 : BSDDir_ProcessFiles(folder.text(), trimmed.text(), visit);
}

}  // namespace
}  // namespace korvel::files

using namespace korvel::files;

int Dir_FindFiles(char *list, const char *directory, int rows, const char *pattern) {
  if (directory == nullptr || pattern == nullptr || (list == nullptr && rows != 0)) return 0;
  return findFiles(list, directory, rows, pattern);
}

int Dir_ProcessFiles(const char *directory, const char *pattern, FileVisit_t visit) {
  if (directory == nullptr || pattern == nullptr) return 0;
  return processFiles(directory, pattern, visit);
}
