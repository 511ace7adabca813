// SPDX-License-Identifier: MIT
// Check boxes, push buttons and static texts, whose labels are slices of a fixed size.
#include <algorithm>
#include <climits>
#include <cstring>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

// ---- All three ----

struct LabelFamily {
  const char *name;
  int capacity;
  int sliceSize;
  int *inUse, *count;
  int *firstItem;  // null: none
  int *bufferSize;
  short *x, *y, *cx, *cy;
  short *rank;  // null: none
  char **texts;
  char *store;
  int (*param)(int, int);
  int (*label)(int, const char *);
  int (*place)(int, int, int, int, int, int);
};

void PrintTo(const LabelFamily &family, std::ostream *out) { *out << family.name; }

int staticParam(int n, int) { return StaticDlgBox_param(n); }
int placeBool(int i, int x, int y, int cx, int cy, int rk) {
  return BoolDlgBox_set_geo(i, "case", x, y, cx, cy, rk);
}
int placePush(int i, int x, int y, int cx, int cy, int rk) {
  return PushDlgBox_set_geo(i, "case", x, y, cx, cy, rk);
}
int placeStatic(int i, int x, int y, int cx, int cy, int) {
  return StaticDlgBox_set_geo(i, x, y, cx, cy);
}
int labelBool(int i, const char *text) { return BoolDlgBox_set_geo(i, text, 0, 0, 0, 0, 0); }
int labelPush(int i, const char *text) { return PushDlgBox_set_geo(i, text, 0, 0, 0, 0, 0); }

const LabelFamily kFamilies[] = {
    {"CheckBoxes", 64, 48, &BDB, &BDB_N, &BDB_ID_FLAG, &BDB_BUFFERSIZE, BDB_x, BDB_y, BDB_cx,
     BDB_cy, BDB_rk, BDB_pszBuffer, BDB_szBuffer, BoolDlgBox_param, labelBool, placeBool},
    {"PushButtons", 10, 16, &PDB, &PDB_N, &PDB_ID_PUSH, &PDB_BUFFERSIZE, PDB_x, PDB_y, PDB_cx,
     PDB_cy, PDB_rk, PDB_pszBuffer, PDB_szBuffer, PushDlgBox_param, labelPush, placePush},
    {"StaticTexts", 128, 512, &SDB, &SDB_N, nullptr, &SDB_BUFFERSIZE, SDB_x, SDB_y, SDB_cx, SDB_cy,
     nullptr, SDB_pszBuffer, SDB_szBuffer, staticParam, StaticDlgBox_set, placeStatic},
};

class LabelFields : public ::testing::TestWithParam<LabelFamily> {
 protected:
  DialogGlobals globals;
};

TEST_P(LabelFields, ParamGivesEachFieldItsFirstValues) {
  const LabelFamily &family = GetParam();
  for (const int n : {0, 1, 2, family.capacity - 1, family.capacity}) {
    SCOPED_TRACE(n);
    DialogGlobals::reset();
    for (int i = 0; i < family.capacity; ++i) {
      family.x[i] = family.y[i] = family.cx[i] = family.cy[i] = 9;
      if (family.rank != nullptr) family.rank[i] = 9;
    }
    std::memset(family.store, 'x', static_cast<std::size_t>(family.capacity * family.sliceSize));
    EXPECT_EQ(family.param(n, 33), 0);
    EXPECT_EQ(*family.inUse, 1);
    EXPECT_EQ(*family.count, n);
    EXPECT_EQ(*family.bufferSize, family.sliceSize);
    if (family.firstItem != nullptr) {
      EXPECT_EQ(*family.firstItem, 33);
    }
    for (int i = 0; i < n; ++i) {
      ASSERT_EQ(family.x[i] | family.y[i] | family.cx[i] | family.cy[i], 0) << i;
      if (family.rank != nullptr) {
        ASSERT_EQ(family.rank[i], -1) << i;
      }
      ASSERT_EQ(family.texts[i], family.store + i * family.sliceSize) << i;
      ASSERT_STREQ(family.texts[i], "") << i;
    }
    if (n < family.capacity) {
      EXPECT_EQ(family.x[n], 9);
    }
  }
}

TEST_P(LabelFields, ParamRefusesCountsWithoutRoom) {
  const LabelFamily &family = GetParam();
  family.param(2, 30);
  family.label(1, "garde");
  for (const int n : {-1, INT_MIN, family.capacity + 1, INT_MAX}) {
    EXPECT_EQ(family.param(n, 99), -1) << n;
    EXPECT_EQ(*family.count, 2);
    EXPECT_STREQ(family.texts[1], "garde");
  }
}

TEST_P(LabelFields, LabelsAreCutToTheirSlice) {
  const LabelFamily &family = GetParam();
  const int last = family.capacity - 1;
  const auto room = static_cast<std::size_t>(family.sliceSize);
  for (const std::size_t length : {std::size_t{0}, room - 2, room - 1, room, room + 1, 5 * room}) {
    SCOPED_TRACE(length);
    family.param(family.capacity, 30);
    family.label(last - 1, "avant");
    EXPECT_EQ(family.label(last, std::string(length, 'a').c_str()), 0);
    EXPECT_EQ(std::string(family.texts[last]), std::string(std::min(length, room - 1), 'a'));
    EXPECT_EQ(family.label(last - 1, std::string(length, 'b').c_str()), 0);
    EXPECT_EQ(std::string(family.texts[last]), std::string(std::min(length, room - 1), 'a'));
  }
}

