/* SPDX-License-Identifier: MIT */
/* The application of a small practice: patient records, practitioners, code tables and visit notes,
   from a menu. */
#include "menu.h"
#include "message.h"
#include "practice.h"
#include "records.h"
#include "tables.h"

int main(void) {
  if (!openPractice() || !openTables() || !openRecords()) {
    tellFailure("Fiche", "Le dossier du cabinet ou les tables de codes ne sont pas accessibles.");
    return 1;
  }
  runMenu();
  return 0;
}
