// SPDX-License-Identifier: MIT
// For test programs that load the desktop module: what the font and message-bus libraries below
// the toolkit keep until the process ends is no leak of ours.
#include <korvel/types.h>

extern "C" KORVEL_API const char *__lsan_default_suppressions(void);

extern "C" const char *__lsan_default_suppressions(void) {
  return "leak:libfontconfig.so\nleak:libdbus-1.so\n";
}
