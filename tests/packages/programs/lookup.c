/* SPDX-License-Identifier: MIT */
/* lookup <data folder>: an application in C99 that shows nothing. Looks up a country in the tables
   that are installed in the folder, such as "/usr/share". */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

int main(int count, char **arguments) {
  char label[64] = "";
  if (count != 2) return 2;
  snprintf(szVolumes, sizeof szVolumes, "%s", arguments[1]);
  strcpy(szDirTables, "korvel:tables");
  if (!ZRV_Libelle_NC("FR", 2, 1, "pays", label, sizeof label)) return 1;
  puts(label);
  return strcmp(label, "France") == 0 ? 0 : 1;
}
