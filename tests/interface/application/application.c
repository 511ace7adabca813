/* SPDX-License-Identifier: MIT */
/* The smallest application: few calls of the library, through its installed headers. */
#include <string.h>

#include <korvel/korvel.h>

int main(void) {
  char text[16] = "  bonjour  ";
  int value = 0;
  char number[] = " 42 ";
  chelibl_f(text);
  chelibl_d(text);
  if (strcmp(KorvelVersion(), KORVEL_VERSION) != 0) return 2;
  return strcmp(text, "bonjour") == 0 && intcod_i(number, &value) == 0 && value == 42 ? 0 : 1;
}
