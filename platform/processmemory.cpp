// SPDX-License-Identifier: MIT
// Has the C++ runtime inside the library take memory where the process does. What crosses the seam
// is taken on one side and given back on the other, and the module has the process's operators:
// those of its runtime, or of an application that has its own.
#include <cstddef>
#include <cstdlib>
#include <new>

// The linker has these in place of `operator new` and `operator delete`, which all others of the
// runtime call.
extern "C" {

// The process's; null in a program without a C++ runtime, where a module that brings one has memory
// from malloc, too.
[[gnu::weak]] void *__real__Znwm(std::size_t size);
[[gnu::weak]] void __real__ZdlPv(void *memory);

void *__wrap__Znwm(std::size_t size);
void __wrap__ZdlPv(void *memory);
}

void *__wrap__Znwm(std::size_t size) {
  if (__real__Znwm != nullptr) {
    // What it throws may be of another runtime, or the application's own.
    try {
      return __real__Znwm(size);
    } catch (...) {
      throw std::bad_alloc();
    }
  }
  if (void *memory = std::malloc(size != 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}

void __wrap__ZdlPv(void *memory) {
  __real__ZdlPv != nullptr ? __real__ZdlPv(memory) : std::free(memory);
}
