/* SPDX-License-Identifier: MIT */
/* The application's code tables: reference data that comes with the program, in the volume
   "Tables", and the practice's own tables, in the volume "Cabinet". */
#ifndef FICHE_TABLES_H
#define FICHE_TABLES_H

/* Makes the volume "Tables" of the folder "tables" beside the program, and gives a practice that
   has no table of professions, or of practitioners, yet a copy of the one there. The volumes must
   be open (openPractice). Returns 1, or 0 when there are no tables. */
int openTables(void);

/* Whether a reference table of this name ("pays.tab") comes with the program. */
int isReferenceTable(const char *table);

/* The colon path of a newer edition that the practice has imported, or may import. */
void importedTable(const char *table, char *path, int size);

/* From here on a table's name means this reference table, which is the practice's own edition where
   it has imported one, any table that was imported, one of the practice's ("professions"), or any
   of its files ("MT.par"). */
void useReferenceTable(const char *table);
void useImportedTables(void);
void usePracticeTables(void);
void usePracticeFiles(void);

/* Looks up a column of the line of a code in a reference table. Returns 1, or 0 with out empty when
   there is no such code. */
int referenceLabel(const char *table, const char *code, int column, char *out, int size);

/* Looks up the code of a line whose column is the label. Returns 1, or 0 with out empty. */
int referenceCode(const char *table, const char *label, int column, char *out, int size);

/* The labels (column 1) of a reference table in French order, with the separator between them; only
   of the lines whose column `only` is the text `wanted`, or of all for a null text. The caller
   frees it; null without memory. */
char *referenceChoices(const char *table, int only, const char *wanted, char separator);

#endif
