/* SPDX-License-Identifier: MIT */
/* The largest dialog: all kinds of fields, codes looked up and an index computed while typing. */
#include "patient.h"

#include <stdio.h>
#include <string.h>

#include <korvel/korvel.h>

#include "doctors.h"
#include "form.h"
#include "french.h"
#include "message.h"
#include "professions.h"
#include "records.h"

/* The fields of each type, in the order of their index. */
enum {
  kNom,
  kPrenom,
  kCivilite,
  kSexe,
  kProfession,
  kCodeProfession,
  kPaysNaissance,
  kCommuneNaissance,
  kNomNaissance,
  kPays,
  kDepartement,
  kNomDepartement,
  kTexts
};
enum { kEnfants, kCode, kInts };
enum { kPoids, kTaille, kImc, kNums };
enum { kNaissance, kDates };
enum { kAutreCommune, kAutreMedecin, kSuivi, kAccord, kBools };
enum { kAjouter, kCalculer, kPushes };

/* The order in which Tab walks through the fields; those that show what was looked up or computed
   come last. */
enum {
  kRankNom,
  kRankPrenom,
  kRankCivilite,
  kRankSexe,
  kRankProfession,
  kRankAjouter,
  kRankNaissance,
  kRankPaysNaissance,
  kRankCommuneNaissance,
  kRankPays,
  kRankDepartement,
  kRankAutreCommune,
  kRankPoids,
  kRankTaille,
  kRankCalculer,
  kRankAutreMedecin,
  kRankEnfants,
  kRankCode,
  kRankSuivi,
  kRankAccord,
  kRankCodeProfession,
  kRankNomNaissance,
  kRankNomDepartement,
  kRankImc
};

/* The layout, in dialog units: the groups from left to right and from top to bottom, and the
   columns of labels and fields. */
enum { kWidth = 384, kHeight = 290, kLeft = 8, kInner = kWidth - 2 * kLeft };
enum { kIdentityY = 8, kBirthY = 82, kHomeY = 140, kLowerY = 198 };
enum { kMeasuresWidth = 148, kFollowUpX = kLeft + kMeasuresWidth + 8 };
enum { kLabel1 = 16, kField1 = 66, kLabel2 = 196, kField2 = 246 };
enum { kWide = 108, kNarrow = 34 };

static Record *edited;

static void defineIdentity(const Record *record) {
  int y = formLine(kIdentityY, 0);
  formGroup("Identité", kLeft, kIdentityY, kInner, 3);
  formLabel("Nom", kLabel1, y, 48);
  formText(kNom, kField1, y, kWide, kRankNom, record->nom, sizeof record->nom, 1);
  formLabel("Prénom", kLabel2, y, 48);
  formText(kPrenom, kField2, y, 90, kRankPrenom, record->prenom, sizeof record->prenom, 1);
  formIcon(346, y);

  y = formLine(kIdentityY, 1);
  formLabel("Civilité", kLabel1, y, 48);
  formPopUp(kCivilite, kField1, y, 60, kRankCivilite, record->civilite,
            french("Madame+Monsieur+Docteur+Maître"));
  formLabel("Sexe", kLabel2, y, 48);
  formPopUp(kSexe, kField2, y, 60, kRankSexe, record->sexe, french("Féminin+Masculin"));

  y = formLine(kIdentityY, 2);
  char code[8];
  professionCode(record->profession, code, sizeof code);
  formLabel("Profession", kLabel1, y, 48);
  formText(kProfession, kField1, y, kWide, kRankProfession, record->profession,
           sizeof record->profession, 0);
  formLabel("Code", kLabel2, y, 48);
  formText(kCodeProfession, kField2, y, 20, kRankCodeProfession, code, sizeof code, 0);
  formName(kFirstText + kCodeProfession, "Code de la profession");
  formPush(kAjouter, "Ajouter", kField2 + 26, y, 38, kRankAjouter);
}

