// SPDX-License-Identifier: MIT
// Finds and loads the desktop module, and says on standard error why there is none.
#include "platform/loader.h"

#include <algorithm>
#include <cstdio>
#include <stdlib.h>
#include <string>
#include <utility>

#include <dlfcn.h>

#include "platform/desktop.h"
#include "platform/librarypath.h"

namespace korvel::platform {
namespace {

constexpr const char *kModuleFile = "korvel-qt.so";

constinit Desktop *given = nullptr;   // by a test
constinit Desktop *loaded = nullptr;  // from the module

// A file name alone is a path, too, and not looked for in the system's library folders.
std::string asPath(const std::string &file) {
  return file.find('/') == std::string::npos ? "./" + file : file;
}

// Empty, with the problem, when there is no module.
std::string modulePath(std::string &problem) {
  // Whoever starts a process with raised privileges does not say what code it loads.
  const char *chosen = secure_getenv("KORVEL_DESKTOP");
  if (chosen != nullptr && *chosen != '\0') return asPath(chosen);
  const std::string beside = libraryFolder();
  for (const std::string &folder : {beside, beside + "/korvel"}) {
    std::string path = folder + "/" + kModuleFile;
    if (isFile(path)) return path;
  }
  problem = std::string(kModuleFile) + " is neither in " + beside + " nor in " + beside + "/korvel";
  return {};
}

// A module that was opened is never closed, whatever it turns out to be: a toolkit does not
// survive that.
Desktop *loadModule(const std::string &path, std::string &problem) {
  void *module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) {
    problem = dlerror();
    return nullptr;
  }
  const auto entry = reinterpret_cast<ModuleEntry>(dlsym(module, kModuleEntry));
  if (entry == nullptr) {
    problem = path + " is not one";
    return nullptr;
  }
  Desktop *desktop = entry(kSeamVersion);
  if (desktop == nullptr) problem = path + " belongs to another version of the library";
  return desktop;
}

// The desktop, loading it if need be; null with the problem.
Desktop *find(std::string &problem) {
  if (given != nullptr) return given;
  if (loaded != nullptr) return loaded;
  const std::string path = modulePath(problem);
  if (!path.empty()) loaded = loadModule(path, problem);
  return loaded;
}

void reportNoModule(const std::string &problem) { report("no desktop module: " + problem); }

}  // namespace

void report(std::string line) {
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; };
  std::replace_if(line.begin(), line.end(), isControl, '?');
  std::fprintf(stderr, "korvel: %s\n", line.c_str());
}

Desktop *desktop() {
  std::string problem;
  Desktop *found = find(problem);
  if (found == nullptr) reportNoModule(problem);
  return found;
}

Desktop *desktopForDrawing() {
  static constinit bool isReported = false;
  std::string problem;
  Desktop *found = find(problem);
  if (found == nullptr && !isReported) reportNoModule(problem);
  isReported = found == nullptr;
  return found;
}

Desktop *desktopWithScreen() {
  Desktop *found = desktop();
  std::string problem;
  if (found == nullptr || found->hasScreen(problem)) return found;
  report(problem);
  return nullptr;
}

Desktop *setDesktop(Desktop *desktop) { return std::exchange(given, desktop); }

}  // namespace korvel::platform
