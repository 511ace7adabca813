// SPDX-License-Identifier: MIT
// The system's version, as packed decimal digits (0x1060 is 10.6.0), and its one bundle.
#include "shell/system.h"

#include <string_view>

#include <dlfcn.h>
#include <gnu/lib-names.h>

#include <korvel/shell.h>

#include "shell/misuse.h"

namespace korvel::shell {
namespace {

constexpr int kLastClassicVersion = 0x0FFF;
constexpr int kNoBundle = KorvelNoBundleStatus;

void *openBundle(std::string_view name) {
  return name == "System.framework" ? dlopen(LIBC_SO, RTLD_LAZY | RTLD_LOCAL) : nullptr;
}

int loadBundle(const char *name, CFBundleRef *out) {
  if (out == nullptr) return kNoBundle;
  *out = name == nullptr ? nullptr : static_cast<CFBundleRef>(openBundle(name));
  return *out == nullptr ? kNoBundle : 0;
}

}  // namespace

constinit int systemVersion = 0x1060;

bool runsOnUnix() { return systemVersion > kLastClassicVersion; }

}  // namespace korvel::shell

using namespace korvel::shell;

int MACOSVersion(void) { return systemVersion; }

int RunningOnCarbonX(void) { return runsOnUnix() ? 1 : 0; }

int LoadFrameworkBundleSystem(const char *name, CFBundleRef *out) {
  const Call call("LoadFrameworkBundleSystem", {name, filled(out)});
  const int status = loadBundle(name, out);
  if (call) needsBundle(call, status == 0);
  return status;
}

int LoadFrameworkBundle(const char *name, CFBundleRef *out) {
  const Call call("LoadFrameworkBundle", {name, filled(out)});
  const int status = loadBundle(name, out);
  if (call) needsBundle(call, status == 0);
  return status;
}