static void defineBirth(const Record *record) {
  char country[kPlaceName], name[kPlaceName];
  int y = formLine(kBirthY, 0);
  countryName(record->paysNaissance, country, sizeof country);
  birthplaceName(record->communeNaissance, record->naissance, name, sizeof name);
  formGroup("Naissance", kLeft, kBirthY, kInner, 2);
  formLabel("Né(e) le", kLabel1, y, 48);
  DateDlgBox_set_geo(kNaissance, kField1, y, 50, kLine, kRankNaissance);
  DateDlgBox_set_fvalid(kNaissance, intcod_l_date);
  if (record->naissance > 0) DateDlgBox_set(kNaissance, record->naissance, KorvelCalendarDate);
  formLabel("Pays", kLabel2, y, 48);
  formPopUp(kPaysNaissance, kField2, y, 120, kRankPaysNaissance, country, countryChoices());
  formName(kFirstText + kPaysNaissance, "Pays de naissance");

  y = formLine(kBirthY, 1);
  formLabel("Code INSEE", kLabel1, y, 48);
  formText(kCommuneNaissance, kField1, y, kNarrow, kRankCommuneNaissance, record->communeNaissance,
           sizeof record->communeNaissance, 0);
  formLabel("Commune", kLabel2, y, 48);
  formText(kNomNaissance, kField2, y, 120, kRankNomNaissance, name, sizeof name,
           *record->communeNaissance != '\0');
  formName(kFirstText + kNomNaissance, "Commune de naissance");
}

/* The commune itself is chosen in a dialog after this one. */
static void defineHome(const Record *record) {
  char country[kPlaceName], name[kPlaceName], commune[kPlaceName];
  int y = formLine(kHomeY, 0);
  countryName(record->pays, country, sizeof country);
  departmentName(record->departement, name, sizeof name);
  formGroup("Domicile", kLeft, kHomeY, kInner, 2);
  formLabel("Pays", kLabel1, y, 48);
  formPopUp(kPays, kField1, y, 120, kRankPays, country, countryChoices());
  formLabel("Commune", kLabel2, y, 48);
  if (communeName(record->commune, commune, sizeof commune))
    formNote(commune, kField2, y, 120);
  else
    formLabel("à choisir", kField2, y, 120);

  y = formLine(kHomeY, 1);
  formLabel("Département", kLabel1, y, 50);
  formText(kDepartement, kField1, y, 20, kRankDepartement, record->departement,
           sizeof record->departement, 0);
  formText(kNomDepartement, kField1 + 24, y, 96, kRankNomDepartement, name, sizeof name,
           *record->departement != '\0');
  formName(kFirstText + kNomDepartement, "Nom du département");
  BoolDlgBox_set_geo(kAutreCommune, french("Choisir la commune"), kLabel2, y, 120, kLine,
                     kRankAutreCommune);
  BoolDlgBox_set(kAutreCommune, !*record->commune);
}

static void defineMeasures(const Record *record) {
  int y = formLine(kLowerY, 0);
  formGroup("Mesures", kLeft, kLowerY, kMeasuresWidth, 3);
  formLabel("Poids (kg)", kLabel1, y, 48);
  NumDlgBox_set_geo(kPoids, kField1, y, kNarrow, kLine, kRankPoids);
  NumDlgBox_set_nchiff(kPoids, 1);
  NumDlgBox_set_fvalid(kPoids, realcod_d_ssup0);
  NumDlgBox_mandatory(kPoids, 0);
  if (record->poids > 0) NumDlgBox_set(kPoids, record->poids, KorvelPositive);

  y = formLine(kLowerY, 1);
  formLabel("Taille (m)", kLabel1, y, 48);
  NumDlgBox_set_geo(kTaille, kField1, y, kNarrow, kLine, kRankTaille);
  NumDlgBox_set_nchiff(kTaille, 2);
  NumDlgBox_set_fvalid(kTaille, realcod_d_ssup0);
  NumDlgBox_mandatory(kTaille, 0);
  if (record->taille > 0) NumDlgBox_set(kTaille, record->taille, KorvelPositive);

  y = formLine(kLowerY, 2);
  double index = bodyMassIndex(record->poids, record->taille);
  formLabel("IMC", kLabel1, y, 48);
  NumDlgBox_set_geo(kImc, kField1, y, kNarrow, kLine, kRankImc);
  NumDlgBox_set_nchiff(kImc, 1);
  NumDlgBox_mandatory(kImc, 0);
  if (index > 0) NumDlgBox_set(kImc, index, KorvelAnyValue);
  formPush(kCalculer, "Calculer", kField1 + kNarrow + 6, y, 40, kRankCalculer);
}

