/* SPDX-License-Identifier: MIT */
/* Practitioners by the library's own chooser, and their lines in its table. */
#include "doctors.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "tables.h"

static const char kDoctors[] = "MT.par";

/* Columns of the table. */
enum { kName = 1, kSpeciality = 2, kTown = 3 };

int doctorName(const char *code, char *out, int size) {
  usePracticeFiles();
  if (*code && ZRV_Libelle_NC(code, (int)strlen(code), kName, kDoctors, out, size)) return 1;
  *out = '\0';
  return 0;
}

int doctorCard(const char *code, char *out, int size) {
  char name[64], speciality[64], town[64];
  *out = '\0';
  if (!doctorName(code, name, sizeof name)) return 0;
  ZRV_Libelle_NC_idem(code, (int)strlen(code), kSpeciality, kDoctors, speciality,
                      sizeof speciality);
  ZRV_Libelle_NC_idem(code, (int)strlen(code), kTown, kDoctors, town, sizeof town);
  snprintf(out, (size_t)size, "%s, %s, %s", name, speciality, town);
  return 1;
}

int chooseDoctor(char *code, int size) {
  BOKDlgBox_textes("OK", "Annuler");
  /* What comes back is the code, a semicolon and the name. */
  const char *chosen = SelectMT(NULL, NULL, "Cabinet:");
  if (!*chosen) return 0;
  snprintf(code, (size_t)size, "%.*s", (int)strcspn(chosen, ";"), chosen);
  return 1;
}
