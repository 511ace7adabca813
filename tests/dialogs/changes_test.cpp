// SPDX-License-Identifier: MIT
// Changes of fields that callbacks and actions ask for while the dialog is up.
#include <climits>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

// Items 3 to 6: edit text, masked text, pop-up, list; 7 and 8: numbers; 9: a push button.
constexpr int kEdit = 3, kMasked = 4, kPopUp = 5, kList = 6, kNumber = 7, kOptional = 8,
              kButton = 9;
constexpr int kHostile[] = {-1, 4, 5, 20, 128, INT_MAX, INT_MIN};

class Changes : public BothKinds {
 protected:
  Changes() { describe(); }
  void describe() {
    TexteDlgBox_param(4, first(100, kEdit));
    for (int i = 0; i < 4; ++i) {
      TexteDlgBox_set_geo(i, 0, 0, 50, 12, rank(i));
      TexteDlgBox_set(i, "avant");
    }
    TexteDlgBox_password(1, 1);
    TexteDlgBox_set_liste(2, "a,for\xEAt+b,a");
    TexteDlgBox_set(2, "b");
    TexteDlgBox_set_liste(3, "r$s");
    TexteDlgBox_change_liste(3);
    NumDlgBox_param(2, first(400, kNumber));
    for (int i = 0; i < 2; ++i) {
      NumDlgBox_set_geo(i, 0, 0, 50, 12, rank(4 + i));
      NumDlgBox_set(i, 1.5, 0);
      NumDlgBox_set_nchiff(i, 1);
    }
    NumDlgBox_mandatory(1, 0);
    PushDlgBox_param(1, first(600, kButton));
    PushDlgBox_set_geo(0, "b", 0, 0, 0, 0, rank(6));
    PushDlgBox_set_fvalid(0, Callbacks::action);
    DlgBoxGlobal_set(Callbacks::global);
    DlgBoxFinal_set(Callbacks::final);
  }
  DialogScript &expectDialog() { return desk.expectDialog("T"); }

  // Runs the dialog, with this done by the push button's action and then looked at.
  void during(std::function<void()> change, std::function<void()> checks) {
    Callbacks::onAction = std::move(change);
    expectDialog()
        .check([&] { desk.takeWrites(); })
        .press(kButton)
        .check(std::move(checks))
        .press(kCancel);
    EXPECT_EQ(run(), 0);
  }
};

// ---- Texts ----

TEST_P(Changes, ATextGoesToTheTableAndTheItem) {
  during([] { EXPECT_EQ(ZRVDlgBox_texte_set(0, "apr\xE8s \xEA\xEF"), 0); },
         [&] {
           EXPECT_STREQ(TDB_pszBuffer[0], "apr\xE8s \xEA\xEF");
           EXPECT_EQ(desk.text(kEdit), "après êï");
           EXPECT_TRUE(desk.isEnabled(kOk));
         });
}

TEST_P(Changes, AMaskedTextShowsStars) {
  during([] { ZRVDlgBox_texte_set(1, "secret"); },
         [&] {
           EXPECT_STREQ(TDB_pszBuffer[1], "secret");
           EXPECT_EQ(desk.text(kMasked), "******");
           EXPECT_TRUE(desk.isSecret(kMasked));
         });
}

TEST_P(Changes, APopUpChoosesTheLastEqualChoice) {
  const struct {
    const char *text;
    int value;
  } kCases[] = {{"a", 4}, {"for\xEAt", 2}, {"b", 3}, {"absent", 3}, {"", 3}, {"for\x90t", 3}};
  for (const auto &[text, value] : kCases) {
    SCOPED_TRACE(text);
    describe();
    during([given = text] { ZRVDlgBox_texte_set(2, given); },
           [&, given = std::string(text), wanted = value] {
             EXPECT_EQ(desk.value(kPopUp), wanted);
             EXPECT_EQ(TDB_pszBuffer[2], given);
             EXPECT_EQ(desk.isEnabled(kOk), !given.empty());
           });
  }
}

