/* French texts: sources and terminals speak UTF-8, the library CP1252. */
#ifndef FICHE_FRENCH_H
#define FICHE_FRENCH_H

#include <stdio.h>

/* The CP1252 form of a UTF-8 text of up to 255 characters, in one of eight static buffers that
   take turns, so that one call of the library may use several. Every character must have a CP1252
   byte. */
char *french(const char *utf8);

/* Writes a CP1252 text as UTF-8. */
void printFrench(FILE *out, const char *cp1252);

#endif
