/* SPDX-License-Identifier: MIT */
/* The data-entry dialog of a patient's identity, birth, home and measures. */
#ifndef FICHE_PATIENT_H
#define FICHE_PATIENT_H

#include "record.h"

/* What the user wishes to choose after the dialog: 0 or 1. */
typedef struct PatientWishes {
  int commune, doctor;
} PatientWishes;

/* Shows the record in a window with this title (CP1252) and lets the user change and save it.
   Returns 1 when it was saved (the record then holds what was entered), 0 when the dialog was
   cancelled (record and wishes are unchanged). */
int enterPatient(const char *title, Record *record, PatientWishes *wishes);

#endif