TEST_P(Changes, AnEmptyChoiceIsFoundToo) {
  TexteDlgBox_set_liste(2, "a,,b");
  TexteDlgBox_mandatory(2, 0);
  during([] { ZRVDlgBox_texte_set(2, ""); }, [&] { EXPECT_EQ(desk.value(kPopUp), 2); });
}

// Kept: counted in the list string, whatever entries the pop-up shows.
TEST_P(Changes, ChoicesAreNumberedByTheListString) {
  during(
      [] {
        TexteDlgBox_set_liste(2, "x,y,z,neuf,dix");
        ZRVDlgBox_texte_set(2, "y");
      },
      [&] { EXPECT_EQ(desk.value(kPopUp), 2); });
  describe();
  during(
      [] {
        TexteDlgBox_set_liste(2, "x,y,z,neuf,dix");
        ZRVDlgBox_texte_set(2, "dix");
      },
      [&] {
        EXPECT_EQ(desk.value(kPopUp), 3) << "there is no fifth entry";
        EXPECT_STREQ(TDB_pszBuffer[2], "dix");
      });
}

TEST_P(Changes, AnItemOfAnotherKindThanTheFieldsIsLeft) {
  during(
      [] {
        TDBC[2] = 0;
        ZRVDlgBox_texte_set(2, "a");
      },
      [&] {
        EXPECT_EQ(desk.value(kPopUp), 3);
        EXPECT_STREQ(TDB_pszBuffer[2], "a");
      });
}

TEST_P(Changes, AListShowsWhatItShowed) {
  during([] { ZRVDlgBox_texte_set(3, "s"); },
         [&] {
           EXPECT_STREQ(TDB_pszBuffer[3], "s");
           EXPECT_EQ(desk.takeWrites(), "");
         });
}

// Kept: the flag is only ever cleared here.
TEST_P(Changes, AValidTextOnAnInvalidFieldLeavesItInvalid) {
  const struct {
    const char *text;
    int mandatory, before, after;
  } kCases[] = {{"", 1, 1, 0},      {"", 0, 1, 1}, {"trois", 1, 1, 1},   {"sixsix", 0, 1, 0},
                {"trois", 1, 0, 0}, {"", 0, 0, 0}, {"\xE9\xE9", 1, 1, 1}};
  for (const auto &[text, mandatory, before, after] : kCases) {
    SCOPED_TRACE(text);
    describe();
    TexteDlgBox_set_ncarac(0, 5);
    TexteDlgBox_mandatory(0, mandatory);
    during(
        [given = text, flag = before] {
          TDB_bOK[0] = flag;
          ZRVDlgBox_texte_set(0, given);
        },
        [&, flag = after] {
          EXPECT_EQ(TDB_bOK[0], flag);
          EXPECT_EQ(desk.isEnabled(kOk), flag == 1);
        });
  }
}

