// SPDX-License-Identifier: MIT
// The functions of colon paths: what is there, folders made, entries removed and renamed.
#include "files/paths.h"

#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>

#include "shell/mode.h"

namespace korvel::files {
namespace {

bool isFolder(const char *path) {
  struct stat status;
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool makeFolder(const char *mac) {
  if (mkdir(PosixPath(mac).text(), 0777) != 0) return false;
  openToAll(mac);
  return true;
}

}  // namespace

// A link is followed only to see whether it leads to a folder: in the catalogue it is an entry of
// its own, even if it leads nowhere.
bool fileExists(const char *mac) {
  const PosixPath path(mac);
  struct stat status;
  if (lstat(path.text(), &status) != 0) return false;
  return S_ISLNK(status.st_mode) ? !isFolder(path.text()) : !S_ISDIR(status.st_mode);
}

bool folderExists(const char *mac) {
  return isFolder(PosixPath::withoutVolumeCheck(mac).text()) || isFolder(PosixPath(mac).text());
}

void openToAll(const char *mac) { shell::openToAll(PosixPath::ofTools(mac).text()); }

}  // namespace korvel::files

using namespace korvel::files;

int MAC2UNIX(const char *mac, char *out) { return out == nullptr ? 0 : PosixPath(mac).copyTo(out); }

int File_Is_Existing(const char *path) { return fileExists(path) ? 1 : 0; }

int Dir_Is_Existing(const char *path) { return folderExists(path) ? 1 : 0; }

int MakeDir(const char *path) { return makeFolder(path) ? 1 : 0; }

int MACRemove(const char *path) { return std::remove(PosixPath::ofTools(path).text()); }

int MACRename(const char *oldPath, const char *newPath) {
  return std::rename(PosixPath::ofTools(oldPath).text(), PosixPath::ofTools(newPath).text());
}
