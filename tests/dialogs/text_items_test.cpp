// SPDX-License-Identifier: MIT
// Text fields on the screen.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/dialogs/dialog_fixture.h"

namespace korvel::test {
namespace {

constexpr int kItem = 3;
constexpr int kIdentifier = 100;

// One text field, item 3, identifier 100.
class TextItems : public BothKinds {
 protected:
  TextItems() {
    TexteDlgBox_param(1, first(kIdentifier, kItem));
    TexteDlgBox_set_geo(0, 0, 0, 50, 12, rank(0));
    DlgBoxGlobal_set(Callbacks::global);
  }
  DialogScript &expectDialog() { return desk.expectDialog("T"); }
  std::string stored() const { return TDB_pszBuffer[0]; }
};

// ---- Filling ----

TEST_P(TextItems, ASetTextIsShownSelected) {
  TexteDlgBox_set(0, "Lef\xE8vre");
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "Lefèvre");
        EXPECT_EQ(desk.selectedText(kItem), "Lefèvre");
        EXPECT_TRUE(desk.isEnabled(kOk));
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "Lef\xE8vre");
}

TEST_P(TextItems, NobodyEditedNothingChanges) {
  std::string all;
  for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
  TexteDlgBox_set(0, all.c_str());
  expectDialog().press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), all);
}

// Kept: a field never set keeps its flag, even when it is mandatory.
TEST_P(TextItems, ATextNeverSetLeavesItsFlag) {
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.takeWrites(), "3 text \"\"\n1 enabled yes\n");
        EXPECT_TRUE(desk.isEnabled(kOk));
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(TDB_bOK[0], 1);
}

TEST_P(TextItems, FillingOnlyEverClearsTheFlag) {
  const struct {
    const char *text;
    int mandatory, longest, before, after;
  } kCases[] = {{"", 1, 9, 1, 0},     {"", 0, 9, 1, 1},     {"abc", 1, 3, 1, 1},
                {"abcd", 1, 3, 1, 0}, {"abcd", 0, 3, 1, 0}, {"abc", 1, 3, 0, 0}};
  for (const auto &[text, mandatory, longest, before, after] : kCases) {
    SCOPED_TRACE(text);
    TDB = 1;
    TexteDlgBox_set(0, text);
    TDB_bMand[0] = mandatory;
    TDB_iCarac[0] = longest;
    TDB_bOK[0] = before;
    expectDialog()
        .check([&, enabled = after == 1] { EXPECT_EQ(desk.isEnabled(kOk), enabled); })
        .press(kCancel);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(TDB_bOK[0], after);
  }
}

TEST_P(TextItems, ASliceFullOfTextIsShownWhole) {
  const std::string text(8191, 'x');
  TexteDlgBox_set(0, text.c_str());
  expectDialog().check([&] { EXPECT_EQ(desk.text(kItem), text); }).press(kOk);
  EXPECT_EQ(run(), 1);
}

// ---- Editing ----

TEST_P(TextItems, EachKeyIsStoredAndTold) {
  TexteDlgBox_set(0, "");
  std::vector<std::string> seen;
  Callbacks::onGlobal = [&](const GlobalCall &call) {
    seen.push_back(call.texts[0]);
    EXPECT_EQ(call.item, kIdentifier);
    EXPECT_EQ(call.capacity, 32);
    EXPECT_NE(call.redisplay, nullptr);
    return 0;
  };
  expectDialog()
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .type(kItem, "D")
      .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)); })
      .type(kItem, "r.")
      .deleteBack(kItem)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(seen, (std::vector<std::string>{"D", "Dr", "Dr.", "Dr"}));
  EXPECT_EQ(stored(), "Dr");
}

TEST_P(TextItems, AccentsAreStoredAsCp1252) {
  TexteDlgBox_set(0, "");
  expectDialog().type(kItem, "àçèéêï°ÀÉŒœ€’").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "\xE0\xE7\xE8\xE9\xEA\xEF\xB0\xC0\xC9\x8C\x9C\x80\x92");
}

