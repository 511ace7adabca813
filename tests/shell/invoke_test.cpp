// SPDX-License-Identifier: MIT
// Commands run, read and fed: output, status, signals and missing streams.
#include <cstdio>
#include <iterator>
#include <random>
#include <signal.h>
#include <string>
#include <vector>

#include <dirent.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

std::vector<std::string> keptLines;
std::size_t mostLines = 0;  // 0: no limit

int keepLine(char *line) {
  keptLines.emplace_back(line);
  return keptLines.size() == mostLines ? 1 : 0;
}

// The first lines of a command's output.
std::vector<std::string> linesOf(const std::string &command, std::size_t stopAfter = 0) {
  keptLines.clear();
  mostLines = stopAfter;
  BSDInvokeToolPr(command.c_str(), keepLine);
  return keptLines;
}

// How many descriptors this process has open.
std::size_t openDescriptors() {
  std::size_t count = 0;
  DIR *folder = opendir("/proc/self/fd");
  while (readdir(folder) != nullptr) ++count;
  closedir(folder);
  return count;
}

using Lines = std::vector<std::string>;

TEST(InvokeTool, ReadsAtMostTheBufferLessItsTerminator) {
  constexpr struct {
    const char *command;
    int size;
    const char *text;
  } kRows[] = {
      {"printf hello", 1, ""},
      {"printf hello", 2, "h"},
      {"printf hello", 5, "hell"},
      {"printf hello", 6, "hello"},
      {"printf hello", 7, "hello"},
      {"printf hello", 60, "hello"},
      {"true", 8, ""},
      {"echo a; echo b", 60, "a\nb\n"},
      {"printf '\\351t\\351'", 60, "\xE9t\xE9"},
  };
  for (const auto &row : kRows) {
    SCOPED_TRACE(testing::Message() << row.command << " into " << row.size);
    PoisonedBuffer out(static_cast<std::size_t>(row.size));
    BSDInvokeTool(row.command, out.data(), row.size);
    EXPECT_EQ(out.text(), row.text);
    EXPECT_TRUE(out.untouchedFrom(out.text().size() + 1));
    EXPECT_TRUE(out.guardsIntact());
  }
}

TEST(InvokeTool, KeepsBytesBehindANul) {
  char out[8];
  BSDInvokeTool("printf 'a\\000b'", out, sizeof out);
  EXPECT_EQ(std::string(out, 4), std::string("a\0b\0", 4));
}

TEST(InvokeTool, WithSizeOneReadsNothingAndEndsTheText) {
  PoisonedBuffer out(1);
  EXPECT_EQ(BSDInvokeTool("exit 4", out.data(), 1), 4 << 8);
  EXPECT_EQ(out.data()[0], '\0');
  EXPECT_TRUE(out.guardsIntact());
}

TEST(InvokeTool, ReadsNothingWithoutABufferOrASize) {
  PoisonedBuffer out(8);
  EXPECT_EQ(BSDInvokeTool("exit 5", nullptr, 8), 5 << 8);
  EXPECT_EQ(BSDInvokeTool("exit 6", out.data(), 0), 6 << 8);
  EXPECT_TRUE(out.untouchedFrom(0));
}

TEST(InvokeTool, RefusesWhatMakesNoSense) {
  PoisonedBuffer out(8);
  EXPECT_EQ(BSDInvokeTool(nullptr, out.data(), 8), -1);
  EXPECT_EQ(BSDInvokeTool("printf x", out.data(), -1), -1);
  EXPECT_EQ(BSDInvokeTool("printf x", out.data(), -2147483647 - 1), -1);
  EXPECT_TRUE(out.untouchedFrom(0));
  EXPECT_EQ(BSDInvokeToolWr(nullptr, "x"), -1);
  EXPECT_EQ(BSDInvokeToolWr("true", nullptr), -1);
  EXPECT_EQ(BSDInvokeToolPr(nullptr, keepLine), -1);
  EXPECT_EQ(BSDInvokeToolPr("true", nullptr), -1);
}

