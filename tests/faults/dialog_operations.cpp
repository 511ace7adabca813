// SPDX-License-Identifier: MIT
// The functions of dialogs and messages. What is shown, and what the person does, is a script.
#include <cstring>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>
#include <korvel/messages.h>
#include <korvel/tables.h>

#include "messages/progress.h"
#include "tests/dialogs/dialog_fixture.h"
#include "tests/faults/operations.h"
#include "tests/tables/tables.h"

namespace korvel::faults {
namespace {

using namespace korvel::test;
using namespace korvel::faults::place;

using Item = platform::ItemKind;

int ruleFor(char *text, int *value) { return intcod_i(text, value); }
int realRule(char *text, double *value) { return realcod_d(text, value); }

char choices[] = "un+deux";
constexpr int kStops[] = {10, 20, 0};

// Fields of every kind: three texts (one secret, one a pop-up), two lists of rows among them, an
// integer, two numbers, a date, a check box, a push button, a group box and a text.
enum { kName, kSecret, kChoice, kRows, kTexts };

int changeOthers(int item, int, int, char **texts, int, int, int, int *, int, int, int, int *ints,
                 int, int, int, double *nums, int, int, int, int *, int, int *redisplay,
                 int capacity) {
  if (capacity < 2 || item != 200) return 0;
  nums[0] = ints[0] / 4.0;
  TexteDlgBox_set_liste(kChoice, "Madame+Monsieur+Docteur");
  ZRVDlgBox_texte_set_liste(kChoice);
  ZRVDlgBox_texte_set(kChoice, "Docteur");
  ZRVDlgBox_num_set(1, "7,25");
  ZRVDlgBox_bool_set(0, 1);
  ZRVDlgBox_int_set(1, 8);
  texts[kSecret][0] = 'x';
  redisplay[0] = 300;
  redisplay[1] = -301;
  return 2;
}

int refusals;

// Refuses at first, with a message.
int askAtEnd(WindowRef window, int, char **, int, int, int *, int, int, int *, int, int, double *,
             int, int, int *, int) {
  if (refusals++ == 0) {
    DlgBoxFinal_MessageBox(window, "Pas encore", "Fiche", KorvelStopIcon);
    return 0;
  }
  return 1;
}

void describeAs(bool isDrawn) {
  // A template numbers its items itself.
  const auto rank = [=](int r) { return isDrawn ? -1 : r; };
  refusals = 0;
  TailleDlgBox_set(200, 200);
  TexteDlgBox_param(kTexts, 100);
  IntDlgBox_param(2, 200);
  NumDlgBox_param(2, 300);
  DateDlgBox_param(1, 400);
  BoolDlgBox_param(1, 500);
  PushDlgBox_param(1, 600);
  StaticDlgBox_param(2);
  StaticDlgBox_set(0, "Nom");
  StaticDlgBox_set_geo(0, 8, 8, 48, 12);
  StaticDlgBox_set(1, "Groupe");
  StaticDlgBox_set_geo(1, 2, 2, 90, 90);
  StaticDlgBox_set_type(1, KorvelGroupBox);
  TexteDlgBox_set(kName, "\xC9lodie Durand");
  TexteDlgBox_set(kSecret, "");
  TexteDlgBox_mandatory(kSecret, 0);
  TexteDlgBox_password(kSecret, 1);
  TexteDlgBox_set_liste(kChoice, "Madame+Monsieur");
  TexteDlgBox_set(kChoice, "Madame");
  TexteDlgBox_set_liste(kRows, "un$deux");
  TexteDlgBox_change_liste(kRows);
  TexteDlgBox_set(kRows, "");
  TexteDlgBox_mandatory(kRows, 0);
  IntDlgBox_set(0, 12, KorvelPositive);
  IntDlgBox_set(1, 13, KorvelAnyValue);
  NumDlgBox_set(0, 1.5, KorvelNotNegative);
  NumDlgBox_set(1, 2.5, KorvelAnyValue);
  NumDlgBox_mandatory(1, 0);
  DateDlgBox_set(0, 20000229, KorvelCalendarDate);
  KorvelItemName(101, "Mot de passe");
  KorvelItemName(400, "N\xE9(e) le");
  DlgBoxGlobal_set(changeOthers);
  TexteDlgBox_set_geo(kName, 60, 8, 100, 12, rank(0));
  TexteDlgBox_set_geo(kSecret, 60, 24, 100, 12, rank(1));
  TexteDlgBox_set_geo(kChoice, 60, 88, 60, 12, rank(2));
  TexteDlgBox_set_geo(kRows, 60, 88, 60, 40, rank(3));
  IntDlgBox_set_geo(0, 60, 40, 40, 12, rank(4));
  IntDlgBox_set_geo(1, 60, 40, 40, 12, rank(5));
  NumDlgBox_set_geo(0, 60, 56, 40, 12, rank(6));
  NumDlgBox_set_geo(1, 110, 56, 40, 12, rank(7));
  DateDlgBox_set_geo(0, 60, 72, 50, 12, rank(8));
  BoolDlgBox_set_geo(0, "Coch\xE9", 60, 104, 80, 12, rank(9));
  PushDlgBox_set_geo(0, "Action", 60, 120, 60, 15, rank(10));
}

int act(WindowRef) { return 0; }

void describe() { describeAs(false); }

void fillIn(DialogScript &script, bool isDrawn) {
  const auto item = [=](int built, int drawn) { return isDrawn ? drawn : built; };
  script.type(item(3, 100), "Jos\u00E9phine")
      .type(item(4, 101), "abc")
      .choose(item(5, 102), "Monsieur")
      .clickRow(item(6, 103), 1)
      .replace(item(7, 200), "4")
      .replace(item(9, 300), "3,5")
      .replace(item(11, 400), "07")
      .click(item(14, 500));
}

// Answers the message of the refusal.
void expectBuilt() {
  describe();
  DlgBoxFinal_set(askAtEnd);
  DialogScript &script = desktop().expectDialog("Fiche");
  fillIn(script, false);
  script.press(15).pressReturn().pressReturn();
  desktop().expectDialog("Fiche").pressReturn();
}

void expectDrawn() {
  describeAs(true);
  Template drawn = describedTemplate("Fiche");
  DialogScript &script = desktop().expectDialog("Fiche");
  folder("dialogs");
  put("dialogs/fiche.ui", "");
  std::string_view resources = posix("");
  resources.copy(szResources, sizeof szResources - 1);
  desktop().setTemplate("fiche", drawn);
  fillIn(script, true);
  script.pressReturn();
}

Answer ran(int result) {
  double number = 0;
  NumDlgBox_retrieve(0, &number);
  return {result, TDB_pszBuffer[kName], number, DlgBox_hDlg == nullptr ? 1 : 0};
}

void expectMessage() { desktop().expectDialog("Titre").pressReturn(); }

void expectProgress() { desktop().expectDialog("Titre").pressEscape(); }

// The chooser of an application that finds a practitioner by initials.
void expectChooser() {
  put("MT.par", lines({"Praticiens", "Version: 1", "#DEBUT", "DUB,Dr Dubois",
                       "DUP,Dr Ana\xEFs Dupr\xE9", "AB,Dr Abel", "#FIN"}));
  desktop()
      .expectDialog("S\u00E9lection de praticien en base")
      .type(3, "DU")
      .clickRow(4, 1)
      .pressReturn();
}

char shown[64];
int number;
double real;

// A dialog that lacked memory for a hit may have been accepted all the same, or given up.
constexpr Operation kDialogs[] = {
    {"TexteDlgBox_param", describe,
     [] {
       return Answer{TexteDlgBox_param(2, 100), TDB_N};
     },
     "0", nullptr},
    {"TexteDlgBox_set", describe,
     [] {
       return Answer{TexteDlgBox_set(kName, "Abel"), TDB_pszBuffer[kName]};
     },
     "0", nullptr},
    {"TexteDlgBox_set_geo", describe,
     [] {
       return Answer{TexteDlgBox_set_geo(kName, 1, 2, 3, 4, 5), TDB_rk[kName]};
     },
     "0", nullptr},
    {"TexteDlgBox_set_ncarac", describe,
     [] {
       return Answer{TexteDlgBox_set_ncarac(kName, 7), TDB_iCarac[kName]};
     },
     "0", nullptr},
    {"TexteDlgBox_set_liste", describe,
     [] {
       return Answer{TexteDlgBox_set_liste(kChoice, "a+b"), TDB_PSZLBUFFER[kChoice]};
     },
     "0", nullptr},
    {"TexteDlgBox_change_liste", describe,
     [] {
       return Answer{TexteDlgBox_change_liste(kChoice), TDBL[kChoice]};
     },
     "0", nullptr},
    {"TexteDlgBox_set_liste_buffer", describe,
     [] {
       return Answer{TexteDlgBox_set_liste_buffer(kChoice, choices), TDB_PSZLBUFFER[kChoice]};
     },
     "0", nullptr},
    {"TexteDlgBox_retrieve", describe,
     [] {
       return Answer{TexteDlgBox_retrieve(kName, shown, sizeof shown), shown};
     },
     "0", nullptr},
    {"TexteDlgBox_retrieve_liste", describe,
     [] {
       return Answer{TexteDlgBox_retrieve_liste(kChoice, shown), shown};
     },
     "0", nullptr},
    {"TexteDlgBox_mandatory", describe,
     [] {
       return Answer{TexteDlgBox_mandatory(kName, 0), TDB_bMand[kName]};
     },
     "0", nullptr},
    {"TexteDlgBox_password", describe,
     [] {
       return Answer{TexteDlgBox_password(kName, 1), TDB_bPassw[kName]};
     },
     "0", nullptr},
    {"TexteDlgBox_set_tabstops", describe,
     [] { return Answer{TexteDlgBox_set_tabstops(kRows, kStops)}; }, "0", nullptr},
    {"TexteDlgBox_get_valid", describe, [] { return Answer{TexteDlgBox_get_valid(kName)}; }, "1",
     nullptr},
    {"BoolDlgBox_param", describe,
     [] {
       return Answer{BoolDlgBox_param(2, 100), BDB_N};
     },
     "0", nullptr},
    {"BoolDlgBox_set", describe,
     [] {
       return Answer{BoolDlgBox_set(0, 1), BDB_bFlags[0]};
     },
     "0", nullptr},
    {"BoolDlgBox_set_geo", describe,
     [] {
       return Answer{BoolDlgBox_set_geo(0, "Case", 1, 2, 3, 4, 5), BDB_pszBuffer[0]};
     },
     "0", nullptr},
    {"BoolDlgBox_retrieve", describe,
     [] {
       return Answer{BoolDlgBox_retrieve(0, &number), number};
     },
     "0", nullptr},
    {"IntDlgBox_param", describe,
     [] {
       return Answer{IntDlgBox_param(2, 100), IDB_N};
     },
     "0", nullptr},
    {"IntDlgBox_set", describe,
     [] {
       return Answer{IntDlgBox_set(0, 5, KorvelPositive), IDB_iInts[0]};
     },
     "0", nullptr},
    {"IntDlgBox_set_geo", describe,
     [] {
       return Answer{IntDlgBox_set_geo(0, 1, 2, 3, 4, 5), IDB_rk[0]};
     },
     "0", nullptr},
    {"IntDlgBox_set_fvalid", describe,
     [] {
       return Answer{IntDlgBox_set_fvalid(0, ruleFor), vi_tab[0] == ruleFor ? 1 : 0};
     },
     "0", nullptr},
    {"IntDlgBox_retrieve", describe,
     [] {
       return Answer{IntDlgBox_retrieve(0, &number), number};
     },
     "0", nullptr},
    {"IntDlgBox_mandatory", describe,
     [] {
       return Answer{IntDlgBox_mandatory(0, 0), IDB_bMand[0]};
     },
     "0", nullptr},
    {"IntDlgBox_password", describe,
     [] {
       return Answer{IntDlgBox_password(0, 1), IDB_bPassw[0]};
     },
     "0", nullptr},
    {"IntDlgBox_get_valid", describe, [] { return Answer{IntDlgBox_get_valid(0)}; }, "1", nullptr},
    {"NumDlgBox_param", describe,
     [] {
       return Answer{NumDlgBox_param(2, 100), NDB_N};
     },
     "0", nullptr},
    {"NumDlgBox_set", describe,
     [] {
       return Answer{NumDlgBox_set(0, 5.5, KorvelPositive), NDB_dNums[0]};
     },
     "0", nullptr},
    {"NumDlgBox_set_nchiff", describe,
     [] {
       return Answer{NumDlgBox_set_nchiff(0, 3), NDB_iChiff[0]};
     },
     "0", nullptr},
    {"NumDlgBox_set_geo", describe,
     [] {
       return Answer{NumDlgBox_set_geo(0, 1, 2, 3, 4, 5), NDB_rk[0]};
     },
     "0", nullptr},
    {"NumDlgBox_set_fvalid", describe,
     [] {
       return Answer{NumDlgBox_set_fvalid(0, realRule), vf_tab[0] == realRule ? 1 : 0};
     },
     "0", nullptr},
    {"NumDlgBox_retrieve", describe,
     [] {
       return Answer{NumDlgBox_retrieve(0, &real), real};
     },
     "0", nullptr},
    {"NumDlgBox_mandatory", describe,
     [] {
       return Answer{NumDlgBox_mandatory(0, 0), NDB_bMand[0]};
     },
     "0", nullptr},
    {"NumDlgBox_get_valid", describe, [] { return Answer{NumDlgBox_get_valid(0)}; }, "1", nullptr},
    {"DateDlgBox_param", describe,
     [] {
       return Answer{DateDlgBox_param(2, 100), DDB_N};
     },
     "0", nullptr},
    {"DateDlgBox_set", describe,
     [] {
       return Answer{DateDlgBox_set(0, 20040307, KorvelCalendarDate), DDB_lDates[0]};
     },
     "0", nullptr},
    {"DateDlgBox_set_geo", describe,
     [] {
       return Answer{DateDlgBox_set_geo(0, 1, 2, 3, 4, 5), DDB_rk[0]};
     },
     "0", nullptr},
    {"DateDlgBox_set_fvalid", describe,
     [] {
       return Answer{DateDlgBox_set_fvalid(0, ruleFor), vd_tab[0] == ruleFor ? 1 : 0};
     },
     "0", nullptr},
    {"DateDlgBox_retrieve", describe,
     [] {
       return Answer{DateDlgBox_retrieve(0, &number), number};
     },
     "0", nullptr},
    {"DateDlgBox_mandatory", describe,
     [] {
       return Answer{DateDlgBox_mandatory(0, 0), DDB_bMand[0]};
     },
     "0", nullptr},
    {"DateDlgBox_get_valid", describe, [] { return Answer{DateDlgBox_get_valid(0)}; }, "1",
     nullptr},
    {"PushDlgBox_param", describe,
     [] {
       return Answer{PushDlgBox_param(2, 100), PDB_N};
     },
     "0", nullptr},
    {"PushDlgBox_set_geo", describe,
     [] {
       return Answer{PushDlgBox_set_geo(0, "Agir", 1, 2, 3, 4, 5), PDB_pszBuffer[0]};
     },
     "0", nullptr},
    {"PushDlgBox_set_fvalid", describe,
     [] {
       return Answer{PushDlgBox_set_fvalid(0, act), vp_tab[0] == act ? 1 : 0};
     },
     "0", nullptr},
    {"StaticDlgBox_param", describe,
     [] {
       return Answer{StaticDlgBox_param(2), SDB_N};
     },
     "0", nullptr},
    {"StaticDlgBox_set", describe,
     [] {
       return Answer{StaticDlgBox_set(0, "Texte"), SDB_pszBuffer[0]};
     },
     "0", nullptr},
    {"StaticDlgBox_set_geo", describe,
     [] {
       return Answer{StaticDlgBox_set_geo(0, 1, 2, 3, 4), SDB_cy[0]};
     },
     "0", nullptr},
    {"StaticDlgBox_set_type", describe,
     [] {
       return Answer{StaticDlgBox_set_type(0, KorvelIcon), SDB_type[0]};
     },
     "0", nullptr},
    {"KorvelItemName", describe, [] { return Answer{KorvelItemName(400, "Visite")}; }, "1", "0"},
    {"TitreDlgBox_set", describe,
     [] {
       return Answer{TitreDlgBox_set("Fiche"), HDB_szHeader};
     },
     "0", nullptr},
    {"TitreDlgBox_retrieve", describe,
     [] { return Answer{TitreDlgBox_retrieve(shown, sizeof shown)}; }, "0", nullptr},
    {"TailleDlgBox_set", describe,
     [] {
       return Answer{TailleDlgBox_set(10, 20), LDB_cx};
     },
     "0", nullptr},
    {"ColorDlgBox_bkg", describe,
     [] {
       return Answer{ColorDlgBox_bkg(RGBColor{1, 2, 3}), FDB};
     },
     "0", nullptr},
    {"BOKDlgBox_set_geo", describe,
     [] {
       return Answer{BOKDlgBox_set_geo(1, 2), OK_x};
     },
     "0", nullptr},
    {"BOKDlgBox_pos", describe,
     [] {
       return Answer{BOKDlgBox_pos(3, 4), OK_x};
     },
     "0", nullptr},
    {"BOKDlgBox_textes", describe,
     [] {
       return Answer{BOKDlgBox_textes("Oui", "Non"), OK_sz1};
     },
     "0", nullptr},
    {"BOKDlgBox_textes_reset", describe,
     [] {
       return Answer{BOKDlgBox_textes_reset(), OK_sz1};
     },
     "0", nullptr},
    {"BOKDlgBox_def", describe,
     [] {
       return Answer{BOKDlgBox_def(2), OK_def};
     },
     "0", nullptr},
    {"BOKDlgBox_def_reset", describe,
     [] {
       return Answer{BOKDlgBox_def_reset(), OK_def};
     },
     "0", nullptr},
    {"BOKDlgBox_shadow", describe,
     [] {
       return Answer{BOKDlgBox_shadow(1, 2, RGBColor{1, 2, 3}), OK_shadow_dy};
     },
     "0", nullptr},
    {"DlgBoxGlobal_nul", describe, [] { return Answer{DlgBoxGlobal_nul()}; }, "0", nullptr},
    {"DlgBoxGlobal_set", describe, [] { return Answer{DlgBoxGlobal_set(changeOthers)}; }, "0",
     nullptr},
    {"DlgBoxFinal_nul", describe, [] { return Answer{DlgBoxFinal_nul()}; }, "1", nullptr},
    {"DlgBoxFinal_set", describe, [] { return Answer{DlgBoxFinal_set(askAtEnd)}; }, "0", nullptr},
    {"DlgBoxFinal_Erreur_set", describe, [] { return Answer{DlgBoxFinal_Erreur_set("non")}; },
     "non", nullptr},
    {"DlgBoxFinal_Erreur", describe, [] { return Answer{DlgBoxFinal_Erreur()}; }, "", nullptr},
    {"TexteDlgBox_global", describe, [] { return Answer{TexteDlgBox_global(kName)}; }, "0",
     nullptr},
    {"BoolDlgBox_global", describe, [] { return Answer{BoolDlgBox_global(0)}; }, "0", nullptr},
    {"IntDlgBox_global", describe,
     [] {
       return Answer{IntDlgBox_global(0), NDB_dNums[0]};
     },
     "0", nullptr},
    {"NumDlgBox_global", describe, [] { return Answer{NumDlgBox_global(0)}; }, "0", nullptr},
    {"DateDlgBox_global", describe, [] { return Answer{DateDlgBox_global(0)}; }, "0", nullptr},
    {"TexteDlgBox_global_ex", describe,
     [] { return Answer{TexteDlgBox_global_ex(kName, changeOthers)}; }, "0", nullptr},
    {"Dlg_CoefX", describe, [] { return Answer{Dlg_CoefX(3)}; }, "6", nullptr},
    {"Dlg_CoefCX", describe, [] { return Answer{Dlg_CoefCX(3)}; }, "6", nullptr},
    {"Dlg_CoefY", describe, [] { return Answer{Dlg_CoefY(3)}; }, "5", nullptr},
    {"Dlg_CoefCY", describe, [] { return Answer{Dlg_CoefCY(3)}; }, "3", nullptr},
    {"ZRVDlgBox_valid", describe, [] { return Answer{ZRVDlgBox_valid()}; }, "1", nullptr},
    {"ZRVDlgBox_end", describe, [] { return Answer{ZRVDlgBox_end(0)}; }, "1", nullptr},
    {"ZRVDlgBox_texte_set", describe, [] { return Answer{ZRVDlgBox_texte_set(kName, "Abel")}; },
     "0", nullptr},
    {"ZRVDlgBox_texte_set_liste", describe,
     [] { return Answer{ZRVDlgBox_texte_set_liste(kChoice)}; }, "0", nullptr},
    {"ZRVDlgBox_num_set", describe, [] { return Answer{ZRVDlgBox_num_set(0, "7,5")}; }, "0",
     nullptr},
    {"ZRVDlgBox_bool_set", describe, [] { return Answer{ZRVDlgBox_bool_set(0, 1)}; }, "0", nullptr},
    {"ZRVDlgBox_int_set", describe, [] { return Answer{ZRVDlgBox_int_set(0, 1)}; }, "0", nullptr},
    {"intcod_l_date", describe,
     [] {
       std::strcpy(shown, "20040229");
       return Answer{intcod_l_date(shown, &number), number};
     },
     "0", nullptr},
    {"listeNoms", describe,
     [] {
       char line[] = "AB\0Dr Abel\0";
       listeNoms(line);
       return Answer{nbase};
     },
     "0", nullptr},
    {"DlgBoxGlobal_BAS", describe,
     [] {
       return Answer{DlgBoxGlobal_BAS(100, 1, 100, TDB_pszBuffer, 2, 0, 0, nullptr, 0, 0, 0,
                                      nullptr, 0, 0, 0, nullptr, 0, 0, 0, nullptr, 0, nullptr, 0)};
     },
     "0", nullptr},
    {"ZRVDlgBoxEx", expectBuilt, [] { return ran(ZRVDlgBoxEx("Fiche", nullptr)); }, "1", "0 1",
     kUsedUp},
    {"ZRVDlgBox", expectDrawn, [] { return ran(ZRVDlgBox("fiche")); }, "1", "0 1", kUsedUp},
    {"DlgBoxFunc", describe, [] { return Answer{DlgBoxFunc(nullptr)}; }, "0", nullptr},
    {"SelectMT", expectChooser, [] { return Answer{SelectMT(nullptr, nullptr, "Data:")}; },
     "DUP;Dr Ana\xEFs Dupr\xE9", " ", kAnyAnswer | kUsedUp},
    {"DlgBoxFinal_MessageBox", describe,
     [] { return Answer{DlgBoxFinal_MessageBox(nullptr, "Texte", "Titre", 0)}; }, "0", nullptr,
     kUsedUp},
    {"MessageBox", expectMessage,
     [] {
       return Answer{
           MessageBox(nullptr, "Un texte assez long pour une ligne", "Titre", KorvelQuestion)};
     },
     "2", "3", kUsedUp},
    {"MessageBox, a note", expectMessage,
     [] { return Answer{MessageBox(nullptr, "Texte\rsuite", "Titre", KorvelNoteIcon)}; }, "1",
     nullptr},
    {"QuestionDialog", expectMessage,
     [] {
       char title[] = "Titre";
       char text[] = "Enregistrer ?";
       return Answer{QuestionDialog(nullptr, title, text, 1, KorvelDefaultOui)};
     },
     "2", "3", kUsedUp},
    {"NoteDialog", expectMessage,
     [] {
       char title[] = "Titre";
       char text[] = "Fait";
       return Answer{NoteDialog(nullptr, title, text, 1, KorvelStopIcon)};
     },
     "1", nullptr, kUsedUp},
    {"KorvelProgress", describe, [] { return Answer{KorvelProgress("Titre", 1, 2)}; }, "0",
     nullptr},
    {"KorvelProgress, a long work", expectProgress,
     [] {
       messages::isCancelledIn("Titre", 0, 9, [] { return 0LL; });
       const bool isCancelled = messages::isCancelledIn("Titre", 1, 9, [] { return 1000LL; });
       KorvelProgress("Titre", 9, 9);
       return Answer{isCancelled};
     },
     "1", "0", kUsedUp},
    {"MessageBoxFilter", nullptr,
     [] {
       EventRecord event = {KorvelKeyEvent, KorvelReturnKey, nullptr, nullptr};
       int hit = 0;
       const int handled = MessageBoxFilter(nullptr, &event, &hit);
       return Answer{handled, hit};
     },
     "1", nullptr},
};

}  // namespace

std::span<const Operation> dialogOperations() { return kDialogs; }

}  // namespace korvel::faults
