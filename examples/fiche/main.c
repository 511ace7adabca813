/* A patient record in a practice: shows an empty one, and prints what was entered. */
#include <stdio.h>

#include "entry.h"

int main(void) {
  Record record = {0};
  if (!enterRecord(&record)) {
    puts("Saisie annulée.");
    return 0;
  }
  printRecord(stdout, &record);
  return 0;
}
