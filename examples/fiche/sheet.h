/* SPDX-License-Identifier: MIT */
/* What pages are drawn on, a printer's or a window's. */
#ifndef FICHE_SHEET_H
#define FICHE_SHEET_H

#include <korvel/types.h>

typedef struct Sheet {
  CGrafPtr port;
  int x, y, width, height;         /* of what may be drawn on, in pixels */
  void (*nextPage)(void *printer); /* null: there is only one */
  void *printer;
} Sheet;

#endif
