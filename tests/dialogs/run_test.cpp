// SPDX-License-Identifier: MIT
// The run as a whole: its ends, its callbacks, its OK button, and what callbacks may do.
#include <climits>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/codecs.h>
#include <korvel/desktop.h>
#include <korvel/dialogs.h>
#include <korvel/messages.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

class DialogRun : public BothKinds {
 protected:
  DialogRun() { describe(); }
  // Fields of each type: items 3, 4, 5 to 7, 8, 9 to 11, 12.
  void describe() {
    TexteDlgBox_param(1, first(100, 3));
    TexteDlgBox_set_geo(0, 0, 0, 0, 0, rank(0));
    TexteDlgBox_set(0, "texte");
    BoolDlgBox_param(1, first(200, 4));
    BoolDlgBox_set_geo(0, "case", 0, 0, 0, 0, rank(1));
    IntDlgBox_param(3, first(300, 5));
    for (int i = 0; i < 3; ++i) {
      IntDlgBox_set(i, 5 + i, 0);
      IntDlgBox_set_geo(i, 0, 0, 0, 0, rank(2 + i));
    }
    NumDlgBox_param(1, first(400, 8));
    NumDlgBox_set_geo(0, 0, 0, 0, 0, rank(5));
    NumDlgBox_set(0, 1.5, 0);
    DateDlgBox_param(1, first(500, 9));
    DateDlgBox_set_geo(0, 0, 0, 0, 0, rank(6));
    DateDlgBox_set(0, 20240229, 1);
    PushDlgBox_param(1, first(600, 12));
    PushDlgBox_set_geo(0, "bouton", 0, 0, 0, 0, rank(7));
    StaticDlgBox_param(1);
    TitreDlgBox_set("T");
    DlgBoxGlobal_set(Callbacks::global);
    DlgBoxFinal_set(Callbacks::final);
  }
  DialogScript &expectDialog(const char *title = "T") { return desk.expectDialog(title); }

  static bool isReset() {
    return (TDB | BDB | IDB | NDB | DDB | PDB | SDB | HDB) == 0 &&
           DlgBoxGlobal_fonct ==
               reinterpret_cast<DlgBoxGlobal_t>(reinterpret_cast<void (*)()>(DlgBoxGlobal_nul)) &&
           DlgBoxFinal_fonct ==
               reinterpret_cast<DlgBoxFinal_t>(reinterpret_cast<void (*)()>(DlgBoxFinal_nul));
  }
};

// Identifiers that no template can have.
class BuiltRun : public DialogRun {};

// ---- Ends ----

TEST_P(DialogRun, AcceptedByTheFinalCallback) {
  Callbacks::onFinal = [&](const FinalCall &call) {
    EXPECT_NE(call.window, nullptr);
    EXPECT_EQ(call.textInUse, 1);
    EXPECT_EQ(call.texts, TDB_pszBuffer);
    EXPECT_EQ(call.textCount, 1);
    EXPECT_EQ(call.boolInUse, 1);
    EXPECT_EQ(call.bools, BDB_bFlags);
    EXPECT_EQ(call.boolCount, 1);
    EXPECT_EQ(call.intInUse, 1);
    EXPECT_EQ(call.ints, IDB_iInts);
    EXPECT_EQ(call.intCount, 3);
    EXPECT_EQ(call.numInUse, 1);
    EXPECT_EQ(call.nums, NDB_dNums);
    EXPECT_EQ(call.numCount, 1);
    EXPECT_EQ(call.dateInUse, 1);
    EXPECT_EQ(call.dates, DDB_lDates);
    EXPECT_EQ(call.dateCount, 1);
    EXPECT_TRUE(desk.isDialogOpen());
    return -1;
  };
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::finalCalls.size(), 1U);
  EXPECT_TRUE(isReset());
  EXPECT_FALSE(desk.isDialogOpen());
  EXPECT_STREQ(TDB_pszBuffer[0], "texte") << "values, counts and flags stay";
  EXPECT_EQ(TDB_N, 1);
  EXPECT_EQ(IDB_N, 3);
  EXPECT_EQ(TDB_bOK[0], 1);
}

