#include <gtest/gtest.h>
#include <korvel/shell.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/shell/workspace.h"

namespace korvel::test {
namespace {

// A process that sleeps, under a name of its own, until it is killed.
class Sleeper {
 public:
  explicit Sleeper(const std::string &program) : pid_(fork()) {
    if (pid_ == 0) {
      execl(program.c_str(), "sleeps", "20", static_cast<char *>(nullptr));
      _exit(127);
    }
  }
  ~Sleeper() {
    if (pid_ > 0) kill(pid_, SIGKILL);
    if (pid_ > 0) waitpid(pid_, nullptr, 0);
  }
  Sleeper(const Sleeper &) = delete;
  Sleeper &operator=(const Sleeper &) = delete;

  pid_t pid() const { return pid_; }
  bool running() const { return waitpid(pid_, nullptr, WNOHANG) == 0; }
  // The signal that ended it; waits for the end.
  int endedBy() {
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }

 private:
  pid_t pid_;
};

std::string processLine(pid_t pid, const std::string &name) {
  return "  " + std::to_string(pid) + " ?        Ss     0:00 " + name;
}

// A copy of the sleep tool under another name, which is then the name of its processes.
std::string sleepAs(const Workspace &workspace, const std::string &name) {
  std::filesystem::copy_file("/bin/sleep", workspace.path(name));
  return workspace.path(name);
}

TEST(TestProcess, FindsARunningProcess) {
  const ResultGlobals saved;
  const Workspace workspace;
  const Sleeper sleeper(sleepAs(workspace, "korvel-sleep-1"));
  // The new process bears its name only once it has started the program.
  for (int i = 0; i < 200 && BSDtestProcess("korvel-sleep-1") == 0; ++i) usleep(10000);
  EXPECT_EQ(BSDtestProcess("korvel-sleep-1"), 1);
  EXPECT_EQ(BSDtest, 1);
}

// The search's own grep and shell have the name in their arguments.
TEST(TestProcess, DoesNotFindItself) {
  const ResultGlobals saved;
  BSDtest = 1;
  EXPECT_EQ(BSDtestProcess("korvel-no-such"), 0);
  EXPECT_EQ(BSDtest, 0);
}

TEST(TestProcess, GivesZeroWhenNoLineComesBack) {
  const ResultGlobals saved;
  const FakeTools tools;
  tools.add("ps");
  BSDtest = 1;
  EXPECT_EQ(BSDtestProcess("anything"), 0);
  EXPECT_EQ(tools.calls(), "ps[-x][-c]\n");
}

TEST(TestProcess, GivesZeroForNoNameAndNoTool) {
  const ResultGlobals saved;
  BSDtest = 1;
  EXPECT_EQ(BSDtestProcess(nullptr), 0);
  EXPECT_EQ(BSDtest, 0);
  const SystemVersion system(0x0922);
  BSDtest = 1;
  EXPECT_EQ(BSDtestProcess("sh"), 0);
}

TEST(TestProcess, DoesNotQuoteTheName) {
  const ResultGlobals saved;
  const FakeTools tools;
  tools.add("ps", "echo 'ALPHA beta'");
  EXPECT_EQ(BSDtestProcess("alpha"), 0);
  EXPECT_EQ(BSDtestProcess("-i alpha"), 1);
  EXPECT_EQ(BSDtestProcess("A.*a"), 1);
}

TEST(ProcessT, SetsTheFlag) {
  const ResultGlobals saved;
  BSDtest = 0;
  char line[] = "anything";
  EXPECT_EQ(BSDprocesst(line), 0);
  EXPECT_EQ(BSDtest, 1);
}

TEST(Kill, EndsTheProcessesOfThatName) {
  const ResultGlobals saved;
  const Workspace workspace;
  const std::string program = sleepAs(workspace, "korvel-sleep-2");
  Sleeper first(program), second(program);
  for (int i = 0; i < 200 && popenOf("ps -x -c | grep -c korvel-sleep-2").text != "2\n"; ++i) {
    usleep(10000);
  }
  EXPECT_EQ(BSDkill("korvel-sleep-2"), 0);
  EXPECT_EQ(first.endedBy(), SIGTERM);
  EXPECT_EQ(second.endedBy(), SIGTERM);
}

TEST(Kill, LeavesOtherProcessesAlone) {
  Sleeper wanted("/bin/sleep"), other("/bin/sleep");
  const FakeTools tools;
  tools.add("ps", "echo '" + processLine(wanted.pid(), "zorglub") + "'; echo '" +
                      processLine(other.pid(), "champignac") + "'");
  EXPECT_EQ(BSDkill("zorglub"), 0);
  EXPECT_EQ(wanted.endedBy(), SIGTERM);
  EXPECT_TRUE(other.running());
  EXPECT_EQ(tools.calls(), "ps[-x][-c]\n");
}

TEST(Kill, GivesTheCloseStatusOfTheListing) {
  const FakeTools tools;
  tools.add("ps");
  EXPECT_EQ(BSDkill("nobody"), popenOf("ps -x -c | grep nobody").status);
  EXPECT_EQ(BSDkill(nullptr), -1);
  const SystemVersion system(0x0922);
  EXPECT_EQ(BSDkill("nobody"), -1);
}

// Kept: the whole line goes to "kill", not only the process number it begins with.
TEST(ProcessF, HandsTheWholeLineToKill) {
  const Workspace workspace;
  const std::string file = workspace.path("signals");
  std::string line = " -l 15 > '" + file + "'";
  EXPECT_EQ(BSDprocessf(line.data()), 0);
  EXPECT_EQ(contentOf(file), "TERM\n");
  Sleeper first("/bin/sleep"), second("/bin/sleep");
  line = std::to_string(first.pid()) + "  " + std::to_string(second.pid()) + " name";
  EXPECT_EQ(BSDprocessf(line.data()), 0);
  EXPECT_EQ(first.endedBy(), SIGTERM);
  EXPECT_EQ(second.endedBy(), SIGTERM);
}

TEST(ProcessF, GoesOnWhateverKillSays) {
  char line[] = "no process at all";
  EXPECT_EQ(BSDprocessf(line), 0);
  EXPECT_EQ(BSDprocessf(nullptr), 0);
}

}  // namespace
}  // namespace korvel::test
