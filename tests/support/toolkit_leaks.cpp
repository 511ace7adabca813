// For test programs that load the desktop module: what the font library below the toolkit keeps
// until the process ends is no leak of ours.
#include <korvel/types.h>

extern "C" KORVEL_API const char *__lsan_default_suppressions(void);

extern "C" const char *__lsan_default_suppressions(void) { return "leak:libfontconfig.so\n"; }