TEST_P(DialogRun, WithoutAFinalCallbackOkAccepts) {
  DlgBoxFinal_set(nullptr);
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
  describe();
  DlgBoxFinal_set(reinterpret_cast<DlgBoxFinal_t>(reinterpret_cast<void (*)()>(DlgBoxFinal_nul)));
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(DialogRun, ARefusalKeepsTheDialogOpen) {
  int refusals = 2;
  Callbacks::onFinal = [&](const FinalCall &) {
    DlgBoxFinal_Erreur_set("pas encore");
    return refusals-- > 0 ? 0 : 1;
  };
  expectDialog()
      .press(kOk)
      .check([&] {
        EXPECT_NE(DlgBox_hDlg, nullptr);
        EXPECT_TRUE(desk.isEnabled(kOk));
        EXPECT_EQ(TDB, 1);
        EXPECT_EQ(desk.text(3), "texte");
      })
      .press(kOk)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::finalCalls.size(), 3U);
  EXPECT_STREQ(DlgBoxFinal_Erreur(), "pas encore");
}

TEST_P(DialogRun, CancelDoesNotAskTheFinalCallback) {
  expectDialog().replace(3, "autre").press(kCancel);
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(Callbacks::finalCalls.empty());
  EXPECT_TRUE(isReset());
  EXPECT_STREQ(TDB_pszBuffer[0], "autre") << "what was entered is in the tables";
}

TEST_P(DialogRun, EscapeAndTheCloseBoxCancel) {
  expectDialog().pressEscape();
  EXPECT_EQ(run(), 0);
  describe();
  expectDialog().closeBox();
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(Callbacks::finalCalls.empty());
}

TEST_P(DialogRun, ReturnIsTheDefaultButton) {
  expectDialog().pressReturn();
  EXPECT_EQ(run(), 1);
  describe();
  BOKDlgBox_def(2);
  expectDialog().pressReturn();
  EXPECT_EQ(run(), 0);
}

TEST_P(DialogRun, ADesktopThatGoesDownCancels) {
  expectDialog().replace(3, "autre").goDown();
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(isReset());
  EXPECT_TRUE(Callbacks::finalCalls.empty());
}

TEST_P(DialogRun, WithoutAScreenEndsAsACancel) {
  desk.takeScreenAway("no display");
  TailleDlgBox_set(200, 100);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(run(), 0);
  const std::string said = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
  EXPECT_NE(said.find("no display"), std::string::npos) << said;
  EXPECT_TRUE(isReset());
  EXPECT_TRUE(Callbacks::finalCalls.empty());
  EXPECT_STREQ(TDB_pszBuffer[0], "texte");
  EXPECT_EQ(LDB_cx, 200);
}

TEST_P(DialogRun, ThreeDialogsInARow) {
  for (int n = 0; n < 3; ++n) {
    SCOPED_TRACE(n);
    describe();
    IntDlgBox_set(0, n, 1);
    TailleDlgBox_set(200, 100);
    expectDialog()
        .check([&, n] {
          EXPECT_EQ(desk.text(5), std::to_string(n));
          EXPECT_EQ(desk.text(3), "texte");
        })
        .type(5, "4")
        .replace(3, "")
        .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
        .replace(3, "fin")
        .press(n == 1 ? kCancel : kOk);
    EXPECT_EQ(run(), n == 1 ? 0 : 1);
    EXPECT_EQ(IDB_iInts[0], 4) << "item 5 comes after item 3, so nothing in it was selected";
    EXPECT_STREQ(TDB_pszBuffer[0], "fin");
  }
}

