#include "settings.h"

#include <korvel/korvel.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "french.h"

static const char kVolume[] = "Cabinet";
static const char kProfile[] = "Cabinet:fiche.ini";
static const char kWindow[] = "Fenetre", kDoctor[] = "Praticien", kPatient[] = "Patient";
static const char kPrescription[] = "Ordonnance";

/* Makes a folder and those above it. */
static void makeFolders(const char *path) {
  char folder[256];
  snprintf(folder, sizeof folder, "%s", path);
  for (char *slash = strchr(folder + 1, '/'); slash; slash = strchr(slash + 1, '/')) {
    *slash = '\0';
    mkdir(folder, 0777);
    *slash = '/';
  }
  mkdir(folder, 0777);
}

int openSettings(void) {
  const char *volumes = getenv("FICHE_VOLUMES"), *data = getenv("XDG_DATA_HOME");
  const char *home = getenv("HOME");
  int length;
  if (volumes)
    length = snprintf(szVolumes, sizeof szVolumes, "%s", volumes);
  else if (data && *data == '/')
    length = snprintf(szVolumes, sizeof szVolumes, "%s/fiche", data);
  else
    length = snprintf(szVolumes, sizeof szVolumes, "%s/.local/share/fiche", home ? home : "");
  if (length >= (int)sizeof szVolumes) return 0;
  makeFolders(szVolumes);
  return Dir_Is_Existing(kVolume) || MakeDir(kVolume);
}

static void readText(const char *section, const char *key, char *text, int size) {
  char old[256];
  snprintf(old, sizeof old, "%s", text);
  GetPrivateProfileString(section, key, old, text, size, kProfile);
}

static void readReal(const char *key, double *value) {
  char text[32];
  if (GetPrivateProfileString(kPatient, key, "", text, sizeof text, kProfile) > 0)
    realcod_d_sup0(text, value);
}

void readWindowTitle(char *title, int size) {
  snprintf(title, (size_t)size, "Fiche patient");
  readText(kWindow, "titre", title, size);
}

void readLastRecord(Record *record) {
  readText(kDoctor, "dernier", record->praticien, sizeof record->praticien);
  readText(kPatient, "nom", record->nom, sizeof record->nom);
  readText(kPatient, "prenom", record->prenom, sizeof record->prenom);
  readText(kPatient, "civilite", record->civilite, sizeof record->civilite);
  readText(kPatient, "sexe", record->sexe, sizeof record->sexe);
  readText(kPatient, "profession", record->profession, sizeof record->profession);
  readText(kPatient, "paysNaissance", record->paysNaissance, sizeof record->paysNaissance);
  readText(kPatient, "communeNaissance", record->communeNaissance, sizeof record->communeNaissance);
  readText(kPatient, "pays", record->pays, sizeof record->pays);
  readText(kPatient, "departement", record->departement, sizeof record->departement);
  readText(kPatient, "commune", record->commune, sizeof record->commune);
  record->naissance = GetPrivateProfileInt(kPatient, "naissance", record->naissance, kProfile);
  record->enfants = GetPrivateProfileInt(kPatient, "enfants", record->enfants, kProfile);
  record->suivi = GetPrivateProfileInt(kPatient, "suivi", record->suivi, kProfile);
  record->accord = GetPrivateProfileInt(kPatient, "accord", record->accord, kProfile);
  readReal("poids", &record->poids);
  readReal("taille", &record->taille);
}

/* One "key=value" line more of a section's text. A bracket in it would end the section. */
static void addText(char *lines, size_t size, const char *key, const char *value) {
  size_t used = strlen(lines);
  snprintf(lines + used, size - used, "%s%s=%s", used > 0 ? "\r\n" : "", key, value);
  for (char *bracket = lines + used; (bracket = strchr(bracket, '[')) != NULL;) *bracket = '(';
}

static void addInt(char *lines, size_t size, const char *key, int value) {
  char text[12];
  intdco_l(value, text, sizeof text);
  addText(lines, size, key, text);
}

static void addReal(char *lines, size_t size, const char *key, double value) {
  char text[32];
  realdco_d(value, text, sizeof text, 2);
  addText(lines, size, key, text);
}

/* A line of the prescription: code, number of days and dose. */
static void addPrescription(char *lines, size_t size, int number, const Prescription *line) {
  char key[16], value[128];
  snprintf(key, sizeof key, "ligne%d", number);
  snprintf(value, sizeof value, "%s %d %s", line->drug, line->days, line->dose);
  addText(lines, size, key, value);
}

static int keepPrescription(const Record *record) {
  char lines[1024] = "";
  for (int i = 0; i < record->lignes; i++)
    addPrescription(lines, sizeof lines, i + 1, &record->ordonnance[i]);
  return WritePrivateProfileSection(kPrescription, lines, kProfile);
}

int keepSettings(const char *title, const Record *record) {
  char lines[1024] = "";
  addText(lines, sizeof lines, "nom", record->nom);
  addText(lines, sizeof lines, "prenom", record->prenom);
  addText(lines, sizeof lines, "civilite", record->civilite);
  addText(lines, sizeof lines, "sexe", record->sexe);
  addText(lines, sizeof lines, "profession", record->profession);
  addText(lines, sizeof lines, "paysNaissance", record->paysNaissance);
  addText(lines, sizeof lines, "communeNaissance", record->communeNaissance);
  addText(lines, sizeof lines, "pays", record->pays);
  addText(lines, sizeof lines, "departement", record->departement);
  addText(lines, sizeof lines, "commune", record->commune);
  addInt(lines, sizeof lines, "naissance", record->naissance);
  addInt(lines, sizeof lines, "enfants", record->enfants);
  addReal(lines, sizeof lines, "poids", record->poids);
  addReal(lines, sizeof lines, "taille", record->taille);
  addInt(lines, sizeof lines, "suivi", record->suivi);
  addInt(lines, sizeof lines, "accord", record->accord);
  return WritePrivateProfileString(kWindow, "titre", title, kProfile) &&
         WritePrivateProfileString(kDoctor, "dernier", record->praticien, kProfile) &&
         WritePrivateProfileSection(kPatient, lines, kProfile) && keepPrescription(record);
}
