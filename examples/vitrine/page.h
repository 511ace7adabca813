/* SPDX-License-Identifier: MIT */
/* The showcase's page: all that can be drawn, once. */
#ifndef VITRINE_PAGE_H
#define VITRINE_PAGE_H

#include <korvel/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Its size in pixels. */
enum { kPageWidth = 660, kPageHeight = 496 };

/* Draws the page into a port, from its top left corner, on whatever ground is there. */
void drawPage(CGrafPtr port);

#ifdef __cplusplus
}
#endif

#endif