TEST_P(BuiltRun, NothingDescribedIsADialogToo) {
  ZRVDlgBox_end(0);
  expectDialog("Vide").press(kOk);
  EXPECT_EQ(ZRVDlgBoxEx("Vide", nullptr), 1);
}

TEST_P(DialogRun, EmptyFamiliesAreSurvived) {
  BoolDlgBox_param(0, 1);
  IntDlgBox_param(0, 1);
  NumDlgBox_param(0, 1);
  DateDlgBox_param(0, 1);
  PushDlgBox_param(0, 1);
  StaticDlgBox_param(0);
  expectDialog().hit(4).press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(BuiltRun, FullFamiliesAreSurvived) {
  // As many fields as there are items: 20 + 64 + 10 + 31.
  TexteDlgBox_param(20, 1000);
  BoolDlgBox_param(64, 2000);
  PushDlgBox_param(10, 3000);
  IntDlgBox_param(31, 4000);
  StaticDlgBox_param(128);
  NDB = DDB = 0;
  int rank = 0;
  for (int i = 0; i < 20; ++i) TexteDlgBox_set_geo(i, 0, 0, 0, 0, rank++);
  for (int i = 0; i < 64; ++i) BoolDlgBox_set_geo(i, "b", 0, 0, 0, 0, rank++);
  for (int i = 0; i < 10; ++i) PushDlgBox_set_geo(i, "p", 0, 0, 0, 0, rank++);
  for (int i = 0; i < 31; ++i) {
    IntDlgBox_set_geo(i, 0, 0, 0, 0, rank++);
    IntDlgBox_set(i, i, 0);
  }
  expectDialog().type(22, "vingt").click(86).press(96).replace(127, "31").hit(128).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[19], "vingt");
  EXPECT_EQ(BDB_bFlags[63], 1);
  EXPECT_EQ(IDB_iInts[30], 31);
  EXPECT_EQ(Callbacks::identifiers(), "1019 1019 1019 1019 1019 2063 3009 4030 ");
}

// ---- Message boxes out of callbacks ----

TEST_P(DialogRun, AFinalCallbackMayRefuseInAMessageBox) {
  Callbacks::onFinal = [&](const FinalCall &call) {
    if (std::strcmp(call.texts[0], "bon") == 0) return 1;
    EXPECT_EQ(DlgBoxFinal_MessageBox(call.window, "Pas ce texte", "Refus", 0x10), 3);
    EXPECT_EQ(desk.message(), "Pas ce texte");
    return 0;
  };
  expectDialog().press(kOk).replace(3, "bon").press(kOk);
  desk.expectDialog("Refus").press(2);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(DlgBoxFinal_Erreur(), "Pas ce texte");
  EXPECT_EQ(Callbacks::finalCalls.size(), 2U);
}

TEST_P(DialogRun, AnActionMayShowAMessageBox) {
  PushDlgBox_set_fvalid(0, Callbacks::action);
  Callbacks::onAction = [] { EXPECT_EQ(MessageBox(nullptr, "Lu", "Note", 0), 1); };
  expectDialog().press(12).press(kOk);
  desk.expectDialog("Note").press(1);
  EXPECT_EQ(run(), 1);
}

TEST_P(DialogRun, AGlobalCallbackMayAskAndThenChangeTheFields) {
  Callbacks::onGlobal = [](const GlobalCall &call) {
    Callbacks::onGlobal = nullptr;
    EXPECT_EQ(MessageBox(nullptr, "Effacer ?", "Question", 0x10), 2);
    call.ints[0] = 8;
    ZRVDlgBox_texte_set(0, "r\xE9pondu");
    return redisplaying({300})(call);
  };
  // The text that was typed comes after what the fields show.
  expectDialog().press(12).moveToEnd(3).type(3, "!").moveToEnd(5).type(5, "9").press(kOk);
  desk.expectDialog("Question").press(1);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "r\xE9pondu!");
  EXPECT_EQ(IDB_iInts[0], 89);
}

// ---- The current port ----

