// SPDX-License-Identifier: MIT
// Processes found by name and killed: real ones, under names of any length.
#include <filesystem>
#include <signal.h>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

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
  // Waits for the end. Returns the signal that caused it.
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

// Before main() runs, and with it any test.
const int foundAtLoad = BSDtest;

TEST(ProcessesAtLoad, NoneIsFoundYet) { EXPECT_EQ(foundAtLoad, 0); }

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

// A name of `size` bytes that no other program of the machine has.
std::string longName(std::size_t size) {
  std::string name("k");
  name.append(std::to_string(getpid())).append(1, '-');
  while (name.size() < size) name += static_cast<char>('a' + name.size() % 26);
  return name;
}

bool found(const std::string &name) { return BSDtestProcess(name.c_str()) == 1; }

// The new process bears its name only once it has started the program.
bool soonFound(const std::string &name) {
  for (int i = 0; i < 200 && !found(name); ++i) usleep(10000);
  return found(name);
}

TEST(TestProcess, FindsNamesOfAnyLength) {
  const ResultGlobals saved;
  for (const std::size_t size : {14u, 15u, 16u, 17u, 40u, 255u}) {
    const Workspace workspace;
    const std::string name = longName(size);
    const Sleeper sleeper(sleepAs(workspace, name));
    EXPECT_TRUE(soonFound(name)) << size;
    EXPECT_TRUE(found(name + "$")) << size;
    EXPECT_TRUE(found(name.substr(0, 12))) << size;
    EXPECT_FALSE(found(name + "x")) << size;
  }
}

TEST(TestProcess, TellsLongNamesThatBeginAlikeApart) {
  const ResultGlobals saved;
  const Workspace workspace;
  const std::string name = longName(20);
  const Sleeper sleeper(sleepAs(workspace, name + "-one"));
  EXPECT_TRUE(soonFound(name + "-one"));
  EXPECT_FALSE(found(name + "-two"));
}

// The process of a script runs the interpreter but has the script's name.
TEST(TestProcess, FindsAScriptByItsLongName) {
  const ResultGlobals saved;
  const Workspace workspace;
  const std::string name = longName(30) + ".sh";
  const std::string script = workspace.makeFile(name, "#!/bin/sh\nwhile :; do sleep 0.2; done\n");
  std::filesystem::permissions(script, std::filesystem::perms::owner_all);
  const Sleeper sleeper(script);
  EXPECT_TRUE(soonFound(name));
}

TEST(TestProcess, FindsAProgramThatWasReplacedSince) {
  const ResultGlobals saved;
  const Workspace workspace;
  const std::string name = longName(24);
  const Sleeper sleeper(sleepAs(workspace, name));
  EXPECT_TRUE(soonFound(name));
  std::filesystem::remove(workspace.path(name));
  EXPECT_TRUE(found(name + "$"));
}

TEST(TestProcess, FindsLongNamesWith8BitLetters) {
  const ResultGlobals saved;
  const Variable locale("LC_ALL", "C.UTF-8");
  const Workspace workspace;
  // The 15th byte is the letter's first, its second, and one before it.
  for (const std::size_t before : {14u, 13u, 17u}) {
    const std::string name = longName(before) + "\xC3\xA9-" + longName(8);
    const Sleeper sleeper(sleepAs(workspace, name));
    EXPECT_TRUE(soonFound(name)) << before;
    EXPECT_FALSE(found(name + "x")) << before;
    // In a plain locale the letter is two bytes.
    const Variable plain("LC_ALL", "C");
    EXPECT_TRUE(found(name + "$")) << before;
  }
}

// A line goes to "kill" as it is: a name is completed only by bytes that stay part of its last
// word, never by those that "kill" or the shell would read otherwise.
TEST(TestProcess, ANameIsNotMadeWholeByFurtherWords) {
  const ResultGlobals saved;
  const Workspace workspace;
  const std::string name = longName(14);
  for (const char *rest : {"-x 4194305", " 4194305", "-x;touch", "-x$(id)", "-x\n4194305"}) {
    const Sleeper sleeper(sleepAs(workspace, name + rest));
    EXPECT_TRUE(soonFound(name)) << rest;
    EXPECT_FALSE(found("'4194305\\|touch\\|(id'")) << rest;
  }
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

TEST(Kill, EndsAProcessByItsLongNameAndNoOther) {
  const ResultGlobals saved;
  const Workspace workspace;
  const std::string name = longName(20);
  Sleeper wanted(sleepAs(workspace, name + "-one"));
  const Sleeper other(sleepAs(workspace, name + "-two"));
  ASSERT_TRUE(soonFound(name + "-one"));
  ASSERT_TRUE(soonFound(name + "-two"));
  EXPECT_EQ(BSDkill((name + "-one").c_str()), 0);
  EXPECT_EQ(wanted.endedBy(), SIGTERM);
  EXPECT_TRUE(other.running());
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
