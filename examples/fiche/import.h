/* SPDX-License-Identifier: MIT */
/* The import of a newer edition of a reference table. */
#ifndef FICHE_IMPORT_H
#define FICHE_IMPORT_H

/* Has the user name a table file, checks it line by line and keeps it in the folder
   "Cabinet:tables", from which it is used from then on. */
void importTable(void);

#endif
