// SPDX-License-Identifier: MIT
// Check boxes, integers, numbers, dates and push buttons on the screen.
#include <climits>
#include <cmath>
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

constexpr int kItem = 3;

// The texts that validation functions were given.
std::vector<std::string> s_seen;
int recordInteger(char *text, int *value) {
  s_seen.push_back(text);
  return intcod_l(text, value);
}
int refuseInteger(char *text, int *value) {
  s_seen.push_back(text);
  *value = -99;
  return 3;
}
int recordNumber(char *text, double *value) {
  s_seen.push_back(text);
  return realcod_d(text, value);
}
// Writes up to the last byte of its promised room.
int fillItsRoom(char *text, int *) {
  std::memset(text, 'v', 255);
  text[255] = '\0';
  return 0;
}

class Items : public BothKinds {
 protected:
  Items() {
    s_seen.clear();
    DlgBoxGlobal_set(Callbacks::global);
  }
  DialogScript &expectDialog() { return desk.expectDialog("T"); }
};

// ---- Check boxes ----

class CheckBoxItems : public Items {
 protected:
  CheckBoxItems() {
    BoolDlgBox_param(2, first(200, 3));
    BoolDlgBox_set_geo(0, "a", 0, 0, 0, 0, rank(0));
    BoolDlgBox_set_geo(1, "b", 0, 0, 0, 0, rank(1));
  }
};

TEST_P(CheckBoxItems, AreFilledAndToggled) {
  BoolDlgBox_set(1, 1);
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.value(3), 0);
        EXPECT_EQ(desk.value(4), 1);
      })
      .click(3)
      .check([&] {
        EXPECT_EQ(desk.value(3), 1);
        EXPECT_EQ(BDB_bFlags[0], 1);
      })
      .click(4)
      .click(3)
      .click(3)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(BDB_bFlags[0], 1);
  EXPECT_EQ(BDB_bFlags[1], 0);
  EXPECT_EQ(Callbacks::identifiers(), "200 201 200 200 ");
}

TEST_P(CheckBoxItems, OddValuesShowAsOnAndOff) {
  BoolDlgBox_set(0, 5);
  BoolDlgBox_set(1, -1);
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.value(3), 1);
        EXPECT_EQ(desk.value(4), 0);
      })
      .click(3)
      .click(4)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(BDB_bFlags[0], 0);
  EXPECT_EQ(BDB_bFlags[1], 1);
}

TEST_P(CheckBoxItems, UntouchedOnesKeepTheirValue) {
  BoolDlgBox_set(0, 5);
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(BDB_bFlags[0], 5);
}

// Kept: clearing a check box shows its value.
TEST_P(CheckBoxItems, ShowingAndClearingShowTheValue) {
  for (const int identifier : {201, -201}) {
    BDB = 1;
    DlgBoxGlobal_set(Callbacks::global);
    BoolDlgBox_set(0, 0);
    BoolDlgBox_set(1, 0);
    Callbacks::onGlobal = [=](const GlobalCall &call) {
      call.bools[1] = 1;
      return redisplaying({identifier})(call);
    };
    expectDialog().click(3).check([&] { EXPECT_EQ(desk.value(4), 1); }).press(kOk);
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(BDB_bFlags[1], 1);
  }
}

// ---- Integers ----

class IntegerItems : public Items {
 protected:
  IntegerItems() {
    IntDlgBox_param(1, first(300, 3));
    IntDlgBox_set_geo(0, 0, 0, 50, 12, rank(0));
  }
};

TEST_P(IntegerItems, AreFilledSelectedAndChecked) {
  const struct {
    int value, mode, valid;
    const char *text;
  } kCases[] = {{0, 0, 1, "0"},
                {-5, 0, 1, "-5"},
                {-5, 1, 0, "-5"},
                {0, 2, 0, "0"},
                {32767, 0, 1, "32767"},
                {32768, 0, 0, "32768"},
                {INT_MAX, 0, 0, "2147483647"},
                {INT_MIN, 0, 0, "-"}};
  for (const auto &[value, mode, valid, text] : kCases) {
    SCOPED_TRACE(value);
    IDB = 1;
    IDB_bOK[0] = 1;
    IntDlgBox_set(0, value, mode);
    expectDialog()
        .check([&, shown = std::string(text), enabled = valid == 1] {
          EXPECT_EQ(desk.text(kItem), shown);
          EXPECT_EQ(desk.selectedText(kItem), shown);
          EXPECT_EQ(desk.isEnabled(kOk), enabled);
          EXPECT_FALSE(desk.isSecret(kItem));
        })
        .press(kCancel);
    run();
    EXPECT_EQ(IDB_iInts[0], value);
    EXPECT_EQ(IDB_bOK[0], valid);
  }
}

