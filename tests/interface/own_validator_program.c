/* SPDX-License-Identifier: MIT */
/* An application with a validation function that is called like one of the library's: the library
   keeps its own for fields that it was not given for. Ends with 0 when that holds. */
#include <stdio.h>

#include <korvel/korvel.h>

static int status = 0;

static void check(int holds, const char *what) {
  if (holds) return;
  fprintf(stderr, "not so: %s\n", what);
  status = 1;
}

int intcod_i(char *text, int *value) {
  (void)text;
  *value = 77;
  return 0;
}

int main(void) {
  IntDlgBox_param(1, 200);
  IntDlgBox_set(0, 5, KorvelAnyValue);
  check(ZRVDlgBox_valid() == 1 && IDB_iInts[0] == 5, "the library validates by its own rule");
  IntDlgBox_set_fvalid(0, intcod_i);
  check(ZRVDlgBox_valid() == 1 && IDB_iInts[0] == 77, "a field is validated by what it was given");
  IntDlgBox_set(0, 6, KorvelAnyValue);
  check(ZRVDlgBox_valid() == 1 && IDB_iInts[0] == 6, "choosing a mode takes that back");
  return status;
}