TEST(InvokeTool, GivesTheCloseStatusOfThePipeFunctions) {
  for (const char *command : {"true", "false", "exit 77", "kill -9 $$", "kill $$", "(exit 3)",
                              "no-such-tool-at-all 2>&1", "syntax ( error 2>&1", ""}) {
    char out[256];
    EXPECT_EQ(BSDInvokeTool(command, out, sizeof out), popenOf(command).status) << command;
    EXPECT_EQ(BSDInvokeToolPr(command, keepLine), popenOf(command).status) << command;
    EXPECT_EQ(BSDInvokeToolWr(command, ""), popenOf(command).status) << command;
  }
}

TEST(InvokeTool, LeavesAnEndlessToolOnceTheBytesAreThere) {
  char out[10];
  EXPECT_NE(BSDInvokeTool("yes", out, sizeof out), 0);
  EXPECT_STREQ(out, "y\ny\ny\ny\ny");
  EXPECT_NE(BSDInvokeTool("yes", nullptr, 0), 0);
}

TEST(InvokeTool, GathersShortReads) {
  char out[16];
  EXPECT_EQ(
      BSDInvokeTool("printf ab; sleep 0.05; printf cd; sleep 0.05; printf ef", out, sizeof out), 0);
  EXPECT_STREQ(out, "abcdef");
  // More than a pipe holds at once.
  std::string big(300001, 'x');
  EXPECT_EQ(BSDInvokeTool("head -c 400000 /dev/zero | tr '\\0' a", big.data(), 300001) & 0x7F, 0);
  EXPECT_EQ(big, std::string(300000, 'a') + '\0');
}

TEST(InvokeTool, RunsWithTheCallersEnvironmentAndFolder) {
  const Variable locale("LC_ALL", "C.UTF-8");
  const Variable mark("KORVEL_SHELL_TEST", "here");
  char out[64];
  BSDInvokeTool("printf %s \"$KORVEL_SHELL_TEST $LC_ALL\"", out, sizeof out);
  EXPECT_STREQ(out, "here C.UTF-8");
}

TEST(InvokeTool, TakesCommandsOfAnyLength) {
  std::string command = "printf ok #" + std::string(100000, 'x');
  char out[8];
  EXPECT_EQ(BSDInvokeTool(command.c_str(), out, sizeof out), 0);
  EXPECT_STREQ(out, "ok");
}

// A tool that reads its standard input gets an empty one, not the application's, and waits for
// nobody at a terminal.
TEST(InvokeTool, AToolThatGetsNoInputReadsAnEmptyOne) {
  const StandardInput typed("typed by somebody");
  char out[32] = "";
  EXPECT_EQ(BSDInvokeTool("cat; readlink /proc/self/fd/0", out, sizeof out), 0);
  EXPECT_STREQ(out, "/dev/null\n");
  EXPECT_EQ(linesOf("cat; echo end"), (Lines{"end"}));
  EXPECT_EQ(BSDInvokeTool("read line", nullptr, 0), 1 << 8);
  EXPECT_EQ(BSDInvokeToolWr("test \"$(cat)\" = given", "given"), 0);
  EXPECT_EQ(typed.rest(), "typed by somebody");
}

TEST(InvokeTool, NoToolOfTheLibraryReadsTheApplicationsInput) {
  const ResultGlobals saved;
  const Workspace workspace;
  const std::string file = workspace.makeFile("file"), folder = workspace.makeFolder("folder");
  const FakeTools tools;
  for (const char *name : {"cp", "rm", "xdg-open", "ps", "ls", "chmod"}) {
    tools.addReader(name, "cat \"$log/" + std::string(name) + ".input\" >> \"$log/read\"");
  }
  const StandardInput typed("typed by somebody");
  BSDSCopy(file.c_str(), folder.c_str());
  BSDCopy(file.c_str(), folder.c_str());
  BSDRemove(file.c_str());
  BSDopen(file.c_str());
  BSDtestProcess("nobody");
  BSDkill("nobody");
  BSDIsExisting("-x");
  BSDDir_ProcessFiles(folder.c_str(), "", [](const char *) { return 0; });
  EXPECT_EQ(tools.written("read"), "");
  EXPECT_EQ(typed.rest(), "typed by somebody");
  for (const char *name : {"cp", "rm", "xdg-open", "ps", "ls"}) {
    EXPECT_NE(tools.calls().find(std::string(name) + "["), std::string::npos) << name;
  }
}

