// The kernel for every machine, and the choice of one.
#include "tables/scan.h"

#include "strings/machine.h"
#include "tables/scan_kernel.h"

namespace korvel::tables {

constinit const ScanKernel kBaselineKernel = {next, countLineEnds};

const ScanKernel &scanKernel() { return strings::usesAvx2() ? kAvx2Kernel : kBaselineKernel; }

}  // namespace korvel::tables
