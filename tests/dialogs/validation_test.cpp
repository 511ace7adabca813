// SPDX-License-Identifier: MIT
// Validation of all fields, and the end of a definition, without a dialog on the screen.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

class Validation : public ::testing::Test {
 protected:
  DialogGlobals globals;
};

std::vector<std::string> s_seen;
int recordInteger(char *text, int *) {
  s_seen.push_back(text);
  return 0;
}
int recordNumber(char *text, double *) {
  s_seen.push_back(text);
  return 0;
}

TEST_F(Validation, NothingInUseIsValid) { EXPECT_EQ(ZRVDlgBox_valid(), 1); }

TEST_F(Validation, FieldsNeverSetAreInvalidExactlyWhenMandatory) {
  TexteDlgBox_param(2, 3);
  TexteDlgBox_mandatory(1, 0);
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  EXPECT_EQ(TDB_bOK[0], 0);
  EXPECT_EQ(TDB_bOK[1], 1);
  TexteDlgBox_mandatory(0, 0);
  EXPECT_EQ(ZRVDlgBox_valid(), 1);
  IntDlgBox_param(1, 3);
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  EXPECT_EQ(IDB_bOK[0], 0);
  IntDlgBox_mandatory(0, 0);
  NumDlgBox_param(1, 3);
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  EXPECT_EQ(NDB_bOK[0], 0);
  NumDlgBox_mandatory(0, 0);
  DateDlgBox_param(1, 3);
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  EXPECT_EQ(DDB_bOK[0], 0);
  DateDlgBox_mandatory(0, 0);
  EXPECT_EQ(ZRVDlgBox_valid(), 1);
}

TEST_F(Validation, TextIsJudgedByEmptinessAndLength) {
  constexpr struct {
    const char *text;
    int mandatory, longest, valid;
  } kCases[] = {
      {"", 1, 10, 0},      {"", 0, 10, 1},      {"a", 1, 10, 1}, {"abcde", 1, 5, 1},
      {"abcdef", 1, 5, 0}, {"abcdef", 0, 5, 0}, {"a", 1, 0, 0},  {"\xE9\xE8", 1, 2, 1},
  };
  TexteDlgBox_param(1, 3);
  for (const auto &[text, mandatory, longest, valid] : kCases) {
    TexteDlgBox_set(0, text);
    TDB_bMand[0] = mandatory;
    TDB_iCarac[0] = longest;
    TDB_bOK[0] = 1 - valid;
    EXPECT_EQ(ZRVDlgBox_valid(), valid) << text;
    EXPECT_EQ(TDB_bOK[0], valid) << text;
  }
}

TEST_F(Validation, IntegersGoThroughTheirText) {
  IntDlgBox_param(3, 3);
  IntDlgBox_set(0, -5, 1);
  IntDlgBox_set(1, 0, 2);
  IntDlgBox_set(2, 40000, 0);
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  EXPECT_EQ(IDB_bOK[0], 0) << "below 0";
  EXPECT_EQ(IDB_bOK[1], 0) << "below 1";
  EXPECT_EQ(IDB_bOK[2], 0) << "above 32767";
  IntDlgBox_set(0, 0, 1);
  IntDlgBox_set(1, 1, 2);
  IntDlgBox_set(2, 32767, 0);
  EXPECT_EQ(ZRVDlgBox_valid(), 1);
  s_seen.clear();
  IntDlgBox_param(1, 3);
  IntDlgBox_set(0, -2147483647, 0);
  IntDlgBox_set_fvalid(0, recordInteger);
  EXPECT_EQ(ZRVDlgBox_valid(), 1);
  EXPECT_EQ(s_seen, std::vector<std::string>{"-2147483647"});
}

TEST_F(Validation, NumbersAreLeftRoundedToTheirDecimals) {
  NumDlgBox_param(1, 3);
  NumDlgBox_set(0, 2.345678, 0);
  NumDlgBox_set_nchiff(0, 2);
  EXPECT_EQ(ZRVDlgBox_valid(), 1);
  char text[] = "2.35";
  double rounded = 0;
  realcod_d(text, &rounded);
  EXPECT_EQ(NDB_dNums[0], rounded);
}

TEST_F(Validation, NumbersAreJudgedAfterRounding) {
  NumDlgBox_param(1, 3);
  NumDlgBox_set(0, 0.001, 2);
  NumDlgBox_set_nchiff(0, 2);
  EXPECT_EQ(ZRVDlgBox_valid(), 0) << "shown as 0.00, which is not above 0";
  s_seen.clear();
  NumDlgBox_set_fvalid(0, recordNumber);
  NDB_dNums[0] = -1.5;
  ZRVDlgBox_valid();
  EXPECT_EQ(s_seen, std::vector<std::string>{"-1.50"});
}

