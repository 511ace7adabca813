/* SPDX-License-Identifier: MIT */
/* A code table that is edited: lines added, renamed and removed, and its back-up. */
#include "professions.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"
#include "tables.h"

static const char kProfessions[] = "professions";
static const char kTable[] = "Cabinet:professions.tab", kBackUp[] = "Cabinet:professions.bak";

enum { kLabel = 1, kFields = 2, kDigits = kProfessionCode - 1 };

int professionCode(const char *profession, char *code, int size) {
  usePracticeTables();
  if (!strchr(profession, '?') && ZRV_CodeNCS_NC(profession, kLabel, kProfessions, code, size))
    return 1;
  *code = '\0';
  return 0;
}

/* A field of a table, and of a list's rows. */
static int isField(const char *text) { return *text && !strpbrk(text, ",+?$"); }

/* Makes the line of a code the current one. */
static int findLine(const char *code) {
  char found[64];
  usePracticeTables();
  return *code && ZRV_Libelle_NC(code, (int)strlen(code), 0, kProfessions, found, sizeof found);
}

/* ---- Adding ---- */

static int highestCode;

static void noteCode(char *fields) {
  int code = 0;
  if (NUMToLong(fields, (int)strlen(fields), &code) == 0 && code > highestCode) highestCode = code;
}

/* A new line is all "unknown" at first; it is looked up by that, as others may add lines to the
   table at the same time, and filled in one step. */
static int fillNewLine(const char *code, const char *profession) {
  return findLine(french("Néant")) && ZRV_Libelle_NC_set("", 0, 0, kProfessions, code) &&
         ZRV_Libelle_NC_set(code, kDigits, kLabel, kProfessions, profession) &&
         ZRV_Libelle_NC_idem_flush("", 0, kProfessions);
}

int addProfession(const char *profession) {
  char known[8], code[kProfessionCode] = "";
  int firstLine = 0, lastLine = 0;
  if (!isField(profession)) return 0;
  if (professionCode(profession, known, sizeof known)) return 1;
  highestCode = 0;
  if (!ZRV_Table_scan(kProfessions, &firstLine, &lastLine, noteCode)) return 0;
  if (LongToNUM(highestCode + 1, code, kDigits) != 0) return 0;
  ZRV_Libelle_NC_set_ligne(lastLine);
  return ZRV_Libelle_NC_idem_insert("", 0, kProfessions, kFields) && fillNewLine(code, profession);
}

/* ---- Changing and removing ---- */

int renameProfession(const char *code, const char *profession) {
  return isField(profession) && findLine(code) &&
         ZRV_Libelle_NC_idem_replace(code, kDigits, kLabel, kProfessions, profession);
}

int removeProfession(const char *code) {
  return findLine(code) && ZRV_Libelle_NC_idem_delete(code, kDigits, kProfessions);
}

/* ---- Listing ---- */

static struct {
  char *text;
  size_t room;
} rowsMade;

static void addRow(char *fields) {
  const char *label = ChCh_Is_00(fields) ? "" : ChCh_Get_Next_Item(fields);
  size_t used = strlen(rowsMade.text);
  if (used + strlen(fields) + strlen(label) + 3 > rowsMade.room) return;
  sprintf(rowsMade.text + used, "%s%s\t%s", used > 0 ? "$" : "", fields, label);
}

void professionRows(char *rows, int size) {
  int firstLine = 0, lastLine = 0;
  *rows = '\0';
  rowsMade.text = rows;
  rowsMade.room = (size_t)size;
  usePracticeTables();
  ZRV_Table_scan(kProfessions, &firstLine, &lastLine, addRow);
}

/* ---- The back-up ---- */

int backUpProfessions(void) {
  usePracticeTables();
  ZRV_Table_sauvegarde(kProfessions, 1);
  return File_Is_Existing(kBackUp);
}

int restoreProfessions(void) { return MACRename(kBackUp, kTable) == 0; }