TEST_P(IntegerItems, FillingOnlyEverClearsTheFlag) {
  IntDlgBox_set(0, 5, 0);
  IDB_bOK[0] = 0;
  expectDialog().check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); }).press(kCancel);
  run();
  EXPECT_EQ(IDB_bOK[0], 0);
}

TEST_P(IntegerItems, AMandatoryOneNeverSetIsEmptyAndInvalid) {
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "");
        EXPECT_FALSE(desk.isEnabled(kOk));
        EXPECT_NE(desk.takeWrites().find("3 text \"\""), std::string::npos);
      })
      .press(kCancel);
  run();
  EXPECT_EQ(IDB_bOK[0], 0);
}

TEST_P(IntegerItems, AnOptionalOneNeverSetIsLeftAlone) {
  IntDlgBox_mandatory(0, 0);
  expectDialog().check([&] { EXPECT_EQ(desk.takeWrites(), "1 enabled yes\n"); }).press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(IntegerItems, EachKeyIsConverted) {
  IntDlgBox_set(0, 7, 0);
  expectDialog()
      .type(kItem, "1")
      .check([&] { EXPECT_EQ(IDB_iInts[0], 1); })
      .type(kItem, "2")
      .check([&] { EXPECT_EQ(IDB_iInts[0], 12); })
      .type(kItem, "a")
      .check([&] {
        EXPECT_EQ(IDB_iInts[0], 12);
        EXPECT_EQ(IDB_bOK[0], 0);
        EXPECT_FALSE(desk.isEnabled(kOk));
        EXPECT_EQ(desk.text(kItem), "12a") << "what was typed stays";
      })
      .deleteBack(kItem)
      .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)); })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(IDB_iInts[0], 12);
  EXPECT_EQ(Callbacks::globalCalls.size(), 3U) << "none for a refused text";
}

TEST_P(IntegerItems, EmptyingKeepsTheValue) {
  for (const int mandatory : {0, 1}) {
    IDB = 1;
    IntDlgBox_set(0, 7, 0);
    IntDlgBox_mandatory(0, mandatory);
    expectDialog()
        .replace(kItem, "")
        .check([&] {
          EXPECT_EQ(IDB_iInts[0], 7);
          EXPECT_EQ(IDB_bOK[0], 1 - mandatory);
          EXPECT_EQ(desk.isEnabled(kOk), mandatory == 0);
        })
        .press(kCancel);
    run();
  }
}

