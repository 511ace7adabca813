/* SPDX-License-Identifier: MIT */
/* The smallest application: one call of the library, through its installed headers. */
#include <string.h>

#include <korvel/korvel.h>

int main(void) {
  char text[16] = "  bonjour  ";
  int value = 0;
  char number[] = " 42 ";
  chelibl_f(text);
  chelibl_d(text);
  return strcmp(text, "bonjour") == 0 && intcod_i(number, &value) == 0 && value == 42 ? 0 : 1;
}
