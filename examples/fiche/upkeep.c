/* SPDX-License-Identifier: MIT */
/* The table of professions in a list, with push buttons that change it at once. */
#include "upkeep.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "form.h"
#include "french.h"
#include "message.h"
#include "professions.h"

enum { kListe, kLibelle, kTexts };
enum { kAjouter, kModifier, kSupprimer, kPushes };
enum { kRankListe, kRankLibelle, kRankAjouter, kRankModifier, kRankSupprimer };

/* The layout, in dialog units. */
enum { kWidth = 236, kHeight = 190, kLabel = 16, kColumn = 40, kButton = 48 };
enum { kHeadY = 22, kListY = 38, kListHeight = 118, kLabelY = 128, kButtonsY = 148 };

static const char kCaption[] = "Table des professions";

/* Ninety-nine professions of at most 63 characters. */
static char rows[8192];

/* The code of the row that is chosen; empty while none is. */
static char chosen[kProfessionCode];
static int changes;

/* A row is code, tab and profession. */
static void chooseRow(Form *form) {
  const char *row = form->texts[kListe];
  size_t length = strcspn(row, "\t");
  snprintf(chosen, sizeof chosen, "%.*s", (int)length, row);
  formShowText(form, kLibelle, row[length] ? row + length + 1 : "");
}

/* After a change nothing is chosen any more. */
static void showTable(Form *form) {
  changes++;
  *chosen = '\0';
  professionRows(rows, sizeof rows);
  formShowRows(form, kListe, rows);
  formShowText(form, kLibelle, "");
}

static int isKnown(const char *profession) {
  char code[8];
  if (!professionCode(profession, code, sizeof code)) return 0;
  warn(kCaption, "«\u00A0%s\u00A0» est déjà dans la table, avec le code %s.", profession, code);
  return 1;
}

static int isChosen(void) {
  if (*chosen) return 1;
  warn(kCaption, "Choisissez d’abord une profession de la liste.");
  return 0;
}

static void tellUnwritten(const char *profession) {
  tellFailure(kCaption,
              "«\u00A0%s\u00A0» n’a pas pu être écrit dans la table.\rUn libellé n’a ni virgule, "
              "ni «\u00A0+\u00A0», "
              "ni «\u00A0?\u00A0», ni «\u00A0$\u00A0».",
              profession);
}

static void addTyped(Form *form) {
  const char *profession = form->texts[kLibelle];
  if (!*profession) {
    warn(kCaption, "Tapez d’abord le libellé de la profession à ajouter.");
  } else if (!isKnown(profession)) {
    if (addProfession(profession))
      showTable(form);
    else
      tellUnwritten(profession);
  }
}

static void renameChosen(Form *form) {
  const char *profession = form->texts[kLibelle];
  if (!isChosen() || isKnown(profession)) return;
  if (renameProfession(chosen, profession))
    showTable(form);
  else
    tellUnwritten(profession);
}

static void removeChosen(Form *form) {
  const char *row = form->texts[kListe];
  if (!isChosen()) return;
  if (!agreesToLose("Suppression", "Supprimer «\u00A0%s\u00A0» de la table\u00A0?",
                    row + strcspn(row, "\t") + 1))
    return;
  if (removeProfession(chosen))
    showTable(form);
  else
    tellFailure(kCaption, "La table des professions n’a pas pu être modifiée.");
}

static void keepUpToDate(Form *form) {
  switch (form->item) {
    case kFirstText + kListe:
      chooseRow(form);
      break;
    case kFirstPush + kAjouter:
      addTyped(form);
      break;
    case kFirstPush + kModifier:
      renameChosen(form);
      break;
    case kFirstPush + kSupprimer:
      removeChosen(form);
      break;
    default:
      break;
  }
}

static void defineDialog(void) {
  const FormFields fields = {.texts = kTexts, .pushes = kPushes};
  formBegin(kWidth, kHeight, fields, "Fermer", "Annuler", keepUpToDate, NULL);
  formGroup("Professions du cabinet", 8, 8, kWidth - 16, 9);
  formLabel("Code", kLabel + 2, kHeadY, 30);
  formLabel("Libellé", kLabel + 2 + kColumn, kHeadY, 60);
  formList(kListe, kLabel, kListY, kWidth - 2 * kLabel, kListHeight, kRankListe, rows);
  formName(kFirstText + kListe, "Professions");
  formLabel("Libellé", kLabel, kLabelY, 36);
  formText(kLibelle, kLabel + kColumn, kLabelY, kWidth - 2 * kLabel - kColumn, kRankLibelle, "", 64,
           0);
  formPush(kAjouter, "Ajouter", kLabel + kColumn, kButtonsY, kButton, kRankAjouter);
  formPush(kModifier, "Modifier", kLabel + kColumn + 58, kButtonsY, kButton, kRankModifier);
  formPush(kSupprimer, "Supprimer", kLabel + kColumn + 116, kButtonsY, kButton, kRankSupprimer);
}

static void undoChanges(void) {
  if (changes == 0 ||
      !agreesToLose("Annulation", "Revenir à la table d’avant les changements\u00A0?"))
    return;
  if (!restoreProfessions()) tellFailure(kCaption, "La table d’avant n’a pas pu être remise.");
}

void enterProfessions(void) {
  if (!backUpProfessions() &&
      !agreesToLose(kCaption,
                    "La table n’a pas pu être sauvegardée. Continuer tout de même\u00A0?"))
    return;
  *chosen = '\0';
  changes = 0;
  professionRows(rows, sizeof rows);
  defineDialog();
  if (!formRun(french(kCaption))) undoChanges();
}