CGrafPtr currentPort() {
  CGrafPtr port = nullptr;
  GetPort(&port);
  return port;
}

CGrafPtr s_portWhileFilling = nullptr;
int recordPort(char *text, int *value) {
  if (s_portWhileFilling == nullptr) s_portWhileFilling = currentPort();
  return intcod_i(text, value);
}

TEST_P(DialogRun, ThePortOfItsWindowIsTheCurrentOne) {
  const WindowRef other = desk.addWindow({0, 0, 50, 50});
  SetPort(GetWindowPort(other));
  s_portWhileFilling = nullptr;
  IntDlgBox_set_fvalid(0, recordPort);
  PushDlgBox_set_fvalid(0, Callbacks::action);
  Callbacks::onAction = [&] {
    EXPECT_EQ(currentPort(), GetWindowPort(Callbacks::actionCalls.back()));
    EXPECT_NE(currentPort(), GetWindowPort(other));
  };
  Callbacks::onFinal = [](const FinalCall &call) {
    EXPECT_EQ(currentPort(), GetWindowPort(call.window));
    EXPECT_EQ(currentPort(), s_portWhileFilling);
    return 1;
  };
  expectDialog().press(12).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_NE(s_portWhileFilling, nullptr);
  EXPECT_EQ(currentPort(), nullptr) << "gone with the window";
}

TEST_P(DialogRun, AMessageBoxGivesTheCurrentPortBack) {
  Callbacks::onFinal = [](const FinalCall &call) {
    EXPECT_EQ(DlgBoxFinal_MessageBox(call.window, "Lu", "Note", 0), 1);
    EXPECT_EQ(currentPort(), GetWindowPort(call.window));
    return 1;
  };
  expectDialog().press(kOk);
  desk.expectDialog("Note").press(1);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(currentPort(), nullptr);
}

// A desktop that gives the address of the dialog's window to another window once the first is gone.
class OneAddress : public ScriptedDesktop {
 public:
  platform::Port *windowPort(WindowRef window) override {
    platform::Port *port = ScriptedDesktop::windowPort(window);
    return port != nullptr ? port : successor_.get();
  }

 private:
  std::unique_ptr<platform::Port> successor_ = newImage(10, 10);
};

TEST_P(BuiltRun, AWindowThatTakesThePlaceOfTheDialogsDoesNotTakeItsPort) {
  OneAddress reusing;
  reusing.expectDialog("T").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(currentPort(), nullptr);
  reusing.finish();
}

TEST_P(DialogRun, AnotherPortThatIsTheCurrentOneAtTheEndStays) {
  const WindowRef other = desk.addWindow({0, 0, 50, 50});
  Callbacks::onFinal = [&](const FinalCall &) {
    SetPort(GetWindowPort(other));
    return 1;
  };
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(currentPort(), GetWindowPort(other));
  SetPort(nullptr);
}

// ---- One at a time ----

TEST_P(DialogRun, TheDialogIsKnownWhileItIsUp) {
  expectDialog().check([] { EXPECT_NE(DlgBox_hDlg, nullptr); }).press(kOk);
  EXPECT_EQ(DlgBox_hDlg, nullptr);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(DlgBox_hDlg, nullptr);
}

