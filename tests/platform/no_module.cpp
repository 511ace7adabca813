// A library that is no desktop module.
#include <korvel/types.h>

extern "C" KORVEL_API int notADesktop(void);

extern "C" int notADesktop(void) { return 0; }
