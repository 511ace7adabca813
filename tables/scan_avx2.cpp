// The same loops on the wide vectors; this source is compiled for them.
#include "tables/scan_kernel.h"

namespace korvel::tables {

constinit const ScanKernel kAvx2Kernel = {next, countLineEnds};

}  // namespace korvel::tables
