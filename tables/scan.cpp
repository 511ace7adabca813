// Chooses the kernel; it is compiled here for the baseline instruction set.
#include "tables/scan.h"

#include "strings/machine.h"
#include "tables/scan_kernel.h"

namespace korvel::tables {
namespace {

// After so many bytes in all the wide vectors save more than CPUID costs.
constexpr std::size_t kWorthAsking = 64 * 1024;

}  // namespace

constinit const ScanKernel kPlainKernel = {next, countLineEnds};

std::span<const ScanKernel *const> usableKernels() {
  static constinit const ScanKernel *usable[2] = {&kPlainKernel};
  static constinit std::size_t count = 0;
  if (count == 0) {
    count = 1;
#ifdef __x86_64__
    if (strings::thisMachine().avx2) usable[count++] = &kAvx2Kernel;
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
