/* SPDX-License-Identifier: MIT */
/* The practice's own table of professions. Texts are CP1252. */
#ifndef FICHE_PROFESSIONS_H
#define FICHE_PROFESSIONS_H

/* Room for a code. */
enum { kProfessionCode = 3 };

/* Finds the code of a profession, in whatever case. Returns 1, or 0 with the code empty. */
int professionCode(const char *profession, char *code, int size);

/* Adds a profession to the table under the next free code. Returns 1 when it is there afterwards,
   also if it was before; 0 for a text that no field holds (an empty one, one with a comma, a plus,
   dollar or question mark), a full table (99) or one that cannot be written. */
int addProfession(const char *profession);

/* Gives the profession of a code another name. Returns 1, or 0 where addProfession would. */
int renameProfession(const char *code, const char *profession);

/* Returns 1, or 0 when there is no such code or the table cannot be written. */
int removeProfession(const char *code);

/* The rows of a list of the table, joined by '$': code and profession with a tab between them, in
   the order of the codes, up to size - 1 characters. */
void professionRows(char *rows, int size);

/* Makes a back-up of the table; and puts it in the table's place. Returns 1, or 0 when it cannot be
   done. */
int backUpProfessions(void);
int restoreProfessions(void);

#endif