static void defineFollowUp(const Record *record) {
  const int label = kFollowUpX + 8, field = label + 46, right = field + 60;
  int y = formLine(kLowerY, 0);
  formGroup("Suivi", kFollowUpX, kLowerY, kWidth - kLeft - kFollowUpX, 3);
  char doctor[64];
  doctorName(record->medecin, doctor, sizeof doctor);
  formLabel("Médecin", label, y, 44);
  formNote(*doctor ? doctor : french("à choisir"), field, y, 90);
  BoolDlgBox_set_geo(kAutreMedecin, french("Choisir"), field + 98, y, 52, kLine, kRankAutreMedecin);
  BoolDlgBox_set(kAutreMedecin, !*record->medecin);
  formName(kFirstBool + kAutreMedecin, "Choisir le médecin");

  y = formLine(kLowerY, 1);
  formLabel("Enfants", label, y, 44);
  IntDlgBox_set_geo(kEnfants, field, y, 20, kLine, kRankEnfants);
  IntDlgBox_set(kEnfants, record->enfants, KorvelNotNegative);
  formLabel("Code d’accès", right, y, 48);
  IntDlgBox_set_geo(kCode, right + 50, y, 40, kLine, kRankCode);
  IntDlgBox_set_fvalid(kCode, intcod_l_sup0);
  IntDlgBox_mandatory(kCode, 0);
  IntDlgBox_password(kCode, 1);
  if (record->code > 0) IntDlgBox_set(kCode, record->code, KorvelKeepValidation);

  y = formLine(kLowerY, 2);
  BoolDlgBox_set_geo(kSuivi, french("Suivi régulier"), label, y, 90, kLine, kRankSuivi);
  BoolDlgBox_set(kSuivi, record->suivi);
  BoolDlgBox_set_geo(kAccord, french("Accord de transmission"), right, y, 92, kLine, kRankAccord);
  BoolDlgBox_set(kAccord, record->accord);
}

/* A code is only good if a name is found for it: until then the entry cannot be accepted. */
static void showNameOfCode(Form *form, int codeField, int nameField, const char *name) {
  TexteDlgBox_mandatory(nameField, *form->texts[codeField] != '\0');
  formShowText(form, nameField, name);
}

static void showBirthplace(Form *form) {
  char name[kPlaceName];
  birthplaceName(form->texts[kCommuneNaissance], form->dates[kNaissance], name, sizeof name);
  showNameOfCode(form, kCommuneNaissance, kNomNaissance, name);
}

static void showDepartment(Form *form) {
  char name[kPlaceName];
  departmentName(form->texts[kDepartement], name, sizeof name);
  showNameOfCode(form, kDepartement, kNomDepartement, name);
}

static void showProfessionCode(Form *form) {
  char code[8];
  professionCode(form->texts[kProfession], code, sizeof code);
  formShowText(form, kCodeProfession, code);
}

static void showIndex(Form *form) {
  form->nums[kImc] = bodyMassIndex(form->nums[kPoids], form->nums[kTaille]);
  if (form->nums[kImc] > 0)
    formShow(form, kFirstNum + kImc);
  else
    formClear(form, kFirstNum + kImc);
}

static void addTypedProfession(Form *form) {
  const char *profession = form->texts[kProfession];
  char code[kProfessionCode];
  if (professionCode(profession, code, sizeof code)) return;
  if (backUpProfessions() && addProfession(profession))
    showProfessionCode(form);
  else
    warn("Professions", "«\u00A0%s\u00A0» n’a pas pu être ajouté à la table des professions.",
         profession);
}

