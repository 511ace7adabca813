// SPDX-License-Identifier: MIT
// The two callbacks: their slots, their arguments, and calls outside a run.
#include <climits>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

class CallbackSlots : public ::testing::Test {
 protected:
  CallbackSlots() { Callbacks::reset(); }
  DialogGlobals globals;
};

template <typename Callback>
Callback asSlot(int (*nul)()) {
  return reinterpret_cast<Callback>(reinterpret_cast<void (*)()>(nul));
}

TEST_F(CallbackSlots, HoldTheNulFunctionsAtFirst) {
  EXPECT_EQ(DlgBoxGlobal_fonct, asSlot<DlgBoxGlobal_t>(DlgBoxGlobal_nul));
  EXPECT_EQ(DlgBoxFinal_fonct, asSlot<DlgBoxFinal_t>(DlgBoxFinal_nul));
  EXPECT_EQ(DlgBoxGlobal_nul(), 0);
  EXPECT_EQ(DlgBoxFinal_nul(), 1);
}

TEST_F(CallbackSlots, AreSet) {
  EXPECT_EQ(DlgBoxGlobal_set(Callbacks::global), 0);
  EXPECT_EQ(DlgBoxFinal_set(Callbacks::final), 0);
  EXPECT_EQ(DlgBoxGlobal_fonct, Callbacks::global);
  EXPECT_EQ(DlgBoxFinal_fonct, Callbacks::final);
}

TEST_F(CallbackSlots, NulFunctionsAreNeverCalledThroughASlot) {
  TexteDlgBox_param(1, 3);
  EXPECT_EQ(TexteDlgBox_global(0), 0);
  EXPECT_EQ(ZRVDlgBox_end(0), 1);
  DlgBoxGlobal_set(nullptr);
  DlgBoxFinal_set(nullptr);
  TexteDlgBox_param(1, 3);
  EXPECT_EQ(TexteDlgBox_global(0), 0);
  EXPECT_EQ(ZRVDlgBox_end(0), 1);
}

TEST_F(CallbackSlots, GlobalReceivesTheTablesInOrder) {
  DlgBoxGlobal_set(Callbacks::global);
  TexteDlgBox_param(2, 10);
  BoolDlgBox_param(3, 20);
  IntDlgBox_param(4, 30);
  NumDlgBox_param(5, 40);
  DateDlgBox_param(6, 50);
  IDB = 0;
  EXPECT_EQ(TexteDlgBox_global(1), 0);
  ASSERT_EQ(Callbacks::globalCalls.size(), 1U);
  const GlobalCall &call = Callbacks::globalCalls[0];
  EXPECT_EQ(call.item, 11);
  EXPECT_EQ(call.textInUse, 1);
  EXPECT_EQ(call.textFirstItem, 10);
  EXPECT_EQ(call.texts, TDB_pszBuffer);
  EXPECT_EQ(call.textCount, 2);
  EXPECT_EQ(call.boolInUse, 1);
  EXPECT_EQ(call.boolFirstItem, 20);
  EXPECT_EQ(call.bools, BDB_bFlags);
  EXPECT_EQ(call.boolCount, 3);
  EXPECT_EQ(call.intInUse, 0);
  EXPECT_EQ(call.intFirstItem, 30);
  EXPECT_EQ(call.ints, IDB_iInts);
  EXPECT_EQ(call.intCount, 4);
  EXPECT_EQ(call.numInUse, 1);
  EXPECT_EQ(call.numFirstItem, 40);
  EXPECT_EQ(call.nums, NDB_dNums);
  EXPECT_EQ(call.numCount, 5);
  EXPECT_EQ(call.dateInUse, 1);
  EXPECT_EQ(call.dateFirstItem, 50);
  EXPECT_EQ(call.dates, DDB_lDates);
  EXPECT_EQ(call.dateCount, 6);
  EXPECT_EQ(call.redisplay, nullptr);
  EXPECT_EQ(call.capacity, 0);
}

TEST_F(CallbackSlots, EachTypeNamesItsField) {
  DlgBoxGlobal_set(Callbacks::global);
  TexteDlgBox_param(3, 10);
  BoolDlgBox_param(3, 20);
  IntDlgBox_param(3, 30);
  NumDlgBox_param(3, 40);
  DateDlgBox_param(3, 50);
  EXPECT_EQ(TexteDlgBox_global(2), 0);
  EXPECT_EQ(BoolDlgBox_global(2), 0);
  EXPECT_EQ(IntDlgBox_global(2), 0);
  EXPECT_EQ(NumDlgBox_global(2), 0);
  EXPECT_EQ(DateDlgBox_global(2), 0);
  EXPECT_EQ(Callbacks::identifiers(), "12 22 32 42 56 ");
}