TEST_P(Changes, AFieldSetInvalidIsMendedByTheNextEdit) {
  Callbacks::onAction = [] {
    ZRVDlgBox_texte_set(0, "");
    ZRVDlgBox_texte_set(0, "bon");
  };
  expectDialog()
      .press(kButton)
      .check([&] {
        EXPECT_EQ(desk.text(kEdit), "bon");
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .moveToEnd(kEdit)
      .type(kEdit, "s")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "bons");
}

TEST_P(Changes, ATextBeyondItsSliceIsCutAndMarked) {
  const std::string whole(2047, 'a');
  TDB_iCarac[0] = 100000;  // decides validity only
  during([&] { ZRVDlgBox_texte_set(0, whole.c_str()); },
         [&] {
           EXPECT_EQ(TDB_pszBuffer[0], whole);
           EXPECT_EQ(TDB_bOK[0], 1);
         });
  for (const std::size_t length : {2048, 100000}) {
    describe();
    TDB_iCarac[0] = 100000;
    during([&] { ZRVDlgBox_texte_set(0, std::string(length, 'a').c_str()); },
           [&] {
             EXPECT_EQ(TDB_pszBuffer[0], whole);
             EXPECT_EQ(desk.text(kEdit), whole);
             EXPECT_STREQ(TDB_pszBuffer[1], "avant");
             EXPECT_EQ(TDB_bOK[0], 0);
           });
  }
}

TEST_P(Changes, ATextMayComeFromTheTableItself) {
  during(
      [] {
        ZRVDlgBox_texte_set(0, TDB_pszBuffer[0] + 2);
        ZRVDlgBox_texte_set(2, TDB_PSZLBUFFER[2]);
      },
      [&] {
        EXPECT_STREQ(TDB_pszBuffer[0], "ant");
        EXPECT_EQ(desk.text(kEdit), "ant");
        EXPECT_STREQ(TDB_pszBuffer[2], "a,for\xEAt+b,a");
      });
}

// ---- Choices and rows ----

TEST_P(Changes, ChoicesAreRebuilt) {
  const char *const list = "Mme+\xE9t\xE9,$,for\xEAt";
  during(
      [=] {
        TexteDlgBox_set_liste(2, list);
        EXPECT_EQ(ZRVDlgBox_texte_set_liste(2), 0);
      },
      [&] {
        EXPECT_EQ(desk.entries(kPopUp), (std::vector<std::string>{"Mme", "été", "$", "forêt"}));
        EXPECT_EQ(desk.value(kPopUp), 0) << "nothing is chosen";
        EXPECT_STREQ(TDB_PSZLBUFFER[2], list) << "the list string is unchanged";
        EXPECT_STREQ(TDB_pszBuffer[2], "b");
        EXPECT_EQ(TDB_bOK[2], 1);
        EXPECT_TRUE(desk.isEnabled(kOk));
      });
}

TEST_P(Changes, RowsAreRebuiltWithoutConversion) {
  during(
      [] {
        TexteDlgBox_set_liste(3, "F\xE9minin$\x88$a,b+c");
        TDBC[3] = 0;  // which set_liste has set
        TDBL[3] = 1;
        ZRVDlgBox_texte_set_liste(3);
      },
      [&] {
        EXPECT_EQ(desk.entries(kList), (std::vector<std::string>{"Féminin", "à", "a,b+c"}));
        EXPECT_STREQ(TDB_PSZLBUFFER[3], "F\xE9minin$\x88$a,b+c");
      });
}

TEST_P(Changes, OfAnEmptyStringAPopUpHasOneEmptyChoiceAndAListNoRows) {
  during(
      [] {
        TDB_PSZLBUFFER[2][0] = TDB_PSZLBUFFER[3][0] = '\0';
        ZRVDlgBox_texte_set_liste(2);
        ZRVDlgBox_texte_set_liste(3);
      },
      [&] {
        EXPECT_EQ(desk.entries(kPopUp), std::vector<std::string>{""});
        EXPECT_TRUE(desk.entries(kList).empty());
      });
}

TEST_P(Changes, AFieldThatIsNeitherIsLeft) {
  during(
      [] {
        ZRVDlgBox_texte_set_liste(0);
        TDBC[2] = TDBL[2] = TDBL[3] = 0;
        ZRVDlgBox_texte_set_liste(2);
        ZRVDlgBox_texte_set_liste(3);
        TDBC[0] = TDBL[1] = 1;  // edit-text items
        ZRVDlgBox_texte_set_liste(0);
        ZRVDlgBox_texte_set_liste(1);
        TDBC[3] = TDBL[3] = 1;  // a list that counts as a pop-up
        ZRVDlgBox_texte_set_liste(3);
      },
      [&] { EXPECT_EQ(desk.takeWrites(), ""); });
}

TEST_P(Changes, ARebuiltPopUpIsChosenFrom) {
  Callbacks::onAction = [] {
    TexteDlgBox_set_liste(2, "neuf,dix");
    ZRVDlgBox_texte_set_liste(2);
    ZRVDlgBox_texte_set(2, "dix");
  };
  expectDialog()
      .press(kButton)
      .check([&] { EXPECT_EQ(desk.value(kPopUp), 2); })
      .choose(kPopUp, "neuf")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[2], "neuf");
}

