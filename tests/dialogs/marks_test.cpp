// SPDX-License-Identifier: MIT
// Which items are marked as not acceptable, and when the marks change on the screen.
#include <climits>

#include <gtest/gtest.h>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

using platform::Expected;

class Marks : public DialogTest {
 protected:
  // Text 3, pop-up 4, list 5, integer 6, number 7, date 8 to 10, push button 11; the first text
  // and the integer are empty and mandatory.
  Marks() {
    TexteDlgBox_param(3, 100);
    for (int i = 0; i < 3; ++i) TexteDlgBox_set_geo(i, 0, 0, 0, 0, i);
    TexteDlgBox_set(0, "");
    TexteDlgBox_set_liste(1, "Madame+Monsieur");
    TexteDlgBox_set(1, "Madame");
    TexteDlgBox_set_liste(2, "rouge$vert");
    TexteDlgBox_change_liste(2);
    TexteDlgBox_set(2, "rouge");
    IntDlgBox_param(1, 300);
    IntDlgBox_set_geo(0, 0, 0, 0, 0, 3);
    NumDlgBox_param(1, 400);
    NumDlgBox_set_geo(0, 0, 0, 0, 0, 4);
    NumDlgBox_set(0, 1.5, 0);
    DateDlgBox_param(1, 500);
    DateDlgBox_set_geo(0, 0, 0, 0, 0, 5);
    DateDlgBox_set(0, 20240229, 1);
    PushDlgBox_param(1, 600);
    PushDlgBox_set_geo(0, "bouton", 0, 0, 0, 0, 6);
    DlgBoxGlobal_set(Callbacks::global);
  }
  DialogScript &expectDialog() { return desk.expectDialog("T"); }
  int run() { return ZRVDlgBoxEx("T", nullptr); }
  DialogScript &expectMarks(DialogScript &script, const char *marks) {
    return script.check([this, marks] { EXPECT_EQ(desk.takeMarks(), marks); });
  }
};

TEST_F(Marks, StandAfterFillingOnWhatKeepsOkDisabled) {
  DialogScript &script = expectDialog();
  expectMarks(script, "3 unacceptable\n6 unacceptable\n").press(kCancel);
  run();
}

// An application's own validator may ask for anything of its kind.
TEST_F(Marks, EachFieldTellsWhatItAsksFor) {
  const auto any = [](char *, int *) { return 0; };
  const auto anyNumber = [](char *, double *) { return 0; };
  const struct {
    int mode;
    ValidInt_t integer;
    ValidNum_t number;
    Expected expectedInteger;
    int leastInteger;
    Expected expectedNumber;
  } kCases[] = {
      {0, nullptr, nullptr, Expected::Integer, 0, Expected::Number},
      {1, nullptr, nullptr, Expected::IntegerFrom, 0, Expected::NumberFrom},
      {2, nullptr, nullptr, Expected::IntegerFrom, 1, Expected::NumberAbove},
      {0, intcod_i_ssup0, realcod_d_sup0, Expected::IntegerFrom, 1, Expected::NumberFrom},
      {2, any, anyNumber, Expected::Integer, 0, Expected::Number},
  };
  for (const auto &each : kCases) {
    IDB = NDB = 1;
    TDB = DDB = PDB = 0;
    IntDlgBox_set(0, 5, each.mode);
    NumDlgBox_set(0, 5, each.mode);
    if (each.integer != nullptr) IntDlgBox_set_fvalid(0, each.integer);
    if (each.number != nullptr) NumDlgBox_set_fvalid(0, each.number);
    expectDialog().press(kCancel);
    run();
    EXPECT_EQ(desk.expected(3), each.expectedInteger) << each.mode;
    EXPECT_EQ(desk.bound(3), each.leastInteger) << each.mode;
    EXPECT_EQ(desk.expected(4), each.expectedNumber) << each.mode;
    EXPECT_EQ(desk.bound(4), 0) << each.mode;
  }
}

