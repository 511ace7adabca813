/* SPDX-License-Identifier: MIT */
/* Specialities by the first letters of their names: searches with several criteria. */
#include "drugs.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"
#include "tables.h"

static const char kDrugs[] = "medicaments.tab";

/* Columns of the table. */
enum { kName = 1, kForm = 2, kRoute = 3, kMarketed = 5 };

typedef int (*Search)(const char *const *labels, const int *columns, const char *table, char *out,
                      int outSize);

enum { kPattern = 66 };

/* The pattern of the names that begin with some capitals. */
static void patternOf(const char *text, char *pattern) { snprintf(pattern, kPattern, "%s*", text); }

/* Looks for a name that begins with the letters, as they are or without their accents (few names of
   the table have any), and reads the line that was found. */
static int search(Search function, const char *letters, Drug *drug) {
  char text[kPattern - 2], accented[kPattern], plain[kPattern];
  const char *const labels[] = {accented, plain, french("Commercialisée"), NULL};
  const int columns[] = {kName, kName, kMarketed, -1};
  capitals(letters, text, sizeof text);
  patternOf(text, accented);
  withoutAccents(text);
  patternOf(text, plain);
  if (!*text || !function(labels, columns, kDrugs, drug->code, sizeof drug->code)) {
    memset(drug, 0, sizeof *drug);
    return 0;
  }
  ZRV_Libelle_NC_idem("", 0, kName, kDrugs, drug->name, sizeof drug->name);
  ZRV_Libelle_NC_idem("", 0, kForm, kDrugs, drug->form, sizeof drug->form);
  ZRV_Libelle_NC_idem("", 0, kRoute, kDrugs, drug->route, sizeof drug->route);
  return 1;
}

int findDrug(const char *letters, Drug *drug) {
  useReferenceTable(kDrugs);
  return search(ZRV_Code_NC_ex, letters, drug);
}

int findNextDrug(const char *letters, Drug *drug) {
  char code[sizeof drug->code];
  memcpy(code, drug->code, sizeof code);
  useReferenceTable(kDrugs);
  /* Other tables may have been looked at since: the speciality becomes the current line again. */
  if (ZRV_Libelle_NC(code, (int)strlen(code), kName, kDrugs, drug->name, sizeof drug->name) &&
      search(ZRV_Code_NC_ex_next, letters, drug))
    return 1;
  return findDrug(letters, drug);
}

int drugName(const char *code, char *name, int size) {
  return referenceLabel(kDrugs, code, kName, name, size);
}
