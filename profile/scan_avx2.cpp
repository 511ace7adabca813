// SPDX-License-Identifier: MIT
// scan_loop.h compiled for AVX2.
#include "profile/scan_loop.h"

namespace korvel::profile {

const char *scanAvx2(Stretch text, Stretch key) { return KeyScan(key).run(text); }

}  // namespace korvel::profile
