// SPDX-License-Identifier: MIT
// Dialog units, and a dialog's layout as recorded lines.
#include <climits>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include <korvel/desktop.h>
#include <korvel/dialogs.h>

#include "platform/geometry.h"
#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

TEST(DialogUnits, TruncateTowardZero) {
  constexpr struct {
    int v, x, y, cy;
  } kCases[] = {
      {0, 0, 0, 0},
      {1, 2, 1, 1},
      {2, 4, 3, 2},
      {3, 6, 5, 3},
      {4, 8, 7, 5},
      {-1, -2, -1, -1},
      {-2, -4, -3, -2},
      {-3, -6, -5, -3},
      {-4, -8, -7, -5},
      {100, 200, 175, 125},
      {32767, 65534, 57342, 40958},
  };
  for (const auto &[v, x, y, cy] : kCases) {
    EXPECT_EQ(Dlg_CoefX(v), x) << v;
    EXPECT_EQ(Dlg_CoefCX(v), x) << v;
    EXPECT_EQ(Dlg_CoefY(v), y) << v;
    EXPECT_EQ(Dlg_CoefCY(v), cy) << v;
  }
}

TEST(DialogUnits, TakeAnyValue) {
  EXPECT_EQ(Dlg_CoefX(INT_MAX), -2);
  EXPECT_EQ(Dlg_CoefX(INT_MIN), 0);
  EXPECT_EQ(Dlg_CoefY(1000000000), 1750000000);
  EXPECT_EQ(Dlg_CoefCY(-1000000000), -1250000000);
  Dlg_CoefY(INT_MIN);
  Dlg_CoefCY(INT_MAX);
}

TEST(DialogPlace, CentresWithHalvesTowardZero) {
  using platform::centredOn;
  using platform::Rect;
  EXPECT_EQ(centredOn({0, 0, 100, 100}, 50, 40), (Rect{25, 30, 75, 70}));
  EXPECT_EQ(centredOn({0, 0, 101, 100}, 50, 41), (Rect{25, 29, 75, 70}));
  EXPECT_EQ(centredOn({0, 0, 100, 100}, 203, 205), (Rect{-51, -52, 152, 153}));
  EXPECT_EQ(centredOn({-30, -10, -20, -5}, 1, 1), (Rect{-25, -8, -24, -7}));
}

class DialogLayout : public DialogTest {
 protected:
  // Shows the described dialog, cancels it and gives its layout.
  std::string layoutOf(const char *title = "T", WindowRef parent = nullptr) {
    desk.expectDialog(HDB != 0 ? readable(HDB_szHeader) : readable(std::string(title)))
        .press(kCancel);
    EXPECT_EQ(ZRVDlgBoxEx(title, parent), 0);
    return desk.layout();
  }
};

TEST_F(DialogLayout, EveryKindOfItem) {
  TailleDlgBox_set(200, 100);
  TexteDlgBox_param(3, 100);
  TexteDlgBox_set_geo(0, 10, 10, 50, 12, 0);
  TexteDlgBox_set_geo(1, 10, 20, 50, 40, 1);
  TexteDlgBox_set_liste(1, "a,b");
  TexteDlgBox_set_geo(2, 3, 5, 7, 9, 2);
  TexteDlgBox_set_liste(2, "a$b");
  TexteDlgBox_change_liste(2);
  BoolDlgBox_param(1, 200);
  BoolDlgBox_set_geo(0, "Fum\xE9 \xCAtre", 1, 2, 3, 4, 3);
  IntDlgBox_param(1, 300);
  IntDlgBox_set_geo(0, 11, 13, 17, 19, 4);
  NumDlgBox_param(1, 400);
  NumDlgBox_set_geo(0, -1, -3, 5, 7, 5);
  DateDlgBox_param(1, 500);
  DateDlgBox_set_geo(0, 20, 30, 999, 12, 6);
  PushDlgBox_param(1, 600);
  PushDlgBox_set_geo(0, "Calculer", 90, 60, 40, 16, 7);
  EXPECT_EQ(layoutOf(),
            "dialog (440,424)-(840,599) in front of everything \"T\"\n"
            "1 push button (110,141)-(190,161) \"OK\" default\n"
            "2 push button (210,141)-(290,161) \"Annuler\"\n"
            "3 edit text (20,17)-(120,32)\n"
            "4 pop-up (20,35)-(120,49)\n"
            "5 list box (6,8)-(20,19)\n"
            "6 check box (2,3)-(8,8) \"Fumé Être\"\n"
            "7 edit text (22,22)-(56,45)\n"
            "8 edit text (-2,-5)-(8,3)\n"
            "9 edit text (40,52)-(60,67)\n"
            "10 edit text (70,52)-(90,67)\n"
            "11 edit text (100,52)-(140,67)\n"
            "12 push button (180,105)-(260,125) \"Calculer\"\n");
}

