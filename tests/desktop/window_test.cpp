// SPDX-License-Identifier: MIT
// The dialog as a window among others.
#include <algorithm>
#include <cstdlib>

#include "tests/desktop/dialog_host.h"

namespace korvel::test {
namespace {

constexpr int kScreenWidth = 1280, kScreenHeight = 1024;

constexpr int kHostWidth = 400, kHostHeight = 300;

TEST(Window, ComesUpCentredOnTheScreen) {
  DialogHost host;
  const Content content = activeContent();
  EXPECT_EQ(content.width, kWidth);
  EXPECT_EQ(content.height, kHeight);
  EXPECT_EQ(content.corner.x, (kScreenWidth - kWidth) / 2);
  EXPECT_NEAR(content.corner.y, (kScreenHeight - kHeight) / 2, 1);
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0"}));
}

TEST(Window, ItsCloseBoxCancels) {
  DialogHost host;
  write("x");
  closeWindow();
  EXPECT_TRUE(host.endedWith({"result 0"}));
}

TEST(Window, CannotBeMinimised) {
  DialogHost host;
  const std::string title = activeWindow();
  minimiseWindow();
  ASSERT_TRUE(waitForWindow(title)) << activeWindow();
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0"}));
}

int darkest(const Picture &picture) {
  int least = 255;
  for (const Colour &each : picture.pixels)
    least = std::min(least, (each.red + each.green + each.blue) / 3);
  return least;
}

// Dark enough to be read, and far from the black of one that can be used.
TEST(Window, ADisabledOkLooksDisabled) {
  DialogHost host;
  const Picture disabled = picture(112, 318, 76, 16);
  write("x");
  const Picture enabled = picture(112, 318, 76, 16);
  EXPECT_GT(darkest(disabled), 0x5A);
  EXPECT_LT(darkest(disabled), 0x72);
  EXPECT_LT(darkest(enabled), 0x20);
  EXPECT_GT(enabled.darkPixels(), 10);
  press("BackSpace");
  EXPECT_TRUE(picture(112, 318, 76, 16).pixels == disabled.pixels);
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0"}));
}

constexpr Colour kMarkColour{0xC2, 0x78, 0x03};

// How many pixels of the first field's left edge have the mark's colour.
int markedPixels(int scale) {
  const Picture edge = picture(117 * scale, 11 * scale, 3 * scale, 21 * scale);
  return static_cast<int>(std::count(edge.pixels.begin(), edge.pixels.end(), kMarkColour));
}

TEST(Window, AFieldThatKeepsOkDisabledIsMarked) {
  for (const int scale : {1, 2}) {
    DialogHost host("plain", {"QT_SCALE_FACTOR=" + std::to_string(scale), "LC_ALL=C.UTF-8"});
    EXPECT_GE(markedPixels(scale), 2 * 19 * scale * scale) << "a bar of two by nineteen";
    EXPECT_LE(markedPixels(scale), 2 * 21 * scale * scale);
    write("x");
    EXPECT_EQ(markedPixels(scale), 0) << scale;
    press("BackSpace");
    EXPECT_GT(markedPixels(scale), 0) << scale;
    press("Escape");
    EXPECT_TRUE(host.endedWith({"result 0"}));
  }
}

TEST(Window, TheDefaultButtonLooksLikeOne) {
  const auto looks = [](const char *scenario) {
    DialogHost host(scenario);
    write("x");
    const Picture pair[] = {picture(106, 312, 88, 28), picture(206, 312, 88, 28)};
    press("Escape");
    EXPECT_TRUE(host.endedWith({"result 0"}));
    return std::pair(pair[0].pixels, pair[1].pixels);
  };
  const auto [okDefault, cancelPlain] = looks("plain");
  const auto [okPlain, cancelDefault] = looks("cancel-default");
  EXPECT_FALSE(okDefault == okPlain);
  EXPECT_FALSE(cancelDefault == cancelPlain);
}

TEST(Window, AtScale2EverythingIsTwiceAsLarge) {
  DialogHost host("plain", {"QT_SCALE_FACTOR=2", "LC_ALL=C.UTF-8"});
  const Content content = activeContent();
  EXPECT_EQ(content.width, 2 * kWidth);
  EXPECT_EQ(content.height, 2 * kHeight);
  write("double");
  click({2 * kOkButton.x, 2 * kOkButton.y});
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 double"}));
}

TEST(Window, ComesUpCentredOnItsParentAndBlocksIt) {
  Application application({WINDOW_HOST}, {"LC_ALL=C.UTF-8"});
  ASSERT_TRUE(waitForWindow("Derrière")) << activeWindow();
  const Content parent = activeContent();
  ASSERT_EQ(parent.width, kHostWidth);
  ASSERT_EQ(parent.height, kHostHeight);
  press("Return");
  ASSERT_TRUE(waitForWindow("Devant")) << activeWindow();
  const Content content = activeContent();
  EXPECT_EQ(content.width, 200);
  EXPECT_EQ(content.height, 140);
  EXPECT_EQ(content.corner.x, parent.corner.x + (kHostWidth - 200) / 2);
  EXPECT_EQ(content.corner.y, parent.corner.y + (kHostHeight - 140) / 2);

  // The window's own line lies above the dialog and left of it: what is typed after a click on it
  // goes to the dialog.
  click({parent.corner.x + 30 - content.corner.x, parent.corner.y + 25 - content.corner.y});
  write("abc");
  EXPECT_EQ(application.count("typed"), 0);
  ASSERT_EQ(activeWindow(), "Devant");
  press("Return");
  EXPECT_TRUE(application.says("result 1 text abc"));

  ASSERT_TRUE(waitForWindow("Derrière"));
  click({30, 25});
  write("z");
  EXPECT_TRUE(application.says("typed z"));
}

TEST(Window, TellsTheScreenWhichWindowItStandsInFrontOf) {
  Application application({WINDOW_HOST}, {kSaysOwners, "LC_ALL=C.UTF-8"});
  ASSERT_TRUE(waitForWindow("Derrière")) << activeWindow();
  EXPECT_FALSE(isOwned(application));
  press("Return");
  ASSERT_TRUE(waitForWindow("Devant")) << activeWindow();
  EXPECT_TRUE(isOwned(application));
}

TEST(Window, WithoutADisplayTheDialogAnswersAsIfCancelled) {
  Application application({DIALOG_HOST, "plain"}, {"DISPLAY", "WAYLAND_DISPLAY"});
  ASSERT_EQ(application.wait(), 0);
  EXPECT_EQ(application.count("result 0"), 1);
  EXPECT_EQ(application.errors().size(), 1u);
}

TEST(Window, ADisplayThatAnswersNobodyIsNone) {
  Application application({DIALOG_HOST, "plain"}, {"DISPLAY=:97531", "WAYLAND_DISPLAY"});
  ASSERT_EQ(application.wait(), 0);
  EXPECT_EQ(application.count("result 0"), 1);
  EXPECT_EQ(application.errors().size(), 1u);
}

}  // namespace
}  // namespace korvel::test
