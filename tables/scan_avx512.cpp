// scan_kernel.h compiled with -mavx512bw.
#include "tables/scan_kernel.h"

namespace korvel::tables {

constinit const ScanKernel kAvx512Kernel = {next, countLineEnds};

}  // namespace korvel::tables
