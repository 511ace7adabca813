// SPDX-License-Identifier: MIT
// Dialogs whose layout is a template: finding it, its faults, its item numbers. The run itself is
// tested for built and drawn dialogs by run_test.cpp, text_items_test.cpp and value_items_test.cpp.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/desktop.h>
#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

using platform::ItemKind;

class TemplateRun : public DialogTest {
 protected:
  TemplateRun() {
    DlgBoxGlobal_set(Callbacks::global);
    DlgBoxFinal_set(Callbacks::final);
  }
  static Template pair(std::vector<TemplateItem> items = {}) {
    Template drawn{"Visite",
                   {{1, ItemKind::PushButton, "Valider"}, {2, ItemKind::PushButton, "Quitter"}}};
    drawn.items.insert(drawn.items.end(), items.begin(), items.end());
    return drawn;
  }
  void draw(std::vector<TemplateItem> items, const std::string &name = "visite") {
    templates.add(desk, name, pair(std::move(items)));
  }
  DialogScript &expectDialog(const char *title = "Visite") { return desk.expectDialog(title); }
  int run(const char *name = "visite") { return ZRVDlgBox(name); }

  // Returns the lines on standard error.
  std::string runAndListen(const char *name = "visite") {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(run(name), 0);
    return ::testing::internal::GetCapturedStderr();
  }
  // The line on standard error has the name of the file.
  void expectMissing(const std::string &name, const std::string &file) {
    EXPECT_EQ(runAndListen(name.c_str()),
              "korvel: dialog not shown: there is no template " + file + "\n");
    expectUntouched();
  }
  void expectMissing(const std::string &name) { expectMissing(name, name); }
  void expectUntouched() const {
    EXPECT_EQ(TDB, 1);
    EXPECT_EQ(HDB, 1);
    EXPECT_EQ(DlgBoxGlobal_fonct, Callbacks::global);
    EXPECT_EQ(DlgBoxFinal_fonct, Callbacks::final);
    EXPECT_EQ(Dlg_itemOffset[5], 7);
    EXPECT_EQ(Dlg_rkOffset[5], 8);
  }
  void describeText() {
    DlgBoxGlobal_set(Callbacks::global);
    DlgBoxFinal_set(Callbacks::final);
    TexteDlgBox_param(1, 3);
    TexteDlgBox_set(0, "Lef\xE8vre");
    TitreDlgBox_set("Titre");
    Dlg_itemOffset[5] = 7;
    Dlg_rkOffset[5] = 8;
  }

  TemplateFolder templates;
};

// ---- Finding it ----

TEST_F(TemplateRun, AMissingTemplateGives0AtOnceAndResetsNothing) {
  describeText();
  for (const char *name : {"absent", "", "visite.ui", "..", "/", "visite/visite"}) {
    expectMissing(name);
  }
  expectMissing("\xE9t\xE9", "été");
  expectMissing("deux\nlignes", "deux?lignes");
  EXPECT_EQ(runAndListen(nullptr), "");
  expectUntouched();
  expectMissing(std::string(100000, 'x'));
  EXPECT_EQ(desk.dialogsShown(), 0);
}

TEST_F(TemplateRun, ANameIsNoPath) {
  draw({}, "visite");
  draw({}, "dossier/visite");
  describeText();
  for (const char *name : {"dossier/visite", "./visite", "/visite", "../dialogs/visite", "visite/",
                           "dossier/../visite", "dossier"}) {
    expectMissing(name);
  }
  EXPECT_EQ(desk.dialogsShown(), 0);
}

TEST_F(TemplateRun, NamesWithDotsAreNames) {
  for (const char *name : {".", "..", "...", "visite.2", "visite.ui", " "}) {
    draw({}, name);
    expectDialog().press(kOk);
    EXPECT_EQ(run(name), 1) << name;
  }
}

TEST_F(TemplateRun, NamesAreAsLongAsTheDiskHasThem) {
  const auto accents = [](std::size_t n) {
    std::string all;
    while (n-- > 0) all += "é";
    return all;
  };
  // With the ending, 255 bytes.
  const std::string longest(252, 'x');
  draw({}, longest);
  expectDialog().press(kOk);
  EXPECT_EQ(run(longest.c_str()), 1);
  describeText();
  for (const std::size_t length : {251, 253, 255, 256, 257, 4096}) {
    expectMissing(std::string(length, 'x'));
    expectMissing(std::string(length, '\xE9'), accents(length));
  }
}

