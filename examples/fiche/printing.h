/* SPDX-License-Identifier: MIT */
/* The printing of a visit's note. */
#ifndef FICHE_PRINTING_H
#define FICHE_PRINTING_H

#include "note.h"

/* Has the user choose a printer or a PDF file and set up the page, and prints. pdfPath: the colon
   path of the file. */
void enterPrinting(const Visit *visit, const Record *record, const Settings *settings,
                   const char *pdfPath);

#endif