TEST_P(Changes, APopUpMayRebuildItselfWhenItIsChosenFrom) {
  Callbacks::onGlobal = [](const GlobalCall &) {
    TexteDlgBox_set_liste(2, "u,v");
    ZRVDlgBox_texte_set_liste(2);
    TexteDlgBox_set_liste(3, "t$u");
    TexteDlgBox_change_liste(3);
    ZRVDlgBox_texte_set_liste(3);
    return 0;
  };
  expectDialog().choose(kPopUp, "a").clickRow(kList, 1).choose(kPopUp, "v").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[2], "v");
}

// ---- Numbers ----

TEST_P(Changes, ANumberGoesToTheItemAndItsValueToTheTable) {
  const struct {
    int i;
    const char *text;
    double value;  // after
    int valid;
  } kCases[] = {
      {0, "2,75", 2.75, 1},
      {0, " 3 ", 3, 1},
      {0, "x", 1.5, 0},  // refused, and not stored by this validator
      {0, "", 1.5, 0},
  };
  for (const auto &[i, text, value, valid] : kCases) {
    SCOPED_TRACE(text);
    describe();
    during([i = i, given = text] { EXPECT_EQ(ZRVDlgBox_num_set(i, given), 0); },
           [&, i = i, shown = std::string(text), wanted = value, flag = valid] {
             EXPECT_EQ(desk.text(kNumber + i), shown);
             EXPECT_NEAR(NDB_dNums[i], wanted, 1e-12);
             EXPECT_EQ(NDB_bOK[i], flag);
             EXPECT_EQ(desk.isEnabled(kOk), flag == 1);
           });
  }
}

std::vector<std::string> s_seen;
int s_answer = 0;
int recordNumber(char *text, double *) {
  s_seen.push_back(text);
  return s_answer;
}

TEST_P(Changes, AnEmptyTextIsHandedOverOnlyWhenOptional) {
  NumDlgBox_set_fvalid(0, recordNumber);
  NumDlgBox_set_fvalid(1, recordNumber);
  for (const int answer : {0, 1}) {
    describe();
    vf_tab[0] = vf_tab[1] = recordNumber;
    s_answer = 0;
    during(
        [=] {
          s_seen.clear();
          s_answer = answer;
          ZRVDlgBox_num_set(0, "");
          EXPECT_TRUE(s_seen.empty());
          ZRVDlgBox_num_set(1, "");
          EXPECT_EQ(s_seen, std::vector<std::string>{""});
        },
        [&, wanted = 1 - answer] {
          EXPECT_EQ(NDB_bOK[0], 0);
          EXPECT_EQ(NDB_bOK[1], wanted);
        });
  }
}

TEST_P(Changes, ANumberSetsAndClearsItsFlag) {
  during(
      [] {
        NDB_bOK[0] = 0;
        ZRVDlgBox_num_set(0, "2");
        EXPECT_EQ(NDB_bOK[0], 1);
        ZRVDlgBox_num_set(0, "deux");
        EXPECT_EQ(NDB_bOK[0], 0);
        ZRVDlgBox_num_set(0, "3");
      },
      [&] { EXPECT_TRUE(desk.isEnabled(kOk)); });
}

TEST_P(Changes, AVeryLongNumberIsSurvived) {
  during([] { ZRVDlgBox_num_set(0, std::string(100000, '1').c_str()); },
         [&] { EXPECT_EQ(desk.text(kNumber).size(), 100000U); });
}

// ---- Which fields change, and when ----

