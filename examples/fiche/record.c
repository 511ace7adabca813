#include "record.h"

#include <korvel/codecs.h>
#include <korvel/dates.h>

#include "drugs.h"
#include "french.h"
#include "professions.h"

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

/* A code behind the name that it stands for. */
static void printCode(FILE *out, const char *label, const char *name, const char *code) {
  fprintf(out, "%s : ", label);
  printFrench(out, name);
  if (*code) fprintf(out, *name ? " (%s)" : "%s", code);
  fputc('\n', out);
}

static void printIdentity(FILE *out, const Record *record) {
  char code[8];
  printText(out, "Nom", record->nom);
  printText(out, "Prénom", record->prenom);
  printText(out, "Civilité", record->civilite);
  printText(out, "Sexe", record->sexe);
  professionCode(record->profession, code, sizeof code);
  printCode(out, "Profession", record->profession, code);
}

static void printPlaces(FILE *out, const Record *record) {
  char name[kPlaceName];
  printDate(out, "Date de naissance", record->naissance);
  countryName(record->paysNaissance, name, sizeof name);
  printCode(out, "Pays de naissance", name, record->paysNaissance);
  birthplaceName(record->communeNaissance, record->naissance, name, sizeof name);
  printCode(out, "Commune de naissance", name, record->communeNaissance);
  countryName(record->pays, name, sizeof name);
  printCode(out, "Pays", name, record->pays);
  departmentName(record->departement, name, sizeof name);
  printCode(out, "Département", name, record->departement);
  communeName(record->commune, name, sizeof name);
  printCode(out, "Commune", name, record->commune);
}

static void printPrescription(FILE *out, const Prescription *line) {
  char name[256];
  drugName(line->drug, name, sizeof name);
  fputs("Ordonnance : ", out);
  printFrench(out, name);
  fprintf(out, " (%s), ", line->drug);
  printFrench(out, line->dose);
  if (line->days > 0) fprintf(out, ", pendant %d jour%s", line->days, line->days > 1 ? "s" : "");
  fputc('\n', out);
}

void printRecord(FILE *out, const Record *record) {
  printIdentity(out, record);
  printPlaces(out, record);
  printText(out, "Praticien", record->praticien);
  fprintf(out, "Nombre d’enfants : %d\n", record->enfants);
  printNumber(out, "Poids (kg)", record->poids, 1);
  printNumber(out, "Taille (m)", record->taille, 2);
  printNumber(out, "IMC", bodyMassIndex(record->poids, record->taille), 1);
  printText(out, "Code d’accès", record->code > 0 ? "oui" : "non");
  printText(out, "Suivi régulier", record->suivi ? "oui" : "non");
  printText(out, "Accord de transmission", record->accord ? "oui" : "non");
  for (int i = 0; i < record->lignes; i++) printPrescription(out, &record->ordonnance[i]);
}
