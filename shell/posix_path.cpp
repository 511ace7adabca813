#include "shell/volumes.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <span>
#include <string_view>

#include <korvel/desktop.h>
#include <korvel/shell.h>

#include "base/guard.h"
#include "shell/command.h"
#include "shell/existence.h"

constinit char szVolumes[256] = "/Volumes";

namespace korvel::shell {
namespace {

// Applications hold paths in buffers of this size.
constexpr std::size_t kPathSize = 256;
// The system knows no path of this size.
constexpr std::size_t kSystemPathSize = PATH_MAX;

// The folder of the volumes, with one "/" behind it.
class VolumesFolder {
 public:
  VolumesFolder() {
    std::string_view folder(szVolumes, strnlen(szVolumes, sizeof szVolumes));
    while (folder.ends_with('/')) folder.remove_suffix(1);
    *std::copy(folder.begin(), folder.end(), text_) = '/';
    size_ = folder.size() + 1;
  }
  std::string_view text() const { return {text_, size_}; }

 private:
  char text_[sizeof szVolumes + 1];
  std::size_t size_;
};

using Test = bool (*)(const char *path);

// Only what the system tells to be missing is missing, not what may not be looked at: a path on it
// would else lead to something else from the root.
bool mayBeThere(const char *path) {
  return hasEntry(path) || (errno != ENOENT && errno != ENOTDIR && errno != ENAMETOOLONG);
}

// Kept: a quote in the name of a volume is read by a shell.
bool isVolume(const char *path) { return textDecides(path) ? exists(path) : mayBeThere(path); }

// Kept: the volume is looked for under its name as written, also where that contains a "/".
bool volumeExists(std::string_view folder, std::string_view name, Test test) {
  char path[kSystemPathSize];
  if (folder.size() + name.size() >= sizeof path) return false;
  char *end = std::copy(folder.begin(), folder.end(), path);
  *std::copy(name.begin(), name.end(), end) = '\0';
  return test(path);
}

char exchangedSeparator(char c) {
  if (c == ':') return '/';
  return c == '/' ? ':' : c;
}

// Writes `folder` as it is and `colons` with its separators exchanged. Returns the length, or 0 if
// that does not fit: the part that does would be the path of something else.
int writePosix(std::string_view folder, std::string_view colons, std::span<char> out) {
  char path[kSystemPathSize];  // as colons may stand in out
  if (folder.size() + colons.size() >= std::min(out.size(), sizeof path)) return 0;
  char *end = std::copy(folder.begin(), folder.end(), path);
  end = std::transform(colons.begin(), colons.end(), end, exchangedSeparator);
  *std::copy(path, end, out.data()) = '\0';
  return static_cast<int>(end - path);
}

int convert(std::string_view macPath, std::span<char> out, Test test) {
  const VolumesFolder volumes;
  const std::size_t volumeEnd = std::min(macPath.find(':'), macPath.size());
  const int length = volumeExists(volumes.text(), macPath.substr(0, volumeEnd), test)
                         ? writePosix(volumes.text(), macPath, out)
                         : writePosix({}, macPath.substr(volumeEnd), out);
  if (length == 0) out[0] = '\0';
  return length;
}

}  // namespace

int toPosix(std::string_view macPath, std::span<char> out) {
  return convert(macPath, out, mayBeThere);
}

}  // namespace korvel::shell

int BSDMAC2UNIX(const char *macPath, char *out) {
  using namespace korvel::shell;
  if (out == nullptr) return 0;
  const std::span<char> room(out, kPathSize);
  const int length = korvel::base::orOnFailure(
      0, [&] { return macPath == nullptr ? 0 : convert(macPath, room, isVolume); });
  if (length == 0) out[0] = '\0';
  return length;
}