TEST_F(TemplateRun, WithoutAScreenAMissingTemplateIsStillMissing) {
  describeText();
  desk.takeScreenAway("no display");
  expectMissing("absent");
}

TEST_F(TemplateRun, AMandatoryFieldWithoutAnItemIsToldOf) {
  draw({{100, ItemKind::EditText}, {500, ItemKind::EditText}, {502, ItemKind::EditText}});
  TexteDlgBox_param(3, 100);
  TexteDlgBox_mandatory(1, 0);
  IntDlgBox_param(1, 300);
  NumDlgBox_param(1, 400);
  NumDlgBox_mandatory(0, 0);
  DateDlgBox_param(1, 500);
  BoolDlgBox_param(1, 600);
  PushDlgBox_param(1, 700);
  expectDialog().press(kCancel);
  const std::string told = runAndListen();
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < told.size();) {
    const std::size_t end = told.find('\n', begin);
    ASSERT_NE(end, std::string::npos);
    lines.push_back(told.substr(begin, end - begin));
    begin = end + 1;
  }
  const char *const kEnds[] = {"visite.ui: text field 2 is mandatory, and there is no item 102",
                               "visite.ui: integer field 0 is mandatory, and there is no item 300",
                               "visite.ui: date field 0 is mandatory, and there is no item 501"};
  ASSERT_EQ(lines.size(), std::size(kEnds)) << told;
  for (std::size_t n = 0; n < lines.size(); ++n) {
    EXPECT_TRUE(lines[n].starts_with("korvel: ") && lines[n].ends_with(kEnds[n])) << lines[n];
  }
}

TEST_F(TemplateRun, FieldsThatHaveTheirItemsAreNotToldOf) {
  draw({{3, ItemKind::EditText},
        {5, ItemKind::EditText},
        {6, ItemKind::EditText},
        {7, ItemKind::EditText}});
  TexteDlgBox_param(1, 3);
  TexteDlgBox_set(0, "x");
  DateDlgBox_param(1, 5);
  DateDlgBox_set(0, 20240229, 1);
  expectDialog().press(kCancel);
  EXPECT_EQ(runAndListen(), "");
}

TEST_F(TemplateRun, NamesAreCp1252AndFilesUtf8) {
  draw({}, "Sélection de l’œil");
  expectDialog().press(kOk);
  EXPECT_EQ(run("S\xE9lection de l\x92\x9Cil"), 1);
  expectDialog().press(kOk);
  EXPECT_EQ(run("Sélection de l’œil"), 1) << "a name that is UTF-8 already";
}

TEST_F(TemplateRun, EachLetterOfANameIsFoundInUtf8) {
  constexpr struct {
    const char *name, *file;
  } kLetters[] = {
      {"\x80", "€"}, {"\x8C", "Œ"}, {"\x92", "’"}, {"\x96", "–"}, {"\x9C", "œ"}, {"\xA0", "\u00A0"},
      {"\xAB", "«"}, {"\xB0", "°"}, {"\xBB", "»"}, {"\xC0", "À"}, {"\xC6", "Æ"}, {"\xC7", "Ç"},
      {"\xC9", "É"}, {"\xCE", "Î"}, {"\xD4", "Ô"}, {"\xDB", "Û"}, {"\xE0", "à"}, {"\xE2", "â"},
      {"\xE4", "ä"}, {"\xE6", "æ"}, {"\xE7", "ç"}, {"\xE8", "è"}, {"\xE9", "é"}, {"\xEA", "ê"},
      {"\xEB", "ë"}, {"\xEE", "î"}, {"\xEF", "ï"}, {"\xF4", "ô"}, {"\xF6", "ö"}, {"\xF9", "ù"},
      {"\xFB", "û"}, {"\xFC", "ü"}, {"\xFF", "ÿ"},
  };
  for (const auto &[name, file] : kLetters) {
    draw({}, file);
    expectDialog().press(kOk);
    EXPECT_EQ(run(name), 1) << file;
  }
  describeText();
  expectMissing("\x81", "\u0081");
  expectMissing("\xC3", "Ã");
  expectMissing("\xFE", "þ");
  expectMissing("\xE9\xE9", "éé");
}

// ---- Faults ----

