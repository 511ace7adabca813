// SPDX-License-Identifier: MIT
// Paths of the system as the library's: the root is the folder of the volumes, so that a table's
// directory is its folder's path with colons between the names.
#include "tools/place.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <korvel/desktop.h>
#include <korvel/tables.h>

#include "tools/failure.h"

namespace korvel::tools {
namespace {

std::string folderOf(const std::string &path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// In names of the library '/' and ':' stand for each other.
std::string exchanged(std::string path) {
  for (char &c : path) {
    if (c == '/') {
      c = ':';
    } else if (c == ':') {
      c = '/';
    }
  }
  return path;
}

bool isFull(const std::string &folder) {
  struct statvfs status;
  return statvfs(folder.c_str(), &status) == 0 && status.f_bavail == 0;
}

}  // namespace

std::string placeOf(const std::string &path) {
  char place[PATH_MAX];
  if (realpath(path.c_str(), place) != nullptr) return place;
  if (errno != ENOENT || path.empty()) throw fileFailure(path);
  struct stat status;
  if (lstat(path.c_str(), &status) == 0 && stat(path.c_str(), &status) != 0) {
    throw Failure(kFailed, path + ": is a link that leads nowhere");
  }
  if (realpath(folderOf(path).c_str(), place) == nullptr) throw fileFailure(path);
  const std::string folder = place;
  return (folder == "/" ? "" : folder) + '/' + path.substr(path.rfind('/') + 1);
}

bool isSameFile(const std::string &a, const std::string &b) {
  struct stat ofA;
  struct stat ofB;
  return stat(a.c_str(), &ofA) == 0 && stat(b.c_str(), &ofB) == 0 && ofA.st_dev == ofB.st_dev &&
         ofA.st_ino == ofB.st_ino;
}

FolderLock::FolderLock(const std::string &path) {
  const std::string place = placeOf(path);
  folder_ = open(place.substr(0, place.rfind('/') + 1).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder_ >= 0) flock(folder_, LOCK_EX);
}

FolderLock::~FolderLock() {
  if (folder_ >= 0) close(folder_);
}

std::string libraryName(const std::string &path, std::size_t besideIt) {
  constexpr std::size_t kLongest = sizeof szVolumes - 3;
  const std::size_t nameLength = path.size() - path.rfind('/') - 1;
  const std::size_t longest = kLongest - (std::max(nameLength, besideIt) - nameLength);
  if (path.size() > longest) {
    throw Failure(kFailed,
                  path + ": the path is longer than " + std::to_string(longest) + " bytes");
  }
  const std::string folder = folderOf(path);
  std::strcpy(szVolumes, "/");
  setDirTables(folder == "/" ? "." : exchanged(folder.substr(1)).c_str());
  return exchanged(path.substr(path.rfind('/') + 1));
}

std::string nameForEdit(const std::string &path) {
  std::string leftOver = path;
  leftOver.back() = '_';
  struct stat status;
  if (leftOver != path && lstat(leftOver.c_str(), &status) == 0) {
    throw Failure(kFailed, leftOver + ": has the name that an edit uses; move or remove it first");
  }
  return libraryName(path);
}

void failToWrite(const std::string &path) {
  const std::string folder = folderOf(path);
  if (access(folder.c_str(), W_OK) != 0) throw fileFailure(folder);
  if (isFull(folder)) throw fileFailure(path, ENOSPC);
  if (access(path.c_str(), W_OK) != 0 && errno != ENOENT) throw fileFailure(path);
  throw Failure(kFailed, path +
                             ": cannot be written; is another program editing it, or the "
                             "disk full?");
}

}  // namespace korvel::tools
