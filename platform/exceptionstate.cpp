// The C++ runtime inside the library keeps its count of exceptions where the application's keeps
// its own, so that an exception that an application's callback threw and the library caught is no
// longer under way for either.
#include <cxxabi.h>
#include <dlfcn.h>

namespace __cxxabiv1 {

// As the ABI lays it down.
struct __cxa_eh_globals {
  void *caught;
  unsigned int uncaught;
};

namespace {

constinit thread_local __cxa_eh_globals own{};

using GetGlobals = __cxa_eh_globals *(*)();

}  // namespace

// In the place of the runtime's own. A program without a C++ runtime throws nothing into ours.
extern "C" __cxa_eh_globals *__cxa_get_globals() noexcept {
  const auto ofApplication = reinterpret_cast<GetGlobals>(dlsym(RTLD_DEFAULT, "__cxa_get_globals"));
  return ofApplication != nullptr ? ofApplication() : &own;
}

extern "C" __cxa_eh_globals *__cxa_get_globals_fast() noexcept { return __cxa_get_globals(); }

}  // namespace __cxxabiv1