TEST_F(TemplateRun, AFormWithAFaultGives0AndOneLine) {
  const struct {
    const char *fault;
    Template drawn;
    const char *said;
  } kCases[] = {
      {"damaged", {"", {}, 1, "line 7: Premature end of document."}, "line 7: Premature end"},
      {"lacks item 1", {"", {{2, ItemKind::PushButton}, {3, ItemKind::EditText}}}, "no item 1"},
      {"lacks item 2", {"", {{1, ItemKind::PushButton}, {3, ItemKind::EditText}}}, "no item 2"},
      {"is empty", {"", {}}, "no item 1"},
      {"repeats a number",
       pair({{3, ItemKind::EditText}, {4, ItemKind::EditText}, {3, ItemKind::CheckBox}}),
       "item 3 is there twice"},
      {"repeats item 1", pair({{1, ItemKind::PushButton}}), "item 1 is there twice"},
      {"speaks in several lines", {"", {}, 1, "a\nb\rc\x1B[31m"}, "a?b?c?[31m"},
  };
  for (const auto &[fault, drawn, said] : kCases) {
    SCOPED_TRACE(fault);
    describeText();
    templates.add(desk, "visite", drawn);
    const std::string lines = runAndListen();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 1) << lines;
    EXPECT_EQ(lines.rfind("korvel: dialog not shown: ", 0), 0U) << lines;
    EXPECT_NE(lines.find("/dialogs/visite.ui: "), std::string::npos) << lines;
    EXPECT_NE(lines.find(said), std::string::npos) << lines;
    EXPECT_EQ(TDB | HDB, 0) << "reset as by a cancelled dialog";
    EXPECT_STREQ(TDB_pszBuffer[0], "Lef\xE8vre");
    EXPECT_EQ(Dlg_itemOffset[5], 7);
    EXPECT_FALSE(desk.isDialogOpen());
  }
  EXPECT_EQ(desk.dialogsShown(), 0);
}

TEST_F(TemplateRun, AFurtherDialogComesUpAfterAFaultyOne) {
  templates.add(desk, "visite", {"", {}});
  EXPECT_NE(runAndListen(), "");
  draw({});
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
}

// ---- Numbers ----

TEST_F(TemplateRun, ItemsAreFirstItemPlusIndex) {
  TexteDlgBox_param(2, 10);
  TexteDlgBox_set(0, "a");
  TexteDlgBox_set(1, "b");
  BoolDlgBox_param(1, 20);
  BoolDlgBox_set(0, 1);
  IntDlgBox_param(2, 30);
  IntDlgBox_set(0, 6, 0);
  IntDlgBox_set(1, 7, 0);
  NumDlgBox_param(1, 40);
  NumDlgBox_set(0, 1.5, 0);
  DateDlgBox_param(2, 50);
  DateDlgBox_set(0, 20240229, 1);
  DateDlgBox_set(1, 19890714, 1);
  PushDlgBox_param(1, 60);
  PushDlgBox_set_fvalid(0, Callbacks::action);
  templates.add(desk, "visite", describedTemplate("Visite"));
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.text(11), "b");
        EXPECT_EQ(desk.value(20), 1);
        EXPECT_EQ(desk.text(31), "7");
        EXPECT_EQ(desk.text(40), "1.50000");
        EXPECT_EQ(desk.text(53) + '/' + desk.text(54) + '/' + desk.text(55), "14/7/1989");
      })
      .type(11, "!")
      .click(20)
      .replace(31, "8")
      .replace(40, "2")
      .press(60)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::identifiers(), "11 20 31 40 60 ");
  EXPECT_EQ(Callbacks::actionCalls.size(), 1U);
  EXPECT_EQ(IDB_iInts[1], 8);
  EXPECT_EQ(BDB_bFlags[0], 0);
}

TEST_F(TemplateRun, AllThreeItemsOfADateTellItsIdentifier) {
  DateDlgBox_param(2, 50);
  DateDlgBox_set(0, 20240229, 1);
  DateDlgBox_set(1, 20240229, 1);
  templates.add(desk, "visite", describedTemplate("Visite"));
  expectDialog().replace(53, "1").replace(54, "3").replace(55, "2025").replace(51, "3").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::identifiers(), "53 53 53 50 ");
  EXPECT_EQ(DDB_lDates[1], 20250301);
  EXPECT_EQ(DDB_lDates[0], 20240329);
}