TEST_P(TextItems, CharactersWithoutAByteAreNotTyped) {
  TexteDlgBox_set(0, "");
  expectDialog().type(kItem, "aŽ¡•ˆ語b").press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "ab");
  EXPECT_EQ(Callbacks::globalCalls.size(), 2U);
}

TEST_P(TextItems, AnUneditedPartIsReadBackAsTyped) {
  // Bytes left over from an earlier conversion become the letters that they show.
  TexteDlgBox_set(0, "for\x90t");
  expectDialog()
      .check([&] { EXPECT_EQ(desk.text(kItem), "forêt"); })
      .moveToEnd(kItem)
      .type(kItem, "s")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(),
            "for\xEA"
            "ts");
}

TEST_P(TextItems, ValidityFollowsEveryKey) {
  TexteDlgBox_set(0, "");
  TexteDlgBox_set_ncarac(0, 2);
  expectDialog()
      .type(kItem, "ab")
      .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)); })
      .type(kItem, "c")
      .check([&] {
        EXPECT_FALSE(desk.isEnabled(kOk));
        EXPECT_EQ(stored(), "abc") << "stored whole, and flagged";
      })
      .deleteBack(kItem, 3)
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .type(kItem, "z")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(Callbacks::globalCalls.size(), 5U) << "only for acceptable texts";
}

TEST_P(TextItems, AnOptionalTextMayBeEmptied) {
  TexteDlgBox_set(0, "a");
  TexteDlgBox_mandatory(0, 0);
  expectDialog().deleteBack(kItem).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "");
  EXPECT_EQ(Callbacks::globalCalls.size(), 1U);
}

TEST_P(TextItems, ATextLongerThanItsSliceIsCutAndMarked) {
  TexteDlgBox_param(20, first(kIdentifier, kItem));
  for (int i = 0; i < 20; ++i) TexteDlgBox_set_geo(i, 0, 0, 0, 0, rank(i));
  TexteDlgBox_set(3, "");
  TexteDlgBox_set(4, "voisin");
  TDB_iCarac[3] = 100000;  // decides validity only
  const int item = 6;
  expectDialog()
      .replace(item, std::string(408, 'a'))
      .check([&] { EXPECT_TRUE(desk.isEnabled(kOk)); })
      .moveToEnd(item)
      .type(item, "b")
      .check([&] {
        EXPECT_FALSE(desk.isEnabled(kOk));
        EXPECT_EQ(std::string(TDB_pszBuffer[3]), std::string(408, 'a'));
        EXPECT_STREQ(TDB_pszBuffer[4], "voisin");
        EXPECT_EQ(desk.text(item).size(), 409U);
      })
      .paste(item, std::string(100000, 'c'))
      .check([&] { EXPECT_STREQ(TDB_pszBuffer[4], "voisin"); })
      .replace(item, "court")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_STREQ(TDB_pszBuffer[3], "court");
}

TEST_P(TextItems, AFieldWithoutATableTextIsNeverAcceptable) {
  TexteDlgBox_set(0, "a");
  TDB_pszBuffer[0] = nullptr;
  expectDialog().type(kItem, "b").check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); }).press(kCancel);
  EXPECT_EQ(run(), 0);
}

// ---- Masked ----

class MaskedText : public TextItems {
 protected:
  MaskedText() {
    TexteDlgBox_password(0, 1);
    TexteDlgBox_set(0, "secret");
  }
};

TEST_P(MaskedText, ShowsOneStarPerCharacter) {
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "******");
        EXPECT_EQ(desk.selectedText(kItem), "******");
        EXPECT_TRUE(desk.isSecret(kItem));
        EXPECT_EQ(stored(), "secret");
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "secret");
}

TEST_P(MaskedText, IsSecretEvenWhenNeverSet) {
  TDB_bInit[0] = 0;
  expectDialog().check([&] { EXPECT_TRUE(desk.isSecret(kItem)); }).press(kCancel);
  run();
}

