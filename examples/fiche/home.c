/* SPDX-License-Identifier: MIT */
/* The choice of a commune: a list narrowed by first letters, in a dialog after the record. */
#include "home.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "choices.h"
#include "form.h"
#include "french.h"
#include "records.h"

enum { kLettres, kListe, kNom, kCode, kTexts };
enum { kRankLettres, kRankListe, kRankNom, kRankCode };

/* The layout, in dialog units. */
enum { kWidth = 220, kHeight = 200, kLabel = 16, kField = 80 };
enum { kListY = 53, kListHeight = 130, kChoiceY = 150 };

static Record *edited;
/* All communes of the département, and those that the list shows. */
static char *communes, *shown;

static void showChoice(Form *form, const char *code, const char *name) {
  formShowText(form, kNom, name);
  formShowText(form, kCode, code);
}

/* A name of the list. */
static void chooseByName(Form *form, const char *name) {
  char code[kCommuneCode];
  int isCommune = communeCode(name, edited->departement, code, sizeof code);
  showChoice(form, code, isCommune ? name : "");
}

/* The list keeps what begins with the letters, and the first of these is chosen. */
static void chooseByLetters(Form *form) {
  char name[kPlaceName] = "";
  const char *letters = form->texts[kLettres];
  narrowRows(communes, 0, letters, shown);
  if (*letters) firstRow(shown, name, sizeof name);
  formShowRows(form, kListe, shown);
  chooseByName(form, name);
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

static const char *keepEntered(const Form *form) {
  Record next = *edited;
  snprintf(next.commune, sizeof next.commune, "%.*s", kCommuneCode - 1, form->texts[kCode]);
  if (!saveRecord(&next)) return "La commune n’a pas pu être enregistrée.";
  *edited = next;
  return NULL;
}

static void defineDialog(const Record *record) {
  const FormFields fields = {.texts = kTexts};
  char name[kPlaceName], note[128];
  formBegin(kWidth, kHeight, fields, "OK", "Passer", keepUpToDate, keepEntered);
  departmentName(record->departement, name, sizeof name);
  snprintf(note, sizeof note, "%s (%s)", name, record->departement);
  formGroup("Commune", 8, 8, kWidth - 16, 9);
  formLabel("Département", kLabel, 22, 60);
  formNote(note, kField, 22, 120);
  formLabel("Premières lettres", kLabel, 38, 62);
  formText(kLettres, kField, 38, 120, kRankLettres, "", kPlaceName, 0);
  formLabel("Communes", kLabel, kListY + 1, 62);
  formList(kListe, kField, kListY, 120, kListHeight, kRankListe, shown);
  communeName(record->commune, name, sizeof name);
  formLabel("Choix", kLabel, kChoiceY, 60);
  formText(kNom, kField, kChoiceY, 90, kRankNom, name, kPlaceName, 1);
  formText(kCode, kField + 94, kChoiceY, 26, kRankCode, record->commune, kCommuneCode, 1);
  formName(kFirstText + kCode, "Code INSEE");
}

static int runDialog(void) {
  strcpy(shown, communes);
  defineDialog(edited);
  return formRun(french("Commune de résidence"));
}

int enterHome(Record *record) {
  int chosen = 0;
  if (!*record->departement) return 0;
  edited = record;
  communes = communeChoices(record->departement);
  shown = communes ? malloc(strlen(communes) + 1) : NULL;
  if (shown) chosen = runDialog();
  free(shown);
  free(communes);
  return chosen;
}