TEST_P(Changes, CheckBoxesAndIntegersAreNotChangedThisWay) {
  during(
      [] {
        // Kept: check boxes and integers are not changed this way.
        EXPECT_EQ(ZRVDlgBox_bool_set(0, 1), 0);
        EXPECT_EQ(ZRVDlgBox_int_set(0, 1), 0);
      },
      [&] { EXPECT_EQ(desk.takeWrites(), ""); });
}

TEST_P(Changes, IndexesOutsideTheCountDoNothing) {
  during(
      [] {
        for (const int i : kHostile) {
          EXPECT_EQ(ZRVDlgBox_texte_set(i, "x"), 0);
          EXPECT_EQ(ZRVDlgBox_texte_set_liste(i), 0);
          EXPECT_EQ(ZRVDlgBox_num_set(i, "2"), 0);
          EXPECT_EQ(ZRVDlgBox_bool_set(i, 1), 0);
          EXPECT_EQ(ZRVDlgBox_int_set(i, 1), 0);
        }
        EXPECT_EQ(ZRVDlgBox_num_set(2, "2"), 0);
        TDB_N = NDB_N = INT_MAX;
        for (const int i : {-1, 128, INT_MAX, INT_MIN}) {
          EXPECT_EQ(ZRVDlgBox_texte_set(i, "x"), 0);
          EXPECT_EQ(ZRVDlgBox_texte_set_liste(i), 0);
          EXPECT_EQ(ZRVDlgBox_num_set(i, "2"), 0);
        }
        EXPECT_EQ(ZRVDlgBox_texte_set(20, "x"), 0);
        TDB_N = 4;
        NDB_N = 2;
        EXPECT_EQ(ZRVDlgBox_texte_set(0, nullptr), 0);
        EXPECT_EQ(ZRVDlgBox_num_set(0, nullptr), 0);
      },
      [&] {
        EXPECT_EQ(desk.takeWrites(), "");
        EXPECT_STREQ(TDB_pszBuffer[0], "avant");
      });
}

TEST_P(Changes, TypesNotInUseAreNotChanged) {
  during(
      [] {
        TDB = NDB = 0;
        ZRVDlgBox_texte_set(0, "x");
        ZRVDlgBox_texte_set_liste(2);
        ZRVDlgBox_num_set(0, "2");
        TDB = NDB = 1;
      },
      [&] {
        EXPECT_EQ(desk.takeWrites(), "");
        EXPECT_STREQ(TDB_pszBuffer[0], "avant");
        EXPECT_EQ(NDB_dNums[0], 1.5);
      });
}

TEST_P(Changes, NothingIsChangedWithoutADialog) {
  const auto ask = [] {
    EXPECT_EQ(ZRVDlgBox_texte_set(0, "x"), 0);
    EXPECT_EQ(ZRVDlgBox_texte_set_liste(2), 0);
    EXPECT_EQ(ZRVDlgBox_num_set(0, "2"), 0);
    EXPECT_STREQ(TDB_pszBuffer[0], "avant");
    EXPECT_EQ(NDB_dNums[0], 1.5);
    EXPECT_EQ(TDB_bOK[0] & NDB_bOK[0], 1);
  };
  ask();
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
  ask();
  describe();
  ask();
}

TEST_P(Changes, TheExportedDialogDoesNotDecide) {
  during(
      [] {
        DlgBox_hDlg = nullptr;
        ZRVDlgBox_texte_set(0, "x");
      },
      [&] { EXPECT_EQ(desk.text(kEdit), "x"); });
}

