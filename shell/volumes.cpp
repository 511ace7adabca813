#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include <korvel/desktop.h>
#include <korvel/shell.h>
#include "shell/existence.h"
#include "shell/guard.h"

constinit char szVolumes[256] = "/Volumes";

namespace korvel::shell {
namespace {

// Paths are held in buffers of this size.
constexpr std::size_t kPathSize = 256;

// The folder of the volumes, with one "/" behind it.
std::string volumesFolder() {
  std::string_view folder(szVolumes, strnlen(szVolumes, sizeof szVolumes));
  while (folder.ends_with('/')) folder.remove_suffix(1);
  std::string text;
  text.reserve(kPathSize * 2);
  text += folder;
  text += '/';
  return text;
}

char exchangedSeparator(char c) {
  if (c == ':') return '/';
  return c == '/' ? ':' : c;
}

// Kept: the volume is looked for under its name as written, also where that contains a "/".
bool volumeExists(std::string &volumes, std::string_view name) {
  const std::size_t length = volumes.size();
  volumes += name;
  const bool found = exists(volumes.c_str());
  volumes.resize(length);
  return found;
}

std::string posixPath(std::string_view macPath) {
  const std::size_t volumeEnd = std::min(macPath.find(':'), macPath.size());
  std::string path = volumesFolder();
  if (!volumeExists(path, macPath.substr(0, volumeEnd))) {
    path.clear();
    macPath.remove_prefix(volumeEnd);
  }
  std::transform(macPath.begin(), macPath.end(), std::back_inserter(path), exchangedSeparator);
  return path;
}

int convert(const char *macPath, char *out) {
  const std::string path = posixPath(macPath);
  if (path.size() >= kPathSize) {
    out[0] = '\0';
    return 0;
  }
  std::memcpy(out, path.c_str(), path.size() + 1);
  return static_cast<int>(path.size());
}

}  // namespace
}  // namespace korvel::shell

int BSDMAC2UNIX(const char *macPath, char *out) {
  if (out == nullptr) return 0;
  const int length = macPath == nullptr ? 0 : korvel::shell::orOnFailure(0, [&] {
    return korvel::shell::convert(macPath, out);
  });
  if (length == 0) out[0] = '\0';
  return length;
}
