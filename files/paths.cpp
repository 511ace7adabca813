// SPDX-License-Identifier: MIT
// The functions of colon paths: what is there, folders made, entries removed and renamed.
#include "files/paths.h"

#include <cerrno>
#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

#include <korvel/files.h>

#include "files/misuse.h"
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

bool toolsFindFolder(const char *mac) { return isFolder(PosixPath::ofTools(mac).text()); }

void openToAll(const char *mac) { shell::openToAll(PosixPath::ofTools(mac).text()); }

}  // namespace korvel::files

using namespace korvel::files;

int MAC2UNIX(const char *mac, char *out) {
  const Call call("MAC2UNIX", {mac, filled(out)});
  if (call) needsPath(call, mac);
  const int result = out == nullptr ? 0 : PosixPath(mac).copyTo(out);
  if (call) needsShortPath(call, result);
  return result;
}

int File_Is_Existing(const char *path) {
  lookForMisuse([=] { needsPath(Call("File_Is_Existing", {path}), path); });
  return fileExists(path) ? 1 : 0;
}

int Dir_Is_Existing(const char *path) {
  lookForMisuse([=] { needsPath(Call("Dir_Is_Existing", {path}), path); });
  return folderExists(path) ? 1 : 0;
}

int MakeDir(const char *path) {
  const Call call("MakeDir", {path});
  if (call) needsPathInFolder(call, path);
  const int result = makeFolder(path) ? 1 : 0;
  if (call) needsDone(call, result == 1 || errno == EEXIST);
  return result;
}

int MACRemove(const char *path) {
  const Call call("MACRemove", {path});
  if (call) needsEntry(call, path);
  const int result = std::remove(PosixPath::ofTools(path).text());
  if (call) needsDone(call, result == 0 || errno == ENOENT);
  return result;
}

int MACRename(const char *oldPath, const char *newPath) {
  const Call call("MACRename", {oldPath, newPath});
  if (call) needsPaths(call, oldPath, newPath);
  const int result =
      std::rename(PosixPath::ofTools(oldPath).text(), PosixPath::ofTools(newPath).text());
  if (call) needsDone(call, result == 0);
  return result;
}
