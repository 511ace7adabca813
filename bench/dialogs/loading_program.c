/* SPDX-License-Identifier: MIT */
/* What the library adds to a process that loads it and makes one call. */
#include <korvel/strings.h>

int main(void) {
  char text[] = "Dupont   ";
  return chelibl_f(text) == 6 ? 0 : 1;
}
