/* What the application keeps between two starts: a profile file on a volume of its own. */
#ifndef FICHE_SETTINGS_H
#define FICHE_SETTINGS_H

#include "record.h"

/* Points the library's volumes at a folder of the user (FICHE_VOLUMES, else fiche/ in the user's
   data folder), in which the volume "Cabinet" is made when it is missing. Returns 1, or 0 when
   there is no such folder to be had. */
int openSettings(void);

/* The window's title, CP1252: up to size - 1 characters; "Fiche patient" when none is kept. */
void readWindowTitle(char *title, int size);

/* The last record, without its prescription; texts and numbers that are not kept stay as they are.
 */
void readLastRecord(Record *record);

/* Keeps title and record, except for the access code, which is nobody's business. Returns 1, or 0
   when something could not be written. */
int keepSettings(const char *title, const Record *record);

#endif