TEST_P(MaskedText, EditsByPositionFromTheStart) {
  const struct {
    const char *name;
    std::function<void(DialogScript &)> edit;
    const char *text;
  } kCases[] = {
      {"type at the end", [](DialogScript &s) { s.moveToEnd(kItem).type(kItem, "s"); }, "secrets"},
      {"delete at the end", [](DialogScript &s) { s.moveToEnd(kItem).deleteBack(kItem); }, "secre"},
      // Kept: positions count from the start wherever the text was changed.
      {"type in the middle", [](DialogScript &s) { s.moveTo(kItem, 2).type(kItem, "X"); },
       "seXret"},
      {"type in front", [](DialogScript &s) { s.moveTo(kItem, 0).type(kItem, "X"); }, "Xecret"},
      {"delete in front", [](DialogScript &s) { s.moveTo(kItem, 0).deleteForward(kItem); },
       "secre"},
      {"delete in the middle", [](DialogScript &s) { s.moveTo(kItem, 3).deleteBack(kItem); },
       "secre"},
      {"replace all", [](DialogScript &s) { s.replace(kItem, "neuf"); }, "neuf"},
      {"replace some", [](DialogScript &s) { s.select(kItem, 1, 3).type(kItem, "A"); }, "sAcre"},
      {"paste at the end", [](DialogScript &s) { s.moveToEnd(kItem).paste(kItem, "123"); },
       "secret123"},
      {"paste in the middle", [](DialogScript &s) { s.moveTo(kItem, 2).paste(kItem, "123"); },
       "se123t"},
      {"ten keys", [](DialogScript &s) { s.moveToEnd(kItem).type(kItem, "0123456789"); },
       "secret0123456789"},
      {"ten deletions", [](DialogScript &s) { s.moveToEnd(kItem).deleteBack(kItem, 10); }, ""},
      // A star after the end of the previous text ends the text.
      {"a typed star", [](DialogScript &s) { s.moveToEnd(kItem).type(kItem, "*"); }, "secret"},
      {"a star, then a letter", [](DialogScript &s) { s.moveToEnd(kItem).paste(kItem, "*a"); },
       "secret"},
      {"stars over all", [](DialogScript &s) { s.replace(kItem, "***x"); }, "secx"},
      {"accents", [](DialogScript &s) { s.moveToEnd(kItem).type(kItem, "éê"); }, "secret\xE9\xEA"},
  };
  for (const auto &[name, edit, text] : kCases) {
    SCOPED_TRACE(name);
    TDB = 1;
    TexteDlgBox_set(0, "secret");
    TexteDlgBox_mandatory(0, 0);
    DialogScript &script = expectDialog();
    edit(script);
    script.check([&, wanted = std::string(text)] {
      EXPECT_EQ(desk.text(kItem), std::string(wanted.size(), '*'));
      EXPECT_EQ(stored(), wanted);
    });
    script.press(kOk);
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(stored(), text);
  }
}

TEST_P(MaskedText, TheCursorSurvivesTheMask) {
  expectDialog()
      .moveTo(kItem, 2)
      .type(kItem, "X")
      .check([&] { EXPECT_EQ(desk.cursor(kItem), 3); })
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(MaskedText, BecomesSecretWhenMaskedDuringTheRun) {
  TexteDlgBox_password(0, 0);
  Callbacks::onGlobal = [](const GlobalCall &) {
    TexteDlgBox_password(0, 1);
    return 0;
  };
  expectDialog()
      .moveToEnd(kItem)
      .type(kItem, "s")
      .check([&] { EXPECT_EQ(desk.text(kItem), "secrets"); })
      .type(kItem, "!")
      .check([&] {
        EXPECT_EQ(desk.text(kItem), "********");
        EXPECT_TRUE(desk.isSecret(kItem));
      })
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "secrets!");
}

// ---- Pop-ups ----

class PopUp : public TextItems {
 protected:
  void choices(const char *list, const char *text) {
    TDB = 1;
    TexteDlgBox_set_liste(0, list);
    TexteDlgBox_set(0, text);
  }
};