TEST_P(DialogRun, ASecondRunLeavesTheFirstAlone) {
  Callbacks::onGlobal = [&](const GlobalCall &) {
    TailleDlgBox_set(200, 100);
    const DialogRef up = DlgBox_hDlg;
    EXPECT_EQ(ZRVDlgBoxEx("Autre", nullptr), 0);
    EXPECT_EQ(ZRVDlgBox("T"), 0);
    EXPECT_EQ(DlgBoxFunc(up), 0);
    EXPECT_EQ(DlgBoxFunc(nullptr), 0);
    EXPECT_EQ(DlgBox_hDlg, up);
    EXPECT_EQ(LDB_cx, 200);
    EXPECT_EQ(TDB, 1);
    EXPECT_EQ(DlgBoxFinal_fonct, Callbacks::final);
    return 0;
  };
  expectDialog().press(12).replace(3, "suite").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(desk.dialogsShown(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "suite");
}

TEST_P(DialogRun, ASecondRunOutOfTheFinalCallbackIsNotShownEither) {
  Callbacks::onFinal = [&](const FinalCall &) {
    EXPECT_EQ(ZRVDlgBoxEx("Autre", nullptr), 0);
    EXPECT_EQ(ZRVDlgBox("T"), 0);
    EXPECT_EQ(TDB, 1);
    EXPECT_EQ(HDB, 1);
    return 1;
  };
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(desk.dialogsShown(), 1);
  EXPECT_TRUE(isReset());
}

TEST_P(DialogRun, TheExportedDialogIsOnlyForReading) {
  Callbacks::onGlobal = [](const GlobalCall &) {
    DlgBox_hDlg = nullptr;
    return 0;
  };
  expectDialog().press(12).press(kOk);
  EXPECT_EQ(run(), 1);
  int nothing = 0;
  EXPECT_EQ(DlgBoxFunc(reinterpret_cast<DialogRef>(&nothing)), 0);
}

// ---- Hits ----

TEST_P(DialogRun, OtherHitsAreIgnored) {
  DialogScript &script = expectDialog().check([&] { desk.takeWrites(); });
  for (const int item : {0, -1, 13, 99, 127, 128, 1000, INT_MAX, INT_MIN}) script.hit(item);
  script.check([&] { EXPECT_EQ(desk.takeWrites(), ""); }).press(kCancel);
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(Callbacks::globalCalls.empty());
}

TEST_P(BuiltRun, TypesAreTriedInTheirOrder) {
  // First identifiers such that each one matches fields of several types.
  TDB_ID_TEXTE = BDB_ID_FLAG = IDB_ID_INT = NDB_ID_NUM = DDB_ID_DATE = PDB_ID_PUSH = 100;
  Callbacks::onGlobal = redisplaying({100});
  expectDialog()
      .check([&] { desk.takeWrites(); })
      .click(4)
      .check([&] {
        // The check box's own identifier, 100, belongs to the text field.
        EXPECT_EQ(desk.takeWrites(), "3 text \"texte\"\n");
        EXPECT_EQ(BDB_bFlags[0], 0);
      })
      .press(kCancel);
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(Callbacks::identifiers(), "100 ");
}

TEST_P(DialogRun, TypesNotInUseAreNotTried) {
  expectDialog().check([] { TDB = 0; }).replace(3, "autre").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "texte");
}

TEST_P(DialogRun, OnlyTheItemsThatTheRulesNameAreWritten) {
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.takeWrites(),
                  "3 text \"texte\"\n3 selected\n"
                  "4 value 0\n"
                  "5 text \"5\"\n5 selected\n"
                  "6 text \"6\"\n6 selected\n"
                  "7 text \"7\"\n7 selected\n"
                  "8 text \"1.50000\"\n8 selected\n"
                  "9 text \"29\"\n10 text \"2\"\n11 text \"2024\"\n"
                  "9 selected\n10 selected\n11 selected\n"
                  "1 enabled yes\n");
      })
      .replace(3, "autre")
      .replace(5, "1")
      .replace(8, "2,5")
      .replace(9, "28")
      .press(12)
      .check([&] { EXPECT_EQ(desk.takeWrites(), "") << "nor of OK, which does not change"; })
      .replace(3, "")
      .replace(5, "x")
      .check([&] { EXPECT_EQ(desk.takeWrites(), "1 enabled no\n"); })
      .replace(3, "a")
      .check([&] { EXPECT_EQ(desk.takeWrites(), ""); })
      .replace(5, "1")
      .check([&] { EXPECT_EQ(desk.takeWrites(), "1 enabled yes\n"); })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

// ---- Validity ----

