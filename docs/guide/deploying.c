/* SPDX-License-Identifier: MIT */
/* Looks at a workstation as a technician would before the application is started there: is what it
   needs to be found, and may it be written? */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

static char report[2048];
static int failures;

static void check(const char *what, int isThere) {
  if (!isThere) failures++;
  snprintf(report + strlen(report), sizeof report - strlen(report), "%s : %s\r", what,
           isThere ? "oui" : "NON");
}

static int mayWrite(void) {
  return WritePrivateProfileString("Poste", "controle", "1", "Cabinet:poste.ini") &&
         GetPrivateProfileInt("Poste", "controle", 0, "Cabinet:poste.ini") == 1;
}

static int hasTable(const char *name) {
  int first = 0, last = 0;
  return ZRV_Table_scan(name, &first, &last, NULL) && last >= first;
}

static int draws(void) {
  CGrafPtr port = KorvelImagePort(10, 10);
  KorvelPortRelease(port);
  return port != NULL;
}

static int hasPicture(const char *name) {
  int cx = 0, cy = 0;
  return BMP_affic_dimfond0(name, &cx, &cy) == 0;
}

int main(void) {
  char utf8[4096] = "";
  snprintf(szVolumes, sizeof szVolumes, "%s/volumes", getenv("HOME"));
  strcpy(szDirTables, "Cabinet:tables");

  check("Volume Cabinet", Dir_Is_Existing("Cabinet"));
  check(french("Écriture dans le volume"), mayWrite());
  check("Table pays", hasTable("pays"));
  check("Module de bureau", draws());
  check("Images", hasPicture("puceb"));
  MessageBox(NULL, report, failures ? "Poste incomplet" : "Poste complet",
             failures ? KorvelCautionIcon : KorvelNoteIcon);

  KorvelToUtf8(report, utf8, sizeof utf8);
  for (char *c = utf8; *c; c++) putchar(*c == '\r' ? '\n' : *c);
  return failures ? 1 : 0;
}
