// For tests/profile/: scratch folders in memory, where a sync costs nothing.
#ifndef KORVEL_TESTS_PROFILE_FILES_IN_MEMORY_H
#define KORVEL_TESTS_PROFILE_FILES_IN_MEMORY_H

#include <cstdlib>
#include <string>

#include <unistd.h>

namespace korvel::test {

// As long as it lives, new scratch folders are in memory, if the machine has such a place.
class FilesInMemory {
 public:
  FilesInMemory() {
    const char *set = std::getenv("TMPDIR");
    if (set != nullptr) saved_ = set;
    if (access("/dev/shm", W_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);
  }
  ~FilesInMemory() {
    if (saved_.empty()) {
      unsetenv("TMPDIR");
    } else {
      setenv("TMPDIR", saved_.c_str(), 1);
    }
  }
  FilesInMemory(const FilesInMemory &) = delete;
  FilesInMemory &operator=(const FilesInMemory &) = delete;

 private:
  std::string saved_;
};

}  // namespace korvel::test

#endif
