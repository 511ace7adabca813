// SPDX-License-Identifier: MIT
// The description of text fields: slices, limits, choices and tab stops.
#include "dialogs/text_fields.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"
#include "tests/support/page_end.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

class TextFields : public ::testing::Test {
 protected:
  DialogGlobals globals;
};

TEST_F(TextFields, TablesHaveTheirTypesAndCapacities) {
  static_assert(std::is_same_v<decltype(TDB_x), short[20]>);
  static_assert(std::is_same_v<decltype(TDB_rk), short[20]>);
  static_assert(std::is_same_v<decltype(TDB_bInit), int[20]>);
  static_assert(std::is_same_v<decltype(TDB_bMand), int[20]>);
  static_assert(std::is_same_v<decltype(TDB_bOK), int[20]>);
  static_assert(std::is_same_v<decltype(TDB_bPassw), int[20]>);
  static_assert(std::is_same_v<decltype(TDB_iCarac), int[20]>);
  static_assert(std::is_same_v<decltype(TDBC), int[20]>);
  static_assert(std::is_same_v<decltype(TDBL), int[20]>);
  static_assert(std::is_same_v<decltype(TDB_pszBuffer), char *[20]>);
  static_assert(std::is_same_v<decltype(TDB_PSZLBUFFER), char *[20]>);
  static_assert(std::is_same_v<decltype(TDB_PITABSTOPS), int *[20]>);
  static_assert(sizeof TDB_szBuffer == 8192 && sizeof TDB_SZLBUFFER == 8192);
  static_assert(std::is_same_v<decltype(TDB_ITABSTOPS), int[5][128]>);
  EXPECT_EQ(TDB, 0);
  EXPECT_EQ(TDB_N, 0);
}

TEST_F(TextFields, ParamCutsTheStoreIntoEqualSlices) {
  constexpr struct {
    int n, sliceSize;
  } kCases[] = {{1, 8192}, {2, 4096}, {3, 2730}, {7, 1170}, {19, 431}, {20, 409}};
  for (const auto &[n, sliceSize] : kCases) {
    SCOPED_TRACE(n);
    EXPECT_EQ(TexteDlgBox_param(n, 10), 0);
    EXPECT_EQ(TDB_BUFFERSIZE, sliceSize);
    for (int i = 0; i < n; ++i) {
      EXPECT_EQ(TDB_iCarac[i], sliceSize - 1);
      EXPECT_EQ(TDB_pszBuffer[i], TDB_szBuffer + i * sliceSize);
      EXPECT_EQ(TDB_PSZLBUFFER[i], TDB_SZLBUFFER + i * sliceSize);
    }
  }
}

TEST_F(TextFields, ParamGivesEachFieldItsFirstValues) {
  std::memset(TDB_szBuffer, 'x', sizeof TDB_szBuffer);
  std::memset(TDB_SZLBUFFER, 'x', sizeof TDB_SZLBUFFER);
  std::fill(std::begin(TDB_x), std::end(TDB_x), short{9});
  std::fill(std::begin(TDB_rk), std::end(TDB_rk), short{9});
  std::fill(std::begin(TDB_bInit), std::end(TDB_bInit), 9);
  std::fill(std::begin(TDB_bMand), std::end(TDB_bMand), 9);
  std::fill(std::begin(TDB_bOK), std::end(TDB_bOK), 9);
  std::fill(std::begin(TDBC), std::end(TDBC), 9);
  std::fill(std::begin(TDBL), std::end(TDBL), 9);
  EXPECT_EQ(TexteDlgBox_param(7, 42), 0);
  EXPECT_EQ(TDB, 1);
  EXPECT_EQ(TDB_N, 7);
  EXPECT_EQ(TDB_ID_TEXTE, 42);
  for (int i = 0; i < 7; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(TDB_x[i], 0);
    EXPECT_EQ(TDB_y[i], 0);
    EXPECT_EQ(TDB_cx[i], 0);
    EXPECT_EQ(TDB_cy[i], 0);
    EXPECT_EQ(TDB_rk[i], -1);
    EXPECT_EQ(TDB_bInit[i], 0);
    EXPECT_EQ(TDB_bMand[i], 1);
    EXPECT_EQ(TDB_bOK[i], 1);
    EXPECT_EQ(TDBC[i], 0);
    EXPECT_EQ(TDBL[i], 0);
    EXPECT_STREQ(TDB_pszBuffer[i], "");
    EXPECT_STREQ(TDB_PSZLBUFFER[i], "");
  }
  EXPECT_EQ(TDB_x[7], 9) << "fields beyond the count are left alone";
  EXPECT_EQ(TDB_bOK[7], 9);
}

