/* SPDX-License-Identifier: MIT */
/* French texts: sources are UTF-8, the library speaks CP1252. */
#ifndef FICHE_FRENCH_H
#define FICHE_FRENCH_H

/* The CP1252 form of a UTF-8 text of up to 255 characters, in one of eight static buffers that
   take turns, so that one call of the library may use several; empty for a longer one. A
   character without a CP1252 byte becomes "?". */
char *french(const char *utf8);

/* Capitals of a CP1252 text, accents kept: up to size - 1 characters. */
void capitals(const char *cp1252, char *out, int size);

/* Takes the accents off capitals (CP1252), in place. */
void withoutAccents(char *capitals);

/* As postal and official lists write names: capitals without accents, blanks in place of hyphens
   and apostrophes. Up to size - 1 characters. Example: "L'Haÿ-les-Roses" is "L HAY LES ROSES". */
void plainCapitals(const char *cp1252, char *out, int size);

/* Below, at or above 0 as a comes before, with or after b in a French list. */
int frenchOrder(const char *a, const char *b);

#endif
