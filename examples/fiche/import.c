/* SPDX-License-Identifier: MIT */
/* A table file from elsewhere is copied beside its place and checked there; only a whole one that
   is not cancelled takes the place. */
#include "import.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "form.h"
#include "french.h"
#include "message.h"
#include "practice.h"
#include "tables.h"

enum { kFichier, kTexts };

/* The layout, in dialog units. */
enum { kWidth = 260, kHeight = 76, kLabel = 16, kField = 60, kTop = 8 };

enum { kPath = 200, kName = 64 };

static const char kCaption[] = "Importer une table", kFresh[] = "import.new";

/* A table as its file is. */
static char *content;
static size_t length;

static void forget(void) {
  free(content);
  content = NULL;
}

/* ---- Reading ---- */

static const char *nameOf(const char *path) {
  const char *slash = strrchr(path, '/');
  return slash ? slash + 1 : path;
}

static int readAll(FILE *file) {
  enum { kMost = 32 << 20 };
  content = malloc(kMost + 1);
  length = content ? fread(content, 1, kMost, file) : 0;
  if (length > 0) content[length] = '\0';
  return length > 0 && length < kMost;
}

static int readTable(const char *path) {
  char name[3 * kPath];
  FILE *file = KorvelToUtf8(path, name, sizeof name) == 0 ? fopen(name, "rb") : NULL;
  int isRead = file && readAll(file);
  if (file) fclose(file);
  return isRead;
}

/* The first data line; null where there is none. */
static char *firstLine(void) {
  static const char kBegin[] = "\n#DEBUT\r\n", kEnd[] = "\n#FIN";
  char *begin = strstr(content, kBegin);
  return begin && strstr(begin, kEnd) ? begin + strlen(kBegin) : NULL;
}

static const char *nextLine(const char *line) { return strchr(line, '\n') + 1; }

static int countLines(const char *line) {
  int count = 0;
  for (; strncmp(line, "#FIN", 4) != 0; line = nextLine(line)) count++;
  return count;
}

/* ---- Checking ---- */

/* Whether the label of a line leads back to its code, as it has to where a label is chosen. */
static int leadsBack(const char *line) {
  char label[128], code[32];
  const int codeLength = (int)strcspn(line, ",\r");
  const char *field = line + codeLength + (line[codeLength] == ',');
  snprintf(label, sizeof label, "%.*s", (int)strcspn(field, ",\r"), field);
  return !*label || (ZRV_Code_NC(label, 1, kFresh, code, sizeof code) &&
                     (int)strlen(code) == codeLength && memcmp(code, line, strlen(code)) == 0);
}

/* Returns 0 when the user does not want to go on. */
static int check(const char *name, const char *line, int lines, int *ambiguous) {
  char title[kName + 32];
  int isCancelled = 0;
  snprintf(title, sizeof title, "Importation de %s", name);
  *ambiguous = 0;
  useImportedTables();
  for (int done = 0; done < lines && !isCancelled; done++) {
    isCancelled = KorvelProgress(title, done, lines);
    *ambiguous += !leadsBack(line);
    line = nextLine(line);
  }
  return lines == 0 || !KorvelProgress(title, lines, lines);
}

/* ---- Writing ---- */

static int writeFresh(const char *path) {
  int file = xFile_Open(path, 0, 1);
  if (file < 0) return 0;
  int isWhole = xFile_Write(file, content, (int)length) == (int)length &&
                xFile_SetEOF(file, (int)length) == 0;
  return xFile_Close(file) == 0 && isWhole;
}

static void takePlace(const char *fresh, const char *name, int lines, int ambiguous) {
  char path[96];
  importedTable(name, path, sizeof path);
  if (MACRename(fresh, path) != 0)
    tellFailure(kCaption, "La table n’a pas pu prendre sa place.");
  else
    tell(kCaption, "%s est en place, avec %d lignes, dont %d au libellé déjà pris.", name, lines,
         ambiguous);
}

static void import(const char *name, const char *line) {
  const int lines = countLines(line);
  char fresh[96];
  int ambiguous = 0;
  importedTable(kFresh, fresh, sizeof fresh);
  if (!haveFolder("Cabinet:tables") || !writeFresh(fresh))
    tellFailure(kCaption, "La table n’a pas pu être copiée.");
  else if (check(name, line, lines, &ambiguous))
    takePlace(fresh, name, lines, ambiguous);
  else
    tell(kCaption, "L’importation est annulée\u00A0: la table d’avant reste en place.");
  MACRemove(fresh);
}

/* ---- The dialog ---- */

static const char *keepEntered(const Form *form) {
  forget();
  if (!isReferenceTable(nameOf(form->texts[kFichier])))
    return "Aucune table de l’application ne porte ce nom.";
  if (!readTable(form->texts[kFichier])) return "Ce fichier ne peut pas être lu.";
  return firstLine() ? NULL : "Ce fichier n’est pas une table.";
}

void importTable(void) {
  const FormFields fields = {.texts = kTexts};
  formBegin(kWidth, kHeight, fields, "Importer", "Annuler", NULL, keepEntered);
  formGroup("Table", 8, kTop, kWidth - 16, 1);
  formLabel("Fichier", kLabel, formLine(kTop, 0), kField - kLabel);
  formText(kFichier, kField, formLine(kTop, 0), kWidth - kField - kLabel, 0, "", kPath, 1);
  if (formRun(french(kCaption))) import(nameOf(TDB_pszBuffer[kFichier]), firstLine());
  forget();
}
