/* A patient in a practice: shows the record last kept (at the first start an empty one), lets the
   user change it, choose the commune and prescribe, prints what was entered and keeps it for the
   next start. */
#include <stdio.h>

#include "home.h"
#include "patient.h"
#include "prescription.h"
#include "settings.h"
#include "tables.h"

int main(void) {
  Record record = {.paysNaissance = "FR", .pays = "FR"};
  char title[128];
  int keeping = openSettings();
  if (!openTables()) fputs("Les tables de codes manquent.\n", stderr);
  readWindowTitle(title, sizeof title);
  readLastRecord(&record);
  if (!enterPatient(title, &record)) {
    puts("Saisie annulée.");
    return 0;
  }
  enterHome(&record);
  enterPrescription(&record);
  printRecord(stdout, &record);
  if (!keeping || !keepSettings(title, &record)) {
    fputs("La fiche n’a pas pu être enregistrée.\n", stderr);
    return 1;
  }
  return 0;
}
