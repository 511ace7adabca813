#include "entry.h"

#include <korvel/korvel.h>

#include <string.h>

#include "french.h"

/* The fields of each type, in the order of their index. */
enum { kNom, kPrenom, kCivilite, kSexe, kPraticien, kTexts };
enum { kEnfants, kCode, kInts };
enum { kPoids, kTaille, kImc, kNums };
enum { kNaissance, kDates };
enum { kSuivi, kAccord, kBools };
enum { kCalculer, kPushes };

/* First item number of each type: the numbers by which the callbacks know the fields. */
enum {
  kFirstText = 100,
  kFirstInt = 200,
  kFirstNum = 300,
  kFirstDate = 400,
  kFirstBool = 500,
  kFirstPush = 600
};

/* The order in which Tab walks through the fields. */
enum {
  kRankNom,
  kRankPrenom,
  kRankCivilite,
  kRankSexe,
  kRankNaissance,
  kRankPraticien,
  kRankEnfants,
  kRankPoids,
  kRankTaille,
  kRankImc,
  kRankCalculer,
  kRankCode,
  kRankSuivi,
  kRankAccord
};

/* Columns and heights of the layout, in dialog units. */
enum { kLabel = 16, kField = 76, kLabelWidth = 56, kLine = 12 };

static int statics;

static void addStatic(const char *text, int x, int y, int cx, int cy, int type) {
  StaticDlgBox_set(statics, french(text));
  StaticDlgBox_set_geo(statics, x, y, cx, cy);
  StaticDlgBox_set_type(statics, type);
  statics++;
}

static void addLabel(const char *text, int x, int y) {
  addStatic(text, x, y, kLabelWidth, kLine, 0);
}

static void defineIdentity(const Record *record) {
  addStatic("Identité", 8, 8, 264, 94, -1);
  addStatic("", 240, 22, 20, 20, 1);

  addLabel("Nom", kLabel, 22);
  TexteDlgBox_set_geo(kNom, kField, 22, 90, kLine, kRankNom);
  TexteDlgBox_set(kNom, record->nom);
  TexteDlgBox_set_ncarac(kNom, (int)sizeof record->nom - 1);

  addLabel("Prénom", kLabel, 38);
  TexteDlgBox_set_geo(kPrenom, kField, 38, 90, kLine, kRankPrenom);
  TexteDlgBox_set(kPrenom, record->prenom);
  TexteDlgBox_set_ncarac(kPrenom, (int)sizeof record->prenom - 1);

  addLabel("Civilité", kLabel, 54);
  TexteDlgBox_set_geo(kCivilite, kField, 54, 60, kLine, kRankCivilite);
  TexteDlgBox_set_liste(kCivilite, french("Madame+Monsieur+Docteur+Maître"));
  TexteDlgBox_set(kCivilite, record->civilite);
  TexteDlgBox_mandatory(kCivilite, 0);

  addLabel("Sexe", 160, 54);
  TexteDlgBox_set_geo(kSexe, 186, 54, 74, 32, kRankSexe);
  TexteDlgBox_set_liste(kSexe, french("Féminin$Masculin"));
  TexteDlgBox_change_liste(kSexe);
  TexteDlgBox_set(kSexe, record->sexe);
  TexteDlgBox_mandatory(kSexe, 0);

  addLabel("Né(e) le", kLabel, 70);
  DateDlgBox_set_geo(kNaissance, kField, 70, 50, kLine, kRankNaissance);
  DateDlgBox_set_fvalid(kNaissance, intcod_l_date);
  if (record->naissance > 0) DateDlgBox_set(kNaissance, record->naissance, 1);

  addLabel("Praticien", kLabel, 86);
  TexteDlgBox_set_geo(kPraticien, kField, 86, 90, kLine, kRankPraticien);
  TexteDlgBox_set(kPraticien, record->praticien);
  TexteDlgBox_set_ncarac(kPraticien, (int)sizeof record->praticien - 1);
  TexteDlgBox_mandatory(kPraticien, 0);
}

static void defineMeasures(const Record *record) {
  addStatic("Mesures", 8, 110, 146, 76, -1);

  addLabel("Enfants", kLabel, 124);
  IntDlgBox_set_geo(kEnfants, kField, 124, 20, kLine, kRankEnfants);
  IntDlgBox_set(kEnfants, record->enfants, 1);

  addLabel("Poids (kg)", kLabel, 140);
  NumDlgBox_set_geo(kPoids, kField, 140, 30, kLine, kRankPoids);
  NumDlgBox_set_nchiff(kPoids, 1);
  NumDlgBox_set_fvalid(kPoids, realcod_d_ssup0);
  NumDlgBox_mandatory(kPoids, 0);
  if (record->poids > 0) NumDlgBox_set(kPoids, record->poids, 2);

  addLabel("Taille (m)", kLabel, 156);
  NumDlgBox_set_geo(kTaille, kField, 156, 30, kLine, kRankTaille);
  NumDlgBox_set_nchiff(kTaille, 2);
  NumDlgBox_set_fvalid(kTaille, realcod_d_ssup0);
  NumDlgBox_mandatory(kTaille, 0);
  if (record->taille > 0) NumDlgBox_set(kTaille, record->taille, 2);

  addLabel("IMC", kLabel, 172);
  NumDlgBox_set_geo(kImc, kField, 172, 30, kLine, kRankImc);
  NumDlgBox_set_nchiff(kImc, 1);
  NumDlgBox_mandatory(kImc, 0);
  double index = bodyMassIndex(record->poids, record->taille);
  if (index > 0) NumDlgBox_set(kImc, index, 0);
  PushDlgBox_set_geo(kCalculer, "Calculer", 110, 171, 38, 15, kRankCalculer);
}

