// CPUID by hand: __builtin_cpu_supports would add a load-time constructor.
#include "strings/machine.h"

#ifdef __x86_64__
#include <cpuid.h>
#endif

namespace korvel::strings {

namespace {

#ifdef __x86_64__
// Bits of the answer of xgetbv: the registers that the system saves for a process.
constexpr unsigned kWideSaved = 0x06;  // 128-bit and 256-bit

bool hasAll(unsigned bits, unsigned wanted) { return (bits & wanted) == wanted; }

unsigned savedRegisters() {
  unsigned low = 0;
  unsigned high = 0;
  __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

Machine asked() {
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  // Without OSXSAVE there is no xgetbv.
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || !hasAll(c, bit_OSXSAVE)) return {};
  const unsigned saved = savedRegisters();
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return {};
  Machine machine;
  machine.avx2 = hasAll(saved, kWideSaved) && hasAll(b, bit_AVX2);
  return machine;
}
#else
Machine asked() { return {}; }
#endif

}  // namespace

const Machine &thisMachine() {
  constinit static Machine machine = {};
  constinit static bool isKnown = false;
  if (!isKnown) {
    machine = asked();
    isKnown = true;
  }
  return machine;
}

}  // namespace korvel::strings
