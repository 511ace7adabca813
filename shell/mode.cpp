#include "shell/mode.h"

#include <sys/stat.h>

#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/command.h"
#include "shell/existence.h"

namespace korvel::shell {
namespace {

constexpr mode_t kAllMayAll = 0777;

// As the chmod tool: a mode of four digits leaves a folder's set-user and set-group bits alone.
mode_t openedMode(mode_t mode) {
  return S_ISDIR(mode) ? kAllMayAll | (mode & (S_ISUID | S_ISGID)) : kAllMayAll;
}

void runChmod(const char *path) {
  BSDInvokeTool(("chmod 0777 " + quoted(path)).c_str(), nullptr, 0);
}

}  // namespace

void openToAll(const char *path) {
  struct stat entry;
  if (stat(path, &entry) == 0) static_cast<void>(chmod(path, openedMode(entry.st_mode)));
}

}  // namespace korvel::shell

int BSDMACchmodrwx(const char *macPath) {
  using namespace korvel::shell;
  if (macPath == nullptr) return -1;
  return korvel::base::orOnFailure(-1, [&] {
    char path[256];
    BSDMAC2UNIX(macPath, path);
    if (!exists(path)) return -1;
    textDecides(path) ? runChmod(path) : openToAll(path);
    return 0;
  });
}
