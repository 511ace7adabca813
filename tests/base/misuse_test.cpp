// SPDX-License-Identifier: MIT
// Lines about misuse: when there are any, what they look like, and what they leave alone.
#include "base/misuse.h"

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <signal.h>
#include <string>
#include <thread>

#include <unistd.h>

#include "tests/support/told.h"

namespace korvel::test {
namespace {

using base::Argument;
using base::Call;
using base::Telling;

std::string lineOf(std::initializer_list<Argument> arguments) {
  return told([&] { Call("Function", arguments).misused({"wrong"}); });
}

// What the library does after it has asked the environment.
bool tellsWith(const char *value) {
  value == nullptr ? unsetenv("KORVEL_DEBUG") : setenv("KORVEL_DEBUG", value, 1);
  const Telling before = base::telling.exchange(Telling::Unasked);
  const bool first = base::tellsMisuse();
  const bool again = base::tellsMisuse();
  EXPECT_EQ(first, again);
  base::telling = before;
  unsetenv("KORVEL_DEBUG");
  return again;
}

TEST(Misuse, IsToldWhileTheVariableIs1) {
  EXPECT_TRUE(tellsWith("1"));
  for (const char *other : {"0", "", "yes", "11"}) EXPECT_FALSE(tellsWith(other)) << other;
  EXPECT_FALSE(tellsWith(nullptr));
}

TEST(Misuse, TheEnvironmentIsAskedOnce) {
  setenv("KORVEL_DEBUG", "1", 1);
  const Telling before = base::telling.exchange(Telling::Unasked);
  EXPECT_TRUE(base::tellsMisuse());
  unsetenv("KORVEL_DEBUG");
  EXPECT_TRUE(base::tellsMisuse());
  base::telling = before;
}

TEST(Misuse, IsNotToldWithoutTheVariable) {
  const auto misuse = [] {
    const Call call("Function", {1});
    EXPECT_FALSE(call);
    call.misused({"wrong"});
  };
  EXPECT_EQ(told(misuse, Telling::No), "");
}

TEST(Misuse, OneLineIsToldOfACall) {
  EXPECT_EQ(told([] {
              const Call call("Function", {1});
              EXPECT_TRUE(call);
              call.misusedIf(false, {"right"});
              call.misusedIf(true, {"first ", 1, " ", 2LL, " ", std::size_t{3}});
              EXPECT_FALSE(call);
              call.misused({"second"});
            }),
            "Function(1): first 1 2 3");
}

TEST(Misuse, ArgumentsAreShown) {
  const char *const none = nullptr;
  int number = 0;
  EXPECT_EQ(lineOf({}), "Function(): wrong");
  EXPECT_EQ(lineOf({-5, 4000000000u, 0.5}), "Function(-5, 4000000000, 0.5): wrong");
  EXPECT_EQ(lineOf({"text", none, std::string_view("run", 2)}),
            "Function(\"text\", null, \"ru\"): wrong");
  EXPECT_EQ(lineOf({base::filled(&number), base::filled(nullptr)}), "Function(..., null): wrong");
  EXPECT_EQ(lineOf({base::given(std::atoi)}), "Function(...): wrong");
}

TEST(Misuse, TextsAreShownInUtf8) {
  EXPECT_EQ(lineOf({"D\xE9pist\xE9 \x80 \x9C"}), "Function(\"Dépisté € œ\"): wrong");
  EXPECT_EQ(lineOf({"a\"b\\c\r\n\x7F\x81"}),
            "Function(\"a\\\"b\\\\c\\x0D\\x0A\\x7F\\x81\"): wrong");
}

TEST(Misuse, LongTextsAreCut) {
  EXPECT_EQ(lineOf({std::string(60, 'a').c_str()}),
            "Function(\"" + std::string(60, 'a') + "\"): wrong");
  EXPECT_EQ(lineOf({std::string(61, 'a').c_str()}),
            "Function(\"" + std::string(60, 'a') + "\"...): wrong");
}

// Where many texts are long each is cut sooner: every argument is shown, and what would be right.
TEST(Misuse, TheSentenceStandsWholeBehindLongArguments) {
  const std::string control(60, '\x01');
  const char *text = control.c_str();
  std::string shown;
  for (int i = 0; i < 60; ++i) shown += "\\x01";
  EXPECT_EQ(lineOf({text}), "Function(\"" + shown + "\"): wrong");
  const std::string line = told([&] {
    Call("Function", {text, text, text, text, text, 1, text, text, text, text})
        .misused({base::Quoted(control), " is not ", base::Quoted(control), ", and wrong"});
  });
  EXPECT_TRUE(line.starts_with("Function(\"\\x01\\x01")) << line;
  EXPECT_TRUE(line.ends_with("\"...): \"" + shown + "\" is not \"" + shown + "\", and wrong"))
      << line;
  std::size_t texts = 0;
  for (auto at = line.find("\"\\x01"); at != line.npos; at = line.find("\"\\x01", at + 1)) ++texts;
  EXPECT_EQ(texts, 9U + 2U) << line;
}

TEST(Misuse, ShortArgumentsLeaveTheirRoomToLongOnes) {
  const std::string control(50, '\x01');
  const std::string line = lineOf({"a", "b", "c", control.c_str(), 1});
  EXPECT_TRUE(line.ends_with("\\x01\", 1): wrong")) << line;
}

TEST(Misuse, LongLinesAreCutAndStillEnd) {
  const std::string longest(2000, 'a');
  const std::string line = told([&] { Call("Function", {}).misused({longest.c_str()}); });
  EXPECT_EQ(line.size(), 1199 - std::string_view("korvel: ").size());
  EXPECT_TRUE(line.starts_with("Function(): aaa"));
}

TEST(Misuse, NumbersHaveAPointInEveryLocale) {
  setenv("LOCPATH", KORVEL_TEST_LOCALES, 1);
  ASSERT_NE(std::setlocale(LC_ALL, "fr_FR.UTF-8"), nullptr);
  unsetenv("LOCPATH");
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  EXPECT_EQ(lineOf({1.5}), "Function(1.5): wrong");
  std::setlocale(LC_ALL, "C");
}

TEST(Misuse, ErrnoStays) {
  told([] {
    errno = 1234;
    Call("Function", {}).misused({"wrong"});
    EXPECT_EQ(errno, 1234);
  });
  const int error = dup(STDERR_FILENO);
  base::telling = Telling::Yes;
  errno = 1234;
  close(STDERR_FILENO);
  errno = 1234;
  Call("Function", {}).misused({"wrong"});
  EXPECT_EQ(errno, 1234);
  dup2(error, STDERR_FILENO);
  close(error);
  base::telling = Telling::No;
}

bool isPending(int signal) {
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, signal) == 1;
}

void blockPipeSignal(int how) {
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  pthread_sigmask(how, &pipe, nullptr);
}

TEST(Misuse, NobodyReadsStandardError) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  const int error = dup(STDERR_FILENO);
  dup2(ends[1], STDERR_FILENO);
  close(ends[1]);
  base::telling = Telling::Yes;
  const auto handling = signal(SIGPIPE, SIG_DFL);
  Call("Function", {}).misused({"wrong"});
  // Nor is one left behind, but for the application's own.
  blockPipeSignal(SIG_BLOCK);
  Call("Function", {}).misused({"wrong"});
  EXPECT_FALSE(isPending(SIGPIPE));
  pthread_kill(pthread_self(), SIGPIPE);
  Call("Function", {}).misused({"wrong"});
  EXPECT_TRUE(isPending(SIGPIPE));
  signal(SIGPIPE, SIG_IGN);
  blockPipeSignal(SIG_UNBLOCK);
  signal(SIGPIPE, handling);
  base::telling = Telling::No;
  dup2(error, STDERR_FILENO);
  close(error);
}

