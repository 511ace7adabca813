/* SPDX-License-Identifier: MIT */
/* The search of a text in the notes of all visits. */
#ifndef FICHE_SEARCH_H
#define FICHE_SEARCH_H

#include "record.h"

/* Has the user search, and choose one of the notes that were found. Returns 1 with the patient's
   record, or 0. */
int searchNotes(Record *record);

#endif