TEST_P(PopUp, ChoicesAreSplitAtBothSeparators) {
  constexpr struct {
    const char *list;
    std::vector<std::string> entries() const {
      std::vector<std::string> all(1);
      for (const char *p = list; *p != '\0'; ++p) {
        if (*p == ',' || *p == '+') {
          all.emplace_back();
        } else {
          all.back() += *p;
        }
      }
      return all;
    }
  } kCases[] = {{"a,b"}, {"a+b,c"}, {"a"}, {","}, {"a,"}, {"+a"}, {""}, {"a$b"}, {" a , b "}};
  for (const auto &each : kCases) {
    SCOPED_TRACE(each.list);
    choices(each.list, "?");
    expectDialog().check([&] { EXPECT_EQ(desk.entries(kItem), each.entries()); }).press(kCancel);
    run();
    EXPECT_STREQ(TDB_PSZLBUFFER[0], each.list) << "the separators are still there";
  }
}

TEST_P(PopUp, TheChoiceEqualToTheTextIsShown) {
  constexpr struct {
    const char *list, *text;
    int value;
  } kCases[] = {
      {"a,b,c", "b", 2},
      {"a,b,c", "d", 0},
      {"a,b,c", "", 0},
      {"a,,c", "", 2},
      // The last of several equal ones.
      {"a,b,a", "a", 3},
      // Accents, also as bytes left over from an earlier conversion.
      {"for\xEAt,ma\xEFs,\xE9t\xE9", "for\xEAt", 1},
      {"for\xEAt,ma\xEFs,\xE9t\xE9", "ma\xEFs", 2},
      {"for\xEAt,ma\xEFs,\xE9t\xE9", "\xE9t\xE9", 3},
      {"for\xEAt,ma\xEFs,\xE9t\xE9", "for\x90t", 1},
      {"for\x90t,ma\xEFs", "for\xEAt", 1},
      {"\xC9t\xE9,\xE9t\xE9", "\xC9t\xE9", 1},
  };
  for (const auto &[list, text, value] : kCases) {
    SCOPED_TRACE(std::string(list) + " / " + text);
    choices(list, text);
    expectDialog()
        .check([&, wanted = value] { EXPECT_EQ(desk.value(kItem), wanted); })
        .press(kCancel);
    run();
    EXPECT_EQ(stored(), text);
  }
}

TEST_P(PopUp, AChoiceIsStored) {
  choices("Mme,M.,for\xEAt,ma\xEFs,\xE9\xE8\xE0\xE7\xB0", "M.");
  expectDialog()
      .choose(kItem, "Mme")
      .check([&] { EXPECT_EQ(stored(), "Mme"); })
      .choose(kItem, "forêt")
      .check([&] { EXPECT_EQ(stored(), "for\xEAt"); })
      .choose(kItem, "maïs")
      .check([&] { EXPECT_EQ(stored(), "ma\xEFs"); })
      .choose(kItem, "éèàç°")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "\xE9\xE8\xE0\xE7\xB0");
  EXPECT_EQ(Callbacks::identifiers(), "100 100 100 100 ");
}

TEST_P(PopUp, AMandatoryChoiceMustBeMade) {
  choices("a,b", "");
  expectDialog()
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .hit(kItem)
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)) << "still nothing chosen"; })
      .choose(kItem, "a")
      .press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(PopUp, OneNeverSetHasNoChoices) {
  TexteDlgBox_set_liste(0, "a,b");
  expectDialog().check([&] { EXPECT_TRUE(desk.entries(kItem).empty()); }).press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(PopUp, TheStarsOfAMaskedChoiceStandForThePreviousText) {
  choices("ab,x*,***", "ab");
  TexteDlgBox_password(0, 1);
  expectDialog()
      .check([&] { EXPECT_EQ(desk.value(kItem), 1) << "chosen by the text, not by the stars"; })
      .choose(kItem, "x*")
      .check([&] {
        EXPECT_EQ(stored(), "xb");
        EXPECT_EQ(desk.value(kItem), 2);
      })
      .choose(kItem, "***")
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "xb");
}