TEST(Misuse, TheFirstNullThatMayNotBeIsTold) {
  const char *const none = nullptr;
  EXPECT_EQ(told([&] {
              Call("Function", {1, none, none}).needsAll();
            }),
            "Function(1, null, null): argument 2 is null");
  EXPECT_EQ(told([&] { Call("Function", {base::orNull(none), 1}).needsAll(); }), "");
}

TEST(Misuse, ASecondThreadIsToldOnce) {
  const auto use = [] { const Call call("Function", {}); };
  told([&] { Call("First", {}); });
  const std::string line = told([&] {
    std::thread([&] {
      use();
      use();
    }).join();
  });
  EXPECT_TRUE(
      line.starts_with("Function(): called in a second thread: the library may be called from one "
                       "only, as here from that of "))
      << line;
}

TEST(Misuse, Utf8IsTold) {
  for (const char *utf8 : {"\xC3\xA9", "a\xC3\xA9z", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"})
    EXPECT_TRUE(base::looksLikeUtf8(utf8)) << utf8;
  for (const char *other :
       {"", "abc", "\xE9", "\xC3", "\xC3z", "\xC3\xA9\xE9", "\x80\x80", "\xC0\x80",
        "\xF5\x80\x80\x80", "\xE2\x82", "SANT\xC9\xA0:", "\xE9\xA0\x85"})
    EXPECT_FALSE(base::looksLikeUtf8(other)) << other;
  EXPECT_EQ(told([] { needsCp1252(Call("Function", {}), "the text", "\xC3\xA9"); }),
            "Function(): the text looks like UTF-8: texts are CP1252");
  EXPECT_EQ(told([] { needsCp1252(Call("Function", {}), "the text", "\xE9"); }), "");
}

TEST(Misuse, PathsOfTheOtherKindAreTold) {
  const auto asColonPath = [](const char *path) {
    return told([=] { needsColonPath(Call("Function", {}), path); });
  };
  const auto asPosixPath = [](const char *path) {
    return told([=] { needsPosixPath(Call("Function", {}), path); });
  };
  EXPECT_EQ(asColonPath("/srv/a.tab"),
            "Function(): \"/srv/a.tab\" is a path of the system, and a colon path is meant: "
            "\"Volume:folder:file\"");
  EXPECT_NE(asColonPath("/srv/a:b"), "");
  EXPECT_NE(asColonPath("tables/a.tab"), "");
  for (const char *path : {"Data:a.tab", "Data:a/b", "Data", ""}) EXPECT_EQ(asColonPath(path), "");
  EXPECT_EQ(asPosixPath("Data:tables:a.tab"),
            "Function(): \"Data:tables:a.tab\" is a colon path, and a path of the system is meant: "
            "\"/folder/file\"");
  for (const char *path : {"/srv/a:b", "a.tab", ""}) EXPECT_EQ(asPosixPath(path), "");
}

TEST(Misuse, BuffersAndCutsAreTold) {
  char byte = 0;
  const auto room = [](const void *buffer, int capacity) {
    return told([=] { needsRoom(Call("Function", {}), buffer, capacity); });
  };
  EXPECT_EQ(room(nullptr, 5), "Function(): there is no buffer to fill");
  EXPECT_EQ(room(&byte, 0), "Function(): a buffer of 0 bytes holds nothing");
  EXPECT_EQ(room(&byte, 1), "");
  EXPECT_EQ(told([] { needsFit(Call("Function", {}), "the text", 6, 5); }),
            "Function(): the text has 6 characters and is cut to 5");
  EXPECT_EQ(told([] { needsFit(Call("Function", {}), "the text", 5, 5); }), "");
}

}  // namespace
}  // namespace korvel::test
