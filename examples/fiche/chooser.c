/* SPDX-License-Identifier: MIT */
/* The choice of a patient: a list of all records, narrowed by first letters. */
#include "chooser.h"

#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "choices.h"
#include "form.h"
#include "french.h"
#include "message.h"
#include "records.h"

enum { kLettres, kListe, kTexts };
enum { kRankLettres, kRankListe };

/* The layout, in dialog units. The list shows its columns 80 pixels apart. */
enum { kWidth = 250, kHeight = 196, kLabel = 16, kField = 80, kColumn = 40 };
enum { kHeadY = 44, kListY = 60, kListHeight = 144 };

/* The column of a row in which the letters are looked for: after number and date of birth. */
enum { kNameColumn = 2 };

static const char kCaption[] = "Choix du patient";

/* All patients, and those that the list shows. */
static char *patients, *shown;

static void keepUpToDate(Form *form) {
  if (form->item != kFirstText + kLettres) return;
  narrowRows(patients, kNameColumn, form->texts[kLettres], shown);
  formShowRows(form, kListe, shown);
}

static void defineDialog(void) {
  const FormFields fields = {.texts = kTexts};
  formBegin(kWidth, kHeight, fields, "Choisir", "Annuler", keepUpToDate, NULL);
  formGroup("Patients", 8, 8, kWidth - 16, 9);
  formLabel("Premières lettres", kLabel, formLine(8, 0), 62);
  formText(kLettres, kField, formLine(8, 0), 120, kRankLettres, "", 64, 0);
  formLabel("N°", kLabel + 2, kHeadY, 30);
  formLabel("Né(e) le", kLabel + 2 + kColumn, kHeadY, 40);
  formLabel("Nom et prénom", kLabel + 2 + 2 * kColumn, kHeadY, 80);
  formList(kListe, kLabel, kListY, kWidth - 2 * kLabel, kListHeight, kRankListe, shown);
  formName(kFirstText + kListe, "Patients");
  TexteDlgBox_mandatory(kListe, 1);
}

static int runDialog(Record *record) {
  Record chosen;
  strcpy(shown, patients);
  defineDialog();
  if (!formRun(french(kCaption))) return 0;
  if (!loadRecord(numberOfRow(TDB_pszBuffer[kListe]), &chosen)) {
    tellFailure(kCaption, "Cette fiche n’a pas pu être lue.");
    return 0;
  }
  *record = chosen;
  return 1;
}

int chooseRecord(Record *record) {
  int isChosen = 0;
  patients = recordRows();
  shown = patients ? malloc(strlen(patients) + 1) : NULL;
  if (shown && *patients)
    isChosen = runDialog(record);
  else
    tell(kCaption, "Il n’y a pas encore de fiche.");
  free(shown);
  free(patients);
  return isChosen;
}
