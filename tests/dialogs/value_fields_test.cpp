// SPDX-License-Identifier: MIT
// The description of integer, number and date fields: what they share, then what each has.
#include <climits>
#include <cstring>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

int acceptNothing(char *, int *) { return 9; }
int acceptNoNumber(char *, double *) { return 9; }

// ---- All three ----

struct ValueFamily {
  const char *name;
  int capacity;
  int *inUse, *count, *firstItem;
  short *x, *y, *cx, *cy, *rank;
  int *init, *mandatory, *valid;
  int (*param)(int, int);
  int (*place)(int, int, int, int, int, int);
  int (*setMandatory)(int, int);
  int (*getValid)(int);
  int (*set)(int, int, int);  // value, mode
  int (*value)(int);          // in the table
};

void PrintTo(const ValueFamily &family, std::ostream *out) { *out << family.name; }

int setNumber(int i, int value, int mode) { return NumDlgBox_set(i, value, mode); }
int integerOf(int i) { return IDB_iInts[i]; }
int numberOf(int i) { return static_cast<int>(NDB_dNums[i]); }
int dateOf(int i) { return DDB_lDates[i]; }

const ValueFamily kFamilies[] = {
    {"Integers", 128, &IDB, &IDB_N, &IDB_ID_INT, IDB_x, IDB_y, IDB_cx, IDB_cy, IDB_rk, IDB_bInit,
     IDB_bMand, IDB_bOK, IntDlgBox_param, IntDlgBox_set_geo, IntDlgBox_mandatory,
     IntDlgBox_get_valid, IntDlgBox_set, integerOf},
    {"Numbers", 128, &NDB, &NDB_N, &NDB_ID_NUM, NDB_x, NDB_y, NDB_cx, NDB_cy, NDB_rk, NDB_bInit,
     NDB_bMand, NDB_bOK, NumDlgBox_param, NumDlgBox_set_geo, NumDlgBox_mandatory,
     NumDlgBox_get_valid, setNumber, numberOf},
    {"Dates", 20, &DDB, &DDB_N, &DDB_ID_DATE, DDB_x, DDB_y, DDB_cx, DDB_cy, DDB_rk, DDB_bInit,
     DDB_bMand, DDB_bOK, DateDlgBox_param, DateDlgBox_set_geo, DateDlgBox_mandatory,
     DateDlgBox_get_valid, DateDlgBox_set, dateOf},
};

class ValueFields : public ::testing::TestWithParam<ValueFamily> {
 protected:
  DialogGlobals globals;
};

TEST_P(ValueFields, ParamGivesEachFieldItsFirstValues) {
  const ValueFamily &family = GetParam();
  for (const int n : {0, 1, 2, family.capacity - 1, family.capacity}) {
    SCOPED_TRACE(n);
    DialogGlobals::reset();
    family.param(family.capacity, 1);
    for (int i = 0; i < family.capacity; ++i) {
      family.set(i, 9, 0);
      family.x[i] = family.y[i] = family.cx[i] = family.cy[i] = family.rank[i] = 9;
      family.init[i] = family.mandatory[i] = family.valid[i] = 9;
    }
    EXPECT_EQ(family.param(n, 33), 0);
    EXPECT_EQ(*family.inUse, 1);
    EXPECT_EQ(*family.count, n);
    EXPECT_EQ(*family.firstItem, 33);
    for (int i = 0; i < n; ++i) {
      ASSERT_EQ(family.x[i] | family.y[i] | family.cx[i] | family.cy[i], 0) << i;
      ASSERT_EQ(family.rank[i], -1) << i;
      ASSERT_EQ(family.init[i], 0) << i;
      ASSERT_EQ(family.mandatory[i], 1) << i;
      ASSERT_EQ(family.valid[i], 1) << i;
      ASSERT_EQ(family.value(i), 0) << i;
    }
    if (n < family.capacity) {
      EXPECT_EQ(family.rank[n], 9);
      EXPECT_EQ(family.valid[n], 9);
      EXPECT_EQ(family.value(n), 9);
    }
  }
}

