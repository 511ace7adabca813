/* SPDX-License-Identifier: MIT */
/* Lists that are narrowed while first letters are typed. */
#include "choices.h"

#include <stdio.h>
#include <string.h>

#include "french.h"

static const char kSeparator = '$';

enum { kRow = 256 };

static size_t rowLength(const char *row) { return strcspn(row, "$"); }

void firstRow(const char *rows, char *out, int size) {
  snprintf(out, (size_t)size, "%.*s", (int)rowLength(rows), rows);
}

static const char *columnOf(const char *row, int column) {
  for (; column > 0 && row; column--) {
    row = strchr(row, '\t');
    if (row) row++;
  }
  return row ? row : "";
}

static int beginsWith(const char *text, const char *start) {
  return strncmp(text, start, strlen(start)) == 0;
}

/* A name in plain capitals without the article that it may begin with. */
static const char *behindArticle(const char *plain) {
  static const char *const kArticles[] = {"L ", "LE ", "LA ", "LES "};
  for (size_t i = 0; i < sizeof kArticles / sizeof *kArticles; i++)
    if (beginsWith(plain, kArticles[i])) return plain + strlen(kArticles[i]);
  return plain;
}

static int isMeant(const char *name, const char *letters) {
  char plain[kRow], start[kRow];
  plainCapitals(name, plain, sizeof plain);
  plainCapitals(letters, start, sizeof start);
  return beginsWith(plain, start) || beginsWith(behindArticle(plain), start);
}

int narrowRows(const char *rows, int column, const char *letters, char *out) {
  int count = 0;
  char row[kRow];
  while (*rows) {
    size_t length = rowLength(rows);
    firstRow(rows, row, sizeof row);
    if (isMeant(columnOf(row, column), letters)) {
      if (count++ > 0) *out++ = kSeparator;
      memcpy(out, rows, length);
      out += length;
    }
    rows += length + (rows[length] == kSeparator);
  }
  *out = '\0';
  return count;
}
