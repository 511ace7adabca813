/* SPDX-License-Identifier: MIT */
/* Settings: a section of a profile, and the dialog that changes it. */
#include "settings.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "form.h"
#include "french.h"

static const char kProfile[] = "Cabinet:fiche.ini";
static const char kPractice[] = "Cabinet", kMenu[] = "Menu";

/* ---- The profile ---- */

static void readText(const char *key, const char *usual, char *text, int size) {
  GetPrivateProfileString(kPractice, key, french(usual), text, size, kProfile);
}

static double readReal(const char *key, const char *usual) {
  char text[32];
  double value = 0;
  readText(key, usual, text, sizeof text);
  realcod_d_sup0(text, &value);
  return value;
}

void readSettings(Settings *settings) {
  readText("nom", "Cabinet médical", settings->cabinet, sizeof settings->cabinet);
  readText("praticien", "", settings->praticien, sizeof settings->praticien);
  readText("adresse", "", settings->adresse, sizeof settings->adresse);
  readText("telephone", "", settings->telephone, sizeof settings->telephone);
  settings->honoraires = readReal("honoraires", "30");
  settings->confirmer = GetPrivateProfileInt(kMenu, "confirmer", 0, kProfile);
}

/* One "key=value" line more of a section's text. A bracket in it would end the section. */
static void addText(char *lines, size_t size, const char *key, const char *value) {
  size_t used = strlen(lines);
  snprintf(lines + used, size - used, "%s%s=%s", used > 0 ? "\r\n" : "", key, value);
  for (char *bracket = lines + used; (bracket = strchr(bracket, '[')) != NULL;) *bracket = '(';
}

int keepSettings(const Settings *settings) {
  char lines[512] = "", fee[32];
  realdco_d(settings->honoraires, fee, sizeof fee, 2);
  addText(lines, sizeof lines, "nom", settings->cabinet);
  addText(lines, sizeof lines, "praticien", settings->praticien);
  addText(lines, sizeof lines, "adresse", settings->adresse);
  addText(lines, sizeof lines, "telephone", settings->telephone);
  addText(lines, sizeof lines, "honoraires", fee);
  return WritePrivateProfileSection(kPractice, lines, kProfile) &&
         WritePrivateProfileString(kMenu, "confirmer", settings->confirmer ? "1" : "0", kProfile);
}

/* ---- The dialog ---- */

enum { kCabinet, kPraticien, kAdresse, kTelephone, kTexts };
enum { kHonoraires, kNums };
enum { kConfirmer, kBools };
enum {
  kRankCabinet,
  kRankPraticien,
  kRankAdresse,
  kRankTelephone,
  kRankHonoraires,
  kRankConfirmer
};

/* The layout, in dialog units. */
enum { kWidth = 260, kHeight = 176, kLabel = 16, kField = 76, kWide = 164 };
enum { kPracticeY = 8, kUseY = 98 };

static void readBack(Settings *settings) {
  TexteDlgBox_retrieve(kCabinet, settings->cabinet, sizeof settings->cabinet);
  TexteDlgBox_retrieve(kPraticien, settings->praticien, sizeof settings->praticien);
  TexteDlgBox_retrieve(kAdresse, settings->adresse, sizeof settings->adresse);
  TexteDlgBox_retrieve(kTelephone, settings->telephone, sizeof settings->telephone);
  NumDlgBox_retrieve(kHonoraires, &settings->honoraires);
  BoolDlgBox_retrieve(kConfirmer, &settings->confirmer);
}

static const char *keepEntered(const Form *form) {
  Settings settings;
  (void)form;
  readBack(&settings);
  return keepSettings(&settings) ? NULL : "Les réglages n’ont pas pu être enregistrés.";
}

static void definePractice(const Settings *settings) {
  formGroup("Cabinet", 8, kPracticeY, kWidth - 16, 4);
  formLabel("Nom", kLabel, formLine(kPracticeY, 0), 58);
  formText(kCabinet, kField, formLine(kPracticeY, 0), kWide, kRankCabinet, settings->cabinet,
           sizeof settings->cabinet, 1);
  formLabel("Praticien", kLabel, formLine(kPracticeY, 1), 58);
  formText(kPraticien, kField, formLine(kPracticeY, 1), kWide, kRankPraticien, settings->praticien,
           sizeof settings->praticien, 0);
  formLabel("Adresse", kLabel, formLine(kPracticeY, 2), 58);
  formText(kAdresse, kField, formLine(kPracticeY, 2), kWide, kRankAdresse, settings->adresse,
           sizeof settings->adresse, 0);
  formLabel("Téléphone", kLabel, formLine(kPracticeY, 3), 58);
  formText(kTelephone, kField, formLine(kPracticeY, 3), 80, kRankTelephone, settings->telephone,
           sizeof settings->telephone, 0);
}

static void defineUse(const Settings *settings) {
  formGroup("Application", 8, kUseY, kWidth - 16, 2);
  formLabel("Consultation (€)", kLabel, formLine(kUseY, 0), 58);
  NumDlgBox_set_geo(kHonoraires, kField, formLine(kUseY, 0), 40, kLine, kRankHonoraires);
  NumDlgBox_set_nchiff(kHonoraires, 2);
  NumDlgBox_set(kHonoraires, settings->honoraires, KorvelNotNegative);
  BoolDlgBox_set_geo(kConfirmer, french("Demander avant de quitter"), kLabel, formLine(kUseY, 1),
                     140, kLine, kRankConfirmer);
  BoolDlgBox_set(kConfirmer, settings->confirmer);
}

void enterSettings(void) {
  const FormFields fields = {.texts = kTexts, .nums = kNums, .bools = kBools};
  Settings settings;
  readSettings(&settings);
  formBegin(kWidth, kHeight, fields, "OK", "Annuler", NULL, keepEntered);
  definePractice(&settings);
  defineUse(&settings);
  formRun(french("Réglages"));
}
