/* SPDX-License-Identifier: MIT */
/* The folder of the practice, in which the application keeps everything. */
#ifndef FICHE_PRACTICE_H
#define FICHE_PRACTICE_H

/* Points the library's volumes at a folder of the user (FICHE_VOLUMES, else fiche/ in the user's
   data folder), in which the volume "Cabinet" is made when it is missing. Returns 1, or 0 when
   there is no such folder and none can be made. */
int openPractice(void);

/* Returns 1 if there is a folder of this colon path, which is made for its owner alone when it is
   missing; else 0. */
int haveFolder(const char *path);

#endif
