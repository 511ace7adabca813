/* SPDX-License-Identifier: MIT */
/* A first dialog: asks for a patient's name, birth and children, and prints what was entered. */
#include <stdio.h>

#include <korvel/korvel.h>

#include "french.h"

/* The fields of each type, from 0 on. */
enum { kName, kFirstName, kTexts };
enum { kBirth, kDates };
enum { kChildren, kInts };
enum { kRegular, kBools };

/* The first identifier of each type: identifiers name the fields of all types. */
enum { kFirstText = 100, kFirstInt = 200, kFirstDate = 300, kFirstBool = 400 };

/* The order in which the Tab key visits the fields. */
enum { kRankName, kRankFirstName, kRankBirth, kRankChildren, kRankRegular };

static void label(int i, const char *text, int y) {
  StaticDlgBox_set(i, french(text));
  StaticDlgBox_set_geo(i, 10, y, 50, 12);
}

static void describe(void) {
  TailleDlgBox_set(190, 122);

  StaticDlgBox_param(4);
  label(0, "Nom", 12);
  label(1, "Prénom", 30);
  label(2, "Né(e) le", 48);
  label(3, "Enfants", 66);

  TexteDlgBox_param(kTexts, kFirstText);
  TexteDlgBox_set_geo(kName, 62, 12, 110, 12, kRankName);
  TexteDlgBox_set(kName, "");
  TexteDlgBox_set_ncarac(kName, 40);
  TexteDlgBox_set_geo(kFirstName, 62, 30, 110, 12, kRankFirstName);
  TexteDlgBox_set(kFirstName, "");
  TexteDlgBox_set_ncarac(kFirstName, 40);
  TexteDlgBox_mandatory(kFirstName, 0);

  DateDlgBox_param(kDates, kFirstDate);
  DateDlgBox_set_geo(kBirth, 62, 48, 0, 12, kRankBirth);
  DateDlgBox_set_fvalid(kBirth, intcod_l_date);

  IntDlgBox_param(kInts, kFirstInt);
  IntDlgBox_set_geo(kChildren, 62, 66, 20, 12, kRankChildren);
  IntDlgBox_set(kChildren, 0, KorvelNotNegative);

  BoolDlgBox_param(kBools, kFirstBool);
  BoolDlgBox_set_geo(kRegular, french("Suivi régulier"), 62, 84, 90, 12, kRankRegular);
  BoolDlgBox_set(kRegular, 1);
}

int main(void) {
  char name[64] = "", firstName[64] = "";
  int birth = 0, children = 0, regular = 0;

  describe();
  if (!ZRVDlgBoxEx("Nouveau patient", 0)) {
    puts("Annulé");
    return 0;
  }
  TexteDlgBox_retrieve(kName, name, sizeof name);
  TexteDlgBox_retrieve(kFirstName, firstName, sizeof firstName);
  DateDlgBox_retrieve(kBirth, &birth);
  IntDlgBox_retrieve(kChildren, &children);
  BoolDlgBox_retrieve(kRegular, &regular);
  say(name);
  say(firstName);
  printf("%d, %d, %d\n", birth, children, regular);
  return 0;
}