TEST_P(PopUp, RedisplayFindsAChoiceAgain) {
  choices("a,for\xEAt,ma\xEFs,a", "a");
  const struct {
    const char *text;
    int value;
  } kCases[] = {{"for\xEAt", 2}, {"ma\xEFs", 3}, {"ma\x95s", 3}, {"a", 4}, {"x", 0}, {"", 0}};
  DialogScript &script = expectDialog();
  for (const auto &[text, value] : kCases) {
    script
        .check([given = text] {
          Callbacks::onGlobal = [given](const GlobalCall &call) {
            std::strcpy(call.texts[0], given);
            return redisplaying({kIdentifier})(call);
          };
        })
        .choose(kItem, "a")
        .check([&, wanted = value, given = std::string(text)] {
          EXPECT_EQ(desk.value(kItem), wanted) << given;
          EXPECT_EQ(stored(), given);
          EXPECT_EQ(desk.isEnabled(kOk), !given.empty());
        });
  }
  script.press(kCancel);
  run();
}

TEST_P(PopUp, ClearingChoosesNothing) {
  choices("a,b", "b");
  Callbacks::onGlobal = redisplaying({-kIdentifier});
  expectDialog()
      .choose(kItem, "a")
      .check([&] {
        EXPECT_EQ(desk.value(kItem), 0);
        EXPECT_EQ(desk.entries(kItem).size(), 2U);
        EXPECT_FALSE(desk.isEnabled(kOk));
        EXPECT_EQ(stored(), "a") << "the table's text stays";
      })
      .press(kCancel);
  run();
}

TEST_P(PopUp, OwnChoicesAreShown) {
  char own[] = "x,y";
  TexteDlgBox_set_liste(0, "a,b");
  TexteDlgBox_set_liste_buffer(0, own);
  TexteDlgBox_set(0, "y");
  expectDialog().check([&] { EXPECT_EQ(desk.value(kItem), 2); }).press(kCancel);
  run();
  EXPECT_STREQ(own, "x,y");
}

// ---- Lists ----

class List : public TextItems {
 protected:
  List() { describe("a$b$c", ""); }
  void describe(const char *rows, const char *text) {
    TDB = 1;
    TexteDlgBox_set_liste(0, rows);
    TDBC[0] = 0;
    TDBL[0] = 1;
    TexteDlgBox_set(0, text);
    DlgBoxFinal_set(Callbacks::final);
    DlgBoxGlobal_set(Callbacks::global);
  }
};

// Kept: lists do not use the tab stops.
TEST_P(List, ShowsItsRowsWhateverTheTabStops) {
  const int stops[] = {32, 0};
  TexteDlgBox_set_tabstops(0, stops);
  describe("C\tConsultation$V\tVisite", "");
  expectDialog()
      .check([&] {
        EXPECT_EQ(TDB_ITABSTOPS[0][0], 32);
        EXPECT_EQ(desk.entries(kItem), (std::vector<std::string>{"C\tConsultation", "V\tVisite"}));
      })
      .press(kCancel);
  run();
}

TEST_P(List, RowsAreSplitAtDollarsOnly) {
  describe("F\xE9minin$a,b+c$$\x88", "");
  expectDialog()
      .check([&] {
        // Rows go to the screen without conversion: the byte 0x88 is an "à" there.
        EXPECT_EQ(desk.entries(kItem), (std::vector<std::string>{"Féminin", "a,b+c", "", "à"}));
      })
      .press(kCancel);
  run();
}

TEST_P(List, AClickedRowIsStored) {
  describe("F\xE9minin$for\xEAt$c", "");
  expectDialog()
      .check([&] { EXPECT_FALSE(desk.isEnabled(kOk)); })
      .clickRow(kItem, 0)
      .check([&] { EXPECT_EQ(stored(), "F\xE9minin"); })
      .clickRow(kItem, 1)
      .press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "for\xEAt");
  EXPECT_EQ(Callbacks::identifiers(), "100 100 ");
}

