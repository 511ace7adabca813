/* SPDX-License-Identifier: MIT */
/* The dialog of a visit, which shows the visit's note while it is written. */
#ifndef FICHE_VISIT_H
#define FICHE_VISIT_H

#include "record.h"

/* Has the user write the note of a visit and keeps it as a picture in the folder "Cabinet:notes",
   named by the record's number and the day. The weight goes into the record, which is saved. */
void enterVisit(Record *record);

#endif