TEST_F(Marks, AFieldTellsWhatACallbackHasItAskFor) {
  Callbacks::onAction = [] {
    IntDlgBox_set_fvalid(0, intcod_i_ssup0);
    TexteDlgBox_set_ncarac(0, 4);
  };
  expectDialog()
      .check([this] { EXPECT_EQ(desk.expected(6), Expected::Integer); })
      .press(11)
      .check([this] {
        EXPECT_EQ(desk.expected(6), Expected::IntegerFrom);
        EXPECT_EQ(desk.bound(6), 1);
        EXPECT_EQ(desk.expected(3), Expected::TextUpTo);
        EXPECT_EQ(desk.bound(3), 4);
        TDB_iCarac[0] = TDB_BUFFERSIZE - 1;
      })
      .press(11)
      .press(kCancel);
  PushDlgBox_set_fvalid(0, Callbacks::action);
  run();
  EXPECT_EQ(desk.expected(3), Expected::TextUpTo);
}

TEST_F(Marks, NothingMoreIsKnownWhereThereAreNoValidators) {
  ValidInt_t *const validators = vi;
  vi = nullptr;
  expectDialog().press(kCancel);
  run();
  EXPECT_EQ(desk.expected(6), Expected::Integer);
  vi = validators;
}

TEST_F(Marks, ATextTellsTheLimitThatTheApplicationHasSet) {
  const struct {
    int limit;
    Expected expected;
    int bound;
  } kCases[] = {{0, Expected::Text, 0},
                {1, Expected::TextUpTo, 1},
                {40, Expected::TextUpTo, 40},
                {TDB_BUFFERSIZE - 1, Expected::Text, 0}};
  for (const auto &[limit, expected, bound] : kCases) {
    TDB = 1;
    TDB_iCarac[0] = limit;
    expectDialog().press(kCancel);
    run();
    EXPECT_EQ(desk.expected(3), expected) << limit;
    EXPECT_EQ(desk.bound(3), bound) << limit;
  }
}