// A soft limit of 0 descriptors: no pipe can be opened.
class NoDescriptors {
 public:
  NoDescriptors() {
    getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit none = {0, before_.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
  }
  ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }

 private:
  rlimit before_;
};

TEST(InvokeTool, FailsWhereThePipeCannotBeOpened) {
  PoisonedBuffer out(8);
  int results[3];
  {
    const NoDescriptors limit;
    results[0] = BSDInvokeTool("true", out.data(), 8);
    results[1] = BSDInvokeToolWr("true", "x");
    results[2] = BSDInvokeToolPr("true", keepLine);
  }
  for (int result : results) EXPECT_EQ(result, -1);
  EXPECT_TRUE(out.untouchedFrom(0));
}

TEST(InvokeTool, FailsWhereNoProcessCanBeStarted) {
  const std::string answer = asPlainUser([] {
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_NPROC, &none);
    return std::to_string(BSDInvokeTool("true", nullptr, 0)) +
           std::to_string(BSDInvokeToolWr("true", "x")) +
           std::to_string(BSDInvokeToolPr("true", keepLine)) + std::to_string(BSDopen("/tmp"));
  });
  EXPECT_EQ(answer.substr(answer.find(';')), ";-1-1-1-1");
  EXPECT_NE(answer.substr(0, 6), "uid 0;");
}

TEST(InvokeTool, LeavesNoDescriptorOpen) {
  char out[4];
  const std::size_t before = openDescriptors();
  for (int i = 0; i < 20; ++i) {
    BSDInvokeTool("yes", out, sizeof out);
    BSDInvokeToolWr("true", "input");
    BSDInvokeToolPr("printf 'a\\nb'", keepLine);
  }
  EXPECT_EQ(openDescriptors(), before);
}

TEST(InvokeToolWr, WritesTheWholeInputAndNothingElse) {
  const Workspace workspace;
  const std::string command = "cat > '" + workspace.path("got") + "'";
  for (const std::string &input : {std::string(), std::string("secret"),
                                   std::string("line\n\xE9\xFF"), std::string(1000000, 'z')}) {
    EXPECT_EQ(BSDInvokeToolWr(command.c_str(), input.c_str()), 0);
    EXPECT_EQ(contentOf(workspace.path("got")), input);
  }
}

TEST(InvokeToolWr, WaitsForASlowReader) {
  const Workspace workspace;
  const std::string input(300000, 'q');
  const std::string command = "sleep 0.1; cat > '" + workspace.path("got") + "'; exit 9";
  EXPECT_EQ(BSDInvokeToolWr(command.c_str(), input.c_str()), 9 << 8);
  EXPECT_EQ(contentOf(workspace.path("got")), input);
}

int signalsCaught = 0;
void countSignal(int) { ++signalsCaught; }

// Restores how the process handles SIGPIPE and which signals this thread blocks.
class SigpipeSettings {
 public:
  SigpipeSettings() {
    sigaction(SIGPIPE, nullptr, &action_);
    pthread_sigmask(SIG_SETMASK, nullptr, &mask_);
  }
  ~SigpipeSettings() {
    signal(SIGPIPE, SIG_IGN);  // forgets one that is still pending
    pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
    sigaction(SIGPIPE, &action_, nullptr);
  }

 private:
  struct sigaction action_;
  sigset_t mask_;
};

bool sigpipeIsBlocked() {
  sigset_t mask;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  return sigismember(&mask, SIGPIPE) == 1;
}

