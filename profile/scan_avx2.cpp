// scan_loop.h compiled for AVX2.
#include "profile/scan_loop.h"

namespace korvel::profile {

const char *scanAvx2(const char *at, const char *end, const KeyProbe &probe) {
  return KeyScan(probe).run(at, end);
}

}  // namespace korvel::profile
