#include "tables/scan.h"

#include "tables/scan_kernel.h"

#ifdef __x86_64__
#include <cpuid.h>
#endif

namespace korvel::tables {
namespace {

// So many bytes must be searched in all before the wide vectors save what the question costs.
constexpr std::size_t kWorthAsking = 64 * 1024;

#ifdef __x86_64__
// What the processor has and the system keeps the registers of.
struct Machine {
  bool avx2 = false;
  bool avx512 = false;
};

Machine thisMachine() {
  constexpr unsigned kKeepsWide = 0x06;    // the system keeps the XMM and YMM registers
  constexpr unsigned kKeepsWidest = 0xE6;  // and the ZMM and mask registers
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & bit_OSXSAVE) == 0) return {};
  unsigned kept = 0;
  unsigned high = 0;
  __asm__("xgetbv" : "=a"(kept), "=d"(high) : "c"(0));
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return {};
  // Processors of before that extension slow down for a while when they meet the widest vectors.
  const bool fast = (c & bit_AVX512VBMI2) != 0;
  const bool widest = (b & bit_AVX512F) != 0 && (b & bit_AVX512BW) != 0 && fast;
  return {(kept & kKeepsWide) == kKeepsWide && (b & bit_AVX2) != 0,
          (kept & kKeepsWidest) == kKeepsWidest && widest};
}
#endif

}  // namespace

constinit const ScanKernel kPlainKernel = {next, countLineEnds};

std::span<const ScanKernel *const> usableKernels() {
  static constinit const ScanKernel *usable[3] = {&kPlainKernel};
  static constinit std::size_t count = 0;
  if (count == 0) {
    count = 1;
#ifdef __x86_64__
    const Machine machine = thisMachine();
    if (machine.avx2) usable[count++] = &kAvx2Kernel;
    if (machine.avx512) usable[count++] = &kAvx512Kernel;
#endif
  }
  return {usable, count};
}

constinit const ScanKernel *imposedKernel = nullptr;

const ScanKernel &kernelFor(std::size_t bytes) {
  if (imposedKernel != nullptr) return *imposedKernel;
  static constinit std::size_t searched = 0;
  static constinit const ScanKernel *best = nullptr;
  if (best != nullptr) return *best;
  searched += bytes;
  if (searched < kWorthAsking) return kPlainKernel;
  best = usableKernels().back();
  return *best;
}

}  // namespace korvel::tables
