#include "professions.h"

#include <korvel/korvel.h>

#include <string.h>

#include "french.h"
#include "tables.h"

static const char kProfessions[] = "professions";

enum { kLabel = 1, kFields = 2, kDigits = 2 };

int professionCode(const char *profession, char *code, int size) {
  usePracticeTables();
  if (!strchr(profession, '?') && ZRV_CodeNCS_NC(profession, kLabel, kProfessions, code, size))
    return 1;
  *code = '\0';
  return 0;
}

static int highestCode;

static void noteCode(char *fields) {
  int code = 0;
  if (NUMToLong(fields, (int)strlen(fields), &code) == 0 && code > highestCode) highestCode = code;
}

/* A new line is all "unknown" at first; it is looked up by that, as others may add lines to the
   table at the same time, and filled in one step. */
static int fillNewLine(const char *code, const char *profession) {
  const char *unknown = french("Néant");
  char found[8];
  return ZRV_Libelle_NC(unknown, (int)strlen(unknown), 0, kProfessions, found, sizeof found) &&
         ZRV_Libelle_NC_set("", 0, 0, kProfessions, code) &&
         ZRV_Libelle_NC_set(code, kDigits, kLabel, kProfessions, profession) &&
         ZRV_Libelle_NC_idem_flush("", 0, kProfessions);
}

int addProfession(const char *profession) {
  char known[8], code[kDigits + 1] = "";
  int firstLine = 0, lastLine = 0;
  if (!*profession || strpbrk(profession, ",+?")) return 0;
  if (professionCode(profession, known, sizeof known)) return 1;
  highestCode = 0;
  if (!ZRV_Table_scan(kProfessions, &firstLine, &lastLine, noteCode)) return 0;
  if (LongToNUM(highestCode + 1, code, kDigits) != 0) return 0;
  ZRV_Table_sauvegarde(kProfessions, 1);
  ZRV_Libelle_NC_set_ligne(lastLine);
  return ZRV_Libelle_NC_idem_insert("", 0, kProfessions, kFields) && fillNewLine(code, profession);
}
