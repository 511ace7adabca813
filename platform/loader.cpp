#include "platform/loader.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <dlfcn.h>

#include "platform/desktop.h"
#include "platform/librarypath.h"

namespace korvel::platform {
namespace {

constexpr const char *kModuleFile = "korvel-qt.so";

constinit Desktop *g_given = nullptr;   // by a test
constinit Desktop *g_loaded = nullptr;  // from the module
constinit bool g_isSilent = false;      // while what is wrong was told before

// A file name alone is a path too: it must not be looked for where libraries stand.
std::string asPath(const std::string &file) {
  return file.find('/') == std::string::npos ? "./" + file : file;
}

// Empty when no module is to be found.
std::string modulePath() {
  const char *chosen = std::getenv("KORVEL_DESKTOP");
  if (chosen != nullptr && *chosen != '\0') return asPath(chosen);
  const std::string beside = libraryFolder();
  for (const std::string &folder : {beside, beside + "/korvel"}) {
    const std::string path = folder + "/" + kModuleFile;
    if (isFile(path)) return path;
  }
  report(std::string("no desktop module: ") + kModuleFile + " is neither in " + beside +
         " nor in " + beside + "/korvel");
  return {};
}

// A module that was opened is never closed, whatever it turns out to be: a toolkit does not
// survive that.
Desktop *loadModule(const std::string &path) {
  void *module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    report(std::string("no desktop module: ") + dlerror());
    return nullptr;
  }
  const auto entry = reinterpret_cast<ModuleEntry>(dlsym(module, kModuleEntry));
  if (entry == nullptr) {
    report("no desktop module: " + path + " is not one");
    return nullptr;
  }
  Desktop *desktop = entry(kSeamVersion);
  if (desktop == nullptr)
    report("no desktop module: " + path + " belongs to another version of the library");
  return desktop;
}

}  // namespace

void report(std::string line) {
  if (g_isSilent) return;
  const auto isControl = [](char c) { return (c >= 0 && c < ' ') || c == 0x7F; };
  std::replace_if(line.begin(), line.end(), isControl, '?');
  std::fprintf(stderr, "korvel: %s\n", line.c_str());
}

Desktop *desktop() {
  if (g_given != nullptr) return g_given;
  if (g_loaded != nullptr) return g_loaded;
  const std::string path = modulePath();
  if (!path.empty()) g_loaded = loadModule(path);
  return g_loaded;
}

Desktop *desktopForDrawing() {
  static constinit bool hasFailed = false;
  g_isSilent = hasFailed;
  Desktop *available = desktop();
  g_isSilent = false;
  hasFailed = available == nullptr;
  return available;
}

Desktop *desktopWithScreen() {
  Desktop *available = desktop();
  std::string problem;
  if (available == nullptr || available->hasScreen(problem)) return available;
  report(problem);
  return nullptr;
}

Desktop *setDesktop(Desktop *desktop) {
  Desktop *before = g_given;
  g_given = desktop;
  return before;
}

}  // namespace korvel::platform
