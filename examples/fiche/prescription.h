/* SPDX-License-Identifier: MIT */
/* The dialog of a prescription, line by line. */
#ifndef FICHE_PRESCRIPTION_H
#define FICHE_PRESCRIPTION_H

#include "record.h"

/* Has the user add lines to the record's prescription, which is saved with each of them, until
   there are enough. */
void enterPrescription(Record *record);

#endif
