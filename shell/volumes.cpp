#include <algorithm>
#include <climits>
#include <cstring>
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

// Kept: the volume is looked for under its name as written, also where that contains a "/".
bool volumeExists(std::string_view folder, std::string_view name) {
  char path[kSystemPathSize];
  if (folder.size() + name.size() >= sizeof path) return false;
  char *end = std::copy(folder.begin(), folder.end(), path);
  *std::copy(name.begin(), name.end(), end) = '\0';
  return exists(path);
}

char exchangedSeparator(char c) {
  if (c == ':') return '/';
  return c == '/' ? ':' : c;
}

// Writes `folder` as it is and `colons` with its separators exchanged. Returns the length, or 0 if
// that does not fit: the part that does would be the path of something else.
int writePosix(std::string_view folder, std::string_view colons, char *out) {
  if (folder.size() + colons.size() >= kPathSize) return 0;
  char path[kPathSize];  // as colons may stand in out
  char *end = std::copy(folder.begin(), folder.end(), path);
  end = std::transform(colons.begin(), colons.end(), end, exchangedSeparator);
  *std::copy(path, end, out) = '\0';
  return static_cast<int>(end - path);
}

int convert(std::string_view macPath, char *out) {
  const VolumesFolder volumes;
  const std::size_t volumeEnd = std::min(macPath.find(':'), macPath.size());
  return volumeExists(volumes.text(), macPath.substr(0, volumeEnd))
             ? writePosix(volumes.text(), macPath, out)
             : writePosix({}, macPath.substr(volumeEnd), out);
}

}  // namespace
}  // namespace korvel::shell

int BSDMAC2UNIX(const char *macPath, char *out) {
  using korvel::shell::convert;
  if (out == nullptr) return 0;
  const auto work = [&] { return macPath == nullptr ? 0 : convert(macPath, out); };
  const int length = korvel::shell::orOnFailure(0, work);
  if (length == 0) out[0] = '\0';
  return length;
}
