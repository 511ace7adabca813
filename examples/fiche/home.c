#include "home.h"

#include <korvel/korvel.h>

#include <stdio.h>
#include <stdlib.h>

#include "form.h"
#include "french.h"

enum { kLettres, kListe, kNom, kCode, kTexts };
enum { kRankLettres, kRankListe, kRankNom, kRankCode };

/* The layout, in dialog units. */
enum { kWidth = 220, kHeight = 200, kLabel = 16, kField = 80 };
enum { kListY = 53, kListHeight = 130, kChoiceY = 150 };

static const char *department;

static void showChoice(Form *form, const char *code, const char *name) {
  formShowText(form, kNom, name);
  formShowText(form, kCode, code);
}

/* The row of the list whose name was chosen. */
static void chooseByName(Form *form, const char *name) {
  char code[kCommuneCode];
  if (communeCode(name, department, code, sizeof code)) showChoice(form, code, name);
}

static void chooseByLetters(Form *form) {
  char code[kCommuneCode], name[kPlaceName];
  communeByLetters(form->texts[kLettres], department, code, sizeof code, name, sizeof name);
  showChoice(form, code, name);
}

/* What is typed over the choice goes. */
static void chooseByCode(Form *form) {
  char name[kPlaceName];
  communeName(form->texts[kCode], name, sizeof name);
  formShowText(form, kNom, name);
}

static void keepUpToDate(Form *form) {
  switch (form->item) {
    case kFirstText + kLettres:
      chooseByLetters(form);
      break;
    case kFirstText + kListe:
      chooseByName(form, form->texts[kListe]);
      break;
    case kFirstText + kNom:
    case kFirstText + kCode:
      chooseByCode(form);
      break;
    default:
      break;
  }
}

static void defineDialog(const Record *record, char *choices) {
  const FormFields fields = {.texts = kTexts};
  char name[kPlaceName], note[128];
  formBegin(kWidth, kHeight, fields, "OK", "Passer", keepUpToDate, NULL);
  departmentName(record->departement, name, sizeof name);
  snprintf(note, sizeof note, "%s (%s)", name, record->departement);
  formGroup("Commune", 8, 8, kWidth - 16, 9);
  formLabel("Département", kLabel, 22, 60);
  formNote(note, kField, 22, 120);
  formLabel("Premières lettres", kLabel, 38, 62);
  formText(kLettres, kField, 38, 120, kRankLettres, "", kPlaceName, 0);
  formLabel("Communes", kLabel, kListY + 1, 62);
  formList(kListe, kField, kListY, 120, kListHeight, kRankListe, choices);
  communeName(record->commune, name, sizeof name);
  formLabel("Choix", kLabel, kChoiceY, 60);
  formText(kNom, kField, kChoiceY, 90, kRankNom, name, kPlaceName, 1);
  formText(kCode, kField + 94, kChoiceY, 26, kRankCode, record->commune, kCommuneCode, 1);
}

int enterHome(Record *record) {
  char *choices;
  int chosen;
  if (!*record->departement) return 0;
  department = record->departement;
  choices = communeChoices(department);
  if (!choices) return 0;
  defineDialog(record, choices);
  chosen = formRun(french("Commune de résidence"));
  if (chosen) TexteDlgBox_retrieve(kCode, record->commune, sizeof record->commune);
  free(choices);
  return chosen;
}