TEST_F(TextFields, ParamLeavesPasswordsAndTabStops) {
  TDB_bPassw[0] = 1;
  TDB_ITABSTOPS[0][0] = 77;
  TexteDlgBox_param(1, 3);
  EXPECT_EQ(TDB_bPassw[0], 1);
  EXPECT_EQ(TDB_ITABSTOPS[0][0], 77);
}

TEST_F(TextFields, ParamPointsTheFirstFiveFieldsAtTabRows) {
  TexteDlgBox_param(20, 3);
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(TDB_PITABSTOPS[i], i < 5 ? TDB_ITABSTOPS[i] : nullptr) << i;
  }
}

TEST_F(TextFields, ParamRefusesCountsWithoutRoom) {
  ASSERT_EQ(TexteDlgBox_param(2, 30), 0);
  TexteDlgBox_set(0, "garde");
  TDB = 5;
  for (const int n : {0, -1, INT_MIN, 21, 8193, INT_MAX}) {
    EXPECT_EQ(TexteDlgBox_param(n, 99), -1) << n;
    EXPECT_EQ(TDB, 5);
    EXPECT_EQ(TDB_N, 2);
    EXPECT_EQ(TDB_ID_TEXTE, 30);
    EXPECT_EQ(TDB_BUFFERSIZE, 4096);
    EXPECT_STREQ(TDB_pszBuffer[0], "garde");
  }
}

TEST_F(TextFields, SetCutsToTheSlice) {
  TexteDlgBox_param(20, 3);
  const struct {
    std::size_t length, kept;
  } kCases[] = {{0, 0}, {1, 1}, {407, 407}, {408, 408}, {409, 408}, {5000, 408}};
  for (const auto &[length, kept] : kCases) {
    SCOPED_TRACE(length);
    std::memset(TDB_szBuffer, '#', sizeof TDB_szBuffer);
    EXPECT_EQ(TexteDlgBox_set(19, std::string(length, 'a').c_str()), 0);
    EXPECT_EQ(TDB_bInit[19], 1);
    EXPECT_EQ(std::string(TDB_pszBuffer[19]), std::string(kept, 'a'));
    EXPECT_EQ(TDB_pszBuffer[19][-1], '#') << "the slice before";
    EXPECT_EQ(TDB_szBuffer[20 * 409], '#') << "behind the last slice";
  }
}

TEST_F(TextFields, SetKeepsEveryByte) {
  TexteDlgBox_param(1, 3);
  std::string all;
  for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
  TexteDlgBox_set(0, all.c_str());
  EXPECT_EQ(std::string(TDB_pszBuffer[0]), all);
}

TEST_F(TextFields, SetTakesAPartOfTheTextItself) {
  TexteDlgBox_param(1, 3);
  TexteDlgBox_set(0, "bonjour");
  TexteDlgBox_set(0, TDB_pszBuffer[0] + 3);
  EXPECT_STREQ(TDB_pszBuffer[0], "jour");
}

TEST_F(TextFields, SetStaysInsideTheStoreWhereverThePointerStands) {
  TexteDlgBox_param(1, 3);
  TDB_pszBuffer[0] = TDB_szBuffer + 8190;
  TexteDlgBox_set(0, "abc");
  EXPECT_STREQ(TDB_pszBuffer[0], "a");
  TDB_pszBuffer[0] = nullptr;
  EXPECT_EQ(TexteDlgBox_set(0, "abc"), 0);
  TDB_pszBuffer[0] = TDB_szBuffer;
  TDB_BUFFERSIZE = 100000;
  TexteDlgBox_set(0, std::string(9000, 'z').c_str());
  EXPECT_EQ(std::strlen(TDB_szBuffer), 8191U);
  for (const int size : {0, -1, INT_MIN}) {
    TDB_BUFFERSIZE = size;
    TexteDlgBox_set(0, "non");
    EXPECT_EQ(TDB_szBuffer[0], 'z') << size;
  }
}

