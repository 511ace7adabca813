// SPDX-License-Identifier: MIT
// Items and ranks at the limits of the numbering tables, fixed items, shared ranks.
#include "dialogs/numbering.h"

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

using dialogs::fieldOf;
using dialogs::identifierOf;
using dialogs::itemOf;
using dialogs::kDateFields;
using dialogs::kIntegerFields;
using dialogs::kTextFields;

class Numbering : public DialogTest {};

TEST_F(Numbering, AFieldWithoutARankIsAFixedItem) {
  TexteDlgBox_param(3, 40);
  DateDlgBox_param(3, 50);
  EXPECT_EQ(itemOf(kTextFields, 2), 42);
  EXPECT_EQ(itemOf(kDateFields, 2), 56);
}

TEST_F(Numbering, ARankLeadsThroughItsOffset) {
  IntDlgBox_param(1, 40);
  IntDlgBox_set_geo(0, 0, 0, 0, 0, 127);
  Dlg_rkOffset[127] = 100;
  EXPECT_EQ(itemOf(kIntegerFields, 0), 27);
}

TEST_F(Numbering, WildTablesReachNoItem) {
  IntDlgBox_param(1, INT_MAX);
  EXPECT_EQ(itemOf(kIntegerFields, 0), -1) << "taken as a 16-bit number";
  for (const int rank : {128, 32767}) {
    IDB_rk[0] = static_cast<short>(rank);
    EXPECT_EQ(itemOf(kIntegerFields, 0), 0);
  }
  IDB_rk[0] = 5;
  Dlg_rkOffset[5] = INT_MIN;
  EXPECT_EQ(itemOf(kIntegerFields, 0), 5) << "taken as a 16-bit number";
}

TEST_F(Numbering, IdentifiersOfItemsOutsideTheTableAreTheItems) {
  Dlg_itemOffset[0] = 7;
  Dlg_itemOffset[127] = 7;
  EXPECT_EQ(identifierOf(0), -7);
  EXPECT_EQ(identifierOf(127), 120);
  EXPECT_EQ(identifierOf(128), 128);
  EXPECT_EQ(identifierOf(-1), -1);
  EXPECT_EQ(identifierOf(INT_MIN), INT_MIN);
  EXPECT_EQ(identifierOf(INT_MAX), INT_MAX);
  Dlg_itemOffset[3] = INT_MIN;
  identifierOf(3);
}

TEST_F(Numbering, EachItemOfADateNamesTheSameField) {
  DateDlgBox_param(2, 50);
  for (int identifier = 50; identifier < 56; ++identifier) {
    EXPECT_EQ(fieldOf(kDateFields, identifier), (identifier - 50) / 3);
  }
  EXPECT_EQ(fieldOf(kDateFields, 56), std::nullopt);
  EXPECT_EQ(fieldOf(kDateFields, 47), std::nullopt);
  // Kept: the division truncates toward zero.
  EXPECT_EQ(fieldOf(kDateFields, 49), 0);
  EXPECT_EQ(fieldOf(kDateFields, 48), 0);
}

TEST_F(Numbering, IdentifiersNameOnlyFieldsInUse) {
  TexteDlgBox_param(2, 40);
  EXPECT_EQ(fieldOf(kTextFields, 41), 1);
  EXPECT_EQ(fieldOf(kTextFields, 42), std::nullopt);
  EXPECT_EQ(fieldOf(kTextFields, 39), std::nullopt);
  TDB_N = 1000;
  EXPECT_EQ(fieldOf(kTextFields, 59), 19);
  EXPECT_EQ(fieldOf(kTextFields, 60), std::nullopt);
  TDB = 0;
  EXPECT_EQ(fieldOf(kTextFields, 41), std::nullopt);
  TDB_ID_TEXTE = INT_MIN;
  EXPECT_EQ(fieldOf(kTextFields, INT_MAX), std::nullopt);
}

// ---- Descriptions at the limits ----

// n integer fields with consecutive ranks from `firstRank`.
void describeIntegers(int n, int firstRank) {
  IntDlgBox_param(n, 1000);
  for (int i = 0; i < n; ++i) IntDlgBox_set_geo(i, 0, 0, 0, 0, firstRank + i);
}

TEST_F(Numbering, Item127IsTheLast) {
  describeIntegers(125, 0);
  for (int i = 0; i < 125; ++i) IntDlgBox_set(i, i, 0);
  desk.expectDialog("T").replace(127, "77").press(kOk);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 1);
  EXPECT_EQ(IDB_iInts[124], 77);
  EXPECT_EQ(Dlg_itemOffset[127], 127 - 1000 - 124);
  EXPECT_EQ(Dlg_rkOffset[124], 124 - 127);
}