TEST_F(DialogLayout, APopUpMarkWinsOverAListMark) {
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set_geo(0, 0, 0, 10, 10, 0);
  TDBC[0] = TDBL[0] = 1;
  EXPECT_NE(layoutOf().find("3 pop-up"), std::string::npos);
}

TEST_F(DialogLayout, OnlyAMarkOfOneMakesAPopUpOrAList) {
  TexteDlgBox_param(2, 100);
  TexteDlgBox_set_geo(0, 0, 0, 10, 10, 0);
  TexteDlgBox_set_geo(1, 0, 0, 10, 10, 1);
  TDBC[0] = TDBL[0] = 2;
  TDBC[1] = 2;
  TDBL[1] = 1;
  const std::string layout = layoutOf();
  EXPECT_NE(layout.find("3 edit text"), std::string::npos) << layout;
  EXPECT_NE(layout.find("4 list box"), std::string::npos) << layout;
}

// Kept: the size in the tables is overwritten with pixels.
TEST_F(DialogLayout, SizeInTheTablesIsOverwritten) {
  TailleDlgBox_set(200, 100);
  layoutOf();
  EXPECT_EQ(LDB_cx, 400);
  EXPECT_EQ(LDB_cy, 175);
  EXPECT_EQ(LDB, 1);
  // Scaled again by a further run.
  layoutOf();
  EXPECT_EQ(LDB_cx, 800);
  EXPECT_EQ(LDB_cy, 306);
}

TEST_F(DialogLayout, FieldsStandByRankThenTypeThenIndex) {
  TexteDlgBox_param(2, 100);
  PushDlgBox_param(1, 600);
  DateDlgBox_param(1, 500);
  IntDlgBox_param(3, 300);
  PushDlgBox_set_geo(0, "P", 0, 0, 0, 0, 0);
  TexteDlgBox_set_geo(0, 1, 0, 0, 0, 9);
  TexteDlgBox_set_geo(1, 2, 0, 0, 0, 4);
  IntDlgBox_set_geo(0, 3, 0, 0, 0, 4);
  IntDlgBox_set_geo(1, 4, 0, 0, 0, 4);
  IntDlgBox_set_geo(2, 5, 0, 0, 0, -1);
  DateDlgBox_set_geo(0, 6, 0, 0, 0, 7);
  EXPECT_EQ(layoutOf(),
            "dialog (540,488)-(740,536) in front of everything \"T\"\n"
            "1 push button (10,14)-(90,34) \"OK\" default\n"
            "2 push button (110,14)-(190,34) \"Annuler\"\n"
            "3 push button (0,0)-(0,0) \"P\"\n"
            "4 edit text (4,0)-(4,0)\n"
            "5 edit text (6,0)-(6,0)\n"
            "6 edit text (8,0)-(8,0)\n"
            "7 edit text (12,0)-(32,0)\n"
            "8 edit text (42,0)-(62,0)\n"
            "9 edit text (72,0)-(112,0)\n"
            "10 edit text (2,0)-(2,0)\n");
  // Items by field, and offsets by rank.
  EXPECT_EQ(Dlg_itemOffset[3], 3 - 600);
  EXPECT_EQ(Dlg_itemOffset[4], 4 - 100 - 1);
  EXPECT_EQ(Dlg_itemOffset[5], 5 - 300);
  EXPECT_EQ(Dlg_itemOffset[6], 6 - 300 - 1);
  EXPECT_EQ(Dlg_itemOffset[7], 7 - 500);
  EXPECT_EQ(Dlg_itemOffset[8], 8 - 500);
  EXPECT_EQ(Dlg_itemOffset[9], 9 - 500);
  EXPECT_EQ(Dlg_itemOffset[10], 10 - 100);
  EXPECT_EQ(Dlg_rkOffset[0], 0 - 3);
  EXPECT_EQ(Dlg_rkOffset[4], 4 - 6) << "the last field of a shared rank";
  EXPECT_EQ(Dlg_rkOffset[7], 7 - 7);
  EXPECT_EQ(Dlg_rkOffset[9], 9 - 10);
}

