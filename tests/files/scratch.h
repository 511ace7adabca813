// SPDX-License-Identifier: MIT
// For tests/files/: a folder removed with its object, and plain ways to look at files.
#ifndef KORVEL_TESTS_FILES_SCRATCH_H
#define KORVEL_TESTS_FILES_SCRATCH_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace korvel::test {

inline std::string content(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline std::vector<std::string> entries(const std::string &folder) {
  std::vector<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

inline std::string randomBytes(std::mt19937 &random, std::size_t count) {
  std::string bytes(count, '\0');
  for (char &byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

inline mode_t modeOf(const std::string &path) {
  struct stat status = {};
  stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

// As long as it lives, new scratch folders are in that folder, if files can be made there.
class ScratchPlace {
 public:
  explicit ScratchPlace(const std::string &folder) {
    const char *now = std::getenv("TMPDIR");
    if (now != nullptr) before_ = now;
    if (access(folder.c_str(), W_OK | X_OK) == 0) setenv("TMPDIR", folder.c_str(), 1);
  }
  ~ScratchPlace() {
    if (before_.empty()) {
      unsetenv("TMPDIR");
    } else {
      setenv("TMPDIR", before_.c_str(), 1);
    }
  }
  ScratchPlace(const ScratchPlace &) = delete;
  ScratchPlace &operator=(const ScratchPlace &) = delete;

 private:
  std::string before_;
};

// In memory, where a sync costs nothing, if the machine has such a place.
struct MemoryDisk : ScratchPlace {
  MemoryDisk() : ScratchPlace("/dev/shm") {}
};

// A folder of its own, removed with everything in it.
class Scratch {
 public:
  Scratch() : path_((std::filesystem::temp_directory_path() / "korvel-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) std::abort();
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  Scratch(const Scratch &) = delete;
  Scratch &operator=(const Scratch &) = delete;

  const std::string &path() const { return path_; }

  // Writes a file in the folder and returns its path.
  std::string file(const std::string &name, std::string_view text) const {
    const std::string path = path_ + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

 private:
  std::string path_;
};

}  // namespace korvel::test

#endif