TEST_F(TextFields, SetWritesAnApplicationsOwnText) {
  TexteDlgBox_param(20, 3);
  PoisonedBuffer own(409);
  TDB_pszBuffer[4] = own.data();
  TexteDlgBox_set(4, std::string(500, 'o').c_str());
  EXPECT_EQ(own.text().size(), 408U);
  EXPECT_TRUE(own.guardsIntact());
}

TEST_F(TextFields, GeometryIsStoredAsShorts) {
  TexteDlgBox_param(2, 3);
  EXPECT_EQ(TexteDlgBox_set_geo(1, 1, -2, 65536 + 3, 40000, 7), 0);
  EXPECT_EQ(TDB_x[1], 1);
  EXPECT_EQ(TDB_y[1], -2);
  EXPECT_EQ(TDB_cx[1], 3);
  EXPECT_EQ(TDB_cy[1], static_cast<short>(40000));
  EXPECT_EQ(TDB_rk[1], 7);
  EXPECT_EQ(TDB_rk[0], -1);
}

TEST_F(TextFields, LongestTextIsOnlyEverLowered) {
  TexteDlgBox_param(1, 3);
  EXPECT_EQ(TexteDlgBox_set_ncarac(0, 9000), 0);
  EXPECT_EQ(TDB_iCarac[0], 8191);
  TexteDlgBox_set_ncarac(0, 10);
  EXPECT_EQ(TDB_iCarac[0], 10);
  TexteDlgBox_set_ncarac(0, 50);
  EXPECT_EQ(TDB_iCarac[0], 10);
  TexteDlgBox_set_ncarac(0, -3);
  EXPECT_EQ(TDB_iCarac[0], 0);
}

TEST_F(TextFields, ChoicesMakeAPopUpAndAreCut) {
  TexteDlgBox_param(20, 3);
  TDB_SZLBUFFER[3 * 409] = '#';
  EXPECT_EQ(TexteDlgBox_set_liste(2, "Mme,M.+Dr"), 0);
  EXPECT_EQ(TDBC[2], 1);
  EXPECT_EQ(TDBL[2], 0);
  EXPECT_STREQ(TDB_PSZLBUFFER[2], "Mme,M.+Dr");
  TexteDlgBox_set_liste(2, std::string(1000, 'a').c_str());
  EXPECT_EQ(std::strlen(TDB_PSZLBUFFER[2]), 408U);
  EXPECT_EQ(TDB_SZLBUFFER[3 * 409], '#');
}

TEST_F(TextFields, PopUpAndListAreToggled) {
  TexteDlgBox_param(1, 3);
  EXPECT_EQ(TexteDlgBox_change_liste(0), 0);
  EXPECT_EQ(TDBC[0], 0) << "neither stays neither";
  EXPECT_EQ(TDBL[0], 0);
  TexteDlgBox_set_liste(0, "a$b");
  TexteDlgBox_change_liste(0);
  EXPECT_EQ(TDBC[0], 0);
  EXPECT_EQ(TDBL[0], 1);
  TexteDlgBox_change_liste(0);
  EXPECT_EQ(TDBC[0], 1);
  EXPECT_EQ(TDBL[0], 0);
}

TEST_F(TextFields, OwnChoicesAreNotCopiedNorWritten) {
  TexteDlgBox_param(2, 3);
  char own[] = "un,deux";
  EXPECT_EQ(TexteDlgBox_set_liste_buffer(1, own), 0);
  EXPECT_EQ(TDB_PSZLBUFFER[1], own);
  EXPECT_EQ(TDBC[1], 0);
  TexteDlgBox_set_liste(1, "trois,quatre,cinq");
  EXPECT_STREQ(own, "un,deux");
  EXPECT_EQ(TDB_PSZLBUFFER[1], TDB_SZLBUFFER + 4096);
  EXPECT_STREQ(TDB_PSZLBUFFER[1], "trois,quatre,cinq");
}

TEST_F(TextFields, RetrieveCopiesOnlyWhatFits) {
  TexteDlgBox_param(1, 3);
  TexteDlgBox_set(0, "abc");
  for (const int size : {-1, 0, 1, 2, 3}) {
    PoisonedBuffer dst(8);
    EXPECT_EQ(TexteDlgBox_retrieve(0, dst.data(), size), 0);
    EXPECT_TRUE(dst.untouchedFrom(0)) << size;
  }
  for (const int size : {4, 5}) {
    PoisonedBuffer dst(8);
    EXPECT_EQ(TexteDlgBox_retrieve(0, dst.data(), size), 0);
    EXPECT_EQ(dst.text(), "abc");
    EXPECT_TRUE(dst.untouchedFrom(4));
  }
}

