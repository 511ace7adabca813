// SPDX-License-Identifier: MIT
// Dialogs whose layout is a form, with real keys and clicks.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/desktop/screen_user.h"

namespace korvel::test {
namespace {

constexpr char kTitle[] = "Visite de contrôle";
constexpr int kWidth = 420, kHeight = 320;

// Places inside the form's widgets.
constexpr Place kName{200, 72}, kChoice{200, 104}, kBox{120, 202}, kAction{160, 233},
    kOkButton{360, 293}, kCancelButton{250, 293};

class TemplateHost : public Application {
 public:
  explicit TemplateHost(const std::string &scenario = "plain",
                        const std::vector<std::string> &environment = {"LC_ALL=C.UTF-8"})
      : Application({TEMPLATE_HOST, TEMPLATE_RESOURCES, scenario}, environment) {}

  void comesUp() { EXPECT_TRUE(waitForWindow(kTitle)) << "active is: " << activeWindow(); }

  testing::AssertionResult endedWith(const std::vector<std::string> &lines) {
    const int status = wait();
    const auto written = output();
    std::string all;
    for (const std::string &line : written) all += "  " + line + "\n";
    if (status != 0) return testing::AssertionFailure() << "exit status " << status << "\n" << all;
    for (const std::string &line : lines)
      if (std::find(written.begin(), written.end(), line) == written.end())
        return testing::AssertionFailure() << "no line \"" << line << "\" in\n" << all;
    return testing::AssertionSuccess();
  }
};

TEST(Template, AccentsGoInAndOutToTheByte) {
  TemplateHost host;
  host.comesUp();
  write("Élodie Lefèvre, ça où ê ï œ 37°");
  press("Return");
  EXPECT_TRUE(host.endedWith(
      {"result 1", "text 0 \\xC9lodie Lef\\xE8vre, \\xE7a o\\xF9 \\xEA \\xEF \\x9C 37\\xB0",
       "text 1 Ma\\xEEtre", "num 0 1.50", "date 0 20000229", "in use 0"}));
  EXPECT_EQ(host.count("hit 10"), 31);
}

TEST(Template, OpeningAndAcceptingChangesNoByteOfATextNobodyEdited) {
  TemplateHost host("untouched");
  host.comesUp();
  press("Return");
  std::string bytes;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    char text[8];
    std::snprintf(text, sizeof text, "\\x%02X", byte);
    bytes += text;
  }
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 " + bytes}));
}

TEST(Template, EveryKindOfItemIsUsed) {
  TemplateHost host;
  host.comesUp();
  write("x");
  press("Tab ctrl+a");
  write("2,75");
  press("Tab");
  write("28");
  click(kBox);
  click(kAction);
  EXPECT_TRUE(host.says("hit 50"));
  click(kChoice);
  press("Home Return");
  EXPECT_TRUE(host.says("hit 11"));
  click({330, 60 + 8});
  EXPECT_TRUE(host.says("hit 12"));
  click(kOkButton);
  EXPECT_TRUE(host.endedWith({"action 1", "hit 40", "result 1", "text 0 x", "text 1 Madame",
                              "text 2 F\\xE9minin", "num 0 2.75", "date 0 20000228", "bool 0 1"}));
}

TEST(Template, AllItemsOfADateTellTheDate) {
  TemplateHost host;
  host.comesUp();
  write("x");
  press("Tab Tab Tab Tab");  // the year
  write("2004");
  press("shift+Tab");
  write("3");
  press("Return");
  EXPECT_TRUE(host.endedWith({"hit 30", "result 1", "date 0 20040329"}));
  EXPECT_EQ(host.count("hit 3"), host.count("hit 30"));
}

TEST(Template, OkFollowsTheFields) {
  TemplateHost host;
  host.comesUp();
  press("Return");  // the name is mandatory and empty
  click(kOkButton);
  EXPECT_EQ(activeWindow(), kTitle);
  EXPECT_EQ(host.count("result"), 0);
  click(kCancelButton);
  EXPECT_TRUE(host.endedWith({"result 0", "in use 0"}));
}

TEST(Template, LooksAsDrawn) {
  TemplateHost host;
  host.comesUp();
  const Content content = activeContent();
  EXPECT_EQ(content.width, kWidth);
  EXPECT_EQ(content.height, kHeight);
  // The heading is large, bold and right-aligned.
  const Picture left = picture(210, 10, 90, 40), right = picture(310, 10, 90, 40);
  EXPECT_EQ(left.darkPixels(), 0);
  EXPECT_GT(right.darkPixels(), 200);
  press("Escape");
  EXPECT_TRUE(host.endedWith({"result 0"}));
}

TEST(Template, AtScale2EverythingIsTwiceAsLarge) {
  TemplateHost host("plain", {"QT_SCALE_FACTOR=2", "LC_ALL=C.UTF-8"});
  host.comesUp();
  const Content content = activeContent();
  EXPECT_EQ(content.width, 2 * kWidth);
  EXPECT_EQ(content.height, 2 * kHeight);
  write("double");
  click({2 * kBox.x, 2 * kBox.y});
  click({2 * kOkButton.x, 2 * kOkButton.y});
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 double", "bool 0 1"}));
}

TEST(Template, ARefusalInAMessageBoxKeepsItOpen) {
  TemplateHost host("refuse");
  host.comesUp();
  write("non");
  press("Return");
  ASSERT_TRUE(waitForWindow("Refus"));
  press("Return");
  ASSERT_TRUE(waitForWindow(kTitle));
  EXPECT_EQ(host.count("result"), 0);
  click(kName, 3);
  press("ctrl+a");
  write("oui");
  click(kOkButton);
  EXPECT_TRUE(host.endedWith({"final 0", "final 1", "result 1", "text 0 oui"}));
}

TEST(Template, AnActionShowsAMessageButNoFurtherDialog) {
  TemplateHost host("nested");
  host.comesUp();
  write("a");
  click(kAction);
  ASSERT_TRUE(waitForWindow("Note"));
  press("Return");
  ASSERT_TRUE(waitForWindow(kTitle));
  EXPECT_TRUE(host.says("action 1"));
  EXPECT_EQ(host.count("nested 0 0"), 1);
  click(kName, 3);
  press("End");
  write("b");
  press("Return");
  EXPECT_TRUE(host.endedWith({"hit 50", "result 1", "text 0 ab"}));
}

TEST(Template, TheCurrentPortIsThatOfItsWindowAndGoesWithIt) {
  TemplateHost host;
  host.comesUp();
  click(kAction);
  EXPECT_TRUE(host.says("port 1"));
  press("Escape");
  EXPECT_TRUE(host.endedWith({"port 0", "end 1"}));
  EXPECT_EQ(host.count("port"), 2);
}

TEST(Template, CallbacksChangeOtherFieldsMeanwhile) {
  TemplateHost host("changes");
  host.comesUp();
  write("x");
  press("Tab ctrl+a");
  write("2");
  EXPECT_TRUE(host.says("hit 20"));
  press("shift+Tab End");
  write("!");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 P\\xE9niche!", "text 1 No\\xEBl", "num 0 2.00"}));
}

TEST(Template, AFieldMadeUnacceptableByACallbackStopsOk) {
  TemplateHost host("changes");
  host.comesUp();
  write("x");
  press("Tab ctrl+a");
  write("20");
  EXPECT_TRUE(host.says("hit 20"));
  press("Return");
  EXPECT_EQ(activeWindow(), kTitle);
  press("shift+Tab");
  write("y");
  press("Return");
  EXPECT_TRUE(host.endedWith({"result 1", "text 0 y", "num 0 20.00"}));
}

TEST(Template, ThreeInARow) {
  TemplateHost host("three");
  for (int n = 1; n <= 3; ++n) {
    host.comesUp();
    write(std::string("n").append(std::to_string(n)));
    press(n == 2 ? "Escape" : "Return");
    EXPECT_TRUE(host.says(std::string("end ").append(std::to_string(n))));
  }
  EXPECT_TRUE(host.endedWith({"text 0 n1", "text 0 n2", "text 0 n3"}));
  EXPECT_EQ(host.count("result 1"), 2);
}

TEST(Template, AMissingOneShowsNothingAndResetsNothing) {
  TemplateHost host("missing");
  EXPECT_TRUE(host.endedWith({"result 0", "in use 1"}));
  ASSERT_EQ(host.errors().size(), 1u);
  EXPECT_NE(host.errors()[0].find("there is no template absent"), std::string::npos);
}

TEST(Template, WithoutADisplayItAnswersAsIfCancelled) {
  TemplateHost host("plain", {"DISPLAY", "WAYLAND_DISPLAY"});
  EXPECT_TRUE(host.endedWith({"result 0", "in use 0"}));
  EXPECT_EQ(host.errors().size(), 1u);
}

}  // namespace
}  // namespace korvel::test
