/* A patient record in a practice: shows the last one kept (at the first start an empty one), prints
   what was entered and keeps it for the next start. */
#include <stdio.h>

#include "entry.h"
#include "settings.h"

int main(void) {
  Record record = {0};
  char title[128];
  int keeping = openSettings();
  readWindowTitle(title, sizeof title);
  readLastRecord(&record);
  if (!enterRecord(title, &record)) {
    puts("Saisie annulée.");
    return 0;
  }
  printRecord(stdout, &record);
  if (!keeping || !keepSettings(title, &record)) {
    fputs("La fiche n’a pas pu être enregistrée.\n", stderr);
    return 1;
  }
  return 0;
}
