/* SPDX-License-Identifier: MIT */
/* The dialog in which a patient is chosen. */
#ifndef FICHE_CHOOSER_H
#define FICHE_CHOOSER_H

#include "record.h"

/* Lets the user choose one of the records of the practice. Returns 1, or 0 with *record untouched
   when none was chosen. */
int chooseRecord(Record *record);

#endif
