// SPDX-License-Identifier: MIT
// The names that an application gives to fields, for screen readers.
#include <climits>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

// Text 3, check box 4, integer 5, number 6, date 7 to 9, push button 10 of a dialog that is built.
class FieldNames : public BothKinds {
 protected:
  FieldNames() { define(); }

  void define() {
    TexteDlgBox_param(1, first(100, 3));
    BoolDlgBox_param(1, first(200, 4));
    IntDlgBox_param(1, first(300, 5));
    NumDlgBox_param(1, first(400, 6));
    DateDlgBox_param(1, first(500, 7));
    PushDlgBox_param(1, first(600, 10));
    TexteDlgBox_set_geo(0, 0, 0, 0, 0, rank(0));
    BoolDlgBox_set_geo(0, "", 0, 0, 0, 0, rank(1));
    IntDlgBox_set_geo(0, 0, 0, 0, 0, rank(2));
    NumDlgBox_set_geo(0, 0, 0, 0, 0, rank(3));
    DateDlgBox_set_geo(0, 0, 0, 0, 0, rank(4));
    PushDlgBox_set_geo(0, "", 0, 0, 0, 0, rank(5));
  }
  int name(int identifier, const char *text) {
    return KorvelItemName(Callbacks::inDialog(identifier), text);
  }
  // Runs the dialog, and returns the names of items 3 to 10.
  std::string namesShown() {
    std::string names;
    desk.expectDialog("T")
        .check([&] {
          for (int item = 3; item <= 10; ++item) names += desk.name(item) + '|';
        })
        .press(kCancel);
    run();
    return names;
  }
};

TEST_P(FieldNames, EveryKindOfFieldIsNamed) {
  EXPECT_EQ(name(100, "Nom d'usage"), 1);
  EXPECT_EQ(name(200, "Fumeur"), 1);
  EXPECT_EQ(name(300, "\xC2ge"), 1);
  EXPECT_EQ(name(400, "Temp\xE9rature (\xB0)"), 1);
  EXPECT_EQ(name(500, "N\xE9(e) le"), 1);
  EXPECT_EQ(name(600, "Appeler"), 1);
  EXPECT_EQ(namesShown(),
            "Nom d'usage|Fumeur|Âge|Température (°)|Né(e) le|Né(e) le|Né(e) le|Appeler|");
}

TEST_P(FieldNames, AFieldThatIsNotNamedHasNone) {
  EXPECT_EQ(name(300, "Poids"), 1);
  EXPECT_EQ(namesShown(), "||Poids||||||");
}

TEST_P(FieldNames, EachPartOfADateLeadsToTheDate) {
  for (const int part : {0, 1, 2}) {
    define();
    EXPECT_EQ(KorvelItemName(Callbacks::inDialog(500) + part, "Visite"), 1);
    EXPECT_EQ(namesShown(), "||||Visite|Visite|Visite||") << part;
  }
}

TEST_P(FieldNames, TheLastNameCounts) {
  EXPECT_EQ(name(300, "Poids"), 1);
  EXPECT_EQ(name(400, "Taille"), 1);
  EXPECT_EQ(name(300, "Pouls"), 1);
  EXPECT_EQ(name(400, ""), 1);
  EXPECT_EQ(namesShown(), "||Pouls||||||");
}

TEST_P(FieldNames, WhatIsNoFieldCannotBeNamed) {
  TDB = 0;
  const int unknown[] = {0, -1, 1, 2, INT_MAX, INT_MIN, Callbacks::inDialog(100)};
  for (const int identifier : unknown) EXPECT_EQ(KorvelItemName(identifier, "x"), 0) << identifier;
  EXPECT_EQ(name(300, nullptr), 0);
  TDB = 1;
  EXPECT_EQ(namesShown(), "||||||||");
}

TEST_P(FieldNames, AreForgottenAtTheEndOfTheRun) {
  name(100, "Nom");
  EXPECT_EQ(namesShown(), "Nom||||||||");
  TDB = BDB = IDB = NDB = DDB = PDB = 1;
  EXPECT_EQ(namesShown(), "||||||||");
}

TEST_P(FieldNames, AreForgottenWhenTheirTypeIsDefinedAnew) {
  name(100, "Nom");
  name(300, "Poids");
  IntDlgBox_param(1, first(300, 5));
  IntDlgBox_set_geo(0, 0, 0, 0, 0, rank(2));
  EXPECT_EQ(namesShown(), "Nom||||||||");
}

TEST_P(FieldNames, AFieldThatWasTakenOutOfUseIsNotNamed) {
  name(100, "Nom");
  name(300, "Poids");
  IDB = 0;
  std::string names;
  desk.expectDialog("T").check([&] { names = desk.name(3) + '|' + desk.name(5); }).press(kCancel);
  run();
  EXPECT_EQ(names, "Nom|");
}

TEST_P(FieldNames, NothingIsNamedWhileADialogRuns) {
  name(100, "Nom");
  desk.expectDialog("T")
      .check([&] {
        EXPECT_EQ(name(100, "Autre"), 0);
        EXPECT_EQ(name(300, "Poids"), 0);
        EXPECT_EQ(desk.name(3), "Nom");
      })
      .press(kCancel);
  run();
}

TEST_P(FieldNames, AreNotNeededWithoutAScreen) {
  desk.takeScreenAway("no screen");
  EXPECT_EQ(name(100, "Nom"), 1);
  testing::internal::CaptureStderr();
  EXPECT_EQ(run(), 0);
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

KORVEL_IN_BOTH_KINDS(FieldNames);

}  // namespace
}  // namespace korvel::test