TEST_F(TemplateRun, AFieldOfRankRIsItemR) {
  // Hits are still mapped by the first item.
  TexteDlgBox_param(2, 10);
  TexteDlgBox_set(0, "a");
  TexteDlgBox_set(1, "b");
  TDB_rk[0] = 11;
  TDB_rk[1] = 10;
  draw({{10, ItemKind::EditText}, {11, ItemKind::EditText}});
  std::fill(std::begin(Dlg_rkOffset), std::end(Dlg_rkOffset), 3);
  std::fill(std::begin(Dlg_itemOffset), std::end(Dlg_itemOffset), 3);
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.text(11), "a");
        EXPECT_EQ(desk.text(10), "b");
        EXPECT_EQ(std::count(std::begin(Dlg_rkOffset), std::end(Dlg_rkOffset), 0), 128);
        EXPECT_EQ(std::count(std::begin(Dlg_itemOffset), std::end(Dlg_itemOffset), 0), 128);
      })
      .replace(10, "c")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "a") << "item 10 is field 0, whose text is read from item 11";
  EXPECT_STREQ(TDB_pszBuffer[1], "b");
  EXPECT_EQ(Callbacks::identifiers(), "10 ");
}

TEST_F(TemplateRun, NumbersBeyondTheTablesAreNumbersToo) {
  TexteDlgBox_param(1, 32767);
  TexteDlgBox_set(0, "a");
  IntDlgBox_param(1, 128);
  IntDlgBox_set(0, 1, 0);
  templates.add(desk, "visite", describedTemplate("Visite"));
  expectDialog().replace(32767, "z").replace(128, "2").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "z");
  EXPECT_EQ(IDB_iInts[0], 2);
}

TEST_F(TemplateRun, IdentifiersThatMatchNothingAreSkipped) {
  TexteDlgBox_param(1, 3);
  TexteDlgBox_set(0, "a");
  PushDlgBox_param(1, 4);
  templates.add(desk, "visite", describedTemplate("Visite"));
  Callbacks::onGlobal = redisplaying({0, 1, 2, -2, 4, -4, 5, 999, -999, 3});
  expectDialog()
      .check([&] { desk.takeWrites(); })
      .press(4)
      .check([&] { EXPECT_EQ(desk.takeWrites(), "3 text \"a\"\n"); })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_F(TemplateRun, AFieldWithoutAnItemKeepsItsValue) {
  describeText();
  IntDlgBox_param(1, 9);
  IntDlgBox_set(0, 5, 0);
  HDB = 0;
  draw({});
  expectDialog().hit(3).hit(9).press(kCancel);
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(IDB_iInts[0], 5);
}

TEST_F(TemplateRun, ItemsWithoutAFieldAreLeftAsDrawn) {
  draw({{3, ItemKind::EditText, "dessin\xC3\xA9"},
        {4, ItemKind::PopUp, "", {"a", "b"}, 2},
        {5, ItemKind::CheckBox, "case", {}, 1}});
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.takeWrites(), "1 enabled yes\n");
        EXPECT_EQ(desk.text(3), "dessiné");
        EXPECT_EQ(desk.value(4), 2);
      })
      .type(3, "x")
      .click(5)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_TRUE(Callbacks::globalCalls.empty());
}

// ---- Title, buttons, parent ----

TEST_F(TemplateRun, TheTitleIsTheFormsUnlessOneIsSet) {
  draw({});
  expectDialog("Visite").press(kOk);
  EXPECT_EQ(run(), 1);
  TitreDlgBox_set("Autre \xE9t\xE9");
  expectDialog("Autre été").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(HDB, 0);
}

TEST_F(TemplateRun, TheButtonsAreAsDrawn) {
  std::strcpy(OK_sz1, "Oui");
  OK_def = 2;
  TailleDlgBox_set(200, 100);
  draw({});
  expectDialog()
      .check([&] {
        EXPECT_NE(desk.layout().find("\"Valider\" default"), std::string::npos) << desk.layout();
      })
      .pressReturn();
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(LDB_cx, 200) << "only a built dialog uses the size in the tables";
}

