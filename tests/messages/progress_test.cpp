// SPDX-License-Identifier: MIT
// The window of a long work on a scripted desktop, by a clock that the tests set.
#include "messages/progress.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvel/messages.h>

#include "tests/platform/scripted_desktop.h"

namespace korvel::test {
namespace {

constexpr int kCancelButton = 1;
constexpr char kTitle[] = "Importation";

constinit long long now = 0;

class Progress : public testing::Test {
 protected:
  Progress() { now = 1000; }
  // The end of the work, whatever a test leaves of it.
  void TearDown() override {
    KorvelProgress("", 1, 1);
    desk_.finish();
  }

  // A call so many milliseconds after the one before.
  static bool feed(long long later, int done, int total, const char *title = kTitle) {
    now += later;
    return messages::isCancelledIn(title, done, total, [] { return now; });
  }
  // The first call, and the one that brings the window up.
  static void bringUp() {
    EXPECT_FALSE(feed(0, 0, 100));
    EXPECT_FALSE(feed(500, 1, 100));
  }
  // A person who looks on so many times.
  DialogScript &lookOn(int times, const char *title = kTitle) {
    DialogScript &script = desk_.expectDialog(title);
    for (int n = 0; n < times; ++n) script.check([] {});
    return script;
  }

  ScriptedDesktop desk_;
};

TEST_F(Progress, QuickWorkShowsNothing) {
  EXPECT_FALSE(feed(0, 0, 3));
  EXPECT_FALSE(feed(200, 1, 3));
  EXPECT_FALSE(feed(299, 2, 3));
  EXPECT_FALSE(feed(10'000, 3, 3));
  EXPECT_EQ(desk_.dialogsShown(), 0);
}

TEST_F(Progress, AWindowComesUpHalfASecondAfterTheFirstCall) {
  lookOn(1);
  feed(0, 0, 100);
  feed(499, 1, 100);
  EXPECT_EQ(desk_.dialogsShown(), 0);
  EXPECT_FALSE(feed(1, 37, 100));
  EXPECT_EQ(desk_.layout(),
            "dialog (460,471)-(820,553) in front of everything \"Importation\"\n"
            "1 push button (260,50)-(340,70) \"Annuler\"\n"
            "progress bar (20,18)-(340,36)\n");
  EXPECT_EQ(desk_.progress(), "37 of 100");
}

TEST_F(Progress, IsCentredOnTheWindowInFront) {
  desk_.setFrontWindow(desk_.addWindow({100, 100, 500, 300}));
  lookOn(1);
  bringUp();
  EXPECT_TRUE(desk_.layout().starts_with("dialog (120,159)-(480,241) in front of a window"));
}

TEST_F(Progress, TheNextLookIs50MillisecondsAfterTheLastOne) {
  lookOn(2);
  bringUp();
  feed(49, 40, 100);
  EXPECT_EQ(desk_.progress(), "1 of 100");
  feed(1, 41, 100);
  EXPECT_EQ(desk_.progress(), "41 of 100");
  feed(49, 42, 100);
  EXPECT_EQ(desk_.progress(), "41 of 100");
}

// However long the application's windows take to paint themselves, the work has its turn.
TEST_F(Progress, TheTimeOfALookDoesNotCount) {
  desk_.expectDialog(kTitle).check([] { now += 300; }).check([] {});
  bringUp();
  feed(49, 2, 100);
  EXPECT_EQ(desk_.progress(), "1 of 100");
  feed(1, 3, 100);
  EXPECT_EQ(desk_.progress(), "3 of 100");
}

TEST_F(Progress, WorkThatIsDoneClosesTheWindow) {
  lookOn(1);
  bringUp();
  EXPECT_TRUE(desk_.isDialogOpen());
  EXPECT_FALSE(feed(0, 100, 100));
  EXPECT_FALSE(desk_.isDialogOpen());
}

TEST_F(Progress, MoreThanAllIsTheEndToo) {
  lookOn(1);
  bringUp();
  EXPECT_FALSE(feed(0, 101, 100));
  EXPECT_FALSE(desk_.isDialogOpen());
}

TEST_F(Progress, EachWayToCancelItClosesTheWindowAtOnce) {
  const std::function<void(DialogScript &)> kWays[] = {
      [](DialogScript &script) { script.press(kCancelButton); },
      [](DialogScript &script) { script.pressEscape(); },
      [](DialogScript &script) { script.closeBox(); },
  };
  for (const auto &way : kWays) {
    way(lookOn(1));
    bringUp();
    EXPECT_TRUE(feed(50, 2, 100));
    EXPECT_FALSE(desk_.isDialogOpen());
    feed(0, 100, 100);
  }
}

TEST_F(Progress, ReturnDoesNotCancel) {
  desk_.expectDialog(kTitle).pressReturn();
  bringUp();
  EXPECT_TRUE(desk_.isDialogOpen());
  EXPECT_EQ(desk_.hits(), 0);
}

TEST_F(Progress, ACancelledWorkStaysSoToItsEnd) {
  lookOn(0).pressEscape();
  feed(0, 0, 100);
  EXPECT_TRUE(feed(500, 1, 100));
  EXPECT_TRUE(feed(0, 1, 100));
  EXPECT_TRUE(feed(1000, 50, 100, "Remise en ordre"));
  EXPECT_TRUE(feed(1000, 100, 100));
  EXPECT_EQ(desk_.dialogsShown(), 1);
  EXPECT_FALSE(feed(0, 100, 100));
}

TEST_F(Progress, AfterItsEndAnotherWorkHasAWindowOfItsOwn) {
  lookOn(0).pressEscape();
  lookOn(1, "Recherche");
  feed(0, 0, 100);
  EXPECT_TRUE(feed(500, 1, 100));
  EXPECT_TRUE(feed(0, 100, 100));
  EXPECT_FALSE(feed(0, 1, 10, "Recherche"));
  EXPECT_FALSE(feed(499, 2, 10, "Recherche"));
  EXPECT_FALSE(feed(1, 3, 10, "Recherche"));
  EXPECT_EQ(desk_.title(), "Recherche");
}

TEST_F(Progress, LessThanBeforeIsAnotherWork) {
  lookOn(1);
  bringUp();
  EXPECT_FALSE(feed(100, 0, 100));
  EXPECT_FALSE(desk_.isDialogOpen());
  EXPECT_FALSE(feed(499, 1, 100));
  EXPECT_FALSE(desk_.isDialogOpen());
}

TEST_F(Progress, ACancelledWorkThatWasLeftIsForgottenWithTheNextOne) {
  for (const int total : {100, 0}) {
    lookOn(0).pressEscape();
    feed(0, 5, 100);
    EXPECT_TRUE(feed(500, 6, 100));
    EXPECT_FALSE(feed(0, 0, total)) << total;
    KorvelProgress("", 1, 1);
  }
  lookOn(0).pressEscape();
  feed(0, 50, 100);
  EXPECT_TRUE(feed(500, 60, 100));
  EXPECT_FALSE(feed(0, 3, 3)) << "a work of one call";
}

TEST_F(Progress, AWorkWithoutATotalEndsWithOne) {
  lookOn(2);
  feed(0, 0, 0);
  EXPECT_FALSE(feed(500, 7, 0));
  EXPECT_EQ(desk_.progress(), "7 of 0");
  EXPECT_FALSE(feed(50, 2'000'000'000, -1));
  EXPECT_EQ(desk_.progress(), "2000000000 of -1");
  EXPECT_FALSE(feed(50, 2'000'000'000, 1));
  EXPECT_FALSE(desk_.isDialogOpen());
}

TEST_F(Progress, TheTitleMayChange) {
  lookOn(3);
  bringUp();
  feed(50, 2, 100,
       "\xC9"
       "criture");
  EXPECT_EQ(desk_.title(), "Écriture");
  feed(50, 3, 100, "");
  EXPECT_EQ(desk_.title(), "Veuillez patienter");
}

TEST_F(Progress, WithoutATitleItAsksForPatience) {
  lookOn(1, "Veuillez patienter");
  feed(0, 0, 100, "");
  feed(500, 1, 100, "");
  EXPECT_FALSE(KorvelProgress(nullptr, 2, 100));
  EXPECT_FALSE(KorvelProgress(nullptr, 100, 100));
}

TEST_F(Progress, ALongTitleIsCut) {
  const std::string shown(255, 'x');
  lookOn(1, shown.c_str());
  feed(0, 0, 100, (shown + "yyy").c_str());
  feed(500, 1, 100, (shown + "yyy").c_str());
}

// What the application does while its windows paint themselves.
TEST_F(Progress, ACallOutOfALookOnlyAnswers) {
  desk_.expectDialog(kTitle)
      .check([] {
        EXPECT_FALSE(feed(1000, 100, 100));
        EXPECT_FALSE(feed(0, 0, 100));
      })
      .pressEscape();
  bringUp();
  EXPECT_TRUE(desk_.isDialogOpen());
  EXPECT_TRUE(feed(50, 2, 100));
}

TEST_F(Progress, WithoutAScreenItAnswersNoAndSaysWhyOnce) {
  desk_.takeScreenAway("no screen here");
  testing::internal::CaptureStderr();
  feed(0, 0, 100);
  EXPECT_FALSE(feed(500, 1, 100));
  EXPECT_FALSE(feed(5000, 2, 100));
  EXPECT_FALSE(feed(0, 100, 100));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "korvel: no screen here\n");
}

TEST_F(Progress, QuickWorkAsksForNoScreen) {
  desk_.takeScreenAway("no screen here");
  testing::internal::CaptureStderr();
  for (int done = 0; done <= 100; ++done) EXPECT_EQ(KorvelProgress(kTitle, done, 100), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace korvel::test