TEST_F(CallbackSlots, IndexesOutsideTheCountCallNothing) {
  DlgBoxGlobal_set(Callbacks::global);
  TexteDlgBox_param(1, 10);
  DateDlgBox_param(1, 50);
  for (const int i : {1, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(TexteDlgBox_global(i), 0);
    EXPECT_EQ(BoolDlgBox_global(i), 0);
    EXPECT_EQ(IntDlgBox_global(i), 0);
    EXPECT_EQ(NumDlgBox_global(i), 0);
    EXPECT_EQ(DateDlgBox_global(i), 0);
    EXPECT_EQ(TexteDlgBox_global_ex(i, Callbacks::global), 0);
  }
  EXPECT_EQ(Callbacks::identifiers(), "");
}

TEST_F(CallbackSlots, ResultsOutsideARunAreIgnored) {
  DlgBoxGlobal_set(Callbacks::global);
  Callbacks::onGlobal = [](const GlobalCall &) { return 1000; };
  TexteDlgBox_param(1, INT_MAX);
  EXPECT_EQ(TexteDlgBox_global(0), 0);
  EXPECT_EQ(Callbacks::identifiers(), "2147483647 ");
}

int s_exCalls = 0;
int otherGlobal(int, int, int, char **, int, int, int, int *, int, int, int, int *, int, int, int,
                double *, int, int, int, int *, int, int *, int) {
  ++s_exCalls;
  return 0;
}

TEST_F(CallbackSlots, GlobalExPrefersItsOwnCallback) {
  s_exCalls = 0;
  DlgBoxGlobal_set(Callbacks::global);
  TexteDlgBox_param(2, 10);
  EXPECT_EQ(TexteDlgBox_global_ex(1, otherGlobal), 0);
  EXPECT_EQ(s_exCalls, 1);
  EXPECT_EQ(Callbacks::identifiers(), "");
  EXPECT_EQ(TexteDlgBox_global_ex(1, nullptr), 0);
  EXPECT_EQ(Callbacks::identifiers(), "11 ");
}

TEST_F(CallbackSlots, ErrorTextIsCutTo255Characters) {
  static_assert(sizeof DlgBoxFinal_szErr == 256);
  for (const std::size_t length : {0, 1, 254, 255, 256, 4000}) {
    const std::string text(length, 'e');
    EXPECT_EQ(DlgBoxFinal_Erreur_set(text.c_str()), DlgBoxFinal_szErr);
    EXPECT_EQ(std::string(DlgBoxFinal_Erreur()), text.substr(0, 255));
  }
  DlgBoxFinal_Erreur_set("Date dans le futur");
  EXPECT_EQ(DlgBoxFinal_Erreur_set(nullptr), DlgBoxFinal_szErr);
  EXPECT_STREQ(DlgBoxFinal_Erreur(), "Date dans le futur");
  DlgBoxFinal_Erreur_set(DlgBoxFinal_Erreur() + 5);
  EXPECT_STREQ(DlgBoxFinal_Erreur(), "dans le futur");
}

TEST_F(CallbackSlots, EndCallsTheFinalCallbackAndResets) {
  DlgBoxGlobal_set(Callbacks::global);
  DlgBoxFinal_set(Callbacks::final);
  TexteDlgBox_param(2, 10);
  BoolDlgBox_param(3, 20);
  IntDlgBox_param(4, 30);
  NumDlgBox_param(5, 40);
  DateDlgBox_param(6, 50);
  PushDlgBox_param(1, 60);
  StaticDlgBox_param(1);
  TitreDlgBox_set("T");
  TailleDlgBox_set(1, 2);
  ColorDlgBox_bkg({1, 2, 3});
  TexteDlgBox_set(0, "garde");
  DlgBoxFinal_Erreur_set("erreur");
  Callbacks::onFinal = [](const FinalCall &) {
    EXPECT_EQ(TDB, 1) << "called before the reset";
    return 17;
  };
  EXPECT_EQ(ZRVDlgBox_end(1234), 17);
  ASSERT_EQ(Callbacks::finalCalls.size(), 1U);
  const FinalCall &call = Callbacks::finalCalls[0];
  EXPECT_EQ(reinterpret_cast<std::intptr_t>(call.window), 1234);
  EXPECT_EQ(call.textInUse, 1);
  EXPECT_EQ(call.texts, TDB_pszBuffer);
  EXPECT_EQ(call.textCount, 2);
  EXPECT_EQ(call.boolInUse, 1);
  EXPECT_EQ(call.bools, BDB_bFlags);
  EXPECT_EQ(call.boolCount, 3);
  EXPECT_EQ(call.intInUse, 1);
  EXPECT_EQ(call.ints, IDB_iInts);
  EXPECT_EQ(call.intCount, 4);
  EXPECT_EQ(call.numInUse, 1);
  EXPECT_EQ(call.nums, NDB_dNums);
  EXPECT_EQ(call.numCount, 5);
  EXPECT_EQ(call.dateInUse, 1);
  EXPECT_EQ(call.dates, DDB_lDates);
  EXPECT_EQ(call.dateCount, 6);
  EXPECT_EQ(TDB | BDB | IDB | NDB | DDB | PDB | SDB | HDB, 0);
  EXPECT_EQ(DlgBoxGlobal_fonct, asSlot<DlgBoxGlobal_t>(DlgBoxGlobal_nul));
  EXPECT_EQ(DlgBoxFinal_fonct, asSlot<DlgBoxFinal_t>(DlgBoxFinal_nul));
  EXPECT_EQ(TDB_N, 2) << "counts, values and the other settings stay";
  EXPECT_STREQ(TDB_pszBuffer[0], "garde");
  EXPECT_EQ(LDB, 1);
  EXPECT_EQ(FDB, 1);
  EXPECT_STREQ(DlgBoxFinal_szErr, "erreur");
  EXPECT_STREQ(HDB_szHeader, "T");
}

TEST_F(CallbackSlots, EndResetsAlsoWhenTheCallbackRefuses) {
  DlgBoxFinal_set(Callbacks::final);
  Callbacks::onFinal = [](const FinalCall &) { return 0; };
  IntDlgBox_param(1, 3);
  EXPECT_EQ(ZRVDlgBox_end(-1), 0);
  EXPECT_EQ(IDB, 0);
}

TEST_F(CallbackSlots, AfterAnEndGlobalIsCalledOnlyIfSetAgain) {
  DlgBoxGlobal_set(Callbacks::global);
  TexteDlgBox_param(1, 10);
  ZRVDlgBox_end(0);
  TexteDlgBox_global(0);
  EXPECT_EQ(Callbacks::identifiers(), "");
  DlgBoxGlobal_set(Callbacks::global);
  TexteDlgBox_global(0);
  EXPECT_EQ(Callbacks::identifiers(), "10 ");
}

TEST_F(CallbackSlots, AMessageWithoutAnOwnerIsOnlyRecorded) {
  ScriptedDesktop desk;
  EXPECT_EQ(DlgBoxFinal_MessageBox(nullptr, "refus\xE9", "Titre", 0x10), 0);
  EXPECT_STREQ(DlgBoxFinal_Erreur(), "refus\xE9");
  EXPECT_EQ(DlgBoxFinal_MessageBox(nullptr, nullptr, nullptr, 0), 0);
  EXPECT_STREQ(DlgBoxFinal_Erreur(), "refus\xE9");
  EXPECT_EQ(desk.dialogsShown(), 0);
  desk.finish();
}

TEST_F(CallbackSlots, AMessageIsRecordedCutAndShownWhole) {
  ScriptedDesktop desk;
  const std::string text(300, 'm');
  desk.expectDialog("Titre")
      .check([&] {
        EXPECT_NE(desk.message().find(text), std::string::npos);
        EXPECT_EQ(DlgBoxFinal_Erreur(), text.substr(0, 255));
      })
      .press(1);
  EXPECT_EQ(DlgBoxFinal_MessageBox(desk.addWindow({0, 0, 9, 9}), text.c_str(), "Titre", 0), 1);
  EXPECT_EQ(DlgBoxFinal_Erreur(), text.substr(0, 255));
  desk.finish();
}

TEST_F(CallbackSlots, AMessageMayBeTheLastOneItself) {
  ScriptedDesktop desk;
  DlgBoxFinal_Erreur_set("dit deux fois");
  desk.expectDialog("Titre").check([&] { EXPECT_EQ(desk.message(), "dit deux fois"); }).press(1);
  EXPECT_EQ(DlgBoxFinal_MessageBox(desk.addWindow({0, 0, 9, 9}), DlgBoxFinal_Erreur(), "Titre", 0),
            1);
  EXPECT_STREQ(DlgBoxFinal_Erreur(), "dit deux fois");
  desk.finish();
}

}  // namespace
}  // namespace korvel::test
