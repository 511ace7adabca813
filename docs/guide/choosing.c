/* SPDX-License-Identifier: MIT */
/* A pop-up, a list of two columns whose rows depend on it, and initials that narrow the list. */
#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

enum { kKind, kInitials, kAct, kTexts };
enum { kFirstText = 100 };

/* A row of the list: a code and a name, with a tab between them. */
typedef struct Act {
  const char *kind, *row;
} Act;

static const Act kActs[] = {
    {"Consultation", "C\tConsultation au cabinet"},
    {"Consultation", "CE\tConsultation d’un enfant"},
    {"Consultation", "V\tVisite à domicile"},
    {"Vaccination", "DTP\tDiphtérie, tétanos, polio"},
    {"Vaccination", "GRI\tGrippe"},
    {"Vaccination", "ROR\tRougeole, oreillons, rubéole"},
};

/* The rows of a kind whose names begin with the initials, with a dollar sign between them. They
   stay where they are while the dialog is up. */
static char *rowsOf(const char *kind, const char *initials) {
  static char rows[1024];
  *rows = '\0';
  for (size_t n = 0; n < sizeof kActs / sizeof *kActs; n++) {
    const char *row = french(kActs[n].row);
    if (strcmp(kActs[n].kind, kind) != 0) continue;
    if (strncmp(strchr(row, '\t') + 1, initials, strlen(initials)) != 0) continue;
    if (*rows) strcat(rows, "$");
    strcat(rows, row);
  }
  return rows;
}

static int changed(int item, int textInUse, int textFirstItem, char **texts, int textCount,
                   int boolInUse, int boolFirstItem, int *bools, int boolCount, int intInUse,
                   int intFirstItem, int *ints, int intCount, int numInUse, int numFirstItem,
                   double *nums, int numCount, int dateInUse, int dateFirstItem, int *dates,
                   int dateCount, int *redisplay, int capacity) {
  (void)textInUse, (void)textFirstItem, (void)textCount;
  (void)boolInUse, (void)boolFirstItem, (void)bools, (void)boolCount;
  (void)intInUse, (void)intFirstItem, (void)ints, (void)intCount;
  (void)numInUse, (void)numFirstItem, (void)nums, (void)numCount;
  (void)dateInUse, (void)dateFirstItem, (void)dates, (void)dateCount;
  if (item != kFirstText + kKind && item != kFirstText + kInitials) return 0;
  TexteDlgBox_set_liste_buffer(kAct, rowsOf(texts[kKind], texts[kInitials]));
  ZRVDlgBox_texte_set_liste(kAct);
  /* Nothing is chosen in new rows: the field is empty, and OK waits for a choice. */
  *texts[kAct] = '\0';
  if (capacity < 1) return 0;
  redisplay[0] = -(kFirstText + kAct);
  return 1;
}

int main(void) {
  char chosen[128] = "";

  TailleDlgBox_set(220, 128);
  StaticDlgBox_param(3);
  StaticDlgBox_set(0, "Nature");
  StaticDlgBox_set_geo(0, 10, 12, 44, 12);
  StaticDlgBox_set(1, "Commence par");
  StaticDlgBox_set_geo(1, 10, 30, 56, 12);
  StaticDlgBox_set(2, "Acte");
  StaticDlgBox_set_geo(2, 10, 48, 44, 12);

  TexteDlgBox_param(kTexts, kFirstText);
  TexteDlgBox_set_geo(kKind, 70, 12, 80, 12, 0);
  TexteDlgBox_set_liste(kKind, "Consultation+Vaccination");
  TexteDlgBox_set(kKind, "Consultation");

  TexteDlgBox_set_geo(kInitials, 70, 30, 80, 12, 1);
  TexteDlgBox_set(kInitials, "");
  TexteDlgBox_mandatory(kInitials, 0);

  TexteDlgBox_set_geo(kAct, 70, 50, 140, 56, 2);
  TexteDlgBox_set_liste(kAct, "");
  TexteDlgBox_set_liste_buffer(kAct, rowsOf("Consultation", ""));
  TexteDlgBox_change_liste(kAct); /* the pop-up becomes a list */
  TexteDlgBox_set(kAct, "");

  DlgBoxGlobal_set(changed);
  if (!ZRVDlgBoxEx("Choix d'un acte", 0)) return 0;
  TexteDlgBox_retrieve(kAct, chosen, sizeof chosen);
  say(chosen);
  return 0;
}