bool sigpipeIsPending() {
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) == 1;
}

void block(int signal) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

TEST(InvokeToolWr, AToolThatDoesNotReadRaisesNoSignal) {
  const std::string input(1000000, 'z');
  for (void (*handling)(int) : {SIG_DFL, SIG_IGN, countSignal}) {
    const SigpipeSettings settings;
    signal(SIGPIPE, handling);
    signalsCaught = 0;
    EXPECT_EQ(BSDInvokeToolWr("exec <&-; exit 3", input.c_str()), 3 << 8);
    EXPECT_EQ(signalsCaught, 0);
    EXPECT_FALSE(sigpipeIsBlocked());
    EXPECT_FALSE(sigpipeIsPending());
    EXPECT_EQ(signal(SIGPIPE, handling), handling);
  }
}

TEST(InvokeToolWr, LeavesACallersBlockedSigpipeAlone) {
  const std::string input(1000000, 'z');
  const SigpipeSettings settings;
  signal(SIGPIPE, countSignal);
  signalsCaught = 0;
  block(SIGPIPE);
  BSDInvokeToolWr("exit 0", input.c_str());
  EXPECT_TRUE(sigpipeIsBlocked());
  EXPECT_FALSE(sigpipeIsPending());
  // A signal that was pending stays so.
  raise(SIGPIPE);
  BSDInvokeToolWr("exit 0", input.c_str());
  EXPECT_TRUE(sigpipeIsPending());
  EXPECT_EQ(signalsCaught, 0);
}

TEST(InvokeToolWr, TheToolItselfMayBeEndedBySigpipe) {
  const Workspace workspace;
  const std::string command = "grep SigBlk /proc/self/status > '" + workspace.path("mask") + "'";
  const SigpipeSettings settings;
  signal(SIGPIPE, SIG_DFL);
  EXPECT_EQ(BSDInvokeToolWr(command.c_str(), "x"), 0);
  EXPECT_EQ(contentOf(workspace.path("mask")), "SigBlk:\t0000000000000000\n");
}

// The shell tells of itself: some shells start other programs with no signal blocked.
TEST(InvokeTool, TheToolBlocksTheSignalsThatTheCallerDoesButForSigpipe) {
  constexpr const char *kTell =
      "while read name mask; do case $name in SigBlk:) echo $mask; esac; done </proc/self/status";
  constexpr struct {
    int signal;
    const char *blocked;
  } kRows[] = {{SIGPIPE, "0000000000000000\n"},
               {SIGUSR1, "0000000000000200\n"},
               {SIGTERM, "0000000000004200\n"}};
  const SigpipeSettings settings;
  for (const auto &row : kRows) {
    block(row.signal);
    char out[40];
    EXPECT_EQ(BSDInvokeTool(kTell, out, sizeof out), 0);
    EXPECT_STREQ(out, row.blocked);
  }
}

// After a failed write the shell itself goes on: only the signal ends it.
TEST(InvokeTool, LeavesAnEndlessToolWhateverTheCallerDoesWithSigpipe) {
  constexpr const char *kEndless = "while :; do echo y; done 2>/dev/null";
  for (void (*handling)(int) : {SIG_DFL, SIG_IGN, countSignal}) {
    for (const bool blocked : {false, true}) {
      const SigpipeSettings settings;
      signal(SIGPIPE, handling);
      if (blocked) block(SIGPIPE);
      char out[4];
      EXPECT_EQ(BSDInvokeTool(kEndless, out, sizeof out), SIGPIPE);
      EXPECT_STREQ(out, "y\ny");
      keptLines.clear();
      mostLines = 2;
      EXPECT_EQ(BSDInvokeToolPr(kEndless, keepLine), SIGPIPE);
      EXPECT_EQ(keptLines.size(), 2u);
    }
  }
}

