/* SPDX-License-Identifier: MIT */
/* The dialog of a visit, with the note drawn into its window as it is typed. */
#include "visit.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "form.h"
#include "french.h"
#include "message.h"
#include "note.h"
#include "practice.h"
#include "printing.h"
#include "records.h"
#include "settings.h"
#include "textfile.h"

enum { kMotif, kTension, kConclusion, kTexts };
enum { kPouls, kInts };
enum { kPoids, kTemperature, kNums };
enum { kDate, kDates };
enum { kConsultation, kTrace, kVaccin, kImprimer, kBools, kActsOffered = kImprimer };
enum { kApercu, kPushes };
enum {
  kRankDate,
  kRankMotif,
  kRankPoids,
  kRankTension,
  kRankPouls,
  kRankTemperature,
  kRankConclusion,
  kRankConsultation,
  kRankTrace,
  kRankVaccin,
  kRankApercu,
  kRankImprimer
};

/* The layout, in dialog units; the note is to the right of the fields. */
enum { kLabel = 16, kField = 66, kFields = 196, kNote = kFields + 16 };
enum { kWidth = kNote + kNoteWidth / 2 + 8, kHeight = 384, kTop = 8 };
enum { kVisitY = kTop, kExamY = 66, kEndY = 156, kActsY = 214 };
enum { kLines = 36 }; /* the height of three lines of text */

static const char kFolder[] = "Cabinet:notes", kCaption[] = "Note de visite";

/* Its fee is a setting of the practice; the other fees are invented. */
static const struct {
  const char *name;
  double fee;
} kActs[kActsOffered] = {
    {"Consultation", 0}, {"Électrocardiogramme", 14.26}, {"Vaccination", 6.30}};

static Record *edited;
static Settings settings;

/* ---- What was entered ---- */

static void addAct(Visit *visit, int i) {
  visit->act[visit->acts].name = kActs[i].name;
  visit->act[visit->acts].fee = i == kConsultation ? settings.honoraires : kActs[i].fee;
  visit->acts++;
}

static Visit enteredVisit(void) {
  Visit visit = {.acts = 0};
  int isDone = 0;
  DateDlgBox_retrieve(kDate, &visit.date);
  TexteDlgBox_retrieve(kMotif, visit.motif, sizeof visit.motif);
  TexteDlgBox_retrieve(kTension, visit.tension, sizeof visit.tension);
  TexteDlgBox_retrieve(kConclusion, visit.conclusion, sizeof visit.conclusion);
  IntDlgBox_retrieve(kPouls, &visit.pouls);
  NumDlgBox_retrieve(kPoids, &visit.poids);
  NumDlgBox_retrieve(kTemperature, &visit.temperature);
  for (int i = 0; i < kActsOffered; i++) {
    BoolDlgBox_retrieve(i, &isDone);
    if (isDone) addAct(&visit, i);
  }
  return visit;
}

/* ---- The note ---- */

/* While a dialog is up, and already while it is filled, its port is the current one. */
static void showEntered(void) {
  const Visit visit = enteredVisit();
  CGrafPtr port = NULL;
  GetPort(&port);
  drawNote(port, Dlg_CoefX(kNote), Dlg_CoefY(kTop) + 4, &visit, edited, &settings);
}

/* An optional number is read whenever it is typed into, but not when it is emptied. */
static int isRead;

static int in(int item, int first, int count) { return item >= first && item < first + count; }

static void forgetEmptied(Form *form) {
  if (in(form->item, kFirstInt, kInts)) form->ints[form->item - kFirstInt] = 0;
  if (in(form->item, kFirstNum, kNums)) form->nums[form->item - kFirstNum] = 0;
}

/* Not called while the field that is typed into is not acceptable: a date or a number is shown by
   what reads it. */
static void showNote(Form *form) {
  if (!isRead) forgetEmptied(form);
  isRead = 0;
  showEntered();
}

static int followed(int refusal) {
  isRead = !refusal;
  if (refusal) showEntered();
  return refusal;
}

/* What is not acceptable is no number, whatever stood there before. */
static int acceptWhole(char *text, int *value) {
  const int refusal = intcod_i_ssup0(text, value);
  if (refusal) *value = 0;
  return followed(refusal);
}

static int acceptNumber(char *text, double *value) {
  const int refusal = realcod_d_ssup0(text, value);
  if (refusal) *value = 0;
  return followed(refusal);
}

/* Called when the date is shown for the first time, too, behind the numbers: the note is seen from
   the beginning. */
static int acceptDate(char *text, int *date) {
  const int refusal = intcod_l_date(text, date);
  isRead = 0;
  showEntered();
  return refusal;
}

enum { kPath = 64 };

static void notePath(const Visit *visit, const char *type, char *path) {
  snprintf(path, kPath, "%s:%04d-%d.%s", kFolder, edited->number, visit->date, type);
}

static int saveNote(const Visit *visit) {
  char path[kPath], posix[256];
  CGrafPtr page = KorvelImagePort(kNoteWidth, kNoteHeight);
  drawNote(page, 0, 0, visit, edited, &settings);
  notePath(visit, "png", path);
  int isSaved = haveFolder(kFolder) && MAC2UNIX(path, posix) > 0 && KorvelPortSave(page, posix);
  KorvelPortRelease(page);
  return isSaved;
}

