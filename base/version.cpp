// SPDX-License-Identifier: MIT
// What version the library is. It is the one of its headers, from which CMake reads it, too.
#include <korvel/version.h>

const char *KorvelVersion(void) { return KORVEL_VERSION; }
