// SPDX-License-Identifier: MIT
// How the library finds the table at a path of the system.
#ifndef KORVEL_TOOLS_PLACE_H
#define KORVEL_TOOLS_PLACE_H

#include <cstddef>
#include <string>

namespace korvel::tools {

// The path of the file itself: absolute, and no link. Of a file that is missing only the folder has
// to be there.
std::string placeOf(const std::string &path);

// Whether both paths lead to one file, by whatever links.
bool isSameFile(const std::string &a, const std::string &b);

// Makes the folder of an absolute path the library's tables directory, and returns the name that
// the table has there. path: from placeOf. besideIt: how long a name in the same folder has to be
// possible, too. Throws for a path that is too long for the library.
std::string libraryName(const std::string &path, std::size_t besideIt = 0);

// The same for an edit. Throws where a file stands that the library takes for the beginning of an
// edit that was cut short, whose end would become the end of the table, or anything else, such as a
// link, for which the library refuses to edit.
std::string nameForEdit(const std::string &path);

// Edits by this program wait for each other from the look at the table on: a line that moves in
// between would be another one's. Of the folder, as each edit makes the table a new file.
class FolderLock {
 public:
  // path: as the command has it. Holds nothing where the folder cannot be opened.
  explicit FolderLock(const std::string &path);
  ~FolderLock();
  FolderLock(const FolderLock &) = delete;
  FolderLock &operator=(const FolderLock &) = delete;

 private:
  int folder_;
};

// Throws, naming the likeliest reason, for a table that the library could not rewrite.
[[noreturn]] void failToWrite(const std::string &path);

}  // namespace korvel::tools

#endif
