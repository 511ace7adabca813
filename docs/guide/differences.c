/* SPDX-License-Identifier: MIT */
/* Code as it was written elsewhere, and what becomes of it here: a memory handle, a port that is
   set and set back, a path, a profile, a list of strings. */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

static int y = 16;

static void show(const char *left, const char *right) {
  CGrafPtr port = NULL;
  GetPort(&port); /* the one that main has set */
  ch_font_set(port, "Arial", KorvelGrey, KorvelTransparent, 13);
  TextOut_0(port, 16, y, left, (int)strlen(left));
  ch_font_set(port, "Arial", KorvelBlack, KorvelTransparent, 13);
  TextOut_0(port, 230, y, right, (int)strlen(right));
  y += 24;
}

static void paths(void) {
  char posix[256] = "";
  MAC2UNIX("Data:Courriers:avril/mai.txt", posix);
  show("Data:Courriers:avril/mai.txt", posix);
}

/* A handle is the address of its block: locking gives it back and keeps nothing in place. */
static void memory(void) {
  void *handle = GlobalAlloc(0, 64);
  char *text = GlobalLock(handle);
  strcpy(text, text == (char *)handle ? "le bloc lui-m\352me" : "un autre bloc");
  GlobalUnlock(handle);
  show("GlobalLock", text);
  GlobalFree(handle);
}

/* Bytes compare as signed ones, so accented letters come before "a". */
static void order(void) {
  char mac[] = "\351t\351";
  show("chcomp(\"\351\", \"a\")", chcomp("\351", "a") < 0 ? "n\351gatif" : "positif");
  w2mstr(mac);
  show("w2mstr : 1er octet", mac[0] == '\216' ? "0x8E" : "autre");
}

static void list(void) {
  char items[16] = "un+deux";
  ChCh_Put_00(items, sizeof items);
  ChCh_Cut(items);
  show("ChCh_Cut(\"un+deux\")", ChCh_Get_Next_Item(items));
}

static void profile(void) {
  char text[16];
  /* There is no such file: the default is given, and nothing is made. */
  GetPrivateProfileString("Section", "cle", "par d\351faut", text, sizeof text, "Data:rien.ini");
  show("GetPrivateProfileString", text);
}

int main(void) {
  CGrafPtr before = NULL, port = KorvelImagePort(500, 170);
  if (!port) return 1;
  GetPort(&before);
  SetPort(port);
  paths();
  memory();
  order();
  list();
  profile();
  SetPort(before);
  int saved = KorvelPortSave(port, "differences.png");
  KorvelPortRelease(port);
  puts(saved ? "differences.png" : "Le dessin ne peut pas être écrit.");
  return saved ? 0 : 1;
}
