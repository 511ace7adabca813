/* SPDX-License-Identifier: MIT */
/* The rows of a list, joined by '$'. */
#ifndef FICHE_CHOICES_H
#define FICHE_CHOICES_H

/* Copies the rows whose text after `column` tabs begins with the letters, in any case, with or
   without accents, hyphens and article; all of them for no letters. out: as large as rows.
   Returns how many there are. */
int narrowRows(const char *rows, int column, const char *letters, char *out);

/* The first row: up to size - 1 characters. */
void firstRow(const char *rows, char *out, int size);

#endif
