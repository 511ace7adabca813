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
