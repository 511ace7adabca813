// SPDX-License-Identifier: MIT
// Keys and buttons that a person expects of any dialog.
#include "tests/desktop/dialog_host.h"

namespace korvel::test {
namespace {

TEST(Keyboard, TheFocusStartsInTheFirstEditableItem) {
  DialogHost host;
  write("ici");
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0", "text 0 ici"}));
}

TEST(Keyboard, TabFollowsTheItemNumbersAndSelectsWhatItFinds) {
  DialogHost host;
  for (const char *text : {"un", "deux", "3", "4", "5.25", "6", "7", "2008"}) {
    write(text);
    press("Tab");
  }
  press("Down Tab Down Tab space Tab space");
  EXPECT_TRUE(host.says("hit 600"));
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 un", "text 1 deux", "int 0 3", "int 1 4",
                              "num 0 5.25", "date 0 20080706", "text 2 No\\xEBl",
                              "text 3 F\\xE9minin", "bool 0 1", "action 1"}));
}

TEST(Keyboard, ShiftTabGoesBack) {
  DialogHost host;
  press("Tab shift+Tab");
  write("retour");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 retour"}));
}

TEST(Keyboard, ReturnIsTheDefaultButton) {
  DialogHost host;
  write("x");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1"}));
}

TEST(Keyboard, EnterOnTheKeypadIsTheDefaultButtonToo) {
  DialogHost host;
  write("x");
  press("KP_Enter");
  EXPECT_TRUE(host.endedWith({"result 1"}));
}

TEST(Keyboard, ReturnIsButton2WhereThatIsTheDefault) {
  DialogHost host("cancel-default");
  write("x");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 0"}));
}

TEST(Keyboard, ReturnDoesNothingWhileTheDefaultButtonIsDisabled) {
  DialogHost host;
  press("Return KP_Enter");
  click(kOkButton);
  EXPECT_EQ(activeWindow(), kTitle);
  write("x");
  click(kOkButton);
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 x"}));
}

TEST(Keyboard, EscapeCancels) {
  DialogHost host;
  write("x");
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0"}));
}

TEST(Keyboard, TheCancelButtonCancels) {
  DialogHost host;
  click(kCancelButton);
  EXPECT_TRUE(host.endedWith({"result 0"}));
}

TEST(Keyboard, AltAndALetterPressesAButtonOrABoxAndTypesNothing) {
  DialogHost host;
  write("x");
  press("alt+b alt+z alt+5 alt+t");
  EXPECT_TRUE(host.says("hit 600"));
  press("alt+c");
  EXPECT_TRUE(host.says("hit 500"));
  press("alt+o");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 x", "bool 0 1", "action 1"}));
  EXPECT_EQ(host.count("hit"), 3);
}

TEST(Keyboard, AltAndALetterOfTheCancelButtonCancels) {
  DialogHost host;
  write("x");
  press("alt+a");
  EXPECT_TRUE(host.endedWith({"result 0", "text 0 x"}));
}

// ---- In a pop-up ----

// While it is closed, where each entry is chosen at once, and while it is open.
TEST(Keyboard, EndsOfAPopUpAreReached) {
  constexpr char kFirst[] = "text 2 Madame", kLast[] =
                                                 "text 2 Na\\xEF"
                                                 "f";
  const struct {
    const char *keys, *entry;
    int hits;
  } cases[] = {{"End", kLast, 1},
               {"End Home", kFirst, 2},
               {"space End Return", kLast, 1},
               {"space End Home Return", kFirst, 1}};
  for (const auto &row : cases) {
    DialogHost host;
    write("x");
    for (int n = 0; n < 6; ++n) press("shift+Tab");
    press(row.keys);
    press("Return");
    EXPECT_TRUE(host.endedWith({"result 1", row.entry})) << row.keys;
    EXPECT_EQ(host.count("hit 102"), row.hits) << row.keys;
  }
}

// ---- In a list ----

TEST(Keyboard, ArrowsSelectTheRowsOfAList) {
  DialogHost host;
  write("x");
  click(listRow(0));
  EXPECT_TRUE(host.says("hit 103"));
  press("Down Down Up");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 3 Masculin"}));
  EXPECT_EQ(host.count("hit 103"), 4);
}

TEST(Keyboard, EndsAndPagesOfAListAreReached) {
  for (const auto &[keys, row] :
       {std::pair("End", "Chlo\\xEB"), std::pair("End Home", "F\\xE9minin"),
        std::pair("Next", "Chlo\\xEB"), std::pair("Next Prior", "F\\xE9minin")}) {
    DialogHost host;
    write("x");
    click(listRow(1));
    EXPECT_TRUE(host.says("hit 103"));
    press(keys);
    press("Return");
    EXPECT_TRUE(host.endedWith({"result 1", std::string("text 3 ") + row})) << keys;
  }
}

TEST(Keyboard, ALetterGoesToTheRowThatBeginsWithIt) {
  DialogHost host;
  write("x");
  click(listRow(0));
  EXPECT_TRUE(host.says("hit 103"));
  press("m Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 3 Masculin"}));
  EXPECT_EQ(host.count("hit 103"), 2);
}

TEST(Keyboard, ReturnInAListDoesNothingWhileOkIsDisabled) {
  DialogHost host;
  click(listRow(2));
  EXPECT_TRUE(host.says("hit 103"));
  press("Return");
  EXPECT_EQ(activeWindow(), kTitle);
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0", "text 3 Chlo\\xEB"}));
}

TEST(Keyboard, AClickPlacesTheCursor) {
  DialogHost host;
  write("mmmmmm");
  click({122, 21});  // before the first letter
  write("W");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 Wmmmmmm"}));
}

}  // namespace
}  // namespace korvel::test
