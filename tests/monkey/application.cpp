// SPDX-License-Identifier: MIT
// Describes the dialog, and does in its callbacks what applications do there.
#include "tests/monkey/application.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include <gtest/gtest.h>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>
#include <korvel/messages.h>

namespace korvel::test {

Application *application = nullptr;

namespace {

constexpr const char *kWords[] = {"", "Anne", "No\xEBl", "un texte trop long", "12", "7,5"};
constexpr const char *kChoices[] = {"Madame+Ma\xEEtre+No\xEBl+Na\xEFve", "Madame", "Na\xEFve,,Anne",
                                    ""};
constexpr const char *kRows[] = {"rouge$vert$bleu$No\xEBl$blanc$noir", "", "vert",
                                 ("gris$gris$\xE9"
                                  "carlate")};
constexpr int kDateValues[] = {20000229, 18000101, 21001231, 19991105};

constexpr const char *kMessages[] = {
    "Bien re\xE7u.", "", "Un texte assez long pour que la biblioth\xE8que le coupe en deux lignes.",
    "Une ligne,\rune autre,\ret une troisi\xE8me : \xAB fin \xBB."};

constexpr char kPractitioners[] =
    "Praticiens\r\nVersion: 1\r\n#DEBUT\r\n"
    "1A,Dr Abel\r\n1B,Dr Barre\r\n11,Dr Ana\xEFs Dupr\xE9\r\n112,Dr Dubois\r\n"
    "2A,Dr Claude\r\n23,Dr Denis\r\n31,Dr \xC9lise L\xE9vy\r\n\xE9L,Dr \xC9loi\r\n"
    "0,Dr Fran\xE7ois\r\n01,Dr Garde\r\na,Dr Henri\r\nab,Dr Irma\r\n"
    "4,Dr Jean\r\n5,Dr Karl\r\n6,Dr Louis\r\n7,Dr Marie\r\n8,Dr No\xEBl\r\n9,Dr Odile\r\n"
    "#FIN\r\n";

int acceptMaskedInt(char *text, int *value) {
  application->maskedInt = text;
  return intcod_l_sup0(text, value);
}

int everythingShown(int *redisplay) {
  const int identifiers[] = {
      kTextId + kShort,    kTextId + kMasked,   kTextId + kPopUp,        kIntId + kPlainInt,
      kIntId + kMaskedInt, kNumId + kMandatory, kDateId + 3 * kOptional, kBoolId};
  std::copy(std::begin(identifiers), std::end(identifiers), redisplay);
  return static_cast<int>(std::size(identifiers));
}

int somethingCleared(int *redisplay) {
  const int identifiers[] = {kIntId + application->below(kInts), kNumId + application->below(kNums),
                             kDateId + 3 * application->below(kDates)};
  for (std::size_t n = 0; n < std::size(identifiers); ++n) redisplay[n] = -identifiers[n];
  return static_cast<int>(std::size(identifiers));
}

int onChange(int item, int, int, char **, int, int, int, int *, int, int, int, int *, int, int, int,
             double *, int, int, int, int *, int, int *redisplay, int) {
  Application &app = *application;
  ++app.changes[item];
  if (app.oneIn(40)) app.tellSomething();
  if (app.oneIn(40)) app.askForChooser();
  if (app.oneIn(20)) app.rebuildLists();
  if (item == kBoolId + 1) return somethingCleared(redisplay);
  const bool hasChanged = item >= kPushId || app.oneIn(20);
  if (hasChanged && item != kPushId + kChange) app.changeSomething();
  if (hasChanged) return everythingShown(redisplay);
  redisplay[0] = kTextId + kPopUp;
  return 1;
}

int onChangePush(WindowRef) {
  application->changeSomething();
  return 0;
}

int onRebuildPush(WindowRef) {
  application->rebuildLists();
  return 0;
}

int onTellPush(WindowRef) {
  application->tellSomething();
  if (application->oneIn(3)) application->tellSomething();
  return 0;
}

int onChoosePush(WindowRef) {
  application->askForChooser();
  return 0;
}

int onOk(WindowRef, int, char **, int, int, int *, int, int, int *, int, int, double *, int, int,
         int *, int) {
  if (application->oneIn(3)) application->tellSomething();
  return application->oneIn(10) ? 1 : 0;
}

void placeFields() {
  constexpr int kLine = 12;
  int rank = 0;
  for (int i = 0; i < kPopUp; ++i) TexteDlgBox_set_geo(i, 60, 8 + 16 * i, 90, kLine, rank++);
  TexteDlgBox_set_geo(kPopUp, 60, 56, 60, kLine, rank++);
  TexteDlgBox_set_geo(kList, 160, 8, 60, 40, rank++);
  for (int i = 0; i < kInts; ++i) IntDlgBox_set_geo(i, 60 + 50 * i, 72, 40, kLine, rank++);
  for (int i = 0; i < kNums; ++i) NumDlgBox_set_geo(i, 60 + 50 * i, 88, 40, kLine, rank++);
  for (int i = 0; i < kDates; ++i) DateDlgBox_set_geo(i, 60 + 60 * i, 104, 50, kLine, rank++);
  BoolDlgBox_set_geo(0, "Vu", 60, 120, 40, kLine, rank++);
  BoolDlgBox_set_geo(1, "Vider", 110, 120, 40, kLine, rank++);
  constexpr const char *kTitles[] = {"Changer", "Listes", "Message", "Choisir"};
  for (int i = 0; i < kPushes; ++i)
    PushDlgBox_set_geo(i, kTitles[i], 8 + 52 * i, 138, 48, 15, rank++);
}

void describeDialog() {
  TailleDlgBox_set(230, 190);
  TexteDlgBox_param(kTexts, kTextId);
  IntDlgBox_param(kInts, kIntId);
  NumDlgBox_param(kNums, kNumId);
  DateDlgBox_param(kDates, kDateId);
  BoolDlgBox_param(kBools, kBoolId);
  PushDlgBox_param(kPushes, kPushId);
  placeFields();
  for (int i = 0; i < kTexts; ++i) TexteDlgBox_set(i, "");
  TexteDlgBox_set_ncarac(kShort, 12);
  TexteDlgBox_password(kMasked, 1);
  TexteDlgBox_mandatory(kMasked, 0);
  TexteDlgBox_mandatory(kFree, 0);
  TexteDlgBox_set_liste(kPopUp, kChoices[0]);
  TexteDlgBox_set(kPopUp, "Ma\xEEtre");
  TexteDlgBox_set_liste(kList, kRows[0]);
  TexteDlgBox_change_liste(kList);
  IntDlgBox_set_fvalid(kPlainInt, intcod_l_sup0);
  IntDlgBox_set(kMaskedInt, 1234, 2);
  IntDlgBox_set_fvalid(kMaskedInt, acceptMaskedInt);
  IntDlgBox_password(kMaskedInt, 1);
  NumDlgBox_set(kMandatory, 1.5, 2);
  for (int i = 0; i < kNums; ++i) NumDlgBox_set_fvalid(i, realcod_d);
  NumDlgBox_set_nchiff(kMandatory, 2);
  NumDlgBox_mandatory(kOptional, 0);
  DateDlgBox_set(kMandatory, 20000229, 1);
  DateDlgBox_set(kOptional, 0, 1);
  DDB_bInit[kOptional] = 0;
  DateDlgBox_mandatory(kOptional, 0);
  PushDlgBox_set_fvalid(kChange, onChangePush);
  PushDlgBox_set_fvalid(kRebuild, onRebuildPush);
  PushDlgBox_set_fvalid(kTell, onTellPush);
  PushDlgBox_set_fvalid(kChoose, onChoosePush);
  DlgBoxGlobal_set(onChange);
  DlgBoxFinal_set(onOk);
}

// One of the pieces of a list string.
std::string onePiece(Application &app, const std::string &list) {
  std::vector<std::string> pieces(1);
  for (const char c : list) {
    if (c == '+' || c == ',')
      pieces.emplace_back();
    else
      pieces.back() += c;
  }
  return pieces[static_cast<std::size_t>(app.below(static_cast<int>(pieces.size())))];
}

}  // namespace

Application::Application(unsigned seed) : random_(seed) {
  application = this;
  volumes_.file("MT.par", kPractitioners);
}

Application::~Application() { application = nullptr; }

void Application::runDialog() {
  describeDialog();
  ZRVDlgBoxEx(kFieldsTitle, nullptr);
  EXPECT_EQ(DlgBox_hDlg, nullptr);
}

void Application::runChooser() {
  ++choosers;
  chosenRow.clear();
  const std::string chosen = SelectMT(nullptr, nullptr, "Data:");
  std::replace(chosenRow.begin(), chosenRow.end(), '\t', ';');
  EXPECT_TRUE(chosen.empty() || chosen == chosenRow) << chosen << " instead of " << chosenRow;
  EXPECT_EQ(liste_base, nullptr);
}

void Application::changeSomething() {
  std::strcpy(TDB_pszBuffer[kShort], kWords[below(6)]);
  std::strcpy(TDB_pszBuffer[kMasked], kWords[below(6)]);
  std::strcpy(TDB_pszBuffer[kPopUp], onePiece(*this, TDB_PSZLBUFFER[kPopUp]).c_str());
  IDB_iInts[kPlainInt] = below(100000) - 20;
  IDB_iInts[kMaskedInt] = below(10000);
  NDB_dNums[kMandatory] = below(100000) / 1000.0;
  DDB_lDates[kOptional] = kDateValues[below(4)];
  BDB_bFlags[0] = below(2);
}

// Whoever calls it has the pop-up displayed again, which sets its flag.
void Application::rebuildLists() {
  ++rebuilt;
  TexteDlgBox_set_liste(kPopUp, kChoices[below(static_cast<int>(std::size(kChoices)))]);
  ZRVDlgBox_texte_set_liste(kPopUp);
  ZRVDlgBox_texte_set(kPopUp, onePiece(*this, TDB_PSZLBUFFER[kPopUp]).c_str());
  std::strcpy(TDB_PSZLBUFFER[kList], kRows[below(static_cast<int>(std::size(kRows)))]);
  ZRVDlgBox_texte_set_liste(kList);
  ZRVDlgBox_texte_set(kList, "");
}

void Application::tellSomething() {
  ++told;
  const bool isQuestion = below(2) == 0;
  const char *text = kMessages[below(static_cast<int>(std::size(kMessages)))];
  messages.push_back({text, isQuestion});
  const auto icons = static_cast<unsigned>(below(16));
  const auto isDefaultNon = static_cast<unsigned>(below(2)) * KorvelDefaultNon;
  const int answer = MessageBox(nullptr, text, kMessageTitle,
                                icons | (isQuestion ? KorvelQuestion | isDefaultNon : 0U));
  messages.pop_back();
  if (isQuestion) {
    EXPECT_TRUE(answer == KorvelOuiAnswer || answer == KorvelNonAnswer) << answer;
  } else {
    EXPECT_EQ(answer, KorvelOkAnswer);
  }
}

// Only one dialog is up at a time.
void Application::askForChooser() {
  ++refusedChoosers;
  EXPECT_STREQ(SelectMT(nullptr, nullptr, "Data:"), "");
  EXPECT_EQ(liste_base, nullptr);
}

}  // namespace korvel::test
