/* SPDX-License-Identifier: MIT */
/* The search of a text in the notes of all visits. */
#ifndef FICHE_SEARCH_H
#define FICHE_SEARCH_H

#include "record.h"

/* Keeps what can be searched of a note: the lines of its text, ended by CR LF. The file has the
   colon path. Returns 1, or 0 when it could not be written. */
int keepNoteText(const char *path, const char *text);

/* Has the user search, and choose one of the notes that were found. Returns 1 with the patient's
   record, or 0. */
int searchNotes(Record *record);

#endif
