// SPDX-License-Identifier: MIT
// For test programs that load the desktop module: what the font and message-bus libraries below
// the toolkit keep until the process ends is no leak of ours. Where libraries that are loaded later
// keep what belongs to a thread is told by the C library's allocations, which the sanitizer guesses
// at; a wrong guess ends the search for leaks, and a test that has passed.
#include <korvel/types.h>

extern "C" KORVEL_API const char *__asan_default_options(void);
extern "C" KORVEL_API const char *__lsan_default_suppressions(void);

extern "C" const char *__asan_default_options(void) { return "intercept_tls_get_addr=0"; }

extern "C" const char *__lsan_default_suppressions(void) {
  return "leak:libfontconfig.so\nleak:libdbus-1.so\n";
}
