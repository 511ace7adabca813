// SPDX-License-Identifier: MIT
// Files and folders opened to all, as by "chmod 0777".
#include "shell/mode.h"

#include <sys/stat.h>

#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/command.h"
#include "shell/existence.h"
#include "shell/invoke.h"
#include "shell/misuse.h"
#include "shell/posix_path.h"

namespace korvel::shell {
namespace {

constexpr mode_t kAllMayAll = 0777;

// Like the chmod tool, which leaves a folder's set-user and set-group bits alone.
mode_t openedMode(mode_t mode) {
  return S_ISDIR(mode) ? kAllMayAll | (mode & (S_ISUID | S_ISGID)) : kAllMayAll;
}

int openIfThere(const char *macPath) {
  char path[kPathSize];
  PosixPath::readByShell(macPath).copyTo(path);
  if (!exists(path)) return -1;
  if (textDecides(path)) {
    runTool(("chmod 0777 " + quoted(path)).c_str());
  } else {
    openToAll(path);
  }
  return 0;
}

}  // namespace

void openToAll(const char *path) {
  struct stat entry;
  if (stat(path, &entry) == 0) static_cast<void>(chmod(path, openedMode(entry.st_mode)));
}

}  // namespace korvel::shell

using namespace korvel::shell;
using korvel::base::guarded;

int BSDMACchmodrwx(const char *macPath) {
  const Call call("BSDMACchmodrwx", {macPath});
  if (call) needsMacPath(call, macPath);
  const int result = macPath == nullptr ? -1 : guarded(-1, [&] { return openIfThere(macPath); });
  if (call) needsDone(call, result == 0, "there is nothing at this path");
  return result;
}
