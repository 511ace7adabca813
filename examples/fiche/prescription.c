/* SPDX-License-Identifier: MIT */
/* Lines of a prescription: specialities found by first letters, days and a dose. */
#include "prescription.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "drugs.h"
#include "form.h"
#include "french.h"
#include "message.h"
#include "records.h"

enum { kLettres, kNom, kForme, kVoie, kPosologie, kTexts };
enum { kJours, kInts };
enum { kSuivant, kPushes };
enum { kRankLettres, kRankSuivant, kRankPosologie, kRankJours, kRankNom, kRankForme, kRankVoie };

/* The layout, in dialog units. */
enum { kWidth = 360, kHeight = 264, kLabel = 16, kField = 84, kWide = 260 };
enum { kDrugY = 8, kDoseY = 98, kLinesY = 156 };

static Drug drug;
static Record *edited;

static void defineDrug(void) {
  formGroup("Médicament", 8, kDrugY, kWidth - 16, 4);
  formLabel("Premières lettres", kLabel, formLine(kDrugY, 0), 66);
  formText(kLettres, kField, formLine(kDrugY, 0), 100, kRankLettres, "", 64, 0);
  formPush(kSuivant, "Suivant", kField + 106, formLine(kDrugY, 0), 40, kRankSuivant);
  formLabel("Spécialité", kLabel, formLine(kDrugY, 1), 66);
  formText(kNom, kField, formLine(kDrugY, 1), kWide, kRankNom, "", sizeof drug.name, 1);
  formLabel("Forme", kLabel, formLine(kDrugY, 2), 66);
  formText(kForme, kField, formLine(kDrugY, 2), kWide, kRankForme, "", sizeof drug.form, 0);
  formLabel("Voie", kLabel, formLine(kDrugY, 3), 66);
  formText(kVoie, kField, formLine(kDrugY, 3), 100, kRankVoie, "", sizeof drug.route, 0);
}

static void defineDose(void) {
  formGroup("Prise", 8, kDoseY, kWidth - 16, 2);
  formLabel("Posologie", kLabel, formLine(kDoseY, 0), 66);
  formText(kPosologie, kField, formLine(kDoseY, 0), kWide, kRankPosologie, "",
           sizeof((Prescription *)0)->dose, 1);
  formLabel("Pendant", kLabel, formLine(kDoseY, 1), 66);
  IntDlgBox_set_geo(kJours, kField, formLine(kDoseY, 1), 24, kLine, kRankJours);
  IntDlgBox_set_fvalid(kJours, intcod_i_ssup0);
  IntDlgBox_mandatory(kJours, 0);
  formLabel("jours", kField + 28, formLine(kDoseY, 1), 40);
}

/* A line as it fits the window's width: a long name is cut. */
static void noteLine(const Prescription *line, int y) {
  enum { kShown = 82 };
  char name[256], days[24] = "", note[384];
  if (line->days > 0) snprintf(days, sizeof days, ", %d j", line->days);
  size_t room = kShown - strlen(line->dose) - strlen(days);
  drugName(line->drug, name, sizeof name);
  if (strlen(name) > room) strcpy(name + room, french("…"));
  snprintf(note, sizeof note, french("%s\u00A0: %s%s"), name, line->dose, days);
  formNote(note, kLabel, y, kWidth - 2 * kLabel);
}

static void defineLines(const Record *record) {
  formGroup("Ordonnance", 8, kLinesY, kWidth - 16, kMaxLines - 1);
  for (int i = 0; i < record->lignes; i++) noteLine(&record->ordonnance[i], formLine(kLinesY, i));
}

static void showDrug(Form *form) {
  formShowText(form, kNom, drug.name);
  formShowText(form, kForme, drug.form);
  formShowText(form, kVoie, drug.route);
}

/* Keeps the speciality up to date while its letters are typed; what is typed over it goes. */
static void keepUpToDate(Form *form) {
  switch (form->item) {
    case kFirstText + kLettres:
      findDrug(form->texts[kLettres], &drug);
      showDrug(form);
      break;
    case kFirstPush + kSuivant:
      findNextDrug(form->texts[kLettres], &drug);
      showDrug(form);
      break;
    case kFirstText + kNom:
    case kFirstText + kForme:
    case kFirstText + kVoie:
      showDrug(form);
      break;
    default:
      break;
  }
}

static Prescription enteredLine(void) {
  Prescription line = {.days = 0};
  memcpy(line.drug, drug.code, sizeof line.drug);
  TexteDlgBox_retrieve(kPosologie, line.dose, sizeof line.dose);
  IntDlgBox_retrieve(kJours, &line.days);
  return line;
}

static const char *keepEntered(const Form *form) {
  Record next = *edited;
  (void)form;
  next.ordonnance[next.lignes++] = enteredLine();
  if (!saveRecord(&next)) return "L’ordonnance n’a pas pu être enregistrée.";
  *edited = next;
  return NULL;
}

static int enterLine(Record *record) {
  const FormFields fields = {.texts = kTexts, .ints = kInts, .pushes = kPushes};
  char title[32];
  edited = record;
  memset(&drug, 0, sizeof drug);
  formBegin(kWidth, kHeight, fields, "Prescrire", "Terminer", keepUpToDate, keepEntered);
  defineDrug();
  defineDose();
  defineLines(record);
  snprintf(title, sizeof title, "Ordonnance, ligne %d", record->lignes + 1);
  return formRun(title);
}

void enterPrescription(Record *record) {
  if (record->lignes == kMaxLines &&
      agreesToLose("Ordonnance", "L’ordonnance a déjà %d lignes.\rEn commencer une nouvelle\u00A0?",
                   kMaxLines))
    record->lignes = 0;
  while (record->lignes < kMaxLines && enterLine(record)) continue;
}