TEST_P(IntegerItems, AnEmptiedMandatoryOneAsksNoValidator) {
  IntDlgBox_set(0, 7, 0);
  IntDlgBox_set_fvalid(0, recordInteger);
  expectDialog()
      .check([] { s_seen.clear(); })
      .replace(kItem, "")
      .check([&] {
        EXPECT_TRUE(s_seen.empty());
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .replace(kItem, "5")
      .check([] { EXPECT_FALSE(s_seen.empty()); })
      .press(kCancel);
  run();
}

TEST_P(IntegerItems, TheValidatorMayStoreWhatItRefuses) {
  IntDlgBox_set(0, 7, 0);
  IntDlgBox_set_fvalid(0, refuseInteger);
  expectDialog().replace(kItem, "5").press(kCancel);
  run();
  EXPECT_EQ(IDB_iInts[0], -99);
  EXPECT_EQ(IDB_bOK[0], 0);
}

TEST_P(IntegerItems, LongTextsAndValidatorsStayInTheirRoom) {
  IntDlgBox_set(0, 7, 0);
  expectDialog()
      .paste(kItem, std::string(254, '0') + "9")
      .check([&] { EXPECT_EQ(IDB_iInts[0], 9); })
      .type(kItem, "1")
      .check([&] { EXPECT_EQ(IDB_iInts[0], 91); })
      .replace(kItem, std::string(100000, '1'))
      .check([&] { EXPECT_EQ(IDB_bOK[0], 0); })
      .check([&] { IntDlgBox_set_fvalid(0, fillItsRoom); })
      .replace(kItem, "1")
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(IntegerItems, AMissingValidatorRefuses) {
  IntDlgBox_set(0, 7, 0);
  vi[0] = nullptr;
  expectDialog()
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .type(kItem, "1")
      .check([&] { vi = nullptr; })
      .type(kItem, "1")
      .press(kCancel);
  run();
  EXPECT_EQ(IDB_iInts[0], 7);
}

TEST_P(IntegerItems, ShowingFillsAgain) {
  const struct {
    int value, mode, valid;
    const char *text;
  } kCases[] = {{42, 0, 1, "42"}, {-1, 1, 0, "-1"}, {0, 2, 0, "0"}};
  for (const auto &[value, mode, valid, text] : kCases) {
    for (const int init : {0, 1}) {
      IDB = 1;
      IntDlgBox_set(0, 7, mode);
      IDB_bInit[0] = init;
      DlgBoxGlobal_set(Callbacks::global);
      Callbacks::onGlobal = [given = value](const GlobalCall &call) {
        call.ints[0] = given;
        return redisplaying({300})(call);
      };
      expectDialog()
          .replace(kItem, "5")
          .check([&, shown = std::string(text), flag = valid] {
            EXPECT_EQ(desk.text(kItem), shown);
            EXPECT_EQ(desk.selectedText(kItem), "");
            EXPECT_EQ(IDB_bOK[0], flag);
            EXPECT_EQ(desk.isEnabled(kOk), flag == 1);
          })
          .press(kCancel);
      run();
    }
  }
}

TEST_P(IntegerItems, ClearingEmptiesTheItemAndKeepsTheTable) {
  for (const int mandatory : {0, 1}) {
    IDB = 1;
    IntDlgBox_set(0, 7, 0);
    IntDlgBox_mandatory(0, mandatory);
    DlgBoxGlobal_set(Callbacks::global);
    Callbacks::onGlobal = redisplaying({-300});
    expectDialog()
        .replace(kItem, "5")
        .check([&] {
          EXPECT_EQ(desk.text(kItem), "");
          EXPECT_EQ(IDB_iInts[0], 5);
          EXPECT_EQ(IDB_bOK[0], 1 - mandatory);
        })
        .press(kCancel);
    run();
  }
}

// ---- Masked integers ----

class MaskedInteger : public IntegerItems {
 protected:
  MaskedInteger() {
    IntDlgBox_password(0, 1);
    describe(1234);
  }
  void describe(int value) {
    IDB = 1;
    IntDlgBox_set(0, value, 0);
    IntDlgBox_set_fvalid(0, recordInteger);
    DlgBoxGlobal_set(Callbacks::global);
  }
};

TEST_P(MaskedInteger, ShowsOneStarPerDigit) {
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "****");
        EXPECT_EQ(desk.selectedText(kItem), "****");
        EXPECT_TRUE(desk.isSecret(kItem));
        EXPECT_EQ(IDB_lPassw[0], 4);
        EXPECT_EQ(s_seen, std::vector<std::string>{"1234"}) << "checked unmasked";
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(IDB_iInts[0], 1234);
}

TEST_P(MaskedInteger, IsSecretEvenWhenNeverSet) {
  IDB_bInit[0] = 0;
  expectDialog()
      .check([&] {
        EXPECT_TRUE(desk.isSecret(kItem));
        EXPECT_EQ(IDB_lPassw[0], 0);
      })
      .type(kItem, "12")
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "**");
        EXPECT_EQ(IDB_iInts[0], 12);
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(MaskedInteger, EditsByDigitFromTheEnd) {
  using Seen = std::vector<std::string>;
  const struct {
    const char *name;
    int value;
    std::function<void(DialogScript &)> edit;
    Seen seen;  // by the validator, after the filling
    int stored;
    std::size_t stars;
  } kCases[] = {
      {"type at the end",
       1234,
       [](auto &s) { s.moveToEnd(kItem).type(kItem, "5"); },
       {"12345"},
       12345,
       5},
      {"delete at the end",
       1234,
       [](auto &s) { s.moveToEnd(kItem).deleteBack(kItem); },
       {"123"},
       123,
       3},
      {"type three",
       12,
       [](auto &s) { s.moveToEnd(kItem).type(kItem, "345"); },
       {"123", "1234", "12345"},
       12345,
       5},
      {"delete all",
       123,
       [](auto &s) { s.moveToEnd(kItem).deleteBack(kItem, 3); },
       {"12", "1"},
       1,
       0},
      {"ten keys",
       0,
       [](auto &s) { s.selectAll(kItem).type(kItem, "1234567890"); },
       {"1", "12", "123", "1234", "12345", "123456", "1234567", "12345678", "123456789",
        "1234567890"},
       1234567890,
       10},
      // Stars on both sides of a typed digit are counted together, from the end.
      {"type in the middle",
       1234,
       [](auto &s) { s.moveTo(kItem, 2).type(kItem, "5"); },
       {"12534"},
       12534,
       5},
      {"type in front",
       1234,
       [](auto &s) { s.moveTo(kItem, 0).type(kItem, "5"); },
       {"51234"},
       51234,
       5},
      // Kept: a text that did not grow is taken to have lost its last character.
      {"delete in the middle",
       1234,
       [](auto &s) { s.moveTo(kItem, 2).deleteBack(kItem); },
       {"123"},
       123,
       3},
      {"delete in front",
       1234,
       [](auto &s) { s.moveTo(kItem, 0).deleteForward(kItem); },
       {"123"},
       123,
       3},
      {"replace one",
       1234,
       [](auto &s) { s.select(kItem, 1, 2).type(kItem, "9"); },
       {"1923"},
       1923,
       4},
      {"replace all by fewer", 1234, [](auto &s) { s.replace(kItem, "77"); }, {"77"}, 77, 2},
      {"replace all by more", 12, [](auto &s) { s.replace(kItem, "7777"); }, {"7777"}, 7777, 4},
      {"paste at the end",
       12,
       [](auto &s) { s.moveToEnd(kItem).paste(kItem, "345"); },
       {"12345"},
       12345,
       5},
      {"paste in the middle",
       12,
       [](auto &s) { s.moveTo(kItem, 1).paste(kItem, "345"); },
       {"13452"},
       13452,
       5},
      // More stars than digits: zeros in front.
      {"typed stars", 12, [](auto &s) { s.moveToEnd(kItem).paste(kItem, "**"); }, {"0012"}, 12, 4},
      {"delete, with a sign",
       -12,
       [](auto &s) { s.moveToEnd(kItem).deleteBack(kItem); },
       {"-1"},
       -1,
       2},
      // A refused key leaves the value. At the next key its star means a digit.
      {"a letter, and back",
       1234,
       [](auto &s) { s.moveToEnd(kItem).type(kItem, "a").deleteBack(kItem); },
       {"1234a", "0123"},
       123,
       4},
      {"a letter, and on",
       1234,
       [](auto &s) { s.moveToEnd(kItem).type(kItem, "a5"); },
       {"1234a", "012345"},
       12345,
       6},
      {"nothing changed", 1234, [](auto &s) { s.hit(kItem); }, {"0123"}, 123, 4},
  };
  for (const auto &each : kCases) {
    SCOPED_TRACE(each.name);
    describe(each.value);
    DialogScript &script = expectDialog().check([] { s_seen.clear(); });
    each.edit(script);
    script
        .check([&] {
          EXPECT_EQ(s_seen, each.seen);
          EXPECT_EQ(IDB_iInts[0], each.stored);
          EXPECT_EQ(desk.text(kItem), std::string(each.stars, '*'));
          EXPECT_EQ(IDB_lPassw[0], static_cast<int>(each.stars));
        })
        .press(kCancel);
    run();
  }
}

TEST_P(MaskedInteger, RedisplayMasksAndRecordsTheLength) {
  Callbacks::onGlobal = [](const GlobalCall &call) {
    call.ints[0] = 99;
    return redisplaying({300})(call);
  };
  expectDialog()
      .moveToEnd(kItem)
      .type(kItem, "5")
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "**");
        EXPECT_EQ(IDB_lPassw[0], 2);
        Callbacks::onGlobal = redisplaying({-300});
      })
      .type(kItem, "1")
      .check([&] {
        EXPECT_EQ(IDB_iInts[0], 991);
        EXPECT_EQ(desk.text(kItem), "");
        EXPECT_EQ(IDB_lPassw[0], 0);
        Callbacks::onGlobal = nullptr;
      })
      .type(kItem, "42")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(IDB_iInts[0], 42);
}

