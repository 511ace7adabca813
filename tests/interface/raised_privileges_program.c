/* SPDX-License-Identifier: MIT */
/* raised_privileges_program: makes an image to draw on, which loads the desktop module, then writes
   "raised <0 or 1>", "image <0 or 1>" and the paths of the libraries that are loaded. */
#define _GNU_SOURCE /* dl_iterate_phdr */

#include <stddef.h>
#include <stdio.h>

#include <link.h>
#include <sys/auxv.h>

#include <korvel/korvel.h>

/* The sanitizer can neither look for leaks in a foreign process nor read its settings there. */
KORVEL_API const char *__asan_default_options(void);
const char *__asan_default_options(void) { return "detect_leaks=0"; }

static int printName(struct dl_phdr_info *library, size_t size, void *data) {
  (void)size, (void)data;
  if (library->dlpi_name[0] != '\0') puts(library->dlpi_name);
  return 0;
}

int main(void) {
  CGrafPtr image = KorvelImagePort(8, 8);
  printf("raised %d\nimage %d\n", getauxval(AT_SECURE) != 0, image != 0);
  dl_iterate_phdr(printName, 0);
  KorvelPortRelease(image);
  return 0;
}