TEST_P(DialogRun, OkNeedsEveryFlagOfEveryTypeInUse) {
  int *const flags[] = {&TDB_bOK[0], &IDB_bOK[2], &NDB_bOK[0], &DDB_bOK[0]};
  int *const inUse[] = {&TDB, &IDB, &NDB, &DDB};
  DialogScript &script = expectDialog();
  for (int n = 0; n < 4; ++n) {
    script.check([=] { *flags[n] = 0; })
        .click(4)
        .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
        .check([=] { *inUse[n] = 0; })
        .click(4)
        .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)); })
        .check([=] { *inUse[n] = 1; })
        .click(4)
        .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
        .check([=] { *flags[n] = 1; })
        .click(4)
        .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)); });
  }
  script.check([] { IDB_bOK[3] = 0; })
      .click(4)
      .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)) << "beyond the count"; })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(DialogRun, OkFollowsTheFieldBeforeTheGlobalCallback) {
  IntDlgBox_set_fvalid(2, intcod_i_ssup0);
  std::vector<bool> enabled;
  Callbacks::onGlobal = [&](const GlobalCall &) {
    enabled.push_back(desk.isEnabled(kOk));
    return 0;
  };
  expectDialog()
      .replace(7, "0")
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .press(12)
      .replace(7, "1")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(enabled, (std::vector<bool>{false, true}));
}

TEST_P(DialogRun, FlagsAreLookedAtAgainAfterARefusal) {
  Callbacks::onFinal = [](const FinalCall &) {
    TDB_bOK[0] = 0;
    return 0;
  };
  expectDialog().press(kOk).check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); }).press(kCancel);
  EXPECT_EQ(run(), 0);
}

// ---- The global callback's list ----