TEST_P(MaskedInteger, AVeryLongPasteIsSurvived) {
  expectDialog()
      .moveToEnd(kItem)
      .paste(kItem, std::string(70000, '0'))
      .moveToEnd(kItem)
      .deleteBack(kItem)
      .press(kCancel);
  run();
}

// ---- Numbers ----

class NumberItems : public Items {
 protected:
  NumberItems() {
    NumDlgBox_param(1, first(400, 3));
    NumDlgBox_set_geo(0, 0, 0, 50, 12, rank(0));
  }
};

TEST_P(NumberItems, AreFilledWithTheirDecimals) {
  const struct {
    double value;
    int decimals, mode, valid;
    const char *text;
    double after;
  } kCases[] = {
      {1.5, 5, 0, 1, "1.50000", 1.5}, {2.345678, 2, 0, 1, "2.35", 2.35},
      {-2.5, 0, 0, 1, "-3", -3},      {-2.5, 1, 1, 0, "-2.5", -2.5},
      {0, 2, 2, 0, "0.00", 0},        {70.25, 2, 2, 1, "70.25", 70.25},
  };
  for (const auto &[value, decimals, mode, valid, text, after] : kCases) {
    SCOPED_TRACE(text);
    NDB = 1;
    NDB_bOK[0] = 1;
    NumDlgBox_set(0, value, mode);
    NumDlgBox_set_nchiff(0, decimals);
    expectDialog()
        .check([&, shown = std::string(text), enabled = valid == 1] {
          EXPECT_EQ(desk.text(kItem), shown);
          EXPECT_EQ(desk.selectedText(kItem), shown);
          EXPECT_EQ(desk.isEnabled(kOk), enabled);
        })
        .press(kCancel);
    run();
    EXPECT_NEAR(NDB_dNums[0], after, 1e-12) << "left as its shown text reads back";
  }
}

