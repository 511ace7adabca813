/* SPDX-License-Identifier: MIT */
/* The records of the practice, a file each in the folder "Cabinet:fiches": lines "key=value",
   CP1252, ended by CR LF. */
#ifndef FICHE_RECORDS_H
#define FICHE_RECORDS_H

#include "record.h"

/* Makes the folder when it is missing. Returns 1, or 0 when it cannot be made. */
int openRecords(void);

/* Writes a record, a new one under the next free number, which it then bears. It is written beside
   its file first and takes the file's place when it is whole: a failure leaves the file as it was.
   Returns 1, or 0 when it could not be written. */
int saveRecord(Record *record);

/* Reads the record of a number. Returns 1, or 0 when there is none. */
int loadRecord(int number, Record *record);

int countRecords(void);

/* The rows of a list of all records, joined by '$': number, date of birth and name, with tabs
   between them, by name. The caller frees it; null without memory. */
char *recordRows(void);

/* The number at the beginning of such a row. */
int numberOfRow(const char *row);

#endif