// Expects the description to be refused with this line and ended as by a cancel.
void expectRefusal(const std::string &line) {
  TailleDlgBox_set(200, 100);
  TitreDlgBox_set("T");
  StaticDlgBox_param(1);
  StaticDlgBox_set(0, "\xE9");
  DlgBoxGlobal_set(Callbacks::global);
  DlgBoxFinal_set(Callbacks::final);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), line);
  EXPECT_EQ(LDB_cx, 200) << "not scaled";
  EXPECT_EQ(LDB_cy, 100);
  EXPECT_STREQ(SDB_pszBuffer[0], "\xE9") << "not converted";
  EXPECT_EQ(TDB | BDB | IDB | NDB | DDB | PDB | SDB | HDB, 0);
  EXPECT_NE(DlgBoxGlobal_fonct, Callbacks::global);
  EXPECT_NE(DlgBoxFinal_fonct, Callbacks::final);
  EXPECT_TRUE(Callbacks::finalCalls.empty());
}

TEST_F(Numbering, Item128IsRefused) {
  describeIntegers(126, 0);
  expectRefusal(
      "korvel: dialog not shown: integer field 125 would need item 128, beyond the last one, "
      "127\n");
  EXPECT_EQ(desk.dialogsShown(), 0);
}

TEST_F(Numbering, ADateNeedsThreeItems) {
  describeIntegers(122, 0);
  DateDlgBox_param(1, 2000);
  DateDlgBox_set_geo(0, 0, 0, 0, 0, 122);
  desk.expectDialog("T").press(kCancel);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 0);
  EXPECT_EQ(Dlg_itemOffset[127], 127 - 2000);
  describeIntegers(123, 0);
  DateDlgBox_param(1, 2000);
  DateDlgBox_set_geo(0, 0, 0, 0, 0, 123);
  expectRefusal(
      "korvel: dialog not shown: date field 0 would need item 128, beyond the last one, 127\n");
}

TEST_F(Numbering, SharedRanksCountAllTheirFields) {
  describeIntegers(128, 0);
  for (int i = 0; i < 128; ++i) IDB_rk[i] = 0;
  expectRefusal(
      "korvel: dialog not shown: integer field 125 would need item 128, beyond the last one, "
      "127\n");
}

TEST_F(Numbering, Rank127IsTheLast) {
  PushDlgBox_param(1, 1000);
  PushDlgBox_set_geo(0, "P", 0, 0, 0, 0, 127);
  desk.expectDialog("T").press(3).press(kCancel);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 0);
  EXPECT_EQ(Dlg_rkOffset[127], 127 - 3);
}

TEST_F(Numbering, Rank128IsRefused) {
  PushDlgBox_param(2, 1000);
  PushDlgBox_set_geo(0, "P", 0, 0, 0, 0, 3);
  PushDlgBox_set_geo(1, "P", 0, 0, 0, 0, 128);
  expectRefusal(
      "korvel: dialog not shown: push button 1 would need rank 128, beyond the last one, 127\n");
  BoolDlgBox_param(1, 1000);
  BoolDlgBox_set_geo(0, "B", 0, 0, 0, 0, 32767);
  expectRefusal(
      "korvel: dialog not shown: check box 0 would need rank 32767, beyond the last one, 127\n");
  NumDlgBox_param(1, 1000);
  NumDlgBox_set_geo(0, 0, 0, 0, 0, 200);
  expectRefusal(
      "korvel: dialog not shown: number field 0 would need rank 200, beyond the last one, 127\n");
  TexteDlgBox_param(1, 1000);
  TexteDlgBox_set_geo(0, 0, 0, 0, 0, 128);
  expectRefusal(
      "korvel: dialog not shown: text field 0 would need rank 128, beyond the last one, 127\n");
}

TEST_F(Numbering, FieldsWithoutARankOrNotInUseNeedNoItem) {
  describeIntegers(128, 0);
  for (int i = 0; i < 128; ++i) IDB_rk[i] = -1;
  NumDlgBox_param(1, 1000);
  NumDlgBox_set_geo(0, 0, 0, 0, 0, 200);
  NDB = 0;
  TDB_rk[5] = 500;
  desk.expectDialog("T").press(kCancel);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 0);
}

TEST_F(Numbering, CountsBeyondTheTablesAreCut) {
  TexteDlgBox_param(1, 1000);
  StaticDlgBox_param(1);
  for (int i = 0; i < 20; ++i) TDB_rk[i] = static_cast<short>(i);
  TDB_N = SDB_N = INT_MAX;
  desk.expectDialog("T").type(22, "x").press(kCancel);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 0);
}

// ---- Fields whose items are of another kind ----