TEST_P(NumberItems, FillingOnlyEverClearsTheFlag) {
  NumDlgBox_set(0, 5, 0);
  NDB_bOK[0] = 0;
  expectDialog().check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); }).press(kCancel);
  run();
  EXPECT_EQ(NDB_bOK[0], 0);
}

TEST_P(NumberItems, AnyValueIsFilled) {
  for (const double value : {1e300, -HUGE_VAL, HUGE_VAL, std::nan("")}) {
    for (const int decimals : {0, 5, 300, 100000}) {
      NDB = 1;
      NumDlgBox_set(0, value, 0);
      NumDlgBox_set_nchiff(0, decimals);
      expectDialog().press(kCancel);
      run();
    }
  }
}

// Kept: unlike an integer field, a field never set leaves its item as it was built.
TEST_P(NumberItems, OneNeverSetLeavesItsItem) {
  for (const int mandatory : {0, 1}) {
    NDB = 1;
    NumDlgBox_mandatory(0, mandatory);
    expectDialog()
        .check([&] {
          EXPECT_EQ(desk.takeWrites(), mandatory != 0 ? "1 enabled no\n" : "1 enabled yes\n");
        })
        .press(kCancel);
    run();
    EXPECT_EQ(NDB_bOK[0], 1 - mandatory);
  }
}

TEST_P(NumberItems, EachKeyIsConverted) {
  NumDlgBox_set(0, 7, 0);
  expectDialog()
      .type(kItem, "1,")
      .check([&] { EXPECT_EQ(NDB_dNums[0], 1); })
      .type(kItem, "5")
      .check([&] { EXPECT_EQ(NDB_dNums[0], 1.5); })
      .type(kItem, "x")
      .check([&] {
        EXPECT_EQ(NDB_dNums[0], 1.5);
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .deleteBack(kItem)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(NDB_dNums[0], 1.5);
  EXPECT_EQ(Callbacks::identifiers(), "400 400 400 400 ");
}

TEST_P(NumberItems, EmptyingKeepsTheValue) {
  for (const int mandatory : {0, 1}) {
    NDB = 1;
    NumDlgBox_set(0, 7, 0);
    NumDlgBox_mandatory(0, mandatory);
    expectDialog()
        .replace(kItem, "")
        .check([&] {
          EXPECT_EQ(NDB_dNums[0], 7);
          EXPECT_EQ(NDB_bOK[0], 1 - mandatory);
        })
        .press(kCancel);
    run();
  }
}

TEST_P(NumberItems, AnEmptiedMandatoryOneAsksNoValidator) {
  NumDlgBox_set(0, 7, 0);
  NumDlgBox_set_fvalid(0, recordNumber);
  expectDialog()
      .check([] { s_seen.clear(); })
      .replace(kItem, "")
      .check([&] {
        EXPECT_TRUE(s_seen.empty());
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .replace(kItem, "5")
      .check([] { EXPECT_FALSE(s_seen.empty()); })
      .press(kCancel);
  run();
}

TEST_P(NumberItems, ShowingFillsAgainAndClearingEmpties) {
  NumDlgBox_set(0, 7, 2);
  NumDlgBox_set_nchiff(0, 1);
  NDB_bInit[0] = 0;
  NDB_bMand[0] = 0;
  NumDlgBox_set_fvalid(0, recordNumber);
  Callbacks::onGlobal = [](const GlobalCall &call) {
    call.nums[0] = 2.27;
    return redisplaying({400})(call);
  };
  expectDialog()
      .type(kItem, "1")
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "2.3");
        EXPECT_NEAR(NDB_dNums[0], 2.3, 1e-12);
        EXPECT_EQ(NDB_bOK[0], 1);
        Callbacks::onGlobal = redisplaying({-400});
      })
      .type(kItem, "9")
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "");
        EXPECT_EQ(NDB_bOK[0], 1);
        NumDlgBox_mandatory(0, 1);
      })
      .type(kItem, "9")
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "");
        EXPECT_EQ(NDB_dNums[0], 9);
        EXPECT_EQ(NDB_bOK[0], 0);
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .press(kCancel);
  run();
}