/* What a search of the notes finds. */
static int saveText(const Visit *visit) {
  char path[kPath], text[sizeof visit->motif + sizeof visit->conclusion + 8];
  notePath(visit, "txt", path);
  snprintf(text, sizeof text, "%s\r\n%s\r\n", visit->motif, visit->conclusion);
  return writeTextFile(path, text);
}

static const char *keepEntered(const Form *form) {
  const Visit visit = enteredVisit();
  Record next = *edited;
  (void)form;
  if (visit.date > today()) return "La date de la visite est dans le futur.";
  if (!saveNote(&visit) || !saveText(&visit)) return "La note n’a pas pu être enregistrée.";
  if (visit.poids > 0) next.poids = visit.poids;
  if (!saveRecord(&next)) return "La fiche n’a pas pu être enregistrée.";
  *edited = next;
  return NULL;
}

/* ---- The dialog ---- */

static void defineVisit(void) {
  formGroup("Visite", 8, kVisitY, kFields - 8, 2);
  formLabel("Date", kLabel, formLine(kVisitY, 0), 44);
  DateDlgBox_set_geo(kDate, kField, formLine(kVisitY, 0), 50, kLine, kRankDate);
  DateDlgBox_set(kDate, today(), KorvelCalendarDate);
  DateDlgBox_set_fvalid(kDate, acceptDate);
  formLabel("Motif", kLabel, formLine(kVisitY, 1), 44);
  formText(kMotif, kField, formLine(kVisitY, 1), 120, kRankMotif, "", sizeof((Visit *)0)->motif, 1);
}

static void defineNumber(int i, const char *label, int line, int rank) {
  formLabel(label, kLabel, formLine(kExamY, line), 50);
  NumDlgBox_set_geo(i, kField, formLine(kExamY, line), 36, kLine, rank);
  NumDlgBox_set_nchiff(i, 1);
  NumDlgBox_set_fvalid(i, acceptNumber);
  NumDlgBox_mandatory(i, 0);
}

static void defineExamination(void) {
  formGroup("Examen", 8, kExamY, kFields - 8, 4);
  defineNumber(kPoids, "Poids (kg)", 0, kRankPoids);
  if (edited->poids > 0) NumDlgBox_set(kPoids, edited->poids, KorvelKeepValidation);
  formLabel("Tension", kLabel, formLine(kExamY, 1), 44);
  formText(kTension, kField, formLine(kExamY, 1), 36, kRankTension, "", sizeof((Visit *)0)->tension,
           0);
  formLabel("Pouls", kLabel, formLine(kExamY, 2), 44);
  IntDlgBox_set_geo(kPouls, kField, formLine(kExamY, 2), 36, kLine, kRankPouls);
  IntDlgBox_set_fvalid(kPouls, acceptWhole);
  IntDlgBox_mandatory(kPouls, 0);
  defineNumber(kTemperature, "Température", 3, kRankTemperature);
}

static void defineEnd(void) {
  formGroup("Conclusion", 8, kEndY, kFields - 8, 2);
  formLines(kConclusion, kLabel, formLine(kEndY, 0), 170, kLines, kRankConclusion,
            sizeof((Visit *)0)->conclusion);
  formGroup("Actes", 8, kActsY, kFields - 8, kActsOffered);
  for (int i = 0; i < kActsOffered; i++) {
    BoolDlgBox_set_geo(i, french(kActs[i].name), kLabel, formLine(kActsY, i), 120, kLine,
                       kRankConsultation + i);
    BoolDlgBox_set(i, i == kConsultation);
  }
}

static void defineDialog(void) {
  const FormFields fields = {kTexts, kInts, kNums, kDates, kBools, kPushes};
  formBegin(kWidth, kHeight, fields, "Enregistrer", "Annuler", showNote, keepEntered);
  defineVisit();
  defineExamination();
  defineEnd();
  formPush(kApercu, "Aperçu", kFields - 60, formLine(kActsY, kActsOffered) + 10, 52, kRankApercu);
  BoolDlgBox_set_geo(kImprimer, french("Imprimer la note"), kLabel,
                     formLine(kActsY, kActsOffered) + 10, 100, kLine, kRankImprimer);
  BoolDlgBox_set(kImprimer, 0);
}

static void printNote(const Visit *visit) {
  char path[kPath];
  notePath(visit, "pdf", path);
  enterPrinting(visit, edited, &settings, path);
}

void enterVisit(Record *record) {
  char title[200], name[140];
  int isPrinted = 0;
  edited = record;
  readSettings(&settings);
  fullName(record, name, sizeof name);
  snprintf(title, sizeof title, french("%s\u00A0: %s"), kCaption, name);
  defineDialog();
  if (!formRun(title)) return;
  const Visit visit = enteredVisit();
  BoolDlgBox_retrieve(kImprimer, &isPrinted);
  tell(kCaption, "La note de %s est dans le dossier des notes.", name);
  if (isPrinted) printNote(&visit);
}
