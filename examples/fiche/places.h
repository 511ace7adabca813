/* SPDX-License-Identifier: MIT */
/* Countries, départements and communes. Texts are CP1252; a function that finds nothing returns 0
   and leaves its outputs empty. */
#ifndef FICHE_PLACES_H
#define FICHE_PLACES_H

/* Room for a code of each, and for any of their names. */
enum { kCountryCode = 3, kDepartmentCode = 4, kCommuneCode = 6, kPlaceName = 64 };

/* All countries, as the choices of a pop-up, in a buffer that stays. */
char *countryChoices(void);
int countryName(const char *code, char *name, int size);
int countryCode(const char *name, char *code, int size);

int departmentName(const char *code, char *name, int size);

/* The communes of a département, as the choices of a list. The caller frees it; null without
   memory. */
char *communeChoices(const char *department);
int communeName(const char *code, char *name, int size);
int isCommuneOf(const char *code, const char *department);
int communeCode(const char *name, const char *department, char *code, int size);

/* The name that the commune of a code bore on a day (YYYYMMDD; 0: the present one). Nothing is
   found where the code is of a later day. */
int birthplaceName(const char *code, int day, char *name, int size);

#endif
