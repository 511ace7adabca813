// SPDX-License-Identifier: MIT
// The C library has asked the processor when it was loaded. __builtin_cpu_supports would ask again,
// by a constructor at load.
#include "strings/machine.h"

#ifdef __x86_64__
// Clang's <stdbool.h> does not define it for strict C++, but the header uses it.
#define _Bool bool
#include <sys/platform/x86.h>
#endif

namespace korvel::strings {

constinit bool avx2Allowed = true;

bool usesAvx2() {
#ifdef __x86_64__
  return avx2Allowed && CPU_FEATURE_ACTIVE(AVX2);
#else
  return false;
#endif
}

}  // namespace korvel::strings