TEST_F(TextFields, RetrieveListeCopiesAll) {
  TexteDlgBox_param(1, 3);
  const std::string choices(8191, 'c');
  TexteDlgBox_set_liste(0, choices.c_str());
  PoisonedBuffer dst(8192);
  EXPECT_EQ(TexteDlgBox_retrieve_liste(0, dst.data()), 0);
  EXPECT_EQ(dst.text(), choices);
  EXPECT_TRUE(dst.guardsIntact());
}

TEST_F(TextFields, NotMandatoryMarksValid) {
  TexteDlgBox_param(1, 3);
  TDB_bOK[0] = 0;
  EXPECT_EQ(TexteDlgBox_mandatory(0, 5), 0);
  EXPECT_EQ(TDB_bMand[0], 1);
  EXPECT_EQ(TDB_bOK[0], 0);
  TexteDlgBox_mandatory(0, 0);
  EXPECT_EQ(TDB_bMand[0], 0);
  EXPECT_EQ(TDB_bOK[0], 1);
}

TEST_F(TextFields, PasswordIsAFlag) {
  TexteDlgBox_param(1, 3);
  TexteDlgBox_password(0, -4);
  EXPECT_EQ(TDB_bPassw[0], 1);
  TexteDlgBox_password(0, 0);
  EXPECT_EQ(TDB_bPassw[0], 0);
}

TEST_F(TextFields, TabStopsEndInZero) {
  TexteDlgBox_param(6, 3);
  const int stops[] = {10, 20, 30, 0, 40};
  TDB_ITABSTOPS[1][3] = TDB_ITABSTOPS[1][4] = 7;
  EXPECT_EQ(TexteDlgBox_set_tabstops(1, stops), 0);
  EXPECT_EQ(TDB_ITABSTOPS[1][2], 30);
  EXPECT_EQ(TDB_ITABSTOPS[1][3], 0);
  EXPECT_EQ(TDB_ITABSTOPS[1][4], 7);
}

TEST_F(TextFields, TabStopsAreCutAt127) {
  TexteDlgBox_param(6, 3);
  for (const int count : {126, 127, 128, 200}) {
    SCOPED_TRACE(count);
    std::vector<int> stops(static_cast<std::size_t>(count), 5);
    stops.push_back(0);
    TDB_ITABSTOPS[1][std::min(count, 127)] = 99;
    TDB_ITABSTOPS[2][0] = 99;
    TexteDlgBox_set_tabstops(1, stops.data());
    EXPECT_EQ(TDB_ITABSTOPS[1][std::min(count, 127)], 0);
    EXPECT_EQ(TDB_ITABSTOPS[1][std::min(count, 127) - 1], 5);
    EXPECT_EQ(TDB_ITABSTOPS[2][0], 99);
  }
}

TEST_F(TextFields, FieldsWithoutATabRowTakeNone) {
  TexteDlgBox_param(20, 3);
  const int stops[] = {10, 0};
  int before[5][128];
  std::memcpy(before, TDB_ITABSTOPS, sizeof before);
  for (int i = 5; i < 20; ++i) EXPECT_EQ(TexteDlgBox_set_tabstops(i, stops), 0);
  EXPECT_EQ(std::memcmp(before, TDB_ITABSTOPS, sizeof before), 0);
}

TEST_F(TextFields, GetValidGivesTheFlag) {
  TexteDlgBox_param(2, 3);
  EXPECT_EQ(TexteDlgBox_get_valid(1), 1);
  TDB_bOK[1] = 0;
  EXPECT_EQ(TexteDlgBox_get_valid(1), 0);
  EXPECT_EQ(TexteDlgBox_get_valid(0), 1);
}

