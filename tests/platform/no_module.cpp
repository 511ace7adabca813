// SPDX-License-Identifier: MIT
// A library that is not a desktop module, for the loader to refuse.
#include <korvel/types.h>

extern "C" KORVEL_API int notADesktop(void);

extern "C" int notADesktop(void) { return 0; }
