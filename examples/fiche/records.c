/* SPDX-License-Identifier: MIT */
/* Records as files: written whole beside the old one, read, and listed. */
#define _POSIX_C_SOURCE 200809L
#include "records.h"

#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"
#include "practice.h"
#include "textfile.h"

static const char kFolder[] = "Cabinet:fiches", kPattern[] = ".fic";

/* Digits of a number in a file's name, room for a path, and for a record as text. */
enum { kDigits = 4, kPath = 64, kText = 4096 };

/* ---- Records as text ---- */

typedef enum Kind { kTextKind, kIntKind, kNumKind } Kind;

/* The lines of a record, except for the prescription. */
#define TEXT(member) \
  { #member, kTextKind, offsetof(Record, member), sizeof((Record *)0)->member }
#define INT(member) \
  { #member, kIntKind, offsetof(Record, member), sizeof(int) }
#define NUM(member) \
  { #member, kNumKind, offsetof(Record, member), sizeof(double) }
static const struct Line {
  const char *key;
  Kind kind;
  size_t offset, size;
} kLines[] = {TEXT(nom),        TEXT(prenom),      TEXT(civilite),      TEXT(sexe),
              TEXT(profession), INT(naissance),    TEXT(paysNaissance), TEXT(communeNaissance),
              TEXT(pays),       TEXT(departement), TEXT(commune),       TEXT(medecin),
              INT(enfants),     INT(code),         NUM(poids),          NUM(taille),
              INT(suivi),       INT(accord)};
enum { kLineCount = sizeof kLines / sizeof *kLines };
static const char kPrescription[] = "ligne";

static void addLine(char *text, const char *key, const char *value) {
  size_t used = strlen(text);
  snprintf(text + used, kText - used, "%s=%s\r\n", key, value);
}

static void addValue(char *text, const struct Line *line, const void *member) {
  char value[32] = "";
  switch (line->kind) {
    case kTextKind:
      addLine(text, line->key, member);
      return;
    case kIntKind:
      intdco_l(*(const int *)member, value, sizeof value);
      break;
    case kNumKind:
      realdco_d(*(const double *)member, value, sizeof value, 2);
      break;
  }
  addLine(text, line->key, value);
}

/* A line of the prescription: code, number of days and dose. */
static void addPrescription(char *text, const Prescription *line) {
  char value[128];
  snprintf(value, sizeof value, "%s %d %s", line->drug, line->days, line->dose);
  addLine(text, kPrescription, value);
}

static void writeText(const Record *record, char *text) {
  *text = '\0';
  for (int i = 0; i < kLineCount; i++)
    addValue(text, &kLines[i], (const char *)record + kLines[i].offset);
  for (int i = 0; i < record->lignes; i++) addPrescription(text, &record->ordonnance[i]);
}

static void readValue(const struct Line *line, char *value, void *member) {
  switch (line->kind) {
    case kTextKind:
      snprintf(member, line->size, "%s", value);
      break;
    case kIntKind:
      intcod_l_sup0(value, member);
      break;
    case kNumKind:
      realcod_d_sup0(value, member);
      break;
  }
}

/* What is not a line of a prescription is left out. */
static void readPrescription(const char *value, Record *record) {
  Prescription line = {.days = 0};
  int dose = 0;
  if (record->lignes >= kMaxLines) return;
  if (sscanf(value, "%8s %d %n", line.drug, &line.days, &dose) < 2 || dose == 0) return;
  snprintf(line.dose, sizeof line.dose, "%s", value + dose);
  record->ordonnance[record->lignes++] = line;
}

static void readLine(char *text, Record *record) {
  char *value = strchr(text, '=');
  if (!value) return;
  *value++ = '\0';
  if (strcmp(text, kPrescription) == 0) readPrescription(value, record);
  for (int i = 0; i < kLineCount; i++)
    if (strcmp(text, kLines[i].key) == 0)
      readValue(&kLines[i], value, (char *)record + kLines[i].offset);
}

static void readText(char *text, Record *record) {
  char *rest = NULL;
  for (char *line = strtok_r(text, "\r\n", &rest); line; line = strtok_r(NULL, "\r\n", &rest))
    readLine(line, record);
}

/* ---- Files ---- */

static void pathOf(int number, char *path) {
  snprintf(path, kPath, "%s:%0*d%s", kFolder, kDigits, number, kPattern);
}

static int replaceFile(int number, const char *text) {
  char path[kPath], fresh[kPath + 4];
  pathOf(number, path);
  snprintf(fresh, sizeof fresh, "%s.tmp", path);
  if (writeTextFile(fresh, text) && MACRename(fresh, path) == 0) return 1;
  MACRemove(fresh);
  return 0;
}

/* ---- The folder ---- */

/* What a listing has met. */
static int highest, count;

static int noteNumber(const char *name) {
  int number = 0;
  if (strlen(name) != kDigits + strlen(kPattern)) return 0;
  if (NUMToLong(name, kDigits, &number) != 0) return 0;
  if (number > highest) highest = number;
  count++;
  return 0;
}

static void listFolder(void) {
  highest = count = 0;
  Dir_ProcessFiles(kFolder, kPattern, noteNumber);
}

int openRecords(void) { return haveFolder(kFolder); }

int countRecords(void) {
  listFolder();
  return count;
}

int saveRecord(Record *record) {
  char text[kText];
  int number = record->number;
  if (number == 0) {
    listFolder();
    number = highest + 1;
  }
  writeText(record, text);
  if (!replaceFile(number, text)) return 0;
  record->number = number;
  return 1;
}

int loadRecord(int number, Record *record) {
  char path[kPath], text[kText];
  pathOf(number, path);
  *record = emptyRecord();
  if (!readTextFile(path, text, kText)) return 0;
  readText(text, record);
  record->number = number;
  return 1;
}

/* ---- Rows ---- */

enum { kRow = 160 };

typedef struct Row {
  char text[kRow];
  char name[kRow];
} Row;

static Row rowOf(const Record *record) {
  Row row;
  char birth[11];
  showDate(record->naissance, birth);
  snprintf(row.name, sizeof row.name, "%s %s", record->nom, record->prenom);
  snprintf(row.text, sizeof row.text, "%0*d\t%s\t%.*s", kDigits, record->number, birth, kRow - 32,
           row.name);
  /* A dollar sign would begin another row. */
  for (char *dollar = row.text; (dollar = strchr(dollar, '$')) != NULL;) *dollar = 'S';
  return row;
}

static int byName(const void *a, const void *b) {
  return frenchOrder(((const Row *)a)->name, ((const Row *)b)->name);
}

static char *joined(const Row *rows, int rowCount) {
  char *text = malloc((size_t)rowCount * kRow + 1), *end = text;
  if (!text) return NULL;
  *end = '\0';
  for (int i = 0; i < rowCount; i++) end += sprintf(end, "%s%s", i > 0 ? "$" : "", rows[i].text);
  return text;
}

char *recordRows(void) {
  Record record;
  int rowCount = 0;
  listFolder();
  Row *rows = malloc(sizeof *rows * (size_t)(count + 1));
  if (!rows) return NULL;
  for (int number = 1; number <= highest && rowCount < count; number++)
    if (loadRecord(number, &record)) rows[rowCount++] = rowOf(&record);
  qsort(rows, (size_t)rowCount, sizeof *rows, byName);
  char *text = joined(rows, rowCount);
  free(rows);
  return text;
}

int numberOfRow(const char *row) {
  int number = 0;
  return strlen(row) >= kDigits && NUMToLong(row, kDigits, &number) == 0 ? number : 0;
}
