/* The data-entry dialog of a patient record. */
#ifndef FICHE_ENTRY_H
#define FICHE_ENTRY_H

#include "record.h"

/* Shows the record in a window with this title (CP1252) and lets the user change it. Returns 1 when
   the entry was accepted (the record then holds it), 0 when it was cancelled (the record is
   unchanged). */
int enterRecord(const char *title, Record *record);

#endif
