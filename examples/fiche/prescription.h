/* The dialog of a prescription, line by line. */
#ifndef FICHE_PRESCRIPTION_H
#define FICHE_PRESCRIPTION_H

#include "record.h"

/* Has the user add lines to the record's prescription until there are enough of them. */
void enterPrescription(Record *record);

#endif
