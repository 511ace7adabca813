/* SPDX-License-Identifier: MIT */
/* A text is looked for in whatever case and with or without accents, in one file after the other.
 */
#include "search.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "form.h"
#include "french.h"
#include "message.h"
#include "records.h"
#include "textfile.h"

enum { kTexte, kTexts };
enum { kListe, kLists };

/* The layout, in dialog units. The list shows its columns 80 pixels apart. */
enum { kWidth = 250, kLabel = 16, kField = 60, kTop = 8, kHeight = 76 };
enum { kListHeight = 186, kFoundHeight = 196, kListY = 24 };

/* A row of a listing of files, the digits of a record's number and of a date in a file's name, and
   room for the text of a note. */
enum { kFile = 256, kNumber = 4, kDate = 8, kText = 1024, kRow = 200 };

static const char kFolder[] = "Cabinet:notes", kCaption[] = "Recherche dans les notes";

/* ---- Files ---- */

static int holds(const char *path, const char *wanted) {
  char text[kText], plain[kText];
  if (!readTextFile(path, text, kText)) return 0;
  plainCapitals(text, plain, sizeof plain);
  return strstr(plain, wanted) != NULL;
}

/* ---- Rows ---- */

/* Number, date of the visit and name, of the file of a note. */
static void addRow(const char *path, char *rows) {
  const char *name = strrchr(path, ':') + 1;
  char shown[11], patient[140], row[kRow];
  int number = 0, date = 0;
  Record record;
  if (NUMToLong(name, kNumber, &number) != 0 || NUMToLong(name + kNumber + 1, kDate, &date) != 0)
    return;
  if (!loadRecord(number, &record)) return;
  showDate(date, shown);
  fullName(&record, patient, sizeof patient);
  snprintf(row, sizeof row, "%s%0*d\t%s\t%s", *rows ? "$" : "", kNumber, number, shown, patient);
  for (char *dollar = row + 1; (dollar = strchr(dollar, '$')) != NULL;) *dollar = 'S';
  strcat(rows, row);
}

/* Returns 0 when the user does not want to go on. */
static int search(const char *files, int count, const char *wanted, char *rows) {
  int isCancelled = 0;
  *rows = '\0';
  for (int done = 0; done < count && !isCancelled; done++) {
    const char *path = files + (size_t)done * kFile;
    isCancelled = KorvelProgress(kCaption, done, count);
    if (holds(path, wanted)) addRow(path, rows);
  }
  return count == 0 || !KorvelProgress(kCaption, count, count);
}

static int notes;

static int countNote(const char *name) {
  (void)name;
  notes++;
  return 0;
}

/* The notes in which the text is, as rows of a list; null when the search was cancelled. */
static char *foundRows(const char *wanted) {
  notes = 0;
  Dir_ProcessFiles(kFolder, "*.txt", countNote);
  const int count = notes;
  char *files = malloc((size_t)(count + 1) * kFile), *rows = malloc((size_t)(count + 1) * kRow);
  int isDone = files && rows;
  if (isDone) {
    int listed = Dir_FindFiles(files, kFolder, count, "*.txt");
    isDone = search(files, listed < count ? listed : count, wanted, rows);
  }
  free(files);
  if (isDone) return rows;
  free(rows);
  return NULL;
}

/* ---- The dialogs ---- */

static int askText(char *wanted, int size) {
  const FormFields fields = {.texts = kTexts};
  formBegin(kWidth, kHeight, fields, "Chercher", "Annuler", NULL, NULL);
  formGroup("Recherche", 8, kTop, kWidth - 16, 1);
  formLabel("Texte", kLabel, formLine(kTop, 0), kField - kLabel);
  formText(kTexte, kField, formLine(kTop, 0), kWidth - kField - kLabel, 0, "", 64, 1);
  if (!formRun(french(kCaption))) return 0;
  plainCapitals(TDB_pszBuffer[kTexte], wanted, size);
  return 1;
}

static int chooseNote(char *rows, Record *record) {
  const FormFields fields = {.texts = kLists};
  formBegin(kWidth, kFoundHeight, fields, "Ouvrir", "Fermer", NULL, NULL);
  formGroup("Visites", 8, kTop, kWidth - 16, 9);
  formList(kListe, kLabel, kListY, kWidth - 2 * kLabel, kListHeight, 0, rows);
  TexteDlgBox_mandatory(kListe, 1);
  return formRun(french("Notes trouvées")) &&
         loadRecord(numberOfRow(TDB_pszBuffer[kListe]), record);
}

int searchNotes(Record *record) {
  char wanted[64];
  int isChosen = 0;
  if (!askText(wanted, sizeof wanted)) return 0;
  char *rows = foundRows(wanted);
  if (rows && *rows)
    isChosen = chooseNote(rows, record);
  else if (rows)
    tell(kCaption, "Ce texte n’est dans aucune note.");
  free(rows);
  return isChosen;
}
