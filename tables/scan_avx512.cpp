// The same loops on the widest vectors; this source is compiled for them.
#include "tables/scan_kernel.h"

namespace korvel::tables {

constinit const ScanKernel kAvx512Kernel = {next, countLineEnds};

}  // namespace korvel::tables
