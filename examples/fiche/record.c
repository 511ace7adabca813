/* SPDX-License-Identifier: MIT */
/* What is computed from a record, and today. */
#include "record.h"

#include <stdio.h>

#include <korvel/codecs.h>
#include <korvel/dates.h>

Record emptyRecord(void) {
  Record record = {.paysNaissance = "FR", .pays = "FR"};
  return record;
}

double bodyMassIndex(double poids, double taille) {
  return poids > 0 && taille > 0 ? poids / (taille * taille) : 0;
}

void fullName(const Record *record, char *out, int size) {
  snprintf(out, (size_t)size, "%s %s", record->prenom, record->nom);
}

int today(void) {
  char text[9];
  int date = 0;
  ZRV_Get_Date_short(text);
  NUMToLong(text, 8, &date);
  return date;
}

void showDate(int date, char *out) {
  char stored[9] = "";
  *out = '\0';
  if (date > 0 && LongToNUM(date, stored, 8) == 0) ZRV_Inv_Date(stored, out);
}
