// SPDX-License-Identifier: MIT
// Colon paths are converted here for both rules, with the volume looked for as each rule asks.
#include "shell/posix_path.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>

#include <sys/stat.h>

#include <korvel/desktop.h>
#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/command.h"
#include "shell/existence.h"
#include "shell/misuse.h"

constinit char szVolumes[256] = "/Volumes";

namespace korvel::shell {
namespace {

std::string_view volumesFolder() {
  std::string_view folder(szVolumes, strnlen(szVolumes, sizeof szVolumes));
  while (folder.ends_with('/')) folder.remove_suffix(1);
  return folder;
}

// Kept: the volume is looked for under its name as written, also where that contains a "/".
bool volumePasses(bool (*test)(const char *), std::string_view name) {
  const std::string_view folder = volumesFolder();
  char path[PATH_MAX];
  if (folder.size() + 1 + name.size() >= sizeof path) return test("");
  char *end = std::copy(folder.begin(), folder.end(), path);
  *end++ = '/';
  *std::copy(name.begin(), name.end(), end) = '\0';
  return test(path);
}

bool isNoRegularFile(const char *path) {
  struct stat status;
  return stat(path, &status) != 0 || !S_ISREG(status.st_mode);
}

// Only what the system reports as missing is missing, not what may not be looked at: a path on that
// volume would lead to something else from the root.
bool mayBeThere(const char *path) {
  return hasEntry(path) || (errno != ENOENT && errno != ENOTDIR && errno != ENAMETOOLONG);
}

// Kept: a quote in the name of a volume is read by a shell.
bool shellFinds(const char *path) { return textDecides(path) ? exists(path) : mayBeThere(path); }

char exchangedSeparator(char c) {
  if (c == ':') return '/';
  return c == '/' ? ':' : c;
}

}  // namespace

PosixPath::PosixPath(const char *mac, bool (*keepsVolume)(const char *path)) : PosixPath() {
  if (mac == nullptr) return;
  const std::size_t volumeEnd = std::strcspn(mac, ":");
  if (volumePasses(keepsVolume, {mac, volumeEnd})) {
    set(volumesFolder(), "/", mac);
  } else {
    set("", "", mac + volumeEnd);
  }
}

PosixPath::PosixPath(const char *mac) : PosixPath(mac, isNoRegularFile) {}

PosixPath PosixPath::withoutVolumeCheck(const char *mac) {
  PosixPath path;
  const char *volumeEnd = mac == nullptr ? nullptr : std::strpbrk(mac, ":/");
  if (volumeEnd != nullptr && *volumeEnd == ':') path.set(volumesFolder(), "/", mac);
  return path;
}

PosixPath PosixPath::ofTools(const char *mac) { return PosixPath(mac, mayBeThere); }

PosixPath PosixPath::readByShell(const char *mac) { return PosixPath(mac, shellFinds); }

void PosixPath::set(std::string_view folder, std::string_view separator, std::string_view mac) {
  if (folder.size() + separator.size() + mac.size() >= kSize) return;
  char *end = std::copy(folder.begin(), folder.end(), text_);
  end = std::copy(separator.begin(), separator.end(), end);
  end = std::transform(mac.begin(), mac.end(), end, exchangedSeparator);
  *end = '\0';
  length_ = static_cast<int>(end - text_);
}

int PosixPath::copyTo(char *out) const {
  const int length = length_ < kPathSize ? length_ : 0;
  std::memcpy(out, text_, static_cast<std::size_t>(length));
  out[length] = '\0';
  return length;
}

}  // namespace korvel::shell

using namespace korvel::shell;
using korvel::base::guarded;

int BSDMAC2UNIX(const char *macPath, char *out) {
  const Call call("BSDMAC2UNIX", {macPath, filled(out)});
  if (call) needsMacPath(call, macPath);
  if (out == nullptr) return 0;
  const auto read = [&] { return PosixPath::readByShell(macPath); };
  const int result = guarded(PosixPath(), read).copyTo(out);
  if (call) needsShortPath(call, result);
  return result;
}