TEST_P(ValueFields, ParamRefusesCountsWithoutRoom) {
  const ValueFamily &family = GetParam();
  family.param(2, 30);
  family.set(1, 12, 0);
  for (const int n : {-1, INT_MIN, family.capacity + 1, INT_MAX}) {
    EXPECT_EQ(family.param(n, 99), -1) << n;
    EXPECT_EQ(*family.count, 2);
    EXPECT_EQ(*family.firstItem, 30);
    EXPECT_EQ(family.value(1), 12);
  }
}

TEST_P(ValueFields, SetStoresTheValueAndMarksItSet) {
  const ValueFamily &family = GetParam();
  family.param(2, 30);
  for (const int value : {5, 0, -7, 19890714}) {
    family.init[1] = 0;
    EXPECT_EQ(family.set(1, value, 0), 0);
    EXPECT_EQ(family.value(1), value);
    EXPECT_EQ(family.init[1], 1);
  }
  EXPECT_EQ(family.init[0], 0);
}

TEST_P(ValueFields, GeometryIsStoredAsShorts) {
  const ValueFamily &family = GetParam();
  family.param(2, 30);
  EXPECT_EQ(family.place(1, 65536 + 1, -2, 3, 40000, 5), 0);
  EXPECT_EQ(family.x[1], 1);
  EXPECT_EQ(family.y[1], -2);
  EXPECT_EQ(family.cx[1], 3);
  EXPECT_EQ(family.cy[1], static_cast<short>(40000));
  EXPECT_EQ(family.rank[1], 5);
}

TEST_P(ValueFields, NotMandatoryMarksValid) {
  const ValueFamily &family = GetParam();
  family.param(1, 30);
  family.valid[0] = 0;
  EXPECT_EQ(family.setMandatory(0, 7), 0);
  EXPECT_EQ(family.mandatory[0], 1);
  EXPECT_EQ(family.valid[0], 0);
  EXPECT_EQ(family.setMandatory(0, 0), 0);
  EXPECT_EQ(family.mandatory[0], 0);
  EXPECT_EQ(family.valid[0], 1);
  EXPECT_EQ(family.getValid(0), 1);
}

TEST_P(ValueFields, IndexesOutsideTheCountDoNothing) {
  const ValueFamily &family = GetParam();
  family.param(2, 30);
  family.valid[2] = 1;
  for (const int i : {2, family.capacity, INT_MAX, -1, INT_MIN}) {
    SCOPED_TRACE(i);
    EXPECT_EQ(family.set(i, 8, 0), 0);
    EXPECT_EQ(family.place(i, 1, 1, 1, 1, 1), 0);
    EXPECT_EQ(family.setMandatory(i, 1), 0);
    EXPECT_EQ(family.getValid(i), 0);
  }
  EXPECT_EQ(family.value(2), 0);
  EXPECT_EQ(family.x[2], 0);
  EXPECT_EQ(family.init[2], 0);
  EXPECT_EQ(family.mandatory[2], 0);
}

TEST_P(ValueFields, ACountBeyondTheTablesReachesNothingBehindThem) {
  const ValueFamily &family = GetParam();
  family.param(family.capacity, 30);
  *family.count = 1000;
  EXPECT_EQ(family.getValid(family.capacity - 1), 1);
  EXPECT_EQ(family.getValid(family.capacity), 0);
  EXPECT_EQ(family.set(family.capacity, 1, 0), 0);
  EXPECT_EQ(family.place(family.capacity, 1, 1, 1, 1, 1), 0);
}

INSTANTIATE_TEST_SUITE_P(, ValueFields, ::testing::ValuesIn(kFamilies),
                         [](const auto &param_info) { return param_info.param.name; });

// ---- Integers ----

class IntegerFields : public ::testing::Test {
 protected:
  DialogGlobals globals;
};

TEST_F(IntegerFields, TablesHaveTheirTypesAndCapacities) {
  static_assert(std::is_same_v<decltype(IDB_x), short[128]>);
  static_assert(std::is_same_v<decltype(IDB_bPassw), int[128]>);
  static_assert(std::is_same_v<decltype(IDB_iInts), int[128]>);
  static_assert(std::is_same_v<decltype(IDB_lPassw), short[128]>);
  static_assert(std::is_same_v<decltype(vi_tab), ValidInt_t[128]>);
  static_assert(std::is_same_v<decltype(vi), ValidInt_t *>);
  EXPECT_EQ(vi, vi_tab);
  EXPECT_EQ(vi_tab[0], nullptr);
}

