// SPDX-License-Identifier: MIT
// For tests/: a folder that its destructor removes, and an environment variable that its guard puts
// back.
#ifndef KORVEL_TESTS_PLATFORM_TEMPORARY_FOLDER_H
#define KORVEL_TESTS_PLATFORM_TEMPORARY_FOLDER_H

#include <filesystem>
#include <fstream>
#include <stdlib.h>
#include <string>

namespace korvel::test {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "korvel-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder &) = delete;
  TemporaryFolder &operator=(const TemporaryFolder &) = delete;

  const std::string &path() const { return path_; }

  // Makes a file of this content and the folders it needs; returns its path.
  std::string add(const std::string &name, const std::string &content = "") const {
    const std::filesystem::path file = std::filesystem::path(path_) / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << content;
    return file.string();
  }

 private:
  std::string path_;
};

// Sets an environment variable, or removes it with null, for the life of the object.
class EnvironmentGuard {
 public:
  EnvironmentGuard(const char *name, const char *value) : name_(name) {
    if (const char *before = getenv(name)) {
      before_ = before;
      wasSet_ = true;
    }
    if (value != nullptr) {
      setenv(name, value, 1);
    } else {
      unsetenv(name);
    }
  }
  ~EnvironmentGuard() {
    if (wasSet_) {
      setenv(name_, before_.c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  EnvironmentGuard(const EnvironmentGuard &) = delete;
  EnvironmentGuard &operator=(const EnvironmentGuard &) = delete;

 private:
  const char *const name_;
  std::string before_;
  bool wasSet_ = false;
};

}  // namespace korvel::test

#endif