TEST_P(DialogRun, RedisplayNamesFieldsByIdentifier) {
  Callbacks::onGlobal = [](const GlobalCall &call) {
    std::strcpy(call.texts[0], "montr\xE9");
    call.bools[0] = 1;
    call.ints[0] = 11;
    call.nums[0] = 2.5;
    call.dates[0] = 20250102;
    return redisplaying({100, 200, 300, 400, 500})(call);
  };
  expectDialog()
      .press(12)
      .check([&] {
        EXPECT_EQ(desk.text(3), "montré");
        EXPECT_EQ(desk.value(4), 1);
        EXPECT_EQ(desk.text(5), "11");
        EXPECT_EQ(desk.text(8), "2.50000");
        EXPECT_EQ(desk.text(9) + '/' + desk.text(10) + '/' + desk.text(11), "2/1/2025");
        EXPECT_EQ(desk.text(6), "6") << "not named";
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(DialogRun, ANegativeIdentifierClears) {
  Callbacks::onGlobal = redisplaying({-302});
  expectDialog()
      .press(12)
      .check([&] {
        EXPECT_EQ(desk.text(7), "");
        EXPECT_EQ(IDB_bOK[2], 0);
        EXPECT_EQ(IDB_iInts[2], 7);
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .press(kCancel);
  EXPECT_EQ(run(), 0);
}

TEST_P(DialogRun, ANegativeCountMeansNone) {
  Callbacks::onGlobal = [](const GlobalCall &call) {
    call.redisplay[0] = -100;
    return -1;
  };
  expectDialog()
      .check([&] { desk.takeWrites(); })
      .press(12)
      .check([&] { EXPECT_EQ(desk.takeWrites(), ""); })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(DialogRun, ACountBeyondTheCapacityIsCut) {
  for (const int claimed : {32, 33, INT_MAX}) {
    describe();
    Callbacks::onGlobal = [=](const GlobalCall &call) {
      EXPECT_EQ(call.capacity, 32);
      for (int n = 0; n < 32; ++n) call.redisplay[n] = n == 31 ? Callbacks::inDialog(300) : 9999;
      call.ints[0] = 1;
      return claimed;
    };
    expectDialog()
        .press(12)
        .check([&] { EXPECT_EQ(desk.text(5), "1") << "the 32nd still counts"; })
        .press(kOk);
    EXPECT_EQ(run(), 1);
  }
}

TEST_P(BuiltRun, IdentifiersThatMatchNothingAreSkipped) {
  Callbacks::onGlobal = redisplaying({0, 99, 101, 600, -600, 700, INT_MAX, INT_MIN, -1, 300});
  expectDialog()
      .check([&] { desk.takeWrites(); })
      .press(12)
      .check([&] { EXPECT_EQ(desk.takeWrites(), "5 text \"5\"\n"); })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(BuiltRun, UnwrittenIdentifiersAreZero) {
  TDB_ID_TEXTE = 0;
  Callbacks::onGlobal = [](const GlobalCall &) { return 1; };
  expectDialog()
      .check([&] { desk.takeWrites(); })
      .press(12)
      .check([&] { EXPECT_EQ(desk.takeWrites(), "3 text \"texte\"\n"); })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(DialogRun, ACallbackThatMendsAFieldEnablesOk) {
  // An integer 0 below 10 leaves integer 1 invalid until the callback mends it.
  Callbacks::onGlobal = [](const GlobalCall &call) {
    if (call.ints[0] == 3) call.ints[1] = 12;
    return redisplaying({301})(call);
  };
  expectDialog()
      .replace(6, "x")
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .replace(5, "3")
      .check([&] {
        EXPECT_EQ(desk.text(6), "12");
        EXPECT_TRUE(desk.isEnabled(kOk));
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(IDB_iInts[1], 12);
}

TEST_P(DialogRun, TheFieldBeingTypedIntoMayBeRewritten) {
  // Shortens the text in the table, and has the item show it.
  Callbacks::onGlobal = [](const GlobalCall &call) {
    if (std::strlen(call.texts[0]) > 3) call.texts[0][3] = '\0';
    return redisplaying({100})(call);
  };
  expectDialog().type(3, "abcdef").check([&] { EXPECT_EQ(desk.text(3), "abc"); }).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "abc");
}

// ---- What callbacks and validators may do ----

int dropEverything(char *, int *) {
  TDB = BDB = IDB = NDB = DDB = PDB = 0;
  TDB_N = BDB_N = IDB_N = NDB_N = DDB_N = PDB_N = -7;
  return 0;
}

TEST_P(DialogRun, AValidatorMayDropEverything) {
  IntDlgBox_set_fvalid(1, dropEverything);
  expectDialog().hit(3).hit(5).hit(8).hit(9).hit(12).press(kOk);
  EXPECT_EQ(run(), 1) << "dropped while filling";
}

int throwAlways(char *, int *) { throw std::runtime_error("validator"); }

TEST_P(DialogRun, AThrowingValidatorWhileFillingEndsAsACancel) {
  IntDlgBox_set_fvalid(0, throwAlways);
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(isReset());
  EXPECT_FALSE(desk.isDialogOpen());
  EXPECT_EQ(desk.dialogsShown(), 0);
  EXPECT_TRUE(Callbacks::finalCalls.empty());
  describe();
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1) << "a further dialog is shown";
}

TEST_P(DialogRun, TheGlobalCallbackMayDescribeAnew) {
  Callbacks::onGlobal = [](const GlobalCall &call) {
    TexteDlgBox_param(20, 100);
    IntDlgBox_param(128, 300);
    NDB_N = INT_MAX;
    DDB_N = INT_MIN;
    for (int i = 0; i < 128; ++i) IDB_rk[i] = static_cast<short>(i * 1000);
    return redisplaying({100, 119, -119, 300, 427, -427, 400, 527, 500})(call);
  };
  DialogScript &script = expectDialog().press(12);
  for (int item = 3; item < 13; ++item) script.hit(item);
  script.press(kCancel);
  EXPECT_EQ(run(), 0);
}

TEST_P(DialogRun, CallbacksMayBeExchangedDuringTheRun) {
  Callbacks::onGlobal = [](const GlobalCall &) {
    DlgBoxGlobal_set(nullptr);
    DlgBoxFinal_set(nullptr);
    return 0;
  };
  expectDialog().press(12).press(12).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::globalCalls.size(), 1U);
  EXPECT_TRUE(Callbacks::finalCalls.empty());
}

TEST_P(DialogRun, EndingTheDefinitionDuringTheRunLeavesTheButtons) {
  Callbacks::onGlobal = [](const GlobalCall &) {
    EXPECT_EQ(ZRVDlgBox_end(0), 1);
    return 0;
  };
  expectDialog().press(12).hit(3).hit(5).press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(DialogRun, WhatAThrowingValidatorWasAskedIsNotAccepted) {
  expectDialog()
      .check([] { IntDlgBox_set_fvalid(0, throwAlways); })
      .replace(5, "7")
      .check([&] {
        EXPECT_EQ(IDB_bOK[0], 0);
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .check([] { IntDlgBox_set_fvalid(0, intcod_i); })
      .replace(5, "8")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(IDB_iInts[0], 8);
}

TEST_P(DialogRun, InAnotherThreadADialogIsRefusedInOneLineAndTheFirstGoesOn) {
  std::string told;
  Callbacks::onAction = [&] {
    ::testing::internal::CaptureStderr();
    std::thread([&] {
      EXPECT_EQ(ZRVDlgBoxEx("autre", nullptr), 0);
      EXPECT_EQ(IDB, 1) << "the definition is the first one's";
    }).join();
    told = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(ZRVDlgBoxEx("autre", nullptr), 0) << "without a line";
  };
  PushDlgBox_set_fvalid(0, Callbacks::action);
  expectDialog().press(12).replace(5, "8").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(told, "korvel: dialog not shown: asked for in another thread than the first one\n");
  EXPECT_EQ(IDB_iInts[0], 8);
}

TEST_P(DialogRun, AThrowingCallbackEndsOnlyItsHit) {
  Callbacks::onGlobal = [](const GlobalCall &) -> int { throw std::runtime_error("callback"); };
  Callbacks::onFinal = [](const FinalCall &) -> int { throw std::runtime_error("callback"); };
  expectDialog()
      .replace(3, "")
      .replace(5, "1")
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .replace(3, "a")
      .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)); })
      .press(kOk)
      .press(kCancel);
  EXPECT_EQ(run(), 0);
}

KORVEL_IN_BOTH_KINDS(DialogRun);
INSTANTIATE_TEST_SUITE_P(, BuiltRun, ::testing::Values(Kind::Built));

}  // namespace

// ---- Before any call ----

TEST(LoadState, SlotsAndSettingsHaveTheirFirstValues) {
  EXPECT_EQ(DlgBoxGlobal_fonct,
            reinterpret_cast<DlgBoxGlobal_t>(reinterpret_cast<void (*)()>(DlgBoxGlobal_nul)));
  EXPECT_EQ(DlgBoxFinal_fonct,
            reinterpret_cast<DlgBoxFinal_t>(reinterpret_cast<void (*)()>(DlgBoxFinal_nul)));
  EXPECT_STREQ(OK_sz1, "OK");
  EXPECT_STREQ(OK_sz2, "Annuler");
  EXPECT_STREQ(OK_sz1_bak, "");
  EXPECT_EQ(OK_def, 1);
  EXPECT_EQ(vi, vi_tab);
  EXPECT_EQ(vf, vf_tab);
  EXPECT_EQ(vd, vd_tab);
  EXPECT_EQ(vp, vp_tab);
  for (const ValidInt_t function : vi_tab) EXPECT_EQ(function, nullptr);
  EXPECT_EQ(DlgBox_hDlg, nullptr);
  EXPECT_EQ(TDB_BUFFERSIZE, 0);
}

}  // namespace korvel::test
