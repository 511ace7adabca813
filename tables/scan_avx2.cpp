// SPDX-License-Identifier: MIT
// scan_kernel.h compiled for AVX2.
#include "tables/scan_kernel.h"

namespace korvel::tables {

constinit const ScanKernel kAvx2Kernel = {next, countLineEnds};

}  // namespace korvel::tables