// ---- Dates ----

class DateItems : public Items {
 protected:
  DateItems() { describe(20240229); }
  void describe(int date) {
    DateDlgBox_param(1, first(500, 3));
    DateDlgBox_set_geo(0, 0, 0, 50, 12, rank(0));
    DateDlgBox_set(0, date, 1);
    DlgBoxGlobal_set(Callbacks::global);
  }
  std::string shown() const { return desk.text(3) + '/' + desk.text(4) + '/' + desk.text(5); }
};

TEST_P(DateItems, AreFilledInThreeItems) {
  const struct {
    int date, valid;
    const char *shown;
  } kCases[] = {
      {20240229, 1, "29/2/2024"},     {19890714, 1, "14/7/1989"},    {0, 0, "0/0/0"},
      {-20240229, 0, "-29/-2/-2024"}, {20230230, 0, "30/2/2023"},    {120240229, 1, "29/2/2024"},
      {INT_MAX, 0, "47/36/4748"},     {INT_MIN, 0, "-48/-36/-4748"},
  };
  for (const auto &[date, valid, parts] : kCases) {
    describe(date);
    expectDialog()
        .check([&, expected = std::string(parts), enabled = valid == 1] {
          EXPECT_EQ(shown(), expected);
          EXPECT_EQ(desk.selectedText(3), desk.text(3));
          EXPECT_EQ(desk.selectedText(4), desk.text(4));
          EXPECT_EQ(desk.selectedText(5), desk.text(5));
          EXPECT_EQ(desk.isEnabled(kOk), enabled) << expected;
        })
        .press(kCancel);
    run();
    EXPECT_EQ(DDB_lDates[0], date);
  }
}

TEST_P(DateItems, FillingOnlyEverClearsTheFlag) {
  DDB_bOK[0] = 0;
  expectDialog().check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); }).press(kCancel);
  run();
  EXPECT_EQ(DDB_bOK[0], 0);
}

TEST_P(DateItems, OneNeverSetIsEmpty) {
  for (const int mandatory : {0, 1}) {
    describe(20240229);
    DDB_bInit[0] = 0;
    DateDlgBox_mandatory(0, mandatory);
    expectDialog()
        .check([&] {
          EXPECT_EQ(shown(), "//");
          EXPECT_EQ(desk.isEnabled(kOk), mandatory == 0);
          EXPECT_EQ(desk.takeWrites(), std::string("3 text \"\"\n4 text \"\"\n5 text \"\"\n") +
                                           (mandatory != 0 ? "1 enabled no\n" : "1 enabled yes\n"));
        })
        .press(kCancel);
    run();
    EXPECT_EQ(DDB_bOK[0], 1 - mandatory);
  }
}

TEST_P(DateItems, PartsFollowTheirRules) {
  const struct {
    const char *day, *month, *year;
    int mandatory;
    int valid;
    int stored;  // 0: unchanged
  } kCases[] = {
      // Whole dates are judged by the validator.
      {"28", "2", "2023", 1, 1, 20230228},
      {"29", "2", "2023", 1, 0, 20230229},
      {" 1 ", "01", "+2000", 1, 1, 20000101},
      {"1", "1", "1799", 1, 0, 17990101},
      // Kept: a date with a part below 1 is acceptable as it is, and not stored.
      {"0", "2", "2023", 1, 1, 0},
      {"28", "0", "2023", 1, 1, 0},
      {"28", "2", "0", 1, 1, 0},
      {"-3", "2", "2023", 1, 1, 0},
      {" ", "2", "2023", 1, 1, 0},
      {"0", "99", "99999", 1, 1, 0},
      // Kept: an empty part of an optional date and a negative part are no errors.
      {"", "2", "2023", 1, 0, 0},
      {"28", "", "2023", 1, 0, 0},
      {"28", "2", "", 1, 0, 0},
      {"", "2", "2023", 0, 1, 0},
      {"", "", "", 0, 1, 0},
      {"", "", "", 1, 0, 0},
      // Text that is not a number is always an error, even beside a part below 1.
      {"x", "2", "2023", 0, 0, 0},
      {"28", "2x", "2023", 0, 0, 0},
      {"28", "2", "-", 0, 0, 0},
      {"0", "2", "20 23", 0, 0, 0},
      {"28", "2", "2147483648", 0, 0, 0},
      // Parts too large for their digits are added up all the same.
      {"100", "1", "2000", 1, 0, 20000200},
      {"101", "1", "2000", 1, 1, 20000201},
      {"1", "13", "2000", 1, 0, 20001301},
      {"1", "101", "2000", 1, 1, 20010101},
  };
  for (const auto &[day, month, year, mandatory, valid, stored] : kCases) {
    const std::string name = std::string(day) + '/' + month + '/' + year;
    SCOPED_TRACE(name);
    describe(20240229);
    DateDlgBox_mandatory(0, mandatory);
    // Only the last step counts: the other parts are entered before it.
    expectDialog()
        .replace(4, month)
        .replace(5, year)
        .replace(3, day)
        .check([&, flag = valid] {
          EXPECT_EQ(DDB_bOK[0], flag);
          EXPECT_EQ(desk.isEnabled(kOk), flag == 1);
        })
        .press(kCancel);
    run();
    if (stored != 0) {
      EXPECT_EQ(DDB_lDates[0], stored);
    }
  }
}

