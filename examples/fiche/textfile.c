/* SPDX-License-Identifier: MIT */
/* A text goes to the disk, and comes from it, in one piece. */
#include "textfile.h"

#include <string.h>

#include <korvel/korvel.h>

int writeTextFile(const char *path, const char *text) {
  const int length = (int)strlen(text);
  int file = xFile_Open(path, 0, 1);
  if (file < 0) return 0;
  int isWhole = xFile_Write(file, text, length) == length && xFile_SetEOF(file, length) == 0;
  return xFile_Close(file) == 0 && isWhole;
}

int readTextFile(const char *path, char *text, int size) {
  int file = File_Open(path, 1, 0);
  if (file < 0) return 0;
  int length = File_Read(file, text, size - 1);
  File_Close(file);
  if (length < 0) return 0;
  text[length] = '\0';
  return 1;
}
