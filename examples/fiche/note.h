/* SPDX-License-Identifier: MIT */
/* The note of a visit, drawn as a page. Texts are CP1252. */
#ifndef FICHE_NOTE_H
#define FICHE_NOTE_H

#include <korvel/types.h>

#include "record.h"
#include "settings.h"
#include "sheet.h"

/* The page's size in pixels. */
enum { kNoteWidth = 420, kNoteHeight = 610 };

enum { kMaxActs = 4 };

/* What was done, and its fee in euros. */
typedef struct Act {
  const char *name;
  double fee;
} Act;

typedef struct Visit {
  int date; /* YYYYMMDD */
  char motif[80];
  char tension[16];
  int pouls;          /* per minute; 0 while unknown */
  double temperature; /* degrees Celsius; 0 while unknown */
  double poids;       /* kg; 0 while unknown */
  char conclusion[160];
  int acts;
  Act act[kMaxActs];
} Visit;

/* Draws the note on as many pages as it needs. */
void drawPages(const Sheet *sheet, const Visit *visit, const Record *record,
               const Settings *settings);

/* Draws it on one page with its top left corner at (x, y). */
void drawNote(CGrafPtr port, int x, int y, const Visit *visit, const Record *record,
              const Settings *settings);

#endif
