// SPDX-License-Identifier: MIT
// Documents opened by a recording opener in place of the desktop's.
#include <cerrno>
#include <chrono>
#include <signal.h>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"

namespace korvel::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::seconds;

// Whether a condition becomes true in time.
template <typename Condition>
bool soon(Condition condition) {
  for (const auto end = Clock::now() + seconds(20); Clock::now() < end; usleep(10000)) {
    if (condition()) return true;
  }
  return false;
}

TEST(Open, HandsThePathToTheDesktopsOpener) {
  const FakeTools tools;
  tools.add("xdg-open", "exit 4");
  EXPECT_EQ(BSDopen("/a folder/it's a \xE9 file.pdf"), 4 << 8);
  EXPECT_EQ(tools.calls(), "xdg-open[/a folder/it's a \xE9 file.pdf]\n");
  EXPECT_EQ(BSDopen(nullptr), -1);
}

// The viewer may write what it wants.
TEST(Open, LetsTheOpenerWrite) {
  const FakeTools tools;
  tools.add("xdg-open", "head -c 300000 /dev/zero && echo written >> \"$log/calls\"");
  EXPECT_EQ(BSDopen("x"), 0);
  EXPECT_TRUE(soon([&tools] { return tools.calls() == "xdg-open[x]\nwritten\n"; }));
}

TEST(Open, GivesTheStatusThatTheOpenerEndsWith) {
  const FakeTools tools;
  for (const int status : {0, 1, 3, 255}) {
    tools.add("xdg-open", "exit " + std::to_string(status));
    EXPECT_EQ(BSDopen("x"), status << 8);
  }
  // The status of a tool that is not there.
  const Variable nowhere("PATH", "/nowhere");
  EXPECT_EQ(BSDopen("x"), 127 << 8);
}

TEST(Open, DoesNotWaitForTheViewer) {
  const FakeTools tools;
  tools.add("xdg-open", "echo $$ > \"$log/viewer\"; exec sleep 60");
  const auto before = Clock::now();
  EXPECT_EQ(BSDopen("x"), 0);
  EXPECT_LT(Clock::now() - before, seconds(10));
  // It goes on, and is no child of the application.
  ASSERT_TRUE(soon([&] { return tools.written("viewer").ends_with('\n'); }));
  const pid_t viewer = std::stoi(tools.written("viewer"));
  EXPECT_EQ(kill(viewer, 0), 0);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  EXPECT_EQ(kill(viewer, SIGTERM), 0);
  EXPECT_TRUE(soon([viewer] { return kill(viewer, 0) == -1; }));
}

// Neither the viewer's output nor its end disturbs anybody.
TEST(Open, TheViewerMayWriteAndEndLater) {
  const FakeTools tools;
  tools.add("xdg-open", "sleep 1.5; head -c 300000 /dev/zero && echo ended >> \"$log/calls\"");
  EXPECT_EQ(BSDopen("x"), 0);
  EXPECT_TRUE(soon([&tools] { return tools.calls() == "xdg-open[x]\nended\n"; }));
}

// The shell reads what is between the double quotes.
TEST(Open, APathIsReadAsBetweenDoubleQuotes) {
  const Workspace workspace;
  const Variable variable("KORVEL_SHELL_TEST", "a value");
  const FakeTools tools;
  tools.add("xdg-open");
  BSDopen("it's '$KORVEL_SHELL_TEST' \\\\ '\\''");
  EXPECT_TRUE(soon([&tools] { return tools.calls() == "xdg-open[it's 'a value' \\ '\\'']\n"; }));
  EXPECT_EQ(BSDopen(("x\"; touch \"" + workspace.path("made")).c_str()), 0);
  EXPECT_TRUE(soon([&workspace] { return isThere(workspace.path("made")); }));
  EXPECT_NE(BSDopen("one \" more 2>/dev/null"), 0);
}

TEST(Open, GivesTheStatusToWhoIgnoresHisChildren) {
  const FakeTools tools;
  tools.add("xdg-open", "exit 6");
  void (*const before)(int) = signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(BSDopen("x"), 6 << 8);
  signal(SIGCHLD, before);
}

}  // namespace
}  // namespace korvel::test
