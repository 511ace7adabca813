#include "files/paths.h"

#include <cstdio>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

#include <korvel/desktop.h>
#include <korvel/files.h>

#include "shell/mode.h"
#include "shell/volumes.h"

namespace korvel::files {
namespace {

// The capacity of the buffers that applications hold paths in.
constexpr int kPathSize = 256;

char exchangedSeparator(char c) {
  if (c == ':') return '/';
  return c == '/' ? ':' : c;
}

bool isFolder(const char *path) {
  struct stat status;
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

// A link is looked through only to see whether it leads to a folder: in the catalogue it is an
// entry of its own, even if it leads nowhere.
bool isEntryOtherThanFolder(const char *path) {
  struct stat status;
  if (lstat(path, &status) != 0) return false;
  return S_ISLNK(status.st_mode) ? !isFolder(path) : !S_ISDIR(status.st_mode);
}

}  // namespace

PosixPath::PosixPath(const char *mac) {
  const bool fits = mac != nullptr && appendVolumesFolder() && [&] {
    const std::size_t volumeEnd = std::strcspn(mac, ":");
    if (volumeIsFile(mac, volumeEnd)) {
      length_ = 0;
      return appendExchanged(mac + volumeEnd);
    }
    return appendExchanged(mac);
  }();
  end(fits);
}

void PosixPath::end(bool fits) {
  if (!fits) length_ = 0;
  text_[length_] = '\0';
}

PosixPath PosixPath::unlooked(const char *mac) {
  PosixPath path;
  const char *volumeEnd = mac == nullptr ? nullptr : std::strpbrk(mac, ":/");
  const bool below = volumeEnd != nullptr && *volumeEnd == ':';
  path.end(below && path.appendVolumesFolder() && path.appendExchanged(mac));
  return path;
}

PosixPath PosixPath::ofTools(const char *mac) {
  PosixPath path;
  if (mac != nullptr) path.length_ = shell::toPosix(mac, path.text_);
  return path;
}

bool PosixPath::append(char c) {
  if (length_ == kSize - 1) return false;
  text_[length_++] = c;
  return true;
}

// With one "/" behind it.
bool PosixPath::appendVolumesFolder() {
  length_ = static_cast<int>(strnlen(szVolumes, sizeof szVolumes));
  std::memcpy(text_, szVolumes, static_cast<std::size_t>(length_));
  while (length_ > 0 && text_[length_ - 1] == '/') --length_;
  return append('/');
}

bool PosixPath::appendExchanged(const char *mac) {
  for (; *mac != '\0'; ++mac) {
    if (!append(exchangedSeparator(*mac))) return false;
  }
  return true;
}

// Kept: the volume is looked for under its name as written, also where that contains a "/".
bool PosixPath::volumeIsFile(const char *mac, std::size_t volumeEnd) {
  const auto room = static_cast<std::size_t>(kSize - length_);
  if (volumeEnd >= room) return false;
  char *const volume = text_ + length_;
  std::memcpy(volume, mac, volumeEnd);
  volume[volumeEnd] = '\0';
  struct stat status;
  return stat(text_, &status) == 0 && S_ISREG(status.st_mode);
}

void openToAll(const char *mac) { shell::openToAll(PosixPath::ofTools(mac).text()); }

}  // namespace korvel::files

using korvel::files::PosixPath;

int MAC2UNIX(const char *mac, char *out) {
  if (out == nullptr) return 0;
  const PosixPath path(mac);
  const int length = path.length() < korvel::files::kPathSize ? path.length() : 0;
  std::memcpy(out, path.text(), static_cast<std::size_t>(length));
  out[length] = '\0';
  return length;
}

int File_Is_Existing(const char *path) {
  return korvel::files::isEntryOtherThanFolder(PosixPath(path).text()) ? 1 : 0;
}

int Dir_Is_Existing(const char *path) {
  const bool exists = korvel::files::isFolder(PosixPath::unlooked(path).text()) ||
                      korvel::files::isFolder(PosixPath(path).text());
  return exists ? 1 : 0;
}

int MakeDir(const char *path) {
  if (mkdir(PosixPath(path).text(), 0777) != 0) return 0;
  korvel::files::openToAll(path);
  return 1;
}

int MACRemove(const char *path) { return std::remove(PosixPath::ofTools(path).text()); }

int MACRename(const char *oldPath, const char *newPath) {
  return std::rename(PosixPath::ofTools(oldPath).text(), PosixPath::ofTools(newPath).text());
}
