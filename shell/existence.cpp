// A path exists when "ls -a" of it prints something: the name of whatever is no folder, also of a
// dangling link, and at least "." for a folder that may be read.
#include "shell/existence.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/command.h"

namespace korvel::shell {
namespace {

bool listPrints(const char *path) {
  char firstByte[2] = "";
  BSDInvokeTool(("ls -a " + quoted(path)).c_str(), firstByte, sizeof firstByte);
  return firstByte[0] != '\0';
}

// Whether `ls` prints something for an entry that may not be read: any name but a folder's, and a
// link whose target is missing under its own name. On links that lead in a circle versions of the
// tool differ.
bool unreadablePrints(const char *path) {
  struct stat object;
  if (stat(path, &object) == 0) return !S_ISDIR(object.st_mode);
  return errno == ELOOP ? listPrints(path) : errno == ENOENT;
}

bool entryPrints(const char *path) {
  if (!hasEntry(path)) return false;
  return faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) == 0 || unreadablePrints(path);
}

}  // namespace

// Asking for a link's target is the cheapest call that does not follow the link.
bool hasEntry(const char *path) {
  char firstByte;
  return readlink(path, &firstByte, 1) >= 0 || errno == EINVAL;
}

bool exists(const char *path) { return textDecides(path) ? listPrints(path) : entryPrints(path); }

}  // namespace korvel::shell

int BSDIsExisting(const char *path) {
  if (path == nullptr) return 0;
  return korvel::base::orOnFailure(0, [&] { return korvel::shell::exists(path) ? 1 : 0; });
}
