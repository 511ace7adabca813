/* SPDX-License-Identifier: MIT */
/* What each entry of the menu does, one dialog after another. */
#include "tasks.h"

#include <string.h>

#include "chooser.h"
#include "doctors.h"
#include "french.h"
#include "home.h"
#include "import.h"
#include "message.h"
#include "patient.h"
#include "prescription.h"
#include "records.h"
#include "search.h"
#include "settings.h"
#include "upkeep.h"
#include "visit.h"

/* What was chosen is not lost while there is hope to save it. */
static void keepOrAskAgain(Record *record) {
  while (!saveRecord(record) &&
         agrees("Fiche", "La fiche n’a pas pu être enregistrée.\rEssayer encore\u00A0?"))
    continue;
}

static void chooseDoctorOf(Record *record) {
  if (chooseDoctor(record->medecin, sizeof record->medecin)) keepOrAskAgain(record);
}

/* The dialogs of a record, one after the other. */
static void enterRecord(const char *title, Record *record) {
  PatientWishes wishes = {0, 0};
  if (!enterPatient(title, record, &wishes)) return;
  if (wishes.commune || !*record->commune) enterHome(record);
  if (wishes.doctor) chooseDoctorOf(record);
}

void newRecord(void) {
  Record record = emptyRecord();
  enterRecord(french("Nouvelle fiche"), &record);
}

void editRecord(void) {
  Record record;
  char name[140];
  if (!chooseRecord(&record)) return;
  fullName(&record, name, sizeof name);
  enterRecord(name, &record);
}

void assignDoctor(void) {
  Record record;
  char card[160], name[140];
  if (!chooseRecord(&record)) return;
  fullName(&record, name, sizeof name);
  if (doctorCard(record.medecin, card, sizeof card) &&
      !agrees("Médecin traitant", "Le médecin traitant de %s est %s.\rEn choisir un autre\u00A0?",
              name, card))
    return;
  chooseDoctorOf(&record);
}

void prescribe(void) {
  Record record;
  if (chooseRecord(&record)) enterPrescription(&record);
}

void noteVisit(void) {
  Record record;
  if (chooseRecord(&record)) enterVisit(&record);
}

void keepProfessions(void) { enterProfessions(); }

void changeSettings(void) { enterSettings(); }

void importNewTable(void) { importTable(); }

void searchAllNotes(void) {
  Record record;
  char name[140];
  if (!searchNotes(&record)) return;
  fullName(&record, name, sizeof name);
  enterRecord(name, &record);
}