TEST_F(Marks, NoFieldIsMarkedWhileOkIsEnabled) {
  TexteDlgBox_set(0, "x");
  IntDlgBox_set(0, 5, 0);
  DialogScript &script = expectDialog();
  expectMarks(script, "").press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_F(Marks, AHitTellsOnlyWhatItChanged) {
  DialogScript &script = expectDialog();
  expectMarks(script, "3 unacceptable\n6 unacceptable\n");
  expectMarks(script.type(3, "a"), "3 acceptable\n");
  expectMarks(script.type(3, "bc"), "");
  expectMarks(script.type(6, "x"), "");
  expectMarks(script.deleteBack(6), "");
  expectMarks(script.type(6, "7"), "6 acceptable\n");
  expectMarks(script.replace(7, "1x"), "7 unacceptable\n");
  expectMarks(script.replace(7, "2"), "7 acceptable\n");
  script.press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_F(Marks, ADateHasItsMarkOnAllThreeItems) {
  DialogScript &script = expectDialog().check([this] { desk.takeMarks(); });
  script.replace(8, "31");
  expectMarks(script, "8 unacceptable\n9 unacceptable\n10 unacceptable\n");
  script.replace(9, "3");
  expectMarks(script, "8 acceptable\n9 acceptable\n10 acceptable\n").press(kCancel);
  run();
}

TEST_F(Marks, PopUpsAndListsHaveThemToo) {
  TDB_bOK[1] = TDB_bOK[2] = 0;
  DialogScript &script = expectDialog();
  expectMarks(script, "3 unacceptable\n4 unacceptable\n5 unacceptable\n6 unacceptable\n");
  expectMarks(script.choose(4, "Monsieur"), "4 acceptable\n");
  expectMarks(script.clickRow(5, 1), "5 acceptable\n").press(kCancel);
  run();
}

TEST_F(Marks, ATextTooLongIsMarked) {
  TexteDlgBox_set_ncarac(0, 2);
  DialogScript &script = expectDialog().check([this] { desk.takeMarks(); });
  expectMarks(script.type(3, "ab"), "3 acceptable\n");
  expectMarks(script.type(3, "c"), "3 unacceptable\n");
  expectMarks(script.deleteBack(3), "3 acceptable\n").press(kCancel);
  run();
}

TEST_F(Marks, FollowWhatCallbacksDoToTheFlags) {
  Callbacks::onGlobal = [](const GlobalCall &) {
    NDB_bOK[0] = 0;
    IDB_bOK[0] = 1;
    return 0;
  };
  DialogScript &script = expectDialog().check([this] { desk.takeMarks(); });
  expectMarks(script.press(11), "7 unacceptable\n6 acceptable\n").press(kCancel);
  run();
}

TEST_F(Marks, AFlagThatIsNeither0Nor1DisablesOkAndIsMarked) {
  TexteDlgBox_set(0, "x");
  IntDlgBox_set(0, 5, 0);
  const struct {
    int *flag;
    const char *marks;
    const char *unmarks;
  } kFlags[] = {{&TDB_bOK[0], "3 unacceptable\n", "3 acceptable\n"},
                {&IDB_bOK[0], "6 unacceptable\n", "6 acceptable\n"},
                {&NDB_bOK[0], "7 unacceptable\n", "7 acceptable\n"},
                {&DDB_bOK[0], "8 unacceptable\n9 unacceptable\n10 unacceptable\n",
                 "8 acceptable\n9 acceptable\n10 acceptable\n"}};
  DialogScript &script = expectDialog();
  for (const auto &each : kFlags) {
    for (const int value : {2, -1, 256, INT_MIN}) {
      script.check([=] { *each.flag = value; }).press(11);
      script.check([this, value] { EXPECT_FALSE(desk.isEnabled(kOk)) << value; });
      expectMarks(script, each.marks).check([=] { *each.flag = 1; }).press(11);
      script.check([this] { EXPECT_TRUE(desk.isEnabled(kOk)); });
      expectMarks(script, each.unmarks);
    }
  }
  script.press(kCancel);
  run();
}

TEST_F(Marks, ATypeOutOfUseHasNone) {
  DialogScript &script = expectDialog().check([this] {
    desk.takeMarks();
    IDB = 0;
  });
  expectMarks(script.press(11), "6 acceptable\n").check([] { IDB = 1; });
  expectMarks(script.press(11), "6 unacceptable\n").press(kCancel);
  run();
}

TEST_F(Marks, AnItemOfTwoFieldsIsMarkedWhileOneOfThemIsNotAcceptable) {
  TexteDlgBox_param(2, 100);
  for (int i = 0; i < 2; ++i) {
    TexteDlgBox_set(i, "x");
    TexteDlgBox_set_geo(i, 0, 0, 0, 0, 0);
  }
  IDB = 0;
  // The rank leads to the later item, 4.
  DialogScript &script = expectDialog().check([] { TDB_bOK[0] = TDB_bOK[1] = 0; });
  expectMarks(script.press(9), "4 unacceptable\n").check([] { TDB_bOK[0] = 1; });
  expectMarks(script.press(9), "").check([] { TDB_bOK[1] = 1; });
  expectMarks(script.press(9), "4 acceptable\n").press(kCancel);
  run();
}

TEST_F(Marks, AFieldWithoutAnItemIsNotMarkedButDisablesOk) {
  IntDlgBox_param(1, 99);  // no rank: nothing is placed, and no item has its number
  IntDlgBox_mandatory(0, 1);
  TexteDlgBox_set(0, "x");
  DialogScript &script = expectDialog();
  expectMarks(script, "").check([this] { EXPECT_FALSE(desk.isEnabled(kOk)); }).press(kCancel);
  run();
}

TEST_F(Marks, TheNextDialogIsToldOfAllOfIts) {
  expectDialog().press(kCancel);
  run();
  TDB = IDB = 1;
  DialogScript &script = expectDialog();
  expectMarks(script, "3 unacceptable\n6 unacceptable\n").press(kCancel);
  run();
}

TEST_F(Marks, TheItemsOfADateAreToldAsItsParts) {
  expectDialog()
      .check([this] {
        EXPECT_EQ(desk.datePart(7), "");
        EXPECT_EQ(desk.datePart(8), "day");
        EXPECT_EQ(desk.datePart(9), "month");
        EXPECT_EQ(desk.datePart(10), "year");
      })
      .press(kCancel);
  run();
}

}  // namespace
}  // namespace korvel::test
