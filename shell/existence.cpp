// SPDX-License-Identifier: MIT
// A path exists when "ls -a" of it prints something: the name of anything but a folder, even of a
// dangling link, and at least "." for a folder that may be read.
#include "shell/existence.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/command.h"
#include "shell/invoke.h"
#include "shell/misuse.h"

namespace korvel::shell {
namespace {

bool listPrints(const char *path) {
  char firstByte[2] = "";
  runTool(("ls -a " + quoted(path)).c_str(), firstByte);
  return firstByte[0] != '\0';
}

// Whether `ls` prints something for an entry that may not be read: the name of anything but a
// folder, and of a link whose target is missing. For links that lead in a circle it depends on the
// tool's version.
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

using namespace korvel::shell;
using korvel::base::guarded;

int BSDIsExisting(const char *path) {
  lookForMisuse([=] { needsPath(Call("BSDIsExisting", {path}), path); });
  return path != nullptr && guarded(false, [&] { return exists(path); }) ? 1 : 0;
}
