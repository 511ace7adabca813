#include "tables/scan.h"

#include "tables/scan_kernel.h"

#ifdef __x86_64__
#include <cpuid.h>
#endif

namespace korvel::tables {
namespace {

// Below that the wide vectors save less than the question costs.
constexpr std::size_t kWorthAsking = 16 * 1024;

#ifdef __x86_64__
// The processor has AVX2 and the system keeps its registers.
bool machineHasAvx2() {
  constexpr unsigned kSystemKeepsWideRegisters = 0x6;  // of XMM and YMM
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & bit_OSXSAVE) == 0) return false;
  unsigned low = 0;
  unsigned high = 0;
  __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  if ((low & kSystemKeepsWideRegisters) != kSystemKeepsWideRegisters) return false;
  return __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & bit_AVX2) != 0;
}
#endif

}  // namespace

constinit const ScanKernel kPlainKernel = {next, countLineEnds};

const ScanKernel &bestKernel() {
#ifdef __x86_64__
  static constinit const ScanKernel *best = nullptr;
  if (best == nullptr) best = machineHasAvx2() ? &kAvx2Kernel : &kPlainKernel;
  return *best;
#else
  return kPlainKernel;
#endif
}

constinit const ScanKernel *imposedKernel = nullptr;

const ScanKernel &kernelFor(std::size_t bytes) {
  if (imposedKernel != nullptr) return *imposedKernel;
  return bytes < kWorthAsking ? kPlainKernel : bestKernel();
}

}  // namespace korvel::tables
