#include "record.h"

#include <korvel/codecs.h>
#include <korvel/dates.h>

#include "french.h"

double bodyMassIndex(double poids, double taille) {
  return poids > 0 && taille > 0 ? poids / (taille * taille) : 0;
}

static void printText(FILE *out, const char *label, const char *text) {
  fprintf(out, "%s : ", label);
  printFrench(out, text);
  fputc('\n', out);
}

static void printNumber(FILE *out, const char *label, double value, int decimals) {
  char text[32] = "";
  if (value > 0) realdco_d(value, text, sizeof text, decimals);
  printText(out, label, text);
}

static void printDate(FILE *out, const char *label, int date) {
  char stored[9] = "", shown[11] = "";
  if (date > 0 && LongToNUM(date, stored, 8) == 0) ZRV_Inv_Date(stored, shown);
  printText(out, label, shown);
}

void printRecord(FILE *out, const Record *record) {
  printText(out, "Nom", record->nom);
  printText(out, "Prénom", record->prenom);
  printText(out, "Civilité", record->civilite);
  printText(out, "Sexe", record->sexe);
  printDate(out, "Date de naissance", record->naissance);
  printText(out, "Praticien", record->praticien);
  fprintf(out, "Nombre d’enfants : %d\n", record->enfants);
  printNumber(out, "Poids (kg)", record->poids, 1);
  printNumber(out, "Taille (m)", record->taille, 2);
  printNumber(out, "IMC", bodyMassIndex(record->poids, record->taille), 1);
  printText(out, "Code d’accès", record->code > 0 ? "oui" : "non");
  printText(out, "Suivi régulier", record->suivi ? "oui" : "non");
  printText(out, "Accord de transmission", record->accord ? "oui" : "non");
}
