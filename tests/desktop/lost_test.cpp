// SPDX-License-Identifier: MIT
// The X server or the compositor goes away. Each of these tests has one to itself. Under X11 what
// was up ends as cancelled, and the application goes on; under Wayland the toolkit ends the
// process.
#include <cstdlib>
#include <fstream>
#include <signal.h>

#include <sys/stat.h>

#include "tests/desktop/dialog_host.h"
#include "tests/desktop/screen.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {
namespace {

using Lines = std::vector<std::string>;

const std::string kGone = "korvel: no screen: the X server has gone away";

bool isOnWayland() { return std::getenv("WAYLAND_DISPLAY") != nullptr; }

// Waits until it is gone.
void killServer(int signal = SIGKILL) {
  const std::string server = std::getenv("SCREEN_SERVER");
  ASSERT_EQ(kill(std::stoi(server), signal), 0);
  ASSERT_TRUE(
      run("timeout 60 sh -c 'while kill -0 " + server + " 2>/dev/null; do sleep .02; done'"));
}

// With one line of the toolkit's, and no signal.
void expectEndWithTheToolkit(Application &host, int results = 0) {
  EXPECT_EQ(host.wait(), 1);
  EXPECT_EQ(host.count("result"), results);
  ASSERT_EQ(host.errors().size(), 1U) << "lines";
  EXPECT_NE(host.errors()[0].find("connection broke"), std::string::npos) << host.errors()[0];
}

// `lines`: of an application that goes on.
void expectEnd(Application &host, const Lines &lines) {
  if (isOnWayland()) return expectEndWithTheToolkit(host);
  EXPECT_EQ(host.wait(), 0);
  EXPECT_EQ(host.output(), lines);
  EXPECT_EQ(host.errors(), Lines{kGone});
}

class MessageHost : public Application {
 public:
  MessageHost(std::vector<std::string> arguments, const std::string &title)
      : Application((arguments.insert(arguments.begin(), MESSAGE_HOST), arguments)) {
    EXPECT_TRUE(waitForWindow(title)) << activeWindow();
  }
};

TEST(Lost, BetweenDialogsTheLaterOnesAnswerAsWithoutAScreen) {
  const TemporaryFolder folder;
  const std::string pipe = folder.path() + "/later";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  MessageHost host({"later", pipe}, "Un");
  press("Return");
  ASSERT_TRUE(host.says("result 1"));
  killServer();
  if (isOnWayland()) return expectEndWithTheToolkit(host, 1);
  std::ofstream(pipe).close();
  EXPECT_EQ(host.wait(), 0);
  EXPECT_EQ(host.output(), (Lines{"result 1", "result 3", "result 3"}));
  EXPECT_EQ(host.errors(), (Lines{kGone, kGone})) << "a line for each";
}

// What was typed stays, as it does when the dialog is cancelled.
const Lines kCancelled{"hit 100",    "hit 100",           "result 0", "size 400 350", "text 0 ab",
                       "text 1 ",    "text 2 Ma\\xEEtre", "text 3 ",  "int 0 12",     "int 1 1234",
                       "num 0 1.50", "date 0 20000229",   "bool 0 0"};

void endsUnderADialog(int signal) {
  DialogHost host;
  write("ab");
  ASSERT_TRUE(waitUntil(kPatience, [&] { return host.count("hit 100") == 2; }));
  killServer(signal);
  expectEnd(host, kCancelled);
}

TEST(Lost, UnderADialogItEndsAsCancelled) { endsUnderADialog(SIGKILL); }

TEST(Lost, AServerThatEndsIsNoOtherThanAKilledOne) { endsUnderADialog(SIGTERM); }

TEST(Lost, UnderAMessageTheDialogBehindItEndsToo) {
  MessageHost host({"dialog"}, "Fiche");
  write("!");
  ASSERT_TRUE(waitForWindow("Saisie")) << activeWindow();
  killServer();
  expectEnd(host, {"edited 3", "result 0 text !"});
}

TEST(Lost, UnderAnOpenPopUpItsDialogEnds) {
  DialogHost host;
  click(kPopUp);
  killServer();
  EXPECT_TRUE(host.endedWith({"result 0", "text 2 Ma\\xEEtre"}));
  EXPECT_EQ(host.errors(), Lines{kGone});
}

std::string windows() { return outputOf("xwininfo -root -children"); }

void moveABit() {
  ASSERT_TRUE(run("xdotool mousemove_relative 9 9"));
  settle();
}

// While a text is dragged the toolkit runs a loop of its own, and shows what is dragged in a window
// that follows the mouse.
TEST(Lost, UnderADragItsDialogEnds) {
  DialogHost host("lines");
  write("abcdefgh");
  press("ctrl+a");
  const Content content = activeContent();
  ASSERT_TRUE(run("xdotool mousemove " + std::to_string(content.corner.x + 240) + " " +
                  std::to_string(content.corner.y + 120) + " mousedown 1"));
  settle();
  const std::string before = windows();
  for (int n = 0; n < 2; ++n) moveABit();
  const std::string dragged = windows();
  ASSERT_NE(dragged, before) << "nothing is dragged";
  moveABit();
  ASSERT_NE(windows(), dragged) << "nothing follows the mouse";
  killServer();
  EXPECT_TRUE(host.endedWith({"result 0", "text 0 abcdefgh"}));
  EXPECT_EQ(host.errors(), Lines{kGone});
}

// Nobody can cancel it any more.
TEST(Lost, UnderALongWorkTheWorkGoesOn) {
  Application host({MESSAGE_HOST, "work", "Importation", "2000"});
  ASSERT_TRUE(waitForWindowAtWork("Importation")) << activeWindow();
  killServer();
  expectEnd(host, {"done 2000"});
}

TEST(Lost, AConnectionOfTheApplicationsOwnIsItsOwnMatter) {
  MessageHost host({"apart"}, "Un");
  press("Return");
  EXPECT_EQ(host.wait(), 0);
  EXPECT_EQ(host.output(), (Lines{"result 1", "lost 1"}));
}

// The toolkit's own loop of an application is the application's matter.
TEST(Lost, UnderADialogOfAToolkitsApplicationTheDialogIsCancelledFirst) {
  Application host({WINDOW_HOST});
  ASSERT_TRUE(waitForWindow("Derrière")) << activeWindow();
  press("Return");
  ASSERT_TRUE(waitForWindow("Devant")) << activeWindow();
  killServer();
  EXPECT_EQ(host.wait(), 1);
  EXPECT_EQ(host.output(), Lines{"result 0 text "});
  ASSERT_EQ(host.errors().size(), 2U);
  EXPECT_EQ(host.errors()[0], kGone);
}

TEST(Lost, UnderALoopOfTheApplicationInADialogTheProcessEnds) {
  Application host({WINDOW_HOST});
  ASSERT_TRUE(waitForWindow("Derrière")) << activeWindow();
  press("Return");
  ASSERT_TRUE(waitForWindow("Devant")) << activeWindow();
  write("!");
  ASSERT_TRUE(host.says("looping !"));
  killServer();
  expectEndWithTheToolkit(host);
}

}  // namespace
}  // namespace korvel::test
