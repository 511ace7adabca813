// SPDX-License-Identifier: MIT
// For tests/: a folder of volumes for each test, which also restores the handle tables.
#ifndef KORVEL_TESTS_FILES_VOLUMES_H
#define KORVEL_TESTS_FILES_VOLUMES_H

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include <sys/stat.h>

#include <korvel/desktop.h>
#include <korvel/files.h>

#include "tests/files/scratch.h"

namespace korvel::test {

// Restores an exported global when it is destroyed.
template <typename Global>
class Restored {
 public:
  explicit Restored(Global &global) : global_(global) {
    std::memcpy(&saved_, &global, sizeof saved_);
  }
  ~Restored() { std::memcpy(&global_, &saved_, sizeof saved_); }
  Restored(const Restored &) = delete;
  Restored &operator=(const Restored &) = delete;

 private:
  Global &global_;
  Global saved_;
};

// A volume "Data" in a scratch folder. Handles that a test leaves open are closed at its end.
class Volumes {
 public:
  Volumes() {
    std::snprintf(szVolumes, sizeof szVolumes, "%s", scratch_.path().c_str());
    mkdir(folder().c_str(), 0777);
  }
  ~Volumes() {
    for (int handle = 0; handle < 5; ++handle) {
      File_Close(handle);
      MFil_Close(handle);
    }
  }
  Volumes(const Volumes &) = delete;
  Volumes &operator=(const Volumes &) = delete;

  // The POSIX paths of the folder of volumes, of the volume, and of something on it.
  const std::string &root() const { return scratch_.path(); }
  std::string folder() const { return scratch_.path() + "/Data"; }
  std::string posix(const std::string &name) const { return folder() + "/" + name; }

  // Writes a file on the volume and returns its colon path.
  std::string file(const std::string &name, std::string_view text) const {
    scratch_.file("Data/" + name, text);
    return "Data:" + name;
  }

 private:
  Restored<char[256]> volumes_{szVolumes};
  Restored<FileSlot[5]> files_{DATA_FILE_TAB};
  Restored<int> highestFile_{DATA_FILE_ID};
  Restored<MFilSlot[5]> memory_{DATA_MFIL_TAB};
  Restored<int> highestMemory_{DATA_MFIL_ID};
  Scratch scratch_;
};

}  // namespace korvel::test

#endif