TEST_P(List, OneWithoutATextHasNoRows) {
  describe("", "a");
  expectDialog().check([&] { EXPECT_TRUE(desk.entries(kItem).empty()); }).press(kCancel);
  run();
  describe("$", "a");
  expectDialog()
      .check([&] {
        EXPECT_EQ(desk.entries(kItem), (std::vector<std::string>{"", ""}));
      })
      .press(kCancel);
  run();
}

TEST_P(List, OneNeverSetHasNoRows) {
  TDB_bInit[0] = 0;
  expectDialog().check([&] { EXPECT_TRUE(desk.entries(kItem).empty()); }).press(kOk);
  EXPECT_EQ(run(), 1);
}

TEST_P(List, AHitWithoutAClickedRowIsEmpty) {
  TexteDlgBox_set(0, "a");
  expectDialog().hit(kItem).check([&] { EXPECT_EQ(stored(), ""); }).press(kCancel);
  run();
}

TEST_P(List, RowsAreReadUpTo255Characters) {
  describe(("a$" + std::string(300, 'r')).c_str(), "");
  expectDialog().clickRow(kItem, 1).press(kOk);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), std::string(255, 'r'));
}

TEST_P(List, AnAcceptedDoubleClickEndsTheDialog) {
  std::vector<std::string> order;
  Callbacks::onFinal = [&](const FinalCall &call) {
    order.push_back("final sees " + std::string(call.texts[0]));
    EXPECT_NE(call.window, nullptr);
    return 2;
  };
  Callbacks::onGlobal = [&](const GlobalCall &call) {
    order.push_back("global sees " + std::string(call.texts[0]));
    return 0;
  };
  expectDialog().clickRow(kItem, 2).doubleClickRow(kItem, 1);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "b");
  EXPECT_EQ(order, (std::vector<std::string>{"global sees c", "global sees b", "final sees b",
                                             "global sees b"}));
  EXPECT_EQ(TDB, 0);
}

TEST_P(List, AnAcceptedDoubleClickStoresAfterTheFinalCallback) {
  Callbacks::onFinal = [](const FinalCall &call) {
    std::strcpy(call.texts[0], "autre");
    return 1;
  };
  expectDialog().doubleClickRow(kItem, 1);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "b");
}

TEST_P(List, AnAcceptedDoubleClickEndsEvenWithAnInvalidField) {
  describe("a$trop long$c", "a");
  TexteDlgBox_set_ncarac(0, 3);
  expectDialog().doubleClickRow(kItem, 1);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(stored(), "trop long");
  EXPECT_EQ(TDB_bOK[0], 0);
  EXPECT_TRUE(Callbacks::globalCalls.empty());
}

TEST_P(List, ARefusedDoubleClickGoesBackToWaiting) {
  Callbacks::onFinal = [](const FinalCall &call) {
    std::strcpy(call.texts[0], "vu");
    return 0;
  };
  expectDialog()
      .doubleClickRow(kItem, 1)
      .check([&] {
        EXPECT_EQ(stored(), "vu") << "the row is not stored again";
        EXPECT_EQ(Callbacks::globalCalls.size(), 1U) << "for the first of the two clicks";
      })
      .press(kCancel);
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(Callbacks::finalCalls.size(), 1U);
}

TEST_P(List, TheFinalCallbackMayEvenDropTheField) {
  Callbacks::onFinal = [](const FinalCall &) {
    TDB = 0;
    TDB_N = 0;
    TDB_pszBuffer[0] = nullptr;
    return 1;
  };
  expectDialog().doubleClickRow(kItem, 1);
  EXPECT_EQ(run(), 1);
}

TEST_P(List, ClearingKeepsTheRows) {
  describe("a$b", "a");
  Callbacks::onGlobal = redisplaying({-kIdentifier});
  expectDialog()
      .clickRow(kItem, 1)
      .check([&] {
        EXPECT_EQ(desk.entries(kItem).size(), 2U);
        EXPECT_FALSE(desk.isEnabled(kOk));
        EXPECT_EQ(stored(), "b");
      })
      .press(kCancel);
  run();
}

