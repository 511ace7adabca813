/* SPDX-License-Identifier: MIT */
/* The menu: a form drawn with Qt Designer, shown as a dialog again after each task. */
#include "menu.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "form.h"
#include "french.h"
#include "message.h"
#include "records.h"
#include "settings.h"
#include "tasks.h"

/* The text fields of the template "menu": its items 100 and 101. */
enum { kTaches, kEtat, kTexts };

static const struct {
  const char *title;
  void (*run)(void);
} kTasks[] = {{"Nouvelle fiche", newRecord},
              {"Modifier une fiche", editRecord},
              {"Médecin traitant", assignDoctor},
              {"Ordonnance", prescribe},
              {"Note de visite", noteVisit},
              {"Table des professions", keepProfessions},
              {"Réglages", changeSettings},
              {"Importer une table", importNewTable},
              {"Recherche dans les notes", searchAllNotes}};
enum { kTaskCount = sizeof kTasks / sizeof *kTasks };

static void joinTitles(char *rows) {
  *rows = '\0';
  for (int i = 0; i < kTaskCount; i++) {
    if (i > 0) strcat(rows, "$");
    strcat(rows, french(kTasks[i].title));
  }
}

/* The day, and how many records there are. */
static void describeState(char *text, int size) {
  const int date = today(), records = countRecords();
  const int weekday = utdatedw(date / 10000, date / 100 % 100, date % 100);
  char shown[11];
  showDate(date, shown);
  snprintf(text, (size_t)size, "%s %s, %d fiche%s", utdatedn(weekday), shown, records,
           records > 1 ? "s" : "");
}

static void defineMenu(const Settings *settings) {
  char rows[256], state[64];
  joinTitles(rows);
  describeState(state, sizeof state);
  TexteDlgBox_param(kTexts, kFirstText);
  TexteDlgBox_set(kTaches, "");
  TexteDlgBox_set_liste(kTaches, rows);
  TexteDlgBox_change_liste(kTaches);
  TexteDlgBox_set(kEtat, state);
  TitreDlgBox_set(settings->cabinet);
}

static void runChosen(void) {
  for (int i = 0; i < kTaskCount; i++)
    if (strcmp(TDB_pszBuffer[kTaches], french(kTasks[i].title)) == 0) {
      kTasks[i].run();
      return;
    }
}

static int mayLeave(void) {
  Settings settings;
  readSettings(&settings);
  return !settings.confirmer ||
         agrees("Quitter", "Quitter «\u00A0%s\u00A0»\u00A0?", settings.cabinet);
}

/* Returns 0 when the user leaves. */
static int runOnce(void) {
  Settings settings;
  readSettings(&settings);
  defineMenu(&settings);
  if (!ZRVDlgBox("menu")) return 0;
  runChosen();
  return 1;
}

void runMenu(void) {
  while (runOnce() || !mayLeave()) continue;
}