TEST_F(DialogLayout, TypesNotInUseAreNotPlaced) {
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set_geo(0, 0, 0, 0, 0, 0);
  TDB = 0;
  StaticDlgBox_param(1);
  SDB = 0;
  EXPECT_EQ(layoutOf(),
            "dialog (540,488)-(740,536) in front of everything \"T\"\n"
            "1 push button (10,14)-(90,34) \"OK\" default\n"
            "2 push button (110,14)-(190,34) \"Annuler\"\n");
}

TEST_F(DialogLayout, Decoration) {
  const std::string folder = ::testing::TempDir() + "layout_resources";
  std::filesystem::create_directories(folder + "/icons");
  std::ofstream(folder + "/icons/2.png") << "not a picture, but a file to find";
  ASSERT_LT(folder.size(), sizeof szResources);
  std::strcpy(szResources, folder.c_str());
  StaticDlgBox_param(6);
  StaticDlgBox_set(0, "\xC9tat civil \xE9\xEA");
  StaticDlgBox_set_geo(0, 1, 2, 100, 30);
  StaticDlgBox_set_type(0, -5);
  StaticDlgBox_set(1, "Pr\xE9nom");
  StaticDlgBox_set_geo(1, 5, 6, 40, 10);
  StaticDlgBox_set_geo(2, 5, 6, 40, 20);
  StaticDlgBox_set_geo(3, 5, 6, 16, 20);
  StaticDlgBox_set_type(3, 7);
  StaticDlgBox_set_geo(4, 0, 0, 10, -10);
  StaticDlgBox_set_geo(5, 0, 0, 10, -10);
  StaticDlgBox_set_type(5, -1);
  const std::string layout = layoutOf();
  szResources[0] = '\0';
  std::filesystem::remove_all(folder);
  EXPECT_EQ(layout.substr(layout.find("group")),
            // 37 pixels times 1.4.
            "group box (2,3)-(202,54) \"État civil éê\"\n"
            // 12 pixels become 15, 25 stay.
            "static text (10,10)-(90,25) \"Prénom\"\n"
            "static text (10,10)-(90,35) \"\"\n"
            // 2 pixels per unit both ways.
            "icon (10,10)-(42,50) \"2.png\"\n"
            "static text (0,0)-(20,15) \"\"\n"
            "group box (0,0)-(20,-16) \"\"\n");
  // Kept: the text is converted in the table itself.
  EXPECT_STREQ(SDB_pszBuffer[0], "\xC9tat civil \x8E\x90");
  EXPECT_STREQ(SDB_pszBuffer[1], "Pr\x8Enom");
}

TEST_F(DialogLayout, LongButtonTextsWidenBoth) {
  constexpr struct {
    const char *ok, *cancel;
    bool wide;
  } kCases[] = {{"12345678", "12345678", false},
                {"123456789", "1", true},
                {"1", "123456789", true},
                {"", "", false}};
  for (const auto &[ok, cancel, wide] : kCases) {
    BOKDlgBox_textes(ok, cancel);
    TailleDlgBox_set(200, 100);
    const std::string layout = layoutOf();
    EXPECT_NE(layout.find(wide ? "1 push button (90,141)-(190,161)" : "1 push button (110,141)"),
              std::string::npos)
        << layout;
    EXPECT_NE(layout.find(wide ? "2 push button (210,141)-(310,161)"
                               : "2 push button (210,141)-(290,161)"),
              std::string::npos)
        << layout;
  }
}