static void defineAccess(const Record *record) {
  addStatic("Accès", 160, 110, 112, 56, -1);

  addLabel("Code d’accès", 168, 124);
  IntDlgBox_set_geo(kCode, 224, 124, 40, kLine, kRankCode);
  IntDlgBox_set_fvalid(kCode, intcod_l_sup0);
  IntDlgBox_mandatory(kCode, 0);
  IntDlgBox_password(kCode, 1);
  if (record->code > 0) IntDlgBox_set(kCode, record->code, -1);

  BoolDlgBox_set_geo(kSuivi, french("Suivi régulier"), 168, 140, 96, kLine, kRankSuivi);
  BoolDlgBox_set(kSuivi, record->suivi);
  BoolDlgBox_set_geo(kAccord, "Accord de transmission", 168, 154, 96, kLine, kRankAccord);
  BoolDlgBox_set(kAccord, record->accord);
}

/* Keeps the body-mass index up to date while weight and height are typed. */
static int keepIndexUpToDate(int item, int textsInUse, int firstText, char **texts, int textCount,
                             int boolsInUse, int firstBool, int *bools, int boolCount,
                             int intsInUse, int firstInt, int *ints, int intCount, int numsInUse,
                             int firstNum, double *nums, int numCount, int datesInUse,
                             int firstDate, int *dates, int dateCount, int *redisplay,
                             int capacity) {
  (void)textsInUse, (void)firstText, (void)texts, (void)textCount;
  (void)boolsInUse, (void)firstBool, (void)bools, (void)boolCount;
  (void)intsInUse, (void)firstInt, (void)ints, (void)intCount;
  (void)datesInUse, (void)firstDate, (void)dates, (void)dateCount;
  if (!numsInUse || numCount != kNums || capacity < 1) return 0;
  if (item != firstNum + kPoids && item != firstNum + kTaille && item != kFirstPush + kCalculer)
    return 0;
  nums[kImc] = bodyMassIndex(nums[kPoids], nums[kTaille]);
  redisplay[0] = nums[kImc] > 0 ? firstNum + kImc : -(firstNum + kImc);
  return 1;
}

static int today(void) {
  char text[9];
  int date = 0;
  ZRV_Get_Date_short(text);
  NUMToLong(text, 8, &date);
  return date;
}

/* Nobody is born tomorrow. */
static int refuseFutureBirth(WindowRef window, int textsInUse, char **texts, int textCount,
                             int boolsInUse, int *bools, int boolCount, int intsInUse, int *ints,
                             int intCount, int numsInUse, double *nums, int numCount,
                             int datesInUse, int *dates, int dateCount) {
  (void)window, (void)textsInUse, (void)texts, (void)textCount;
  (void)boolsInUse, (void)bools, (void)boolCount, (void)intsInUse, (void)ints, (void)intCount;
  (void)numsInUse, (void)nums, (void)numCount, (void)datesInUse, (void)dateCount;
  if (dates[kNaissance] <= today()) return 1;
  DlgBoxFinal_Erreur_set(french("La date de naissance est dans le futur."));
  printFrench(stderr, DlgBoxFinal_Erreur());
  fputc('\n', stderr);
  return 0;
}

static void defineDialog(const Record *record) {
  statics = 0;
  TailleDlgBox_set(280, 216);
  TexteDlgBox_param(kTexts, kFirstText);
  IntDlgBox_param(kInts, kFirstInt);
  NumDlgBox_param(kNums, kFirstNum);
  DateDlgBox_param(kDates, kFirstDate);
  BoolDlgBox_param(kBools, kFirstBool);
  PushDlgBox_param(kPushes, kFirstPush);
  StaticDlgBox_param(15);
  defineIdentity(record);
  defineMeasures(record);
  defineAccess(record);
  DlgBoxGlobal_set(keepIndexUpToDate);
  DlgBoxFinal_set(refuseFutureBirth);
}

static void readBack(Record *record) {
  TexteDlgBox_retrieve(kNom, record->nom, sizeof record->nom);
  TexteDlgBox_retrieve(kPrenom, record->prenom, sizeof record->prenom);
  TexteDlgBox_retrieve(kCivilite, record->civilite, sizeof record->civilite);
  TexteDlgBox_retrieve(kSexe, record->sexe, sizeof record->sexe);
  TexteDlgBox_retrieve(kPraticien, record->praticien, sizeof record->praticien);
  DateDlgBox_retrieve(kNaissance, &record->naissance);
  IntDlgBox_retrieve(kEnfants, &record->enfants);
  IntDlgBox_retrieve(kCode, &record->code);
  NumDlgBox_retrieve(kPoids, &record->poids);
  NumDlgBox_retrieve(kTaille, &record->taille);
  BoolDlgBox_retrieve(kSuivi, &record->suivi);
  BoolDlgBox_retrieve(kAccord, &record->accord);
}

int enterRecord(const char *title, Record *record) {
  defineDialog(record);
  if (!ZRVDlgBoxEx(title, 0)) return 0;
  readBack(record);
  return 1;
}
