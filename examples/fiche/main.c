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
  if (!openSettings() || !openTables()) {
    fputs("Le dossier du cabinet ou les tables de codes ne sont pas accessibles.\n", stderr);
    return 1;
  }
  readWindowTitle(title, sizeof title);
  readLastRecord(&record);
  if (!enterPatient(title, &record)) {
    puts("Saisie annulée.");
    return 0;
  }
  enterHome(&record);
  enterPrescription(&record);
  printRecord(stdout, &record);
  if (!keepSettings(title, &record)) {
    fputs("La fiche n’a pas pu être enregistrée.\n", stderr);
    return 1;
  }
  return 0;
}