TEST_F(IntegerFields, ParamResetsPasswordsAndValidators) {
  IDB_bPassw[0] = IDB_lPassw[0] = 3;
  vi[0] = acceptNothing;
  IntDlgBox_param(1, 3);
  EXPECT_EQ(IDB_bPassw[0], 0);
  EXPECT_EQ(IDB_lPassw[0], 0);
  EXPECT_EQ(vi[0], intcod_i);
}

TEST_F(IntegerFields, ModeChoosesTheValidator) {
  IntDlgBox_param(1, 3);
  const struct {
    int mode;
    ValidInt_t validator;
  } kCases[] = {{0, intcod_i},           {1, intcod_i_sup0}, {2, intcod_i_ssup0},
                {7, acceptNothing},      {3, acceptNothing}, {-1, acceptNothing},
                {INT_MIN, acceptNothing}};
  for (const auto &[mode, validator] : kCases) {
    IntDlgBox_set_fvalid(0, acceptNothing);
    EXPECT_EQ(IntDlgBox_set(0, 5, mode), 0);
    EXPECT_EQ(vi_tab[0], validator) << mode;
    EXPECT_EQ(IDB_iInts[0], 5);
    EXPECT_EQ(IDB_bInit[0], 1);
  }
}

TEST_F(IntegerFields, ValidatorsOutsideTheCountAreNotSet) {
  IntDlgBox_param(1, 3);
  for (const int i : {1, 127, 128, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(IntDlgBox_set_fvalid(i, acceptNothing), 0);
  }
  EXPECT_EQ(vi_tab[0], intcod_i);
  EXPECT_EQ(vi_tab[1], nullptr);
  EXPECT_EQ(vi_tab[127], nullptr);
}

TEST_F(IntegerFields, RetrieveGivesTheValue) {
  IntDlgBox_param(1, 3);
  IntDlgBox_set(0, INT_MIN, 0);
  int value = 1;
  EXPECT_EQ(IntDlgBox_retrieve(0, &value), 0);
  EXPECT_EQ(value, INT_MIN);
  value = 1;
  for (const int i : {-1, 1, 128}) EXPECT_EQ(IntDlgBox_retrieve(i, &value), 0);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(IntDlgBox_retrieve(0, nullptr), 0);
}

TEST_F(IntegerFields, PasswordIsAFlag) {
  IntDlgBox_param(1, 3);
  EXPECT_EQ(IntDlgBox_password(0, 12), 0);
  EXPECT_EQ(IDB_bPassw[0], 1);
  IntDlgBox_password(0, 0);
  EXPECT_EQ(IDB_bPassw[0], 0);
  IntDlgBox_password(1, 1);
  IntDlgBox_password(-1, 1);
  EXPECT_EQ(IDB_bPassw[1], 0);
}

TEST_F(IntegerFields, ValidatorsAreReachedThroughThePointer) {
  ValidInt_t own[128] = {};
  vi = own;
  IntDlgBox_param(2, 3);
  IntDlgBox_set(0, 1, 1);
  IntDlgBox_set_fvalid(1, acceptNothing);
  EXPECT_EQ(own[0], intcod_i_sup0);
  EXPECT_EQ(own[1], acceptNothing);
  EXPECT_EQ(vi_tab[0], nullptr);
  vi = nullptr;
  EXPECT_EQ(IntDlgBox_param(2, 3), 0);
  EXPECT_EQ(IntDlgBox_set(0, 1, 1), 0);
}

// ---- Numbers ----

class NumberFields : public ::testing::Test {
 protected:
  DialogGlobals globals;
};

TEST_F(NumberFields, TablesHaveTheirTypesAndCapacities) {
  static_assert(std::is_same_v<decltype(NDB_cy), short[128]>);
  static_assert(std::is_same_v<decltype(NDB_dNums), double[128]>);
  static_assert(std::is_same_v<decltype(NDB_iChiff), int[128]>);
  static_assert(std::is_same_v<decltype(vf_tab), ValidNum_t[128]>);
  EXPECT_EQ(vf, vf_tab);
  EXPECT_EQ(vf_tab[0], nullptr);
}

TEST_F(NumberFields, ParamSetsDecimalsAndValidator) {
  NDB_iChiff[0] = 1;
  vf[0] = acceptNoNumber;
  NumDlgBox_param(1, 3);
  EXPECT_EQ(NDB_iChiff[0], 5);
  EXPECT_EQ(vf[0], realcod_d);
}

TEST_F(NumberFields, ModeChoosesTheValidator) {
  NumDlgBox_param(1, 3);
  const struct {
    int mode;
    ValidNum_t validator;
  } kCases[] = {{0, realcod_d},
                {1, realcod_d_sup0},
                {2, realcod_d_ssup0},
                {3, acceptNoNumber},
                {-1, acceptNoNumber}};
  for (const auto &[mode, validator] : kCases) {
    NumDlgBox_set_fvalid(0, acceptNoNumber);
    EXPECT_EQ(NumDlgBox_set(0, 2.5, mode), 0);
    EXPECT_EQ(vf_tab[0], validator) << mode;
    EXPECT_EQ(NDB_dNums[0], 2.5);
  }
}

TEST_F(NumberFields, ValidatorsOutsideTheCountAreNotSet) {
  NumDlgBox_param(1, 3);
  for (const int i : {1, 127, 128, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(NumDlgBox_set_fvalid(i, acceptNoNumber), 0);
  }
  EXPECT_EQ(vf_tab[0], realcod_d);
  EXPECT_EQ(vf_tab[1], nullptr);
  EXPECT_EQ(vf_tab[127], nullptr);
}

TEST_F(NumberFields, DecimalsRiseAndFall) {
  NumDlgBox_param(1, 3);
  const struct { int n, decimals; } kCases[] = {{2, 2}, {9, 9}, {0, 0}, {-4, 0}, {INT_MIN, 0}};
  for (const auto &[n, decimals] : kCases) {
    EXPECT_EQ(NumDlgBox_set_nchiff(0, n), 0);
    EXPECT_EQ(NDB_iChiff[0], decimals);
  }
  NDB_iChiff[1] = 4;
  NumDlgBox_set_nchiff(1, 7);
  EXPECT_EQ(NDB_iChiff[1], 4);
}

TEST_F(NumberFields, RetrieveGivesTheValue) {
  NumDlgBox_param(1, 3);
  NumDlgBox_set(0, -0.125, 0);
  double value = 1;
  EXPECT_EQ(NumDlgBox_retrieve(0, &value), 0);
  EXPECT_EQ(value, -0.125);
  value = 1;
  for (const int i : {-1, 1, 128}) EXPECT_EQ(NumDlgBox_retrieve(i, &value), 0);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(NumDlgBox_retrieve(0, nullptr), 0);
}

TEST_F(NumberFields, ValidatorsAreReachedThroughThePointer) {
  ValidNum_t own[128] = {};
  vf = own;
  NumDlgBox_param(1, 3);
  EXPECT_EQ(own[0], realcod_d);
  EXPECT_EQ(vf_tab[0], nullptr);
  vf = nullptr;
  EXPECT_EQ(NumDlgBox_param(1, 3), 0);
  EXPECT_EQ(NumDlgBox_set_fvalid(0, acceptNoNumber), 0);
}

// ---- Dates ----

class DateFields : public ::testing::Test {
 protected:
  DialogGlobals globals;
};

TEST_F(DateFields, TablesHaveTheirTypesAndCapacities) {
  static_assert(std::is_same_v<decltype(DDB_cx), short[20]>);
  static_assert(std::is_same_v<decltype(DDB_lDates), int[20]>);
  static_assert(std::is_same_v<decltype(vd_tab), ValidInt_t[20]>);
  EXPECT_EQ(vd, vd_tab);
  EXPECT_EQ(vd_tab[0], nullptr);
}

TEST_F(DateFields, ModeChoosesTheValidator) {
  DateDlgBox_param(1, 3);
  EXPECT_EQ(vd[0], intcod_l);
  const struct {
    int mode;
    ValidInt_t validator;
  } kCases[] = {{0, intcod_l_sup0}, {1, intcod_l_date}, {2, acceptNothing}, {-1, acceptNothing}};
  for (const auto &[mode, validator] : kCases) {
    DateDlgBox_set_fvalid(0, acceptNothing);
    EXPECT_EQ(DateDlgBox_set(0, 20240229, mode), 0);
    EXPECT_EQ(vd_tab[0], validator) << mode;
    EXPECT_EQ(DDB_lDates[0], 20240229);
  }
}

TEST_F(DateFields, ValidatorsOutsideTheCountAreNotSet) {
  DateDlgBox_param(1, 3);
  for (const int i : {1, 19, 20, -1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(DateDlgBox_set_fvalid(i, acceptNothing), 0);
  }
  EXPECT_EQ(vd_tab[0], intcod_l);
  EXPECT_EQ(vd_tab[1], nullptr);
  EXPECT_EQ(vd_tab[19], nullptr);
}

TEST_F(DateFields, RetrieveGivesTheValue) {
  DateDlgBox_param(1, 3);
  DateDlgBox_set(0, 19890714, 1);
  int value = 1;
  EXPECT_EQ(DateDlgBox_retrieve(0, &value), 0);
  EXPECT_EQ(value, 19890714);
  value = 1;
  for (const int i : {-1, 1, 20}) EXPECT_EQ(DateDlgBox_retrieve(i, &value), 0);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(DateDlgBox_retrieve(0, nullptr), 0);
}

TEST_F(DateFields, ValidatorsAreReachedThroughThePointer) {
  ValidInt_t own[20] = {};
  vd = own;
  DateDlgBox_param(1, 3);
  DateDlgBox_set(0, 1, 1);
  EXPECT_EQ(own[0], intcod_l_date);
  EXPECT_EQ(vd_tab[0], nullptr);
  vd = nullptr;
  EXPECT_EQ(DateDlgBox_param(1, 3), 0);
  EXPECT_EQ(DateDlgBox_set_fvalid(0, acceptNothing), 0);
}

TEST_F(DateFields, CalendarDatesAreAccepted) {
  constexpr struct {
    const char *text;
    int status;
    int stored;  // -7: nothing
  } kCases[] = {
      // The first and the last day, and their neighbours.
      {"18000101", 0, 18000101},
      {"17991231", 2, 17991231},
      {"21001231", 0, 21001231},
      {"21000228", 0, 21000228},
      {"21010101", 2, 21010101},
      // Days of the month.
      {"20230230", 2, 20230230},
      {"20230228", 0, 20230228},
      {"20230229", 2, 20230229},
      {"20240229", 0, 20240229},
      {"21000229", 2, 21000229},
      {"20000229", 0, 20000229},
      {"20230431", 2, 20230431},
      {"20230430", 0, 20230430},
      {"20230100", 2, 20230100},
      {"20230132", 2, 20230132},
      {"20230131", 0, 20230131},
      // Months.
      {"20230001", 2, 20230001},
      {"20231301", 2, 20231301},
      {"20231201", 0, 20231201},
      // Year 0, and no date at all.
      {"0", 2, 0},
      {"0101", 2, 101},
      // Digits above the year's four do not count.
      {"120230101", 0, 120230101},
      // Negative values are stored all the same.
      {"-1", 1, -1},
      {"-20230101", 1, -20230101},
      // What the codec refuses is not stored.
      {"", 1, -7},
      {"  ", 1, -7},
      {"-", 2, -7},
      {"2023-01-01", 3, -7},
      {"20230101000", 4, -7},
      // Blanks around it.
      {"  20230101 ", 0, 20230101},
  };
  for (const auto &[given, status, stored] : kCases) {
    char text[32];
    std::strcpy(text, given);
    int value = -7;
    EXPECT_EQ(intcod_l_date(text, &value), status) << '"' << given << '"';
    EXPECT_EQ(value, stored) << '"' << given << '"';
  }
  int value = -7;
  EXPECT_EQ(intcod_l_date(nullptr, &value), 1);
  EXPECT_EQ(value, -7);
  char text[] = "20230101";
  EXPECT_EQ(intcod_l_date(text, nullptr), 1);
}

}  // namespace
}  // namespace korvel::test
