#include "platform/librarypath.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdlib>
#include <memory>

namespace korvel::platform {
namespace {

// An address inside the library whose meaning no executable can take over.
constinit const char g_anchor = 0;

struct Free {
  void operator()(char *memory) const { std::free(memory); }
};

std::string folderOf(const char *file) {
  const std::unique_ptr<char, Free> resolved(realpath(file, nullptr));
  if (!resolved) return {};
  const std::string path = resolved.get();
  return path.substr(0, path.rfind('/'));
}

}  // namespace

std::string libraryFolder() {
  Dl_info info{};
  if (dladdr(&g_anchor, &info) == 0 || info.dli_fname == nullptr) return executableFolder();
  const std::string folder = folderOf(info.dli_fname);
  // An executable is reported by the name under which it was called, which need not be a path.
  return folder.empty() ? executableFolder() : folder;
}

std::string executableFolder() { return folderOf("/proc/self/exe"); }

bool isFile(const std::string &path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace korvel::platform
