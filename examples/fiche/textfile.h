/* SPDX-License-Identifier: MIT */
/* Small files of text, by their colon paths. */
#ifndef FICHE_TEXTFILE_H
#define FICHE_TEXTFILE_H

/* Writes a file anew. Returns 1, or 0 when it could not be written whole. */
int writeTextFile(const char *path, const char *text);

/* Reads a file as it is, cut to what has room with the terminator. Returns 1, or 0 when there is
   none. */
int readTextFile(const char *path, char *text, int size);

#endif