// A caller may run without standard streams: the pipe then gets their numbers.
TEST(InvokeTool, WorksWithStandardStreamsClosed) {
  const Workspace workspace;
  const std::string got = workspace.path("got"), command = "cat > '" + got + "'";
  for (int closed = 1; closed < 8; ++closed) {
    const pid_t child = fork();
    if (child == 0) {
      for (int stream = 0; stream < 3; ++stream) {
        if ((closed >> stream) % 2 == 1) close(stream);
      }
      char out[8];
      if (BSDInvokeTool("echo hello", out, sizeof out) != 0) _exit(1);
      if (std::string(out) != "hello\n") _exit(2);
      if (BSDInvokeToolWr(command.c_str(), "input") != 0) _exit(3);
      _exit(contentOf(got) == "input" ? 0 : 4);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0) << closed;
  }
}

// The application cannot wait for children then: the tools still run.
TEST(InvokeTool, GivesMinusOneWhereTheStatusIsCollectedBySomebodyElse) {
  void (*const before)(int) = signal(SIGCHLD, SIG_IGN);
  char out[8];
  EXPECT_EQ(BSDInvokeTool("echo hello", out, sizeof out), -1);
  signal(SIGCHLD, before);
  EXPECT_STREQ(out, "hello\n");
}

// Frequent signals, as from a timer of the application.
class RestlessTimer {
 public:
  RestlessTimer() {
    struct sigaction tick = {};
    tick.sa_handler = countSignal;
    sigaction(SIGALRM, &tick, &action_);
    const itimerval often = {{0, 500}, {0, 500}};
    setitimer(ITIMER_REAL, &often, nullptr);
  }
  ~RestlessTimer() {
    const itimerval never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &action_, nullptr);
  }
  RestlessTimer(const RestlessTimer &) = delete;
  RestlessTimer &operator=(const RestlessTimer &) = delete;

 private:
  struct sigaction action_;
};

TEST(InvokeTool, SignalsInterruptNothing) {
  const Workspace workspace;
  const std::string command = "sleep 0.05; cat > '" + workspace.path("got") + "'; exit 6";
  const std::string input(300000, 'q');
  std::string big(200001, 'x');
  int read = -1, written = -1;
  signalsCaught = 0;
  keptLines.clear();
  mostLines = 0;
  {
    const RestlessTimer timer;
    read = BSDInvokeTool("sleep 0.05; head -c 200000 /dev/zero | tr '\\0' a; sleep 0.05; exit 5",
                         big.data(), 200001);
    written = BSDInvokeToolWr(command.c_str(), input.c_str());
    BSDInvokeToolPr("echo a; sleep 0.05; echo b", keepLine);
  }
  EXPECT_GT(signalsCaught, 10);
  EXPECT_EQ(read, 5 << 8);
  EXPECT_EQ(big, std::string(200000, 'a') + '\0');
  EXPECT_EQ(written, 6 << 8);
  EXPECT_EQ(contentOf(workspace.path("got")), input);
  EXPECT_EQ(keptLines, (Lines{"a", "b"}));
}

TEST(InvokeToolPr, HandsOverLineByLine) {
  const struct {
    const char *command;
    Lines lines;
  } kRows[] = {
      {"true", {}},
      {"printf 'a\\n'", {"a"}},
      {"printf 'a\\nb\\n'", {"a", "b"}},
      // Output without a final line feed still gives its last line.
      {"printf 'a\\nb'", {"a", "b"}},
      {"printf '\\n'", {""}},
      {"printf '\\n\\na\\n\\n'", {"", "", "a", ""}},
      {"printf 'a\\r\\nb\\r\\n'", {"a\r", "b\r"}},
      {"printf '\\351\\377\\nx'", {"\xE9\xFF", "x"}},
      {"printf ab; sleep 0.05; printf 'cd\\ne'; sleep 0.05; printf f", {"abcd", "ef"}},
  };
  for (const auto &row : kRows) EXPECT_EQ(linesOf(row.command), row.lines) << row.command;
}

