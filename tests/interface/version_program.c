/* SPDX-License-Identifier: MIT */
/* version_program <version>: ends with 0 when the headers, as numbers and as a text, and the
   library that runs have this one version, CMake's. */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

static int differs(const char *what, const char *is, const char *wanted) {
  if (strcmp(is, wanted) == 0) return 0;
  fprintf(stderr, "%s: %s, not %s\n", what, is, wanted);
  return 1;
}

int main(int argc, char **argv) {
  char numbers[48];
  snprintf(numbers, sizeof numbers, "%d.%d.%d", KORVEL_VERSION_MAJOR, KORVEL_VERSION_MINOR,
           KORVEL_VERSION_PATCH);
  if (argc != 2) return 2;
  return differs("the numbers of version.h", numbers, argv[1]) |
         differs("KORVEL_VERSION", KORVEL_VERSION, argv[1]) |
         differs("KorvelVersion", KorvelVersion(), argv[1]);
}