TEST_P(Changes, CallbacksAndValidatorsMayAskToo) {
  Callbacks::onGlobal = [](const GlobalCall &call) {
    if (call.item == 600) return 0;
    if (call.item == 400) ZRVDlgBox_texte_set(0, call.nums[0] < 10 ? "peu" : "");
    if (call.item == 100) ZRVDlgBox_num_set(1, call.texts[0]);
    return 0;
  };
  Callbacks::onFinal = [](const FinalCall &) {
    ZRVDlgBox_texte_set(0, "refus");
    DlgBoxFinal_Erreur_set("refus");
    return 0;
  };
  expectDialog()
      .replace(kNumber, "2")
      .check([&] { EXPECT_EQ(desk.text(kEdit), "peu"); })
      .replace(kEdit, "12,5")
      .check([&] {
        EXPECT_EQ(desk.text(kOptional), "12,5");
        EXPECT_EQ(NDB_dNums[1], 12.5);
      })
      .press(kOk)
      .check([&] {
        EXPECT_EQ(desk.text(kEdit), "refus");
        EXPECT_TRUE(desk.isEnabled(kOk));
      })
      .replace(kNumber, "20")
      .check([&] {
        EXPECT_EQ(desk.text(kEdit), "");
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .press(kCancel);
  EXPECT_EQ(run(), 0);
  EXPECT_STREQ(DlgBoxFinal_Erreur(), "refus");
}

int changeOthers(char *text, double *value) {
  ZRVDlgBox_texte_set(0, "validateur");
  return realcod_d(text, value);
}

TEST_P(Changes, AValidatorMayAskWhileTheDialogIsFilled) {
  NumDlgBox_set_fvalid(0, changeOthers);
  expectDialog().check([&] { EXPECT_EQ(desk.text(kEdit), "validateur"); }).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "validateur");
}

TEST_P(Changes, TheFieldBeingTypedIntoMayBeChanged) {
  Callbacks::onGlobal = [](const GlobalCall &call) {
    if (call.item == 100 && std::strlen(call.texts[0]) > 3) ZRVDlgBox_texte_set(0, "abc");
    return 0;
  };
  expectDialog()
      .moveToEnd(kEdit)
      .type(kEdit, "xy")
      .check([&] { EXPECT_EQ(desk.text(kEdit), "abc"); })
      .press(kCancel);
  EXPECT_EQ(run(), 0);
  EXPECT_STREQ(TDB_pszBuffer[0], "abc");
}

TEST_P(Changes, TheRowsOfADoubleClickMayBeRebuiltByTheFinalCallback) {
  int refusals = 1;
  Callbacks::onFinal = [&](const FinalCall &) {
    TexteDlgBox_set_liste(3, "t$u$v");
    TexteDlgBox_change_liste(3);
    ZRVDlgBox_texte_set_liste(3);
    return refusals-- > 0 ? 0 : 1;
  };
  expectDialog()
      .doubleClickRow(kList, 1)
      .check([&] {
        EXPECT_EQ(desk.entries(kList), (std::vector<std::string>{"t", "u", "v"}));
        EXPECT_STREQ(TDB_pszBuffer[3], "s") << "stored by the first click alone";
      })
      .doubleClickRow(kList, 2);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[3], "v");
}

TEST_P(Changes, IndexesOutsideTheCountDoNothingInCallbacksEither) {
  const auto ask = [&] {
    desk.takeWrites();
    for (const int i : kHostile) {
      EXPECT_EQ(ZRVDlgBox_texte_set(i, "x"), 0);
      EXPECT_EQ(ZRVDlgBox_texte_set_liste(i), 0);
      EXPECT_EQ(ZRVDlgBox_num_set(i, "2"), 0);
      EXPECT_EQ(TexteDlgBox_global(i), 0);
      EXPECT_EQ(DateDlgBox_global(i), 0);
    }
    EXPECT_EQ(desk.takeWrites(), "");
    EXPECT_STREQ(TDB_pszBuffer[0], "avant");
  };
  Callbacks::onGlobal = [&](const GlobalCall &) {
    ask();
    return 0;
  };
  Callbacks::onFinal = [&](const FinalCall &) {
    ask();
    return 1;
  };
  expectDialog().press(kButton).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::globalCalls.size(), 1U);
}

KORVEL_IN_BOTH_KINDS(Changes);

}  // namespace
}  // namespace korvel::test