TEST_F(Validation, DatesGoThroughTheirText) {
  DateDlgBox_param(1, 3);
  DateDlgBox_set(0, 20230230, 1);
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  EXPECT_EQ(DDB_bOK[0], 0);
  DateDlgBox_set(0, 20230228, 1);
  EXPECT_EQ(ZRVDlgBox_valid(), 1);
  s_seen.clear();
  DateDlgBox_set_fvalid(0, recordInteger);
  ZRVDlgBox_valid();
  EXPECT_EQ(s_seen, std::vector<std::string>{"20230228"});
}

TEST_F(Validation, TypesNotInUseTakeNoPart) {
  TexteDlgBox_param(1, 3);
  IntDlgBox_param(1, 3);
  TDB = 0;
  TDB_bOK[0] = 7;
  IntDlgBox_set(0, 1, 0);
  EXPECT_EQ(ZRVDlgBox_valid(), 1);
  EXPECT_EQ(TDB_bOK[0], 7);
}

// Each validator notes whose turn it is and the flags that are set by then.
std::vector<std::string> s_turns;
std::string flags() {
  std::string all;
  for (const int flag : {TDB_bOK[0], IDB_bOK[0], NDB_bOK[0], DDB_bOK[0]}) {
    all += ' ';
    all += std::to_string(flag);
  }
  return all;
}
int refuseInteger(char *, int *) {
  s_turns.push_back(std::string("integer").append(flags()));
  return 1;
}
int refuseNumber(char *, double *) {
  s_turns.push_back(std::string("number").append(flags()));
  return 1;
}
int refuseDate(char *, int *) {
  s_turns.push_back(std::string("date").append(flags()));
  return 1;
}

TEST_F(Validation, GoesFromTextsOverIntegersAndNumbersToDates) {
  s_turns.clear();
  DateDlgBox_param(1, 60);
  NumDlgBox_param(1, 50);
  IntDlgBox_param(2, 40);
  TexteDlgBox_param(1, 30);
  TexteDlgBox_set(0, "");
  for (int i = 0; i < 2; ++i) {
    IntDlgBox_set(i, i, 0);
    IntDlgBox_set_fvalid(i, refuseInteger);
  }
  NumDlgBox_set(0, 1, 0);
  NumDlgBox_set_fvalid(0, refuseNumber);
  DateDlgBox_set(0, 20240229, 0);
  DateDlgBox_set_fvalid(0, refuseDate);
  TDB_bOK[0] = IDB_bOK[0] = NDB_bOK[0] = DDB_bOK[0] = 7;
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  ASSERT_EQ(s_turns.size(), 4U);
  EXPECT_EQ(s_turns[0].substr(0, 9), "integer 0") << "texts come before";
  EXPECT_EQ(s_turns[1].substr(0, 11), "integer 0 0");
  EXPECT_EQ(s_turns[2].substr(0, 10), "number 0 0");
  EXPECT_EQ(s_turns[3].substr(0, 10), "date 0 0 0") << "numbers, too";
  EXPECT_EQ(flags(), " 0 0 0 0");
}

TEST_F(Validation, AMandatoryFieldWithoutAValueAsksNoValidator) {
  s_turns.clear();
  IntDlgBox_param(1, 40);
  IntDlgBox_set_fvalid(0, refuseInteger);
  NumDlgBox_param(1, 50);
  NumDlgBox_set_fvalid(0, refuseNumber);
  DateDlgBox_param(1, 60);
  DateDlgBox_set_fvalid(0, refuseDate);
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  EXPECT_EQ(s_turns, std::vector<std::string>{});
  for (int *set : {IDB_bInit, NDB_bInit, DDB_bInit}) *set = 1;
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  EXPECT_EQ(s_turns.size(), 3U) << "only fields with a value";
}

TEST_F(Validation, AMissingValidatorRefuses) {
  IntDlgBox_param(1, 3);
  IntDlgBox_set(0, 1, 0);
  vi[0] = nullptr;
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  vi = nullptr;
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
}

TEST_F(Validation, AnyValueIsSurvived) {
  NumDlgBox_param(4, 3);
  const double values[] = {1e300, -HUGE_VAL, std::nan(""), 0.0};
  for (int i = 0; i < 4; ++i) {
    NumDlgBox_set(i, values[i], 0);
    NDB_iChiff[i] = i == 3 ? 100000 : 300;
  }
  IntDlgBox_param(1, 3);
  IntDlgBox_set(0, -2147483647 - 1, 0);
  ZRVDlgBox_valid();
  EXPECT_EQ(IDB_bOK[0], 0) << "its text is a lone sign";
}

TEST_F(Validation, CountsBeyondTheTablesAreCut) {
  TexteDlgBox_param(20, 3);
  IntDlgBox_param(128, 3);
  NumDlgBox_param(128, 3);
  DateDlgBox_param(20, 3);
  TDB_N = IDB_N = NDB_N = DDB_N = 1 << 30;
  EXPECT_EQ(ZRVDlgBox_valid(), 0);
  TDB_N = IDB_N = NDB_N = DDB_N = -1;
  EXPECT_EQ(ZRVDlgBox_valid(), 1);
}

}  // namespace
}  // namespace korvel::test
