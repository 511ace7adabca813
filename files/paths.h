// For files/, profile/ and tables/ only: colon paths to POSIX paths.
#ifndef KORVEL_FILES_PATHS_H
#define KORVEL_FILES_PATHS_H

#include <cstddef>

namespace korvel::files {

// The POSIX form of a colon path, as MAC2UNIX makes it. A path that is null or too long has none:
// it becomes the empty text, which names no file.
class PosixPath {
 public:
  explicit PosixPath(const char *mac);

  // The same without a look at the volume, for whoever opens or examines what the path names: if
  // that is there, below the volume, the volume is no file and the path is right. The empty text
  // where that does not follow.
  static PosixPath unlooked(const char *mac);

  // As BSDMAC2UNIX makes it: without its volume a path is taken from the root.
  static PosixPath ofTools(const char *mac);

  const char *text() const { return text_; }
  int length() const { return length_; }

 private:
  static constexpr int kSize = 512;

  PosixPath() { text_[0] = '\0'; }

  void end(bool fits);
  bool append(char c);
  bool appendVolumesFolder();
  bool appendExchanged(const char *mac);
  bool volumeIsFile(const char *mac, std::size_t volumeEnd);

  char text_[kSize];
  int length_ = 0;
};

// As BSDMACchmodrwx, but by system calls for every path.
void openToAll(const char *mac);

}  // namespace korvel::files

#endif
