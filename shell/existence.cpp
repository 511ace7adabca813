// A path exists when "ls -a" of it prints something: the name of whatever is no folder, also of a
// dangling link, and at least "." for a folder that may be read.
#include "shell/existence.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include <korvel/shell.h>
#include "shell/command.h"
#include "shell/guard.h"

namespace korvel::shell {
namespace {

bool listPrints(const char *path) {
  char firstByte[2] = "";
  BSDInvokeTool(("ls -a " + quoted(path)).c_str(), firstByte, sizeof firstByte);
  return firstByte[0] != '\0';
}

// The owner's own bit decides for the owner; asking the system costs a second walk of the path.
bool isReadableFolder(const char *path, const struct stat &entry) {
  if ((entry.st_mode & S_IRUSR) != 0 && entry.st_uid == geteuid()) return true;
  return faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0;
}

// A link counts as the folder it leads to, else as itself, provided that its target could be
// looked for at all. On links that lead in a circle versions of the tool differ.
bool linkPrints(const char *path) {
  struct stat target;
  if (stat(path, &target) != 0) return errno == ELOOP ? listPrints(path) : errno == ENOENT;
  return !S_ISDIR(target.st_mode) || isReadableFolder(path, target);
}

bool entryPrints(const char *path) {
  struct stat entry;
  if (lstat(path, &entry) != 0) return false;
  if (S_ISLNK(entry.st_mode)) return linkPrints(path);
  return !S_ISDIR(entry.st_mode) || isReadableFolder(path, entry);
}

}  // namespace

bool exists(const char *path) { return textDecides(path) ? listPrints(path) : entryPrints(path); }

}  // namespace korvel::shell

int BSDIsExisting(const char *path) {
  if (path == nullptr) return 0;
  return korvel::shell::orOnFailure(0, [&] { return korvel::shell::exists(path) ? 1 : 0; });
}