TEST_F(Numbering, AFieldWithoutARankIsLookedForAtItsFixedItem) {
  // Item 3 belongs to integer field 0, by rank, and is the fixed item of text field 0.
  describeIntegers(1, 0);
  IntDlgBox_set(0, 5, 0);
  TexteDlgBox_param(1, 3);
  TexteDlgBox_set(0, "texte");
  DlgBoxGlobal_set(Callbacks::global);
  desk.expectDialog("T")
      .check([&] { EXPECT_EQ(desk.text(3), "5") << "filled last"; })
      .replace(3, "12")
      .press(kOk);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 1);
  EXPECT_EQ(IDB_iInts[0], 12);
  EXPECT_STREQ(TDB_pszBuffer[0], "texte") << "the item's identifier is the placed field's";
  EXPECT_EQ(Callbacks::identifiers(), "1000 ");
}

TEST_F(Numbering, APlainTextFieldLeavesTheEntriesOfAnothersItem) {
  // Text fields 2 and 3 are looked for at items 3 and 4, where 0 and 1 are placed.
  TexteDlgBox_param(4, 1);
  TexteDlgBox_set_liste(0, "a,b");
  TexteDlgBox_set_liste(1, "a$b$c");
  TexteDlgBox_change_liste(1);
  for (int i = 0; i < 4; ++i) TexteDlgBox_set(i, "a");
  TDB_rk[0] = 0;
  TDB_rk[1] = 1;
  desk.expectDialog("T")
      .check([&] {
        EXPECT_EQ(desk.entries(3), (std::vector<std::string>{"a", "b"}));
        EXPECT_EQ(desk.value(3), 1);
        EXPECT_EQ(desk.entries(4), (std::vector<std::string>{"a", "b", "c"}));
      })
      .press(kCancel);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 0);
}

TEST_F(Numbering, OfFieldsThatShareARankOnlyTheLastIsReached) {
  IntDlgBox_param(2, 1000);
  IntDlgBox_set_geo(0, 0, 0, 0, 0, 0);
  IntDlgBox_set_geo(1, 0, 0, 0, 0, 0);
  IntDlgBox_set(0, 1, 0);
  IntDlgBox_set(1, 2, 0);
  DlgBoxGlobal_set(Callbacks::global);
  desk.expectDialog("T")
      .check([&] {
        EXPECT_EQ(desk.text(3), "") << "placed, but never filled";
        EXPECT_EQ(desk.text(4), "2");
      })
      .replace(4, "7")
      // A hit on the first one's item is handled for that field, but reads the item of its rank.
      .type(3, "9")
      .press(kOk);
  EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 1);
  EXPECT_EQ(IDB_iInts[1], 7);
  EXPECT_EQ(IDB_iInts[0], 7);
  EXPECT_EQ(Callbacks::identifiers(), "1001 1000 ");
}

TEST_F(Numbering, EveryTypeSurvivesItemsOfEveryOtherKind) {
  // Fields of all types and forms share a rank: all but the last read and write an item of another
  // kind.
  for (int last = 0; last < 8; ++last) {
    SCOPED_TRACE(last);
    DialogGlobals::reset();
    TexteDlgBox_param(3, 100);
    TexteDlgBox_set_liste(1, "a,b");
    TexteDlgBox_set_liste(2, "a$b");
    TexteDlgBox_change_liste(2);
    BoolDlgBox_param(1, 200);
    IntDlgBox_param(1, 300);
    IntDlgBox_password(0, 1);
    NumDlgBox_param(1, 400);
    DateDlgBox_param(1, 500);
    PushDlgBox_param(1, 600);
    short *const ranks[] = {&TDB_rk[0], &TDB_rk[1], &TDB_rk[2], &BDB_rk[0],
                            &IDB_rk[0], &NDB_rk[0], &DDB_rk[0], &PDB_rk[0]};
    for (int field = 0; field < 8; ++field) *ranks[field] = field == last ? 1 : 0;
    for (int i = 0; i < 3; ++i) TexteDlgBox_set(i, "a");
    BoolDlgBox_set(0, 1);
    IntDlgBox_set(0, 1234, 0);
    NumDlgBox_set(0, 1.5, 0);
    DateDlgBox_set(0, 20240229, 1);
    DlgBoxGlobal_set(Callbacks::global);
    Callbacks::onGlobal =
        redisplaying({100, -100, 101, -101, 102, -102, 200, -200, 300, -300, 400, -400, 500, -500});
    DialogScript &script = desk.expectDialog("T");
    for (int item = -1; item < 16; ++item) {
      if (item != kOk && item != kCancel) script.hit(item);
    }
    script.press(kCancel);
    EXPECT_EQ(ZRVDlgBoxEx("T", nullptr), 0);
  }
}

}  // namespace
}  // namespace korvel::test
