// For test programs that load the desktop module: what the toolkit and the system's libraries below
// it keep until the process ends is no leak of ours.
#include <korvel/types.h>

extern "C" KORVEL_API const char *__lsan_default_suppressions(void);

extern "C" const char *__lsan_default_suppressions(void) {
  return "leak:libfontconfig.so\n"
         "leak:libQt6Core.so\n";
}