TEST_F(DialogLayout, EmptyButtonTextsHaveStandIns) {
  BOKDlgBox_textes("", "");
  const std::string layout = layoutOf();
  EXPECT_NE(layout.find("\"OK\""), std::string::npos);
  EXPECT_NE(layout.find("\"Annuler\""), std::string::npos);
}

// Kept: labels of buttons go to the screen without conversion.
TEST_F(DialogLayout, ButtonLabelsAreNotConverted) {
  // CP1252 bytes read right on the screen, but for a few: the byte 0x88 is an "à" there.
  BOKDlgBox_textes("Termin\xE9", "Non\x88");
  PushDlgBox_param(1, 600);
  PushDlgBox_set_geo(0, "\xE9\x88", 0, 0, 0, 0, 0);
  BoolDlgBox_param(1, 700);
  BoolDlgBox_set_geo(0, "\xEA\xEF\x88", 0, 0, 0, 0, 1);
  const std::string layout = layoutOf();
  EXPECT_NE(layout.find("\"Terminé\""), std::string::npos) << layout;
  EXPECT_NE(layout.find("\"Nonà\""), std::string::npos) << layout;
  EXPECT_NE(layout.find("\"éà\""), std::string::npos) << layout;
  EXPECT_NE(layout.find("\"êïà\""), std::string::npos) << layout;
  EXPECT_EQ(PDB_pszBuffer[0][0], '\xE9');
  EXPECT_STREQ(BDB_pszBuffer[0], "\xEA\xEF\x88") << "converted in a copy";
}

TEST_F(DialogLayout, DefaultButton) {
  BOKDlgBox_def(2);
  EXPECT_NE(layoutOf().find("\"Annuler\" default"), std::string::npos);
  OK_def = 9;
  EXPECT_EQ(layoutOf().find("default"), std::string::npos);
}

TEST_F(DialogLayout, UnterminatedTablesEndWithTheirRoom) {
  std::memset(OK_sz1, 'o', sizeof OK_sz1);
  std::memset(OK_sz2, 'n', sizeof OK_sz2);
  std::memset(HDB_szHeader, 'h', sizeof HDB_szHeader);
  HDB = 1;
  StaticDlgBox_param(1);
  std::memset(SDB_szBuffer, 's', sizeof SDB_szBuffer);
  desk.expectDialog(std::string(128, 'h')).press(kCancel);
  ZRVDlgBoxEx("T", nullptr);
  const std::string layout = desk.layout();
  EXPECT_NE(layout.find('"' + std::string(16, 'o') + '"'), std::string::npos);
  EXPECT_NE(layout.find('"' + std::string(512, 's') + '"'), std::string::npos);
}

TEST_F(DialogLayout, NullPointersInTheTablesShowNothing) {
  TexteDlgBox_param(1, 100);
  TexteDlgBox_set_geo(0, 0, 0, 0, 0, 0);
  TexteDlgBox_set_liste(0, "a,b");
  TexteDlgBox_set(0, "a");
  BoolDlgBox_param(1, 200);
  BoolDlgBox_set_geo(0, "b", 0, 0, 0, 0, 1);
  PushDlgBox_param(1, 300);
  PushDlgBox_set_geo(0, "p", 0, 0, 0, 0, 2);
  StaticDlgBox_param(2);
  StaticDlgBox_set_type(1, -1);
  TDB_pszBuffer[0] = TDB_PSZLBUFFER[0] = BDB_pszBuffer[0] = PDB_pszBuffer[0] = nullptr;
  SDB_pszBuffer[0] = SDB_pszBuffer[1] = nullptr;
  desk.expectDialog("").choose(3, "").click(4).press(5).press(kCancel);
  EXPECT_EQ(ZRVDlgBoxEx(nullptr, nullptr), 0);
  EXPECT_NE(desk.layout().find("4 check box (0,0)-(0,0) \"\"\n"), std::string::npos);
}

