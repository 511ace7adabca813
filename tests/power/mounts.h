// SPDX-License-Identifier: MIT
// For tests/power/: mounts and loop devices that go with the process, whatever becomes of it.
#ifndef KORVEL_TESTS_POWER_MOUNTS_H
#define KORVEL_TESTS_POWER_MOUNTS_H

#include <ostream>
#include <string>

#include <sys/types.h>

#include "tests/files/scratch.h"
#include "tests/power/disk.h"

namespace korvel::test {

// A file system whose journal is played back after a loss of power.
struct FileSystem {
  const char *name;
  off_t size;
  const char *format;        // the command that makes one; the path is put after it
  const char *options;       // of a mount; nothing is written for the sake of the application
  const char *copysOptions;  // of the mount of a copy, beside the original

  friend std::ostream &operator<<(std::ostream &to, const FileSystem &one) {
    return to << one.name;
  }
};

// A file in memory, of that size.
class Image {
 public:
  explicit Image(off_t size);
  ~Image();
  Image(const Image &) = delete;
  Image &operator=(const Image &) = delete;

  int file() const { return file_; }
  // As long as this process lives.
  std::string path() const;

 private:
  int file_;
};

// Whether this machine has the command that makes one.
bool canFormat(const FileSystem &fileSystem);

// The content of a new file system; empty if making it fails.
Sectors formatted(const FileSystem &fileSystem);

// From its construction on what this process mounts is seen by it alone, and undone at its end.
class PrivateMounts {
 public:
  PrivateMounts();
  ~PrivateMounts();
  PrivateMounts(const PrivateMounts &) = delete;
  PrivateMounts &operator=(const PrivateMounts &) = delete;

  // Why it does not work, if so; else "".
  const std::string &obstacle() const { return obstacle_; }

  std::string path(const std::string &name) const { return folder_.path() + "/" + name; }

  // Mounts what the file holds, through a loop device that goes with the mount, at a new folder of
  // that name. Returns false with errno.
  bool mountFile(int file, const char *type, unsigned long flags, const char *options,
                 const std::string &name) const;
  // Returns whether nothing was in use.
  bool unmount(const std::string &name) const;

 private:
  bool attach(int file, int &loop, std::string &device) const;

  Scratch folder_;
  std::string obstacle_;
};

}  // namespace korvel::test

#endif
