// SPDX-License-Identifier: MIT
// Lets the C++ runtime inside the library share its count of exceptions with the application's
// runtime: an exception that a callback of the application threw and the library caught is then
// over for both.
#include <cxxabi.h>
#include <dlfcn.h>

namespace __cxxabiv1 {

// The layout is fixed by the ABI.
struct __cxa_eh_globals {
  void *caught;
  unsigned int uncaught;
};

namespace {

constinit thread_local __cxa_eh_globals own{};

using GetGlobals = __cxa_eh_globals *(*)();

}  // namespace

// Replaces the runtime's own function. A program without a C++ runtime throws nothing into ours.
extern "C" __cxa_eh_globals *__cxa_get_globals() noexcept {
  const auto ofApplication = reinterpret_cast<GetGlobals>(dlsym(RTLD_DEFAULT, "__cxa_get_globals"));
  return ofApplication != nullptr ? ofApplication() : &own;
}

extern "C" __cxa_eh_globals *__cxa_get_globals_fast() noexcept { return __cxa_get_globals(); }

}  // namespace __cxxabiv1
