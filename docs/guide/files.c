/* SPDX-License-Identifier: MIT */
/* Files under colon paths: letters are written, listed, chosen in a dialog and read. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

static const char kFolder[] = "Cabinet:courriers";
enum { kRows = 50, kRow = 256, kFirstText = 100 };

static int writeLetter(const char *name, const char *text) {
  char path[128];
  snprintf(path, sizeof path, "%s:%s", kFolder, name);
  int length = (int)strlen(text), file = File_Open(path, 0, 1);
  if (file < 0) return 0;
  int done = File_Write(file, text, length) == length && File_SetEOF(file, length) == 0;
  return File_Close(file) == 0 && done;
}

/* As many bytes as there are and fit. */
static int readLetter(const char *path, char *text, int size) {
  int file = File_Open(path, 1, 0);
  if (file < 0) return 0;
  int length = File_Read(file, text, size - 1);
  File_Close(file);
  if (length < 0) return 0;
  text[length] = '\0';
  return 1;
}

/* The names of the letters, with a dollar sign between them: the rows of a list. A name with a
   dollar sign of its own would be two rows, so it is left out. */
static char *rowsOfLetters(void) {
  static char paths[kRows][kRow], rows[kRows * kRow];
  int count = Dir_FindFiles(paths[0], kFolder, kRows, "*.txt");
  if (count > kRows) count = kRows;
  Dir_SortFiles(paths[0], count);
  for (int i = 0; i < count; i++) {
    const char *name = strrchr(paths[i], ':') + 1;
    if (strchr(name, '$')) continue;
    if (*rows) strcat(rows, "$");
    strcat(rows, name);
  }
  return rows;
}

static int chooseLetter(char *path, int size) {
  char name[kRow] = "";
  TailleDlgBox_set(160, 104);
  TexteDlgBox_param(1, kFirstText);
  TexteDlgBox_set_geo(0, 10, 12, 140, 62, 0);
  TexteDlgBox_set_liste_buffer(0, rowsOfLetters());
  TDBL[0] = 1; /* a list, whose rows are in a buffer of ours from the beginning */
  TexteDlgBox_set(0, "");
  KorvelItemName(kFirstText, "Courriers");
  if (!ZRVDlgBoxEx("Courriers", 0)) return 0;
  TexteDlgBox_retrieve(0, name, sizeof name);
  snprintf(path, (size_t)size, "%s:%s", kFolder, name);
  return 1;
}

int main(void) {
  char path[512] = "", posix[256] = "", text[256] = "";
  snprintf(szVolumes, sizeof szVolumes, "%s/volumes", getenv("HOME"));

  if (!Dir_Is_Existing(kFolder)) MakeDir(kFolder);
  if (!writeLetter("Garcia.txt", "Chère consœur,") ||
      !writeLetter("Martin.txt", "Cher confrère,") || !writeLetter("Petit.txt", "Cher ami,")) {
    puts("Les courriers ne peuvent pas être écrits.");
    return 1;
  }
  if (!chooseLetter(path, sizeof path) || !readLetter(path, text, sizeof text)) return 0;
  MAC2UNIX(path, posix);
  printf("%s\n%s\n%s\n", path, posix + strlen(szVolumes), text);
  return 0;
}
