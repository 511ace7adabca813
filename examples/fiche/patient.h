/* The data-entry dialog of a patient's identity, birth, home and measures. */
#ifndef FICHE_PATIENT_H
#define FICHE_PATIENT_H

#include "record.h"

/* Shows the record in a window with this title (CP1252) and lets the user change it. Returns 1 when
   the entry was accepted (the record then holds it), 0 when it was cancelled (the record is
   unchanged). */
int enterPatient(const char *title, Record *record);

#endif
