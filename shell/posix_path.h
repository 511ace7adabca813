// SPDX-License-Identifier: MIT
// For shell/ and files/: colon paths to POSIX paths, by both rules of the interface.
//
// The rules differ in when the volume is dropped and the rest of the path taken from the root:
// MAC2UNIX drops a volume that is a regular file, BSDMAC2UNIX one that does not exist.
#ifndef KORVEL_SHELL_POSIX_PATH_H
#define KORVEL_SHELL_POSIX_PATH_H

#include <cstddef>
#include <string_view>

namespace korvel::shell {

// The capacity of the buffers in which applications hold paths.
inline constexpr int kPathSize = 256;

// The POSIX form of a colon path. A path that is null or too long has none: its text is empty, and
// so names no file. No text of a path means anything to a shell, except in readByShell().
class PosixPath {
 public:
  PosixPath() { text_[0] = '\0'; }

  // By the rule of MAC2UNIX.
  explicit PosixPath(const char *mac);

  // The same without a stat of the volume, for callers that open or stat the result anyway: if
  // something is there, the volume was a folder and the path is right. Empty where that shortcut
  // does not hold.
  static PosixPath withoutVolumeCheck(const char *mac);

  // By the rule of BSDMAC2UNIX.
  static PosixPath ofTools(const char *mac);

  // BSDMAC2UNIX itself: a volume with a quote in its name is looked for by a tool.
  static PosixPath readByShell(const char *mac);

  const char *text() const { return text_; }
  int length() const { return length_; }

  // Copies the path to a buffer of kPathSize bytes. Returns its length; 0 and the empty text for a
  // path that does not fit, as a cut path would name another file.
  int copyTo(char *out) const;

 private:
  static constexpr std::size_t kSize = 512;

  PosixPath(const char *mac, bool (*keepsVolume)(const char *path));

  void set(std::string_view folder, std::string_view separator, std::string_view mac);

  char text_[kSize];
  int length_ = 0;
};

}  // namespace korvel::shell

#endif