TEST(InvokeToolPr, StopsWhenTold) {
  EXPECT_EQ(linesOf("printf 'a\\nb\\nc\\n'", 1), (Lines{"a"}));
  EXPECT_EQ(linesOf("printf 'a\\nb\\nc\\n'", 2), (Lines{"a", "b"}));
  EXPECT_EQ(linesOf("yes", 3), (Lines{"y", "y", "y"}));
  mostLines = 1;
  keptLines.clear();
  EXPECT_EQ(BSDInvokeToolPr("printf 'a\\nb\\n'; exit 8", keepLine), 8 << 8);
}

TEST(InvokeToolPr, CutsALineToItsBuffer) {
  for (const std::size_t length : {8190u, 8191u, 8192u, 8193u, 20000u}) {
    for (const char *end : {"", "echo; echo next"}) {
      const std::string command =
          "head -c " + std::to_string(length) + " /dev/zero | tr '\\0' a;" + end;
      const Lines lines = linesOf(command);
      ASSERT_EQ(lines.size(), *end == '\0' ? 1u : 2u) << length;
      EXPECT_EQ(lines[0], std::string(std::min<std::size_t>(length, 8191), 'a')) << length;
      if (*end != '\0') {
        EXPECT_EQ(lines[1], "next");
      }
    }
  }
}

int overwriteLine(char *line) {
  keptLines.emplace_back(line);
  for (int i = 0; i < 8192; ++i) line[i] = '#';
  return 0;
}

TEST(InvokeToolPr, GivesAWritableBufferOf8192Bytes) {
  keptLines.clear();
  EXPECT_EQ(BSDInvokeToolPr("printf 'a\\nbc\\n\\nd'", overwriteLine), 0);
  EXPECT_EQ(keptLines, (Lines{"a", "bc", "", "d"}));
}

int runAnotherTool(char *line) {
  char out[32];
  BSDInvokeTool((std::string("printf 'for %s' ") + line).c_str(), out, sizeof out);
  keptLines.emplace_back(out);
  return 0;
}

TEST(InvokeToolPr, ALineMayRunAnotherTool) {
  keptLines.clear();
  BSDInvokeToolPr("printf 'a\\nb\\n'", runAnotherTool);
  EXPECT_EQ(keptLines, (Lines{"for a", "for b"}));
}

// A model that reads byte by byte.
Lines literalLines(const std::string &command, std::size_t stopAfter) {
  Lines lines;
  FILE *pipe = popen(command.c_str(), "r");
  char line[8192];
  std::size_t position = 0;
  bool empty = true;
  for (bool ended = false; !ended;) {
    const int c = std::fgetc(pipe);
    ended = c == EOF;
    if (ended && empty) break;
    if (!ended && c != '\n') {
      line[position] = static_cast<char>(c);
      if (position < sizeof line - 1) ++position;
      empty = false;
      continue;
    }
    line[position] = '\0';
    lines.emplace_back(line);
    if (lines.size() == stopAfter) break;
    position = 0;
    empty = true;
  }
  pclose(pipe);
  return lines;
}

std::string randomText(std::mt19937 &random) {
  std::string text;
  const int lines = static_cast<int>(random() % 40);
  for (int i = 0; i < lines; ++i) {
    const std::size_t length = random() % 8 == 0 ? 8180 + random() % 24 : random() % 60;
    for (std::size_t k = 0; k < length; ++k) text += static_cast<char>(random() % 256);
    if (random() % 10 != 0) text += '\n';
  }
  return text;
}

TEST(InvokeToolPr, AgreesWithReadingByteByByte) {
  const Workspace workspace;
  std::mt19937 random(20031);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    const std::string command = "cat '" + workspace.makeFile("text", randomText(random)) + "'";
    const std::size_t stopAfter = random() % 3 == 0 ? 1 + random() % 10 : 0;
    EXPECT_EQ(linesOf(command, stopAfter), literalLines(command, stopAfter));
  }
}

}  // namespace
}  // namespace korvel::test