// ---- The place of the dialog, and its title ----

TEST_F(DialogLayout, StandsCentredOnItsParent) {
  const WindowRef parent = desk.addWindow({100, 100, 600, 500});
  desk.setFrontWindow(desk.addWindow({0, 0, 10, 10}));
  TailleDlgBox_set(100, 80);
  EXPECT_EQ(layoutOf("T", parent).substr(0, 54),
            "dialog (250,230)-(450,370) in front of a window \"T\"\n1 ");
}

TEST_F(DialogLayout, StandsCentredOnTheFrontWindowWithoutAParent) {
  desk.setFrontWindow(desk.addWindow({100, 100, 600, 500}));
  TailleDlgBox_set(100, 80);
  EXPECT_EQ(layoutOf().substr(0, 54), "dialog (250,230)-(450,370) in front of a window \"T\"\n1 ");
}

TEST_F(DialogLayout, StandsCentredOnTheScreenWithoutAnyWindow) {
  desk.setScreenBounds({0, 30, 800, 600});
  TailleDlgBox_set(100, 80);
  EXPECT_EQ(layoutOf().substr(0, 54), "dialog (300,245)-(500,385) in front of everything \"T\"\n");
}

TEST_F(DialogLayout, AParentThatIsGoneCountsAsNone) {
  const WindowRef parent = desk.addWindow({100, 100, 600, 500});
  desk.closeWindow(parent);
  EXPECT_NE(layoutOf("T", parent).find("in front of everything"), std::string::npos);
}

TEST_F(DialogLayout, AnySizeIsSurvived) {
  for (const int size : {INT_MIN, INT_MAX, -1, 1 << 30}) {
    TailleDlgBox_set(size, size);
    layoutOf();
  }
  LDB_cx = LDB_cy = INT_MIN / 2;
  layoutOf();
}

// The size of the dialog and the places of its buttons, from the first three lines of a layout.
std::string sizeAndButtons(const std::string &layout) {
  int left = 0, top = 0, right = 0, bottom = 0;
  std::sscanf(layout.c_str(), "dialog (%d,%d)-(%d,%d)", &left, &top, &right, &bottom);
  std::string told = std::to_string(right - left) + " x " + std::to_string(bottom - top);
  for (const char *button : {"\n1 push button ", "\n2 push button "}) {
    const std::size_t begin = layout.find(button) + std::strlen(button);
    told += ' ';
    told += layout.substr(begin, layout.find(' ', begin) - begin);
  }
  return told;
}

TEST_F(DialogLayout, WithoutASizeItHasRoomForItsButtons) {
  const char *const kBoth = "200 x 48 (10,14)-(90,34) (110,14)-(190,34)";
  for (const int size : {0, -1, -1000, INT_MIN}) {
    TailleDlgBox_set(size, size);
    EXPECT_EQ(sizeAndButtons(layoutOf()), kBoth) << size;
    EXPECT_EQ(LDB_cx, Dlg_CoefCX(size)) << "overwritten without a limit";
    EXPECT_EQ(LDB_cy, Dlg_CoefY(size));
  }
  TailleDlgBox_set(0, 100);
  EXPECT_EQ(sizeAndButtons(layoutOf()), "200 x 175 (10,141)-(90,161) (110,141)-(190,161)");
  TailleDlgBox_set(200, 0);
  EXPECT_EQ(sizeAndButtons(layoutOf()), "400 x 48 (110,14)-(190,34) (210,14)-(290,34)");
  TailleDlgBox_set(1, 1);
  EXPECT_EQ(sizeAndButtons(layoutOf()), "2 x 1 (-89,-33)-(-9,-13) (11,-33)-(91,-13)");
  BOKDlgBox_textes("Neuf car.", "Non");
  TailleDlgBox_set(0, 0);
  EXPECT_EQ(sizeAndButtons(layoutOf()), "240 x 48 (10,14)-(110,34) (130,14)-(230,34)");
}

