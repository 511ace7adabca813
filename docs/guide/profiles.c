/* SPDX-License-Identifier: MIT */
/* Settings kept in a profile: read when the program starts, edited in a dialog, written back. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

static const char kProfile[] = "Cabinet:reglages.ini";
enum { kName, kPhone, kTexts };
enum { kSlot, kInts };
enum { kFirstText = 100, kFirstInt = 200 };

static void field(int i, const char *label, int y) {
  StaticDlgBox_set(i, french(label));
  StaticDlgBox_set_geo(i, 10, y, 56, 12);
}

/* A "[" in a value ends its section when another key is looked for. */
static int isValue(const char *text) { return strchr(text, '[') == NULL; }

static int save(void) {
  char slot[16];
  intdco_i(IDB_iInts[kSlot], slot, sizeof slot);
  return WritePrivateProfileString("Cabinet", "nom", TDB_pszBuffer[kName], kProfile) &&
         WritePrivateProfileString("Cabinet", "telephone", TDB_pszBuffer[kPhone], kProfile) &&
         WritePrivateProfileString("Agenda", "creneau", slot, kProfile);
}

int main(void) {
  char text[128];
  snprintf(szVolumes, sizeof szVolumes, "%s/volumes", getenv("HOME"));

  TailleDlgBox_set(200, 92);
  StaticDlgBox_param(3);
  field(0, "Cabinet", 12);
  field(1, "Téléphone", 30);
  field(2, "Créneau (min)", 48);
  TexteDlgBox_param(kTexts, kFirstText);
  IntDlgBox_param(kInts, kFirstInt);

  GetPrivateProfileString("Cabinet", "nom", "Cabinet", text, sizeof text, kProfile);
  TexteDlgBox_set_geo(kName, 70, 12, 116, 12, 0);
  TexteDlgBox_set(kName, text);
  GetPrivateProfileString("Cabinet", "telephone", NULL, text, sizeof text, kProfile);
  TexteDlgBox_set_geo(kPhone, 70, 30, 80, 12, 1);
  TexteDlgBox_set(kPhone, text);
  TexteDlgBox_mandatory(kPhone, 0);
  IntDlgBox_set_geo(kSlot, 70, 48, 30, 12, 2);
  IntDlgBox_set(kSlot, GetPrivateProfileInt("Agenda", "creneau", 20, kProfile), KorvelPositive);

  if (!ZRVDlgBoxEx(french("Réglages"), 0)) return 0;
  if (!isValue(TDB_pszBuffer[kName]) || !isValue(TDB_pszBuffer[kPhone])) {
    puts("Un nom et un téléphone n’ont pas de « [ ».");
    return 1;
  }
  puts(save() ? "Enregistré" : "Les réglages ne sont pas enregistrés.");
  return 0;
}