TEST_F(TemplateRun, ComesUpInFrontOfTheActiveWindow) {
  desk.setFrontWindow(desk.addWindow({0, 0, 500, 500}));
  draw({});
  expectDialog()
      .check([&] {
        EXPECT_NE(desk.layout().find("in front of a window"), std::string::npos) << desk.layout();
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_F(TemplateRun, ABuiltDialogMayFollowAndPrecede) {
  for (int n = 0; n < 2; ++n) {
    TexteDlgBox_param(1, 100);
    TexteDlgBox_set_geo(0, 0, 0, 50, 12, 0);
    TexteDlgBox_set(0, "a");
    desk.expectDialog("B").type(3, "b").press(kOk);
    EXPECT_EQ(ZRVDlgBoxEx("B", nullptr), 1);
    EXPECT_NE(Dlg_itemOffset[3], 0);
    TexteDlgBox_param(1, 5);
    TexteDlgBox_set(0, "a");
    draw({{5, ItemKind::EditText}});
    expectDialog().type(5, "c").press(kOk);
    EXPECT_EQ(run(), 1);
    EXPECT_STREQ(TDB_pszBuffer[0], "c");
    EXPECT_EQ(Dlg_itemOffset[3], 0);
  }
}

TEST_F(TemplateRun, ASecondRunLeavesTheFirstAlone) {
  PushDlgBox_param(1, 3);
  draw({{3, ItemKind::PushButton}});
  Callbacks::onGlobal = [&](const GlobalCall &) {
    const DialogRef up = DlgBox_hDlg;
    EXPECT_EQ(ZRVDlgBox("visite"), 0);
    EXPECT_EQ(ZRVDlgBox("absent"), 0);
    EXPECT_EQ(ZRVDlgBoxEx("B", nullptr), 0);
    EXPECT_EQ(DlgBox_hDlg, up);
    EXPECT_EQ(PDB, 1);
    return 0;
  };
  expectDialog().press(3).press(3).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::globalCalls.size(), 2U);
}

// ---- A form's own entries ----

class DrawnEntries : public TemplateRun {
 protected:
  void describe(const char *list, const char *text, bool isList = false) {
    TexteDlgBox_param(1, 3);
    TexteDlgBox_set_liste(0, list);
    if (isList) TexteDlgBox_change_liste(0);
    TexteDlgBox_set(0, text);
    DlgBoxGlobal_set(Callbacks::global);
  }
};

TEST_F(DrawnEntries, ChoicesAreAddedBehindThoseOfTheForm) {
  using Entries = std::vector<std::string>;
  const struct {
    const char *list, *text;
    int drawn, value;
    Entries entries;
  } kCases[] = {
      {"c,d", "d", 1, 4, {"a", "b", "c", "d"}},
      {"c,d,c", "c", 1, 5, {"a", "b", "c", "d", "c"}},
      {"c+d", "x", 2, 2, {"a", "b", "c", "d"}},
      // Filling looks for no choice among the form's own.
      {"c,d", "a", 2, 2, {"a", "b", "c", "d"}},
      {"a", "a", 0, 3, {"a", "b", "a"}},
      {"", "x", 1, 1, {"a", "b", ""}},
  };
  for (const auto &[list, text, drawn, value, entries] : kCases) {
    SCOPED_TRACE(std::string(list) + " / " + text);
    describe(list, text);
    draw({{3, ItemKind::PopUp, "", {"a", "b"}, drawn}});
    expectDialog()
        .check([&, wanted = value, all = entries] {
          EXPECT_EQ(desk.entries(3), all);
          EXPECT_EQ(desk.value(3), wanted);
        })
        .press(kCancel);
    run();
  }
}

TEST_F(DrawnEntries, APopUpOfTheFormsOwnChoicesIsReadAndRedisplayed) {
  describe("", "a");
  TDBC[0] = 0;
  draw({{3, ItemKind::PopUp, "", {"a", "for\xC3\xAAt", "a"}, 1}});
  Callbacks::onGlobal = [](const GlobalCall &call) {
    std::strcpy(call.texts[0], "a");
    return redisplaying({3})(call);
  };
  expectDialog()
      .check([&] { EXPECT_EQ(desk.entries(3).size(), 3U); })
      .choose(3, "forêt")
      .check([&] { EXPECT_EQ(desk.value(3), 3) << "the last of the equal ones"; })
      .check([&] { Callbacks::onGlobal = nullptr; })
      .choose(3, "forêt")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "for\xEAt");
}

TEST_F(DrawnEntries, RowsAreAddedInFrontOfThoseOfTheForm) {
  describe("c$d", "", true);
  draw({{3, ItemKind::ListBox, "", {"a", "b"}}});
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.entries(3), (std::vector<std::string>{"c", "d", "a", "b"}));
      })
      .clickRow(3, 3)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[0], "b");
}

}  // namespace
}  // namespace korvel::test
