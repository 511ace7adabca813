/* SPDX-License-Identifier: MIT */
/* The dialog in which the commune of a patient's home is chosen. */
#ifndef FICHE_HOME_H
#define FICHE_HOME_H

#include "record.h"

/* Lets the user choose among the communes of the record's département. Returns 1 when one was
   chosen, which the record then holds and is saved with; 0, the record unchanged, when the dialog
   was left without, or there is no département to choose in. */
int enterHome(Record *record);

#endif