TEST_F(DialogLayout, NoSideIsLongerThan16384Pixels) {
  TailleDlgBox_set(8191, 9362);
  EXPECT_EQ(sizeAndButtons(layoutOf()).substr(0, 14), "16382 x 16383 ");
  TailleDlgBox_set(8192, 9363);
  EXPECT_EQ(sizeAndButtons(layoutOf()).substr(0, 14), "16384 x 16384 ");
  for (const int size : {9364, 1 << 30, INT_MAX}) {
    TailleDlgBox_set(size, size);
    EXPECT_EQ(sizeAndButtons(layoutOf()),
              "16384 x 16384 (8102,16350)-(8182,16370) (8202,16350)-(8282,16370)")
        << size;
    EXPECT_EQ(LDB_cx, Dlg_CoefCX(size));
  }
  TailleDlgBox_set(INT_MAX, 100);
  EXPECT_EQ(sizeAndButtons(layoutOf()).substr(0, 12), "16384 x 175 ");
}

TEST_F(DialogLayout, OutsideAHeldDialogItemsAreMovedToItsEdge) {
  TailleDlgBox_set(20000, 20000);
  TexteDlgBox_param(4, 100);
  TexteDlgBox_set_geo(0, 32767, 32767, 50, 12, 0);
  TexteDlgBox_set_geo(1, -32768, -32768, 50, 12, 1);
  TexteDlgBox_set_geo(2, 0, 0, 32767, 32767, 2);
  TexteDlgBox_set_geo(3, 8142, 9354, 50, 12, 3);
  DateDlgBox_param(1, 500);
  DateDlgBox_set_geo(0, 32767, 0, 1, 12, 4);
  StaticDlgBox_param(3);
  for (int i = 0; i < 3; ++i) {
    StaticDlgBox_set_geo(i, 32767, 32767, 10, 10);
    StaticDlgBox_set_type(i, i - 1);
  }
  const std::string layout = layoutOf();
  for (const char *line :
       {"3 edit text (16284,16369)-(16384,16384)", "4 edit text (0,0)-(100,15)",
        "5 edit text (0,0)-(16384,16384)", "6 edit text (16284,16369)-(16384,16384)",
        "7 edit text (16284,0)-(16304,15)", "8 edit text (16314,0)-(16334,15)",
        "9 edit text (16344,0)-(16384,15)", "group box (16364,16368)-(16384,16384)",
        "static text (16364,16369)-(16384,16384)", "icon (16364,16364)-(16384,16384)"}) {
    EXPECT_NE(layout.find(line), std::string::npos) << line << "\n" << layout;
  }
}

TEST_F(DialogLayout, OutsideAnyOtherDialogItemsStay) {
  TailleDlgBox_set(8191, 9362);
  TexteDlgBox_param(2, 100);
  TexteDlgBox_set_geo(0, 32767, 32767, 50, 12, 0);
  TexteDlgBox_set_geo(1, -10, -10, 50, 12, 1);
  const std::string layout = layoutOf();
  EXPECT_NE(layout.find("3 edit text (65534,57342)-(65634,57357)"), std::string::npos) << layout;
  EXPECT_NE(layout.find("4 edit text (-20,-17)-(80,-2)"), std::string::npos) << layout;
}

TEST_F(DialogLayout, TitleIsConvertedAndCut) {
  desk.expectDialog("Fiche numérotée ê").press(kCancel);
  ZRVDlgBoxEx("Fiche num\xE9rot\xE9\x65 \xEA", nullptr);
  desk.expectDialog(std::string(255, 't')).press(kCancel);
  ZRVDlgBoxEx(std::string(300, 't').c_str(), nullptr);
}

TEST_F(DialogLayout, ASetTitleGoesBeforeTheGivenOne) {
  TitreDlgBox_set("R\xE9glages");
  desk.expectDialog("Réglages").press(kCancel);
  ZRVDlgBoxEx("Autre", nullptr);
  EXPECT_STREQ(HDB_szHeader, "R\xE9glages") << "converted in a copy";
  desk.expectDialog("Autre").press(kCancel);
  ZRVDlgBoxEx("Autre", nullptr);
}

}  // namespace
}  // namespace korvel::test
