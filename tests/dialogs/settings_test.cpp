// SPDX-License-Identifier: MIT
// Title, size, background and the button pair, as they are recorded for later dialogs.
#include <climits>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

class Settings : public ::testing::Test {
 protected:
  DialogGlobals globals;
};

TEST_F(Settings, AllButTheButtonsBeginsWithZeros) { EXPECT_EQ(DialogGlobals::setAtLoad(), 0); }

TEST_F(Settings, TitleIsCutTo127Characters) {
  static_assert(sizeof HDB_szHeader == 128);
  for (const std::size_t length : {0, 1, 126, 127, 128, 1000}) {
    SCOPED_TRACE(length);
    DialogGlobals::reset();
    EXPECT_EQ(TitreDlgBox_set(std::string(length, 't').c_str()), 0);
    EXPECT_EQ(HDB, 1);
    EXPECT_EQ(std::strlen(HDB_szHeader), std::min<std::size_t>(length, 127));
  }
  EXPECT_EQ(TitreDlgBox_set(nullptr), 0);
}

TEST_F(Settings, TitleIsRetrievedOnlyWhole) {
  TitreDlgBox_set("Patient");
  for (const int size : {-1, 0, 6, 7}) {
    PoisonedBuffer dst(16);
    EXPECT_EQ(TitreDlgBox_retrieve(dst.data(), size), 0);
    EXPECT_TRUE(dst.untouchedFrom(0)) << size;
  }
  PoisonedBuffer dst(16);
  TitreDlgBox_retrieve(dst.data(), 8);
  EXPECT_EQ(dst.text(), "Patient");
  EXPECT_EQ(TitreDlgBox_retrieve(nullptr, 8), 0);
}

TEST_F(Settings, SizeAndColour) {
  EXPECT_EQ(TailleDlgBox_set(200, -100), 0);
  EXPECT_EQ(LDB, 1);
  EXPECT_EQ(LDB_cx, 200);
  EXPECT_EQ(LDB_cy, -100);
  EXPECT_EQ(ColorDlgBox_bkg({1, 2, 65535}), 0);
  EXPECT_EQ(FDB, 1);
  EXPECT_EQ(FDB_bkgcol.red, 1);
  EXPECT_EQ(FDB_bkgcol.green, 2);
  EXPECT_EQ(FDB_bkgcol.blue, 65535);
  EXPECT_EQ(FDB_hbrbkg, 0);
}

TEST_F(Settings, ButtonPlaces) {
  EXPECT_EQ(BOKDlgBox_set_geo(3, 4), 0);
  EXPECT_EQ(BOKDlgBox_pos(INT_MIN, INT_MAX), 0);
  EXPECT_EQ(OK_x, 3);
  EXPECT_EQ(OK_y, 4);
  EXPECT_EQ(OK_xt, INT_MIN);
  EXPECT_EQ(OK_yt, INT_MAX);
}

TEST_F(Settings, ButtonTextsBegin) {
  static_assert(sizeof OK_sz1 == 16 && sizeof OK_sz2 == 16);
  static_assert(sizeof OK_sz1_bak == 16 && sizeof OK_sz2_bak == 16);
  EXPECT_STREQ(OK_sz1, "OK");
  EXPECT_STREQ(OK_sz2, "Annuler");
  EXPECT_EQ(OK_def, 1);
}

TEST_F(Settings, ButtonTextsAreCutTo15AndKept) {
  EXPECT_EQ(BOKDlgBox_textes("Enregistrer la fiche", "Non"), 0);
  EXPECT_STREQ(OK_sz1, "Enregistrer la ");
  EXPECT_STREQ(OK_sz2, "Non");
  EXPECT_STREQ(OK_sz1_bak, "OK");
  EXPECT_STREQ(OK_sz2_bak, "Annuler");
  EXPECT_EQ(BOKDlgBox_textes_reset(), 0);
  EXPECT_STREQ(OK_sz1, "OK");
  EXPECT_STREQ(OK_sz2, "Annuler");
}

TEST_F(Settings, ButtonTextsAreKeptOneLevelOnly) {
  BOKDlgBox_textes("Oui", "Non");
  BOKDlgBox_textes("Oui", "Non");
  BOKDlgBox_textes_reset();
  EXPECT_STREQ(OK_sz1, "Oui");
  EXPECT_STREQ(OK_sz2, "Non");
}

TEST_F(Settings, ButtonTextsResetWithoutAChangeEmptiesThem) {
  BOKDlgBox_textes_reset();
  EXPECT_STREQ(OK_sz1, "");
  EXPECT_STREQ(OK_sz2, "");
}

TEST_F(Settings, NullButtonTextIsLeftAlone) {
  BOKDlgBox_textes(nullptr, "Non");
  EXPECT_STREQ(OK_sz1, "OK");
  EXPECT_STREQ(OK_sz2, "Non");
  BOKDlgBox_textes("Oui", nullptr);
  EXPECT_STREQ(OK_sz1, "Oui");
  EXPECT_STREQ(OK_sz2, "Non");
}

TEST_F(Settings, DefaultButtonIsOneOrTwo) {
  EXPECT_EQ(BOKDlgBox_def(2), 0);
  EXPECT_EQ(OK_def, 2);
  for (const int n : {3, 0, -1, INT_MAX}) {
    BOKDlgBox_def(n);
    EXPECT_EQ(OK_def, 2) << n;
  }
  BOKDlgBox_def(1);
  EXPECT_EQ(OK_def, 1);
  BOKDlgBox_def(2);
  EXPECT_EQ(BOKDlgBox_def_reset(), 0);
  EXPECT_EQ(OK_def, 1);
}

TEST_F(Settings, ShadowIsRecorded) {
  EXPECT_EQ(BOKDlgBox_shadow(-2, 3, {4, 5, 6}), 0);
  EXPECT_EQ(OK_shadow, 1);
  EXPECT_EQ(OK_shadow_dx, -2);
  EXPECT_EQ(OK_shadow_dy, 3);
  EXPECT_EQ(OK_shadow_c.green, 5);
}

}  // namespace
}  // namespace korvel::test
