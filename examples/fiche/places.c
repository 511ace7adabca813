/* SPDX-License-Identifier: MIT */
/* Countries, départements and communes from the reference tables, on a given day. */
#include "places.h"

#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"
#include "tables.h"

static const char kCountries[] = "pays.tab", kDepartments[] = "departements.tab";
static const char kCommunes[] = "communes.tab", kHistory[] = "communes_histo.tab";

/* Columns of the tables. */
enum { kName = 1, kDepartment = 3 };
enum { kFrom = 2, kTo = 3 };

char *countryChoices(void) {
  static char *choices;
  if (!choices) choices = referenceChoices(kCountries, 0, NULL, '+');
  return choices;
}

int countryName(const char *code, char *name, int size) {
  return referenceLabel(kCountries, code, kName, name, size);
}

int countryCode(const char *name, char *code, int size) {
  return referenceCode(kCountries, name, kName, code, size);
}

int departmentName(const char *code, char *name, int size) {
  char key[kDepartmentCode + 1];
  if (strlen(code) >= sizeof key) return *name = '\0', 0;
  capitals(code, key, sizeof key);
  return referenceLabel(kDepartments, key, kName, name, size);
}

char *communeChoices(const char *department) {
  return referenceChoices(kCommunes, kDepartment, department, '$');
}

int communeName(const char *code, char *name, int size) {
  return referenceLabel(kCommunes, code, kName, name, size);
}

int isCommuneOf(const char *code, const char *department) {
  char its[kDepartmentCode];
  return referenceLabel(kCommunes, code, kDepartment, its, sizeof its) &&
         strcmp(its, department) == 0;
}

int communeCode(const char *name, const char *department, char *code, int size) {
  const char *const labels[] = {name, department, NULL};
  const int columns[] = {kName, kDepartment, -1};
  useReferenceTable(kCommunes);
  if (*name && ZRV_Code_NC_ex(labels, columns, kCommunes, code, size)) return 1;
  *code = '\0';
  return 0;
}

/* A date column of the current line of the history as a number; 0 where it is empty. */
static int historyDate(int column) {
  char shown[9] = "", stored[9] = "";
  int day = 0;
  ZRV_Libelle_NC_idem("", 0, column, kHistory, shown, sizeof shown);
  if (*shown && ZRV_Build_Date_short(shown, stored) == 0) NUMToLong(stored, 8, &day);
  return day;
}

int birthplaceName(const char *code, int day, char *name, int size) {
  /* The history begins on this day: what was in force then counts for the time before. */
  enum { kHistoryBegins = 19700101, kPresent = 20491231 };
  char key[kCommuneCode + 1];
  int length;
  *name = '\0';
  if (strlen(code) >= sizeof key || strchr(code, '?')) return 0;
  capitals(code, key, sizeof key);
  length = (int)strlen(key);
  if (day == 0) day = kPresent;
  if (day < kHistoryBegins) day = kHistoryBegins;
  useReferenceTable(kHistory);
  int found = ZRV_Libelle_NC_dates(key, length, kName, kHistory, name, size, kFrom, day);
  /* On the day that ends a period the next one is in force already. */
  if (found && historyDate(kTo) == day)
    ZRV_Libelle_NC_next(key, length, kName, kHistory, name, size);
  /* The last period is in force on every day for the library, also before it began. */
  if (found && historyDate(kFrom) <= day) return 1;
  *name = '\0';
  return 0;
}