TEST_P(List, ShowingAListShowsNothingButSetsTheFlag) {
  describe("a$b", "a");
  Callbacks::onGlobal = [](const GlobalCall &call) {
    call.texts[0][0] = '\0';
    return redisplaying({kIdentifier})(call);
  };
  expectDialog()
      .check([&] { desk.takeWrites(); })
      .clickRow(kItem, 1)
      .check([&] { EXPECT_EQ(desk.takeWrites(), "1 enabled no\n"); })
      .press(kCancel);
  run();
}

// ---- Redisplay of edit text ----

TEST_P(TextItems, ShowingBringsTheTableToTheScreen) {
  const struct {
    const char *text;
    int mandatory, longest, valid;
  } kCases[] = {{"vu\xEA", 1, 5, 1}, {"", 1, 5, 0}, {"", 0, 5, 1}, {"sixsix", 0, 5, 0}};
  for (const auto &each : kCases) {
    SCOPED_TRACE(each.text);
    for (const int init : {0, 1}) {
      TDB = 1;
      TexteDlgBox_set(0, "a");
      TDB_bMand[0] = each.mandatory;
      TDB_iCarac[0] = each.longest;
      TDB_bInit[0] = init;
      DlgBoxGlobal_set(Callbacks::global);
      Callbacks::onGlobal = [&](const GlobalCall &call) {
        std::strcpy(call.texts[0], each.text);
        return redisplaying({kIdentifier})(call);
      };
      expectDialog()
          .replace(kItem, "bcd")
          .check([&] {
            EXPECT_EQ(desk.text(kItem), readable(std::string_view(each.text)));
            EXPECT_EQ(TDB_bOK[0], each.valid);
            EXPECT_EQ(desk.isEnabled(kOk), each.valid == 1);
          })
          .press(kCancel);
      run();
    }
  }
}

TEST_P(TextItems, ShowingAMaskedTextShowsStars) {
  TexteDlgBox_password(0, 1);
  TexteDlgBox_set(0, "a");
  Callbacks::onGlobal = [](const GlobalCall &call) {
    std::strcpy(call.texts[0], "huit car");
    return redisplaying({kIdentifier})(call);
  };
  expectDialog()
      .replace(kItem, "b")
      .check([&] { EXPECT_EQ(desk.text(kItem), "********"); })
      .press(kCancel);
  run();
}

TEST_P(TextItems, ClearingEmptiesTheItemAndKeepsTheTable) {
  for (const int mandatory : {0, 1}) {
    TDB = 1;
    TexteDlgBox_set(0, "a");
    TexteDlgBox_mandatory(0, mandatory);
    DlgBoxGlobal_set(Callbacks::global);
    Callbacks::onGlobal = redisplaying({-kIdentifier});
    expectDialog()
        .replace(kItem, "bcd")
        .check([&] {
          EXPECT_EQ(desk.text(kItem), "");
          EXPECT_EQ(stored(), "bcd");
          EXPECT_EQ(TDB_bOK[0], 1 - mandatory);
          EXPECT_EQ(desk.isEnabled(kOk), mandatory == 0);
        })
        .press(kCancel);
    run();
  }
}

TEST_P(TextItems, ShowingKeepsTheSelectionWhereItIs) {
  TexteDlgBox_set(0, "abc");
  Callbacks::onGlobal = redisplaying({kIdentifier});
  expectDialog()
      .moveTo(kItem, 1)
      .type(kItem, "X")
      .check([&] {
        EXPECT_EQ(desk.cursor(kItem), 2);
        EXPECT_EQ(desk.selectedText(kItem), "");
      })
      .press(kCancel);
  run();
}

KORVEL_IN_BOTH_KINDS(TextItems);
KORVEL_IN_BOTH_KINDS(MaskedText);
KORVEL_IN_BOTH_KINDS(PopUp);
KORVEL_IN_BOTH_KINDS(List);

}  // namespace
}  // namespace korvel::test
