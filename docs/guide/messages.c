/* SPDX-License-Identifier: MIT */
/* Messages: a question before something is lost, a long work that can be ended, and a note. */
#define _POSIX_C_SOURCE 200809L
#include <stdio.h>
#include <time.h>

#include <korvel/korvel.h>

#include "french.h"

enum { kRecords = 300 };
static const char kWork[] = "Suppression des fiches";

/* What each record takes, in nanoseconds. */
static const struct timespec kTask = {0, 10000000};

/* Returns how many were removed. */
static int removeRecords(void) {
  for (int i = 0; i < kRecords; i++) {
    if (KorvelProgress(kWork, i, kRecords)) {
      KorvelProgress(kWork, kRecords, kRecords); /* the work ends earlier */
      return i;
    }
    nanosleep(&kTask, NULL);
  }
  KorvelProgress(kWork, kRecords, kRecords);
  return kRecords;
}

int main(void) {
  int answer = MessageBox(
      NULL,
      french("Supprimer les fiches de plus de vingt ans ?\rElles ne pourront être rétablies."),
      "Suppression", KorvelQuestion | KorvelCautionIcon | KorvelDefaultNon);
  if (answer != KorvelOuiAnswer) {
    puts("Non");
    return 0;
  }
  int done = removeRecords();
  printf("%s\n", done == kRecords ? "toutes" : done > 0 ? "une partie" : "aucune");
  MessageBox(NULL,
             done == kRecords ? french("Les fiches sont supprimées.")
                              : french("La suppression s’est arrêtée."),
             "Suppression", KorvelNoteIcon);
  return 0;
}
