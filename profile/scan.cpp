// SPDX-License-Identifier: MIT
// The scan for every machine, and the choice of one.
#include "profile/scan.h"

#include "profile/scan_loop.h"
#include "strings/machine.h"

namespace korvel::profile {

const char *scanBaseline(Stretch text, Stretch key) { return KeyScan(key).run(text); }

const char *scan(Stretch text, Stretch key) {
  return (strings::usesAvx2() ? scanAvx2 : scanBaseline)(text, key);
}

}  // namespace korvel::profile