/* Keeps what is looked up and computed up to date while it is typed; what is typed over it goes. */
static void keepUpToDate(Form *form) {
  switch (form->item) {
    case kFirstPush + kAjouter:
      addTypedProfession(form);
      break;
    case kFirstText + kProfession:
    case kFirstText + kCodeProfession:
      showProfessionCode(form);
      break;
    case kFirstDate + 3 * kNaissance:
    case kFirstText + kCommuneNaissance:
    case kFirstText + kNomNaissance:
      showBirthplace(form);
      break;
    case kFirstText + kDepartement:
    case kFirstText + kNomDepartement:
      showDepartment(form);
      break;
    case kFirstNum + kPoids:
    case kFirstNum + kTaille:
    case kFirstPush + kCalculer:
      showIndex(form);
      break;
    default:
      break;
  }
}

/* A country that was not in the pop-up is still the record's. */
static void readCountry(int i, char *code) {
  char name[kPlaceName] = "", chosen[kCountryCode];
  TexteDlgBox_retrieve(i, name, sizeof name);
  if (countryCode(name, chosen, sizeof chosen)) memcpy(code, chosen, sizeof chosen);
}

static void readCode(int i, char *code, int size) {
  char text[16] = "";
  TexteDlgBox_retrieve(i, text, sizeof text);
  capitals(text, code, size);
}

static void readIdentity(Record *record) {
  TexteDlgBox_retrieve(kNom, record->nom, sizeof record->nom);
  TexteDlgBox_retrieve(kPrenom, record->prenom, sizeof record->prenom);
  TexteDlgBox_retrieve(kCivilite, record->civilite, sizeof record->civilite);
  TexteDlgBox_retrieve(kSexe, record->sexe, sizeof record->sexe);
  TexteDlgBox_retrieve(kProfession, record->profession, sizeof record->profession);
  DateDlgBox_retrieve(kNaissance, &record->naissance);
  readCountry(kPaysNaissance, record->paysNaissance);
  readCode(kCommuneNaissance, record->communeNaissance, sizeof record->communeNaissance);
}

static void readHome(Record *record) {
  readCountry(kPays, record->pays);
  readCode(kDepartement, record->departement, sizeof record->departement);
  if (!isCommuneOf(record->commune, record->departement)) record->commune[0] = '\0';
}

static void readBack(Record *record) {
  readIdentity(record);
  readHome(record);
  IntDlgBox_retrieve(kEnfants, &record->enfants);
  IntDlgBox_retrieve(kCode, &record->code);
  NumDlgBox_retrieve(kPoids, &record->poids);
  NumDlgBox_retrieve(kTaille, &record->taille);
  BoolDlgBox_retrieve(kSuivi, &record->suivi);
  BoolDlgBox_retrieve(kAccord, &record->accord);
}

/* Nobody is born tomorrow. */
static const char *keepEntered(const Form *form) {
  Record next = *edited;
  if (form->dates[kNaissance] > today()) return "La date de naissance est dans le futur.";
  readBack(&next);
  if (!saveRecord(&next)) return "La fiche n’a pas pu être enregistrée.";
  *edited = next;
  return NULL;
}

static void defineDialog(const Record *record) {
  const FormFields fields = {kTexts, kInts, kNums, kDates, kBools, kPushes};
  formBegin(kWidth, kHeight, fields, "OK", "Annuler", keepUpToDate, keepEntered);
  defineIdentity(record);
  defineBirth(record);
  defineHome(record);
  defineMeasures(record);
  defineFollowUp(record);
}

int enterPatient(const char *title, Record *record, PatientWishes *wishes) {
  char caption[140];
  snprintf(caption, sizeof caption, "%s", title);
  edited = record;
  defineDialog(record);
  if (!formRun(caption)) return 0;
  BoolDlgBox_retrieve(kAutreCommune, &wishes->commune);
  BoolDlgBox_retrieve(kAutreMedecin, &wishes->doctor);
  return 1;
}