TEST_P(LabelFields, NullLabelsAndPointersAreLeftAlone) {
  const LabelFamily &family = GetParam();
  family.param(2, 30);
  family.label(0, "garde");
  EXPECT_EQ(family.label(0, nullptr), 0);
  EXPECT_STREQ(family.texts[0], "garde");
  family.texts[1] = nullptr;
  EXPECT_EQ(family.label(1, "perdu"), 0);
  EXPECT_STREQ(family.texts[0], "garde");
}

TEST_P(LabelFields, GeometryIsStoredAsShorts) {
  const LabelFamily &family = GetParam();
  family.param(2, 30);
  EXPECT_EQ(family.place(1, 65536 + 1, -2, 3, 40000, 5), 0);
  EXPECT_EQ(family.x[1], 1);
  EXPECT_EQ(family.y[1], -2);
  EXPECT_EQ(family.cx[1], 3);
  EXPECT_EQ(family.cy[1], static_cast<short>(40000));
  if (family.rank != nullptr) {
    EXPECT_EQ(family.rank[1], 5);
  }
}

TEST_P(LabelFields, IndexesOutsideTheCountDoNothing) {
  const LabelFamily &family = GetParam();
  family.param(2, 30);
  for (const int i : {2, family.capacity, INT_MAX, -1, INT_MIN}) {
    SCOPED_TRACE(i);
    EXPECT_EQ(family.place(i, 1, 1, 1, 1, 1), 0);
    EXPECT_EQ(family.label(i, "non"), 0);
  }
  EXPECT_EQ(family.x[2], 0);
  EXPECT_EQ(family.store[2 * family.sliceSize], '\0');
  *family.count = 10000;
  EXPECT_EQ(family.place(family.capacity, 1, 1, 1, 1, 1), 0);
  EXPECT_EQ(family.label(family.capacity, "non"), 0);
}

INSTANTIATE_TEST_SUITE_P(, LabelFields, ::testing::ValuesIn(kFamilies),
                         [](const auto &param_info) { return param_info.param.name; });

// ---- Each ----

class OwnLabels : public ::testing::Test {
 protected:
  DialogGlobals globals;
};

TEST_F(OwnLabels, TablesHaveTheirTypesAndCapacities) {
  static_assert(std::is_same_v<decltype(BDB_rk), short[64]>);
  static_assert(std::is_same_v<decltype(BDB_bFlags), int[64]>);
  static_assert(std::is_same_v<decltype(BDB_pszBuffer), char *[64]>);
  static_assert(sizeof BDB_szBuffer == 3072);
  static_assert(std::is_same_v<decltype(PDB_rk), short[10]>);
  static_assert(std::is_same_v<decltype(PDB_pszBuffer), char *[10]>);
  static_assert(sizeof PDB_szBuffer == 160);
  static_assert(std::is_same_v<decltype(vp_tab), PushAction_t[10]>);
  static_assert(std::is_same_v<decltype(SDB_type), short[128]>);
  static_assert(std::is_same_v<decltype(SDB_pszBuffer), char *[128]>);
  static_assert(sizeof SDB_szBuffer == 65536);
  EXPECT_EQ(vp, vp_tab);
}

TEST_F(OwnLabels, CheckBoxValueIsStoredUnchanged) {
  BDB_bFlags[0] = 4;
  BoolDlgBox_param(1, 3);
  EXPECT_EQ(BDB_bFlags[0], 0);
  for (const int value : {1, 0, 5, -1}) {
    EXPECT_EQ(BoolDlgBox_set(0, value), 0);
    int out = 77;
    EXPECT_EQ(BoolDlgBox_retrieve(0, &out), 0);
    EXPECT_EQ(out, value);
  }
  int out = 77;
  for (const int i : {1, -1, 64}) {
    EXPECT_EQ(BoolDlgBox_set(i, 1), 0);
    EXPECT_EQ(BoolDlgBox_retrieve(i, &out), 0);
  }
  EXPECT_EQ(out, 77);
  EXPECT_EQ(BDB_bFlags[1], 0);
  EXPECT_EQ(BoolDlgBox_retrieve(0, nullptr), 0);
}

TEST_F(OwnLabels, PushButtonActions) {
  vp[0] = Callbacks::action;
  PushDlgBox_param(2, 3);
  EXPECT_EQ(vp_tab[0], nullptr);
  EXPECT_EQ(PushDlgBox_set_fvalid(1, Callbacks::action), 0);
  EXPECT_EQ(vp_tab[1], Callbacks::action);
  for (const int i : {2, -1}) EXPECT_EQ(PushDlgBox_set_fvalid(i, Callbacks::action), 0);
  EXPECT_EQ(vp_tab[2], nullptr);
  vp = nullptr;
  EXPECT_EQ(PushDlgBox_param(2, 3), 0);
  EXPECT_EQ(PushDlgBox_set_fvalid(0, Callbacks::action), 0);
}

TEST_F(OwnLabels, StaticTypeIsAShort) {
  SDB_type[0] = 9;
  StaticDlgBox_param(1);
  EXPECT_EQ(SDB_type[0], 0);
  EXPECT_EQ(StaticDlgBox_set_type(0, -1), 0);
  EXPECT_EQ(SDB_type[0], -1);
  StaticDlgBox_set_type(0, 65536 + 2);
  EXPECT_EQ(SDB_type[0], 2);
  StaticDlgBox_set_type(1, 7);
  StaticDlgBox_set_type(-1, 7);
  EXPECT_EQ(SDB_type[1], 0);
}

}  // namespace
}  // namespace korvel::test
