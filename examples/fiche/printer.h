/* SPDX-License-Identifier: MIT */
/* Printers and PDF files, by the toolkit. Texts are CP1252. */
#ifndef FICHE_PRINTER_H
#define FICHE_PRINTER_H

#include "sheet.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The size of the paper. */
enum { kA4, kA5, kLetter };

typedef struct PageSetup {
  char printer[128]; /* its name; empty: a PDF file */
  int paper;
  int isLandscape;
  int marginX, marginY; /* left and right, above and below, in mm */
} PageSetup;

/* The names of the printers, with '+' between them; empty when there is none. */
void printerNames(char *names, int size);

/* Whether the margins leave room for something. */
int hasRoom(const PageSetup *setup);

/* Prints what `draw` draws, in pixels of 1/96 inch, on the printer or into the PDF file at a POSIX
   path. Returns 1, or 0 when nothing could be printed. */
int printPages(const PageSetup *setup, const char *title, const char *pdfPath,
               void (*draw)(const Sheet *sheet));

#ifdef __cplusplus
}
#endif

#endif
