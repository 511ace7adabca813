/* SPDX-License-Identifier: MIT */
/* For the programs of the guide: their sources are UTF-8, as terminals are, and the texts of the
   library are CP1252. */
#ifndef GUIDE_FRENCH_H
#define GUIDE_FRENCH_H

#include <stdio.h>

#include <korvel/strings.h>

/* A text of a source, for the library; empty where that has more than 255 bytes. It stays until the
   eighth call from here. */
static inline char *french(const char *utf8) {
  static char texts[8][256];
  static unsigned turn;
  char *text = texts[turn++ % 8];
  if (KorvelFromUtf8(utf8, text, sizeof texts[0]) < 0) *text = '\0';
  return text;
}

/* Prints a text of the library's. */
static inline void say(const char *text) {
  char utf8[1024] = "";
  KorvelToUtf8(text, utf8, sizeof utf8);
  puts(utf8);
}

#endif