TEST_F(TextFields, IndexesOutsideTheCountDoNothing) {
  TexteDlgBox_param(2, 3);
  char buffer[16] = "avant";
  const int stops[] = {1, 0};
  TDB_bOK[2] = 1;
  TDB_iCarac[2] = 500;
  const std::string before(TDB_szBuffer, sizeof TDB_szBuffer);
  for (const int i : {2, 3, 20, INT_MAX, -1, INT_MIN}) {
    SCOPED_TRACE(i);
    EXPECT_EQ(TexteDlgBox_set(i, "x"), 0);
    EXPECT_EQ(TexteDlgBox_set_geo(i, 1, 1, 1, 1, 1), 0);
    EXPECT_EQ(TexteDlgBox_set_ncarac(i, 1), 0);
    EXPECT_EQ(TexteDlgBox_set_liste(i, "x"), 0);
    EXPECT_EQ(TexteDlgBox_change_liste(i), 0);
    EXPECT_EQ(TexteDlgBox_set_liste_buffer(i, buffer), 0);
    EXPECT_EQ(TexteDlgBox_retrieve(i, buffer, 16), 0);
    EXPECT_EQ(TexteDlgBox_retrieve_liste(i, buffer), 0);
    EXPECT_EQ(TexteDlgBox_mandatory(i, 1), 0);
    EXPECT_EQ(TexteDlgBox_password(i, 1), 0);
    EXPECT_EQ(TexteDlgBox_set_tabstops(i, stops), 0);
    EXPECT_EQ(TexteDlgBox_get_valid(i), 0);
  }
  EXPECT_STREQ(buffer, "avant");
  EXPECT_EQ(std::string(TDB_szBuffer, sizeof TDB_szBuffer), before);
  EXPECT_EQ(TDB_x[2], 0);
  EXPECT_EQ(TDB_iCarac[2], 500);
  EXPECT_EQ(TDBC[2], 0);
  EXPECT_EQ(TDB_bPassw[2], 0);
  EXPECT_EQ(TDB_bMand[2], 0);
  EXPECT_EQ(TDB_PSZLBUFFER[2], nullptr);
}

TEST_F(TextFields, ACountBeyondTheTablesReachesNothingBehindThem) {
  TexteDlgBox_param(20, 3);
  TDB_N = 1000;
  EXPECT_EQ(TexteDlgBox_get_valid(19), 1);
  EXPECT_EQ(TexteDlgBox_get_valid(20), 0);
  EXPECT_EQ(TexteDlgBox_set(20, "x"), 0);
  TDB_N = -5;
  EXPECT_EQ(TexteDlgBox_get_valid(0), 0);
}

TEST_F(TextFields, ATextForNoFieldIsNotRead) {
  PageEnd endless("x");
  TexteDlgBox_param(1, 3);
  StaticDlgBox_param(1);
  EXPECT_EQ(TexteDlgBox_set(20, endless.data()), 0);
  EXPECT_EQ(TexteDlgBox_set_liste(-1, endless.data()), 0);
  StaticDlgBox_set(-1, endless.data());
  EXPECT_EQ(ZRVDlgBox_num_set(0, endless.data()), 0) << "there is no dialog";
}

TEST_F(TextFields, NullArgumentsDoNothing) {
  TexteDlgBox_param(1, 3);
  TexteDlgBox_set_liste(0, "a,b");
  EXPECT_EQ(TexteDlgBox_set(0, nullptr), 0);
  EXPECT_EQ(TDB_bInit[0], 0);
  EXPECT_EQ(TexteDlgBox_set_liste(0, nullptr), 0);
  EXPECT_EQ(TexteDlgBox_set_liste_buffer(0, nullptr), 0);
  EXPECT_STREQ(TDB_PSZLBUFFER[0], "a,b");
  EXPECT_EQ(TexteDlgBox_retrieve(0, nullptr, 10), 0);
  EXPECT_EQ(TexteDlgBox_retrieve_liste(0, nullptr), 0);
  EXPECT_EQ(TexteDlgBox_set_tabstops(0, nullptr), 0);
}

TEST_F(TextFields, StoredTextEndsWithItsRoom) {
  TexteDlgBox_param(20, 3);
  std::memset(TDB_szBuffer, 'u', sizeof TDB_szBuffer);
  EXPECT_EQ(dialogs::storedText(dialogs::kFieldTexts, 3).size(), 409U);
  TDB_pszBuffer[3] = nullptr;
  EXPECT_EQ(dialogs::storedText(dialogs::kFieldTexts, 3), "");
}

}  // namespace
}  // namespace korvel::test