TEST_P(DateItems, APartlyEmptyDateKeepsTheStoredOne) {
  DateDlgBox_mandatory(0, 0);
  expectDialog().replace(3, "").replace(4, "").replace(5, "").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(DDB_lDates[0], 20240229);
}

TEST_P(DateItems, AnEmptiedPartOfAMandatoryOneAsksNoValidator) {
  DateDlgBox_set_fvalid(0, recordInteger);
  expectDialog()
      .check([] { s_seen.clear(); })
      .replace(4, "")
      .check([&] {
        EXPECT_TRUE(s_seen.empty());
        EXPECT_FALSE(desk.isEnabled(kOk));
      })
      .press(kCancel);
  run();
}

TEST_P(DateItems, AZeroDayIsAcceptedWithoutTheValidator) {
  DateDlgBox_set_fvalid(0, recordInteger);
  expectDialog()
      .check([] { s_seen.clear(); })
      .replace(3, "0")
      .check([&] {
        EXPECT_TRUE(s_seen.empty());
        EXPECT_TRUE(desk.isEnabled(kOk));
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(DDB_lDates[0], 20240229);
}

TEST_P(DateItems, EachOfTheThreeItemsTellsTheSameField) {
  DateDlgBox_param(2, first(500, 3));
  DateDlgBox_set_geo(0, 0, 0, 0, 0, rank(0));
  DateDlgBox_set_geo(1, 0, 0, 0, 0, rank(1));
  DateDlgBox_set(0, 20240229, 1);
  DateDlgBox_set(1, 20240229, 1);
  expectDialog().replace(6, "1").replace(7, "3").replace(8, "2025").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(DDB_lDates[1], 20250301);
  EXPECT_EQ(DDB_lDates[0], 20240229);
  EXPECT_EQ(Callbacks::identifiers(), "503 503 503 ");
}

TEST_P(DateItems, LargePartsWrapAs32Bits) {
  DateDlgBox_set_fvalid(0, recordInteger);
  expectDialog()
      .replace(3, "2147483647")
      .replace(4, "2147483647")
      .check([] { s_seen.clear(); })
      .replace(5, "2147483647")
      .press(kCancel);
  run();
  const auto sum = static_cast<int>(2147483647LL * 10101);
  EXPECT_EQ(s_seen, std::vector<std::string>{std::to_string(sum)});
}

TEST_P(DateItems, ShowingFillsAgainAndClearingEmpties) {
  DDB_bInit[0] = 0;
  DDB_bMand[0] = 0;
  Callbacks::onGlobal = [](const GlobalCall &call) {
    call.dates[0] = 20251231;
    // Any of the date's three identifiers names it.
    return redisplaying({502})(call);
  };
  expectDialog()
      .type(3, "1")
      .check([&] {
        EXPECT_EQ(shown(), "31/12/2025");
        EXPECT_EQ(desk.selectedText(4), "");
        EXPECT_EQ(DDB_bOK[0], 1);
        Callbacks::onGlobal = [](const GlobalCall &call) {
          call.dates[0] = 20251232;
          return redisplaying({500})(call);
        };
      })
      .replace(3, "30")
      .check([&] {
        EXPECT_EQ(shown(), "32/12/2025");
        EXPECT_EQ(DDB_bOK[0], 0);
        EXPECT_FALSE(desk.isEnabled(kOk));
        Callbacks::onGlobal = redisplaying({-501});
      })
      .replace(3, "30")
      .check([&] {
        EXPECT_EQ(shown(), "//");
        EXPECT_EQ(DDB_lDates[0], 20251230);
        EXPECT_TRUE(desk.isEnabled(kOk));
        DateDlgBox_mandatory(0, 1);
        DDB_bMand[0] = 0;
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  for (const int mandatory : {0, 1}) {
    describe(20240229);
    DateDlgBox_mandatory(0, mandatory);
    Callbacks::onGlobal = redisplaying({-500});
    expectDialog()
        .replace(3, "28")
        .check([&] { EXPECT_EQ(DDB_bOK[0], 1 - mandatory); })
        .press(kCancel);
    run();
  }
}

// ---- Validators ----

TEST_P(Items, AnApplicationsOwnValidatorsAreCalled) {
  ValidInt_t integers[128] = {}, dates[20] = {};
  ValidNum_t numbers[128] = {};
  vi = integers;
  vf = numbers;
  vd = dates;
  IntDlgBox_param(1, first(300, 3));
  IntDlgBox_set_geo(0, 0, 0, 0, 0, rank(0));
  IntDlgBox_set(0, 5, 0);
  NumDlgBox_param(1, first(400, 4));
  NumDlgBox_set_geo(0, 0, 0, 0, 0, rank(1));
  NumDlgBox_set(0, 1.5, 0);
  NumDlgBox_set_nchiff(0, 1);
  DateDlgBox_param(1, first(500, 5));
  DateDlgBox_set_geo(0, 0, 0, 0, 0, rank(2));
  DateDlgBox_set(0, 20240229, 1);
  integers[0] = dates[0] = recordInteger;
  numbers[0] = recordNumber;
  expectDialog().replace(3, "6").replace(4, "2,5").replace(5, "28").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(s_seen, (std::vector<std::string>{"5", "1.5", "20240229", "6", "2,5", "20240228"}));
}

// ---- Push buttons ----

class PushItems : public Items {
 protected:
  PushItems() {
    PushDlgBox_param(2, first(600, 3));
    PushDlgBox_set_geo(0, "a", 0, 0, 0, 0, rank(0));
    PushDlgBox_set_geo(1, "b", 0, 0, 0, 0, rank(1));
  }
};

TEST_P(PushItems, TheActionThenTheGlobalCallback) {
  PushDlgBox_set_fvalid(0, Callbacks::action);
  std::string order;
  Callbacks::onAction = [&] { order += "action "; };
  Callbacks::onGlobal = [&](const GlobalCall &call) {
    order += std::to_string(call.item) + ' ';
    return 0;
  };
  expectDialog().press(3).press(4).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(order, "action 600 601 ");
  ASSERT_EQ(Callbacks::actionCalls.size(), 1U);
  EXPECT_NE(Callbacks::actionCalls[0], nullptr);
}

TEST_P(PushItems, AnApplicationsOwnActionsAreCalled) {
  PushAction_t own[10] = {};
  vp = own;
  PushDlgBox_set_fvalid(1, Callbacks::action);
  EXPECT_EQ(vp_tab[1], nullptr);
  expectDialog().press(3).press(4).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::actionCalls.size(), 1U);
}

TEST_P(PushItems, AMissingActionTableIsSurvived) {
  expectDialog().check([] { vp = nullptr; }).press(3).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::identifiers(), "600 ");
}

TEST_P(PushItems, AnActionMayChangeEverything) {
  TexteDlgBox_param(1, first(100, 5));
  TexteDlgBox_set_geo(0, 0, 0, 0, 0, rank(2));
  TexteDlgBox_set(0, "a");
  PushDlgBox_set_fvalid(0, Callbacks::action);
  Callbacks::onAction = [] {
    TDB_bOK[0] = 0;
    DlgBoxGlobal_set(nullptr);
  };
  expectDialog()
      .press(3)
      .check([&] {
        EXPECT_FALSE(desk.isEnabled(kOk));
        Callbacks::onAction = [] { TDB_bOK[0] = 1; };
      })
      .press(3)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::identifiers(), "");
}

KORVEL_IN_BOTH_KINDS(CheckBoxItems);
KORVEL_IN_BOTH_KINDS(IntegerItems);
KORVEL_IN_BOTH_KINDS(MaskedInteger);
KORVEL_IN_BOTH_KINDS(NumberItems);
KORVEL_IN_BOTH_KINDS(DateItems);
KORVEL_IN_BOTH_KINDS(Items);
KORVEL_IN_BOTH_KINDS(PushItems);

}  // namespace
}  // namespace korvel::test
