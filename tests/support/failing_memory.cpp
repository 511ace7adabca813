// Replaces the allocation functions of the test program by ones that can be told to fail.
#include "tests/support/failing_memory.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include <dlfcn.h>

namespace korvel::test {
namespace {

constinit int allocationsLeft = 0;  // up to the failing one; 0 for none

bool isOfToolkit(const void *caller) {
  Dl_info info{};
  if (dladdr(caller, &info) == 0) return false;
  const auto has = [&](const char *part) { return std::strstr(info.dli_fname, part) != nullptr; };
  return has("/libQt6") || has("/plugins/");
}

void *allocateOrNull(std::size_t size, const void *caller) {
  const bool fails = allocationsLeft > 0 && !isOfToolkit(caller) && --allocationsLeft == 0;
  return fails ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void *allocate(std::size_t size, const void *caller) {
  if (void *block = allocateOrNull(size, caller)) return block;
  throw std::bad_alloc();
}

}  // namespace

FailingMemory::FailingMemory(int n) { allocationsLeft = n; }
FailingMemory::~FailingMemory() { allocationsLeft = 0; }
bool FailingMemory::hasFailed() const { return allocationsLeft == 0; }

}  // namespace korvel::test

using korvel::test::allocate;
using korvel::test::allocateOrNull;

void *operator new(std::size_t size) { return allocate(size, __builtin_return_address(0)); }
void *operator new[](std::size_t size) { return allocate(size, __builtin_return_address(0)); }
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
  return allocateOrNull(size, __builtin_return_address(0));
}
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept {
  return allocateOrNull(size, __builtin_return_address(0));
}
void operator delete(void *block) noexcept { std::free(block); }
void operator delete[](void *block) noexcept { std::free(block); }
void operator delete(void *block, std::size_t) noexcept { std::free(block); }
void operator delete[](void *block, std::size_t) noexcept { std::free(block); }
