// SPDX-License-Identifier: MIT
// The X server or the compositor goes away. Each of these tests has one to itself. (Between two
// dialogs, too, the toolkit ends the process when a compositor goes away.)
#include <cstdlib>
#include <fstream>
#include <set>
#include <signal.h>

#include <sys/stat.h>

#include "tests/desktop/dialog_host.h"
#include "tests/desktop/screen.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {
namespace {

using Lines = std::vector<std::string>;

// Waits until it is gone.
void killServer(int signal) {
  const std::string server = std::getenv("SCREEN_SERVER");
  ASSERT_EQ(kill(std::stoi(server), signal), 0);
  ASSERT_TRUE(
      run("timeout 10 sh -c 'while kill -0 " + server + " 2>/dev/null; do sleep .02; done'"));
}

TEST(Lost, BetweenDialogsTheLaterOnesAnswerAsWithoutAScreen) {
  const TemporaryFolder folder;
  const std::string pipe = folder.path() + "/later";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  Application host({MESSAGE_HOST, "later", pipe});
  ASSERT_TRUE(waitForWindow("Un")) << activeWindow();
  press("Return");
  ASSERT_TRUE(host.says("result 1"));
  killServer(SIGKILL);
  std::ofstream(pipe).close();
  EXPECT_EQ(host.wait(), 0);
  EXPECT_EQ(host.output(), (Lines{"result 1", "result 3", "result 3"}));
  ASSERT_EQ(host.errors().size(), 2U) << "a line for each";
  for (const std::string &line : host.errors())
    EXPECT_NE(line.find("has gone away"), line.npos) << line;
}

// The toolkit does not live on.
void endsUnderADialog(int signal) {
  DialogHost host;
  killServer(signal);
  EXPECT_EQ(host.wait(), 1);
  EXPECT_EQ(host.output(), Lines{});
  // Under Wayland two threads of the toolkit may each say it.
  const Lines errors = host.errors();
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(std::set(errors.begin(), errors.end()).size(), 1U) << errors.back();
}

TEST(Lost, UnderADialogTheProcessEndsWithALine) { endsUnderADialog(SIGKILL); }

TEST(Lost, UnderADialogAServerThatEndsIsNoOtherThanAKilledOne) { endsUnderADialog(SIGTERM); }

}  // namespace
}  // namespace korvel::test
