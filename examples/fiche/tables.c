/* SPDX-License-Identifier: MIT */
/* Where the code tables are, and look-ups in the reference tables. */
#define _POSIX_C_SOURCE 200809L
#include "tables.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <unistd.h>

#include <korvel/korvel.h>

#include "french.h"

static const char kReference[] = "Tables:", kPractice[] = "Cabinet:",
                  kImported[] = "Cabinet:tables:";

/* The folder "tables" beside the program. */
static int findTables(char *path, int size) {
  ssize_t length = readlink("/proc/self/exe", path, (size_t)size - 1);
  if (length <= 0) return 0;
  path[length] = '\0';
  char *name = strrchr(path, '/') + 1;
  return snprintf(name, (size_t)(path + size - name), "tables") < path + size - name;
}

/* The program may have moved since the link was made. */
static int linkVolume(const char *folder) {
  char link[512], old[512];
  snprintf(link, sizeof link, "%s/Tables", szVolumes);
  ssize_t length = readlink(link, old, sizeof old - 1);
  if (length >= 0) {
    old[length] = '\0';
    if (strcmp(old, folder) == 0) return 1;
    unlink(link);
  }
  return symlink(folder, link) == 0;
}

/* The practice's own table is the one that comes with the program, until it is changed. */
static void copyOnce(const char *folder, const char *table) {
  char own[64], source[512], practice[512];
  snprintf(own, sizeof own, "%s%s", kPractice, table);
  if (File_Is_Existing(own)) return;
  snprintf(source, sizeof source, "%s/%s", folder, table);
  snprintf(practice, sizeof practice, "%s/Cabinet", szVolumes);
  BSDCopy(source, practice);
}

int openTables(void) {
  char folder[400];
  if (!findTables(folder, sizeof folder) || !linkVolume(folder)) return 0;
  copyOnce(folder, "professions.tab");
  copyOnce(folder, "MT.par");
  strcpy(szDirTables, kPractice);
  return Dir_Is_Existing(kReference);
}

int isReferenceTable(const char *table) {
  char path[96];
  snprintf(path, sizeof path, "%s%s", kReference, table);
  return *table && File_Is_Existing(path);
}

void importedTable(const char *table, char *path, int size) {
  snprintf(path, (size_t)size, "%s%s", kImported, table);
}

void useImportedTables(void) { setDirTables(kImported); }

void useReferenceTable(const char *table) {
  char imported[96];
  importedTable(table, imported, sizeof imported);
  setDirTables(File_Is_Existing(imported) ? kImported : kReference);
}

void usePracticeTables(void) { setDirTables(""); }

void usePracticeFiles(void) { setDirTables(kPractice); }

int referenceLabel(const char *table, const char *code, int column, char *out, int size) {
  useReferenceTable(table);
  /* In a key a question mark matches any character. */
  if (!strchr(code, '?') && ZRV_Libelle_NC(code, (int)strlen(code), column, table, out, size))
    return 1;
  *out = '\0';
  return 0;
}

int referenceCode(const char *table, const char *label, int column, char *out, int size) {
  useReferenceTable(table);
  if (ZRV_Code_NC(label, column, table, out, size)) return 1;
  *out = '\0';
  return 0;
}

/* The labels that a scan has met. */
static struct {
  int only;
  const char *wanted;
  char **labels;
  int count, room;
  size_t length;
} found;

static const char *fieldOf(const char *fields, int column) {
  while (column-- > 0) {
    if (ChCh_Is_00(fields)) return "";
    fields = ChCh_Get_Next_Item(fields);
  }
  return fields;
}

static int makeRoom(void) {
  if (found.count < found.room) return 1;
  int room = found.room > 0 ? 2 * found.room : 256;
  char **labels = realloc(found.labels, (size_t)room * sizeof *labels);
  if (!labels) return 0;
  found.labels = labels;
  found.room = room;
  return 1;
}

static void collectLabel(char *fields) {
  if (found.wanted && strcmp(fieldOf(fields, found.only), found.wanted) != 0) return;
  char *label = strdup(fieldOf(fields, 1));
  if (!label || !makeRoom()) {
    free(label);
    return;
  }
  found.length += strlen(label) + 1;
  found.labels[found.count++] = label;
}

static int labelOrder(const void *a, const void *b) {
  return frenchOrder(*(char *const *)a, *(char *const *)b);
}

char *referenceChoices(const char *table, int only, const char *wanted, char separator) {
  int firstLine = 0, lastLine = 0;
  memset(&found, 0, sizeof found);
  found.only = only;
  found.wanted = wanted;
  useReferenceTable(table);
  ZRV_Table_scan(table, &firstLine, &lastLine, collectLabel);
  if (found.count > 0) qsort(found.labels, (size_t)found.count, sizeof *found.labels, labelOrder);
  char *choices = malloc(found.length + 1), *end = choices;
  for (int i = 0; i < found.count; i++) {
    if (choices) {
      if (i > 0) *end++ = separator;
      size_t length = strlen(found.labels[i]);
      memcpy(end, found.labels[i], length);
      end += length;
    }
    free(found.labels[i]);
  }
  if (choices) *end = '\0';
  free(found.labels);
  return choices;
}
