// SPDX-License-Identifier: MIT
// A dialog that is larger than the screen, used to its end with real keys and a real mouse.
#include "tests/desktop/dialog_host.h"

namespace korvel::test {
namespace {

constexpr int kScreenWidth = 1024, kScreenHeight = 600;
constexpr int kFoot = 48;

// Its content is 400 by 840 pixels; nothing but the pair lies in the lowest 35.
constexpr int kReach = 840 - 35;
constexpr Place kBox{128, 708}, kAction{180, 745};

// The window, once the screen has given it its size.
Content window() {
  waitUntil(kPatience, [] { return activeContent().height > kFoot; });
  return activeContent();
}

// A place of the content when it is scrolled to its end.
Place atTheEnd(Place place) { return {place.x, place.y - (kReach - (window().height - kFoot))}; }

Place ok() { return {window().width / 2 - 50, window().height - kFoot / 2}; }

TEST(Netbook, ALargeDialogStandsWithinTheScreen) {
  DialogHost host("large");
  const Content content = window();
  EXPECT_GE(content.corner.x, 0);
  EXPECT_GT(content.corner.y, 0) << "below its title bar";
  EXPECT_LE(content.corner.x + content.width, kScreenWidth);
  EXPECT_LE(content.corner.y + content.height, kScreenHeight);
  EXPECT_GE(content.width, kWidth);
  EXPECT_GT(content.height, kScreenHeight * 3 / 4);
  write("x");
  click(ok());
  EXPECT_TRUE(host.endedWith({"result 1", "size 400 840", "text 0 x"}))
      << "the whole dialog's size";
}

TEST(Netbook, KeysReachEveryItemOfALargeDialog) {
  DialogHost host("large");
  write("x");
  const auto end = [] { return picture(110, window().height - kFoot - 70, 200, 60); };
  const Picture before = end();
  press("Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab space");
  EXPECT_TRUE(host.says("hit 500"));
  EXPECT_FALSE(end().pixels == before.pixels) << "the check box came into view";
  press("Tab space");
  EXPECT_TRUE(host.says("hit 600"));
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 x", "bool 0 1", "action 1"}));
}

TEST(Netbook, TheWheelReachesEveryItemOfALargeDialogAndChangesNone) {
  DialogHost host("large");
  write("x");
  // Over the pop-up, then over whatever comes under the mouse: the list, fields and the ground.
  turnWheelDown({200, 161}, 20);
  click(atTheEnd(kBox));
  EXPECT_TRUE(host.says("hit 500"));
  click(atTheEnd(kAction));
  EXPECT_TRUE(host.says("hit 600"));
  click(ok());
  EXPECT_TRUE(host.endedWith({"result 1", "text 2 Ma\\xEEtre", "text 3 ", "int 0 12", "bool 0 1"}));
}

TEST(Netbook, PageKeysShowTheEndAndTypingTheField) {
  DialogHost host("large");
  press("Page_Down");
  click(atTheEnd(kBox));
  EXPECT_TRUE(host.says("hit 500"));
  press("shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab");
  press("shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab Page_Down");
  write("x");
  const Picture typed = picture(110, 8, 100, 28);
  press("ctrl+a BackSpace");
  EXPECT_FALSE(picture(110, 8, 100, 28).pixels == typed.pixels) << "the first field is in view";
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0", "bool 0 1"}));
}

}  // namespace
}  // namespace korvel::test
