/* SPDX-License-Identifier: MIT */
/* The drug specialities on the market. Texts are CP1252. */
#ifndef FICHE_DRUGS_H
#define FICHE_DRUGS_H

typedef struct Drug {
  char code[9];
  char name[256];
  char form[128];
  char route[128];
} Drug;

/* Finds the first speciality on the market whose name begins with the letters, in whatever case.
   Returns 1, or 0 with everything empty. */
int findDrug(const char *letters, Drug *drug);

/* Finds the next one after the speciality *drug; after the last one the first again. Returns as
   findDrug. */
int findNextDrug(const char *letters, Drug *drug);

/* Looks up the name of a speciality. Returns 1, or 0 with the name empty. */
int drugName(const char *code, char *name, int size);

#endif
