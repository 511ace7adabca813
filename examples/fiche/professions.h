/* The practice's own table of professions. Texts are CP1252. */
#ifndef FICHE_PROFESSIONS_H
#define FICHE_PROFESSIONS_H

/* Finds the code of a profession, in whatever case. Returns 1, or 0 with the code empty. */
int professionCode(const char *profession, char *code, int size);

/* Adds a profession to the table under the next free code, after a back-up of the table.
   Returns 1 when it is there afterwards, also if it was before; 0 for an empty text, one with a
   comma or a plus sign (no field holds them), a full table (99) or one that cannot be written. */
int addProfession(const char *profession);

#endif
