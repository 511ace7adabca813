// SPDX-License-Identifier: MIT
// Where the library and the executable are, as the dynamic linker and /proc know it.
#include "platform/librarypath.h"

#include <cstdlib>
#include <memory>

#include <dlfcn.h>
#include <sys/stat.h>

namespace korvel::platform {
namespace {

// An address inside the library. It is not exported, so that no executable can take it over.
constinit const char anchor = 0;

struct Free {
  void operator()(char *memory) const { std::free(memory); }
};

std::string folderOf(const char *file) {
  const std::unique_ptr<char, Free> resolved(realpath(file, nullptr));
  if (!resolved) return {};
  const std::string path = resolved.get();
  return path.substr(0, path.rfind('/'));
}

std::string findLibraryFolder() {
  Dl_info info{};
  if (dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) return executableFolder();
  const std::string folder = folderOf(info.dli_fname);
  // An executable is reported by the name by which it was called, which need not be a path.
  return folder.empty() ? executableFolder() : folder;
}

}  // namespace

// Both are looked up once: a file replaced while it runs has no path any more, and a relative path
// leads elsewhere once the process has changed its folder. Never destroyed, as drawing may go on
// while the process ends.
std::string libraryFolder() {
  static const std::string &folder = *new std::string(findLibraryFolder());
  return folder;
}

std::string executableFolder() {
  static const std::string &folder = *new std::string(folderOf("/proc/self/exe"));
  return folder;
}

bool isFile(const std::string &path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace korvel::platform
