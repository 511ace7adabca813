// For files/ and profile/ only: colon paths to POSIX paths.
#ifndef KORVEL_FILES_PATHS_H
#define KORVEL_FILES_PATHS_H

#include <cstddef>

namespace korvel::files {

// The POSIX form of a colon path, as MAC2UNIX makes it. A path that is null or too long has none:
// it becomes the empty text, which names no file.
class PosixPath {
 public:
  explicit PosixPath(const char *mac);

  // The same for a file to open, without a look at the volume: as if that were no regular file.
  // What opens under this form is what the path names, as its volume then is a folder; what does
  // not open says nothing. Empty where the form does not tell, for a volume alone and for a volume
  // with a "/" in its name.
  static PosixPath toOpen(const char *mac);

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

}  // namespace korvel::files

#endif
