// SPDX-License-Identifier: MIT
// Listings of folders, beside what the bare command prints.
#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/listings.h"
#include "tests/shell/workspace.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

// Before main() runs, and with it any test.
const int resultAtLoad = BSDcr;

TEST(ListingAtLoad, NoFileHasBeenVisitedYet) { EXPECT_EQ(resultAtLoad, 0); }

TEST(FindFiles, StoresAtMostMaxNamesAndCountsAll) {
  const Workspace folder;
  for (const char *name : {"a1.tab", "a2.tab", "a3.tab", "a4.tab", "a5.tab", "b.txt"}) {
    folder.makeFile(name);
  }
  const Found two = find(folder.path(), 2, ".tab");
  EXPECT_EQ(two.count, 5);
  EXPECT_EQ(two.names, (Names{"a1.tab", "a2.tab"}));
  for (const int max : {1, 4, 5, 6}) {
    const Found found = find(folder.path(), max, ".tab");
    EXPECT_EQ(found.count, 5) << max;
    EXPECT_EQ(found.names.size(), static_cast<std::size_t>(std::min(max, 5))) << max;
  }
}

TEST(FindFiles, CountsWithoutASlot) {
  const Workspace folder;
  folder.makeFile("a");
  folder.makeFile("b");
  EXPECT_EQ(find(folder.path(), 0, "").count, 2);
  EXPECT_EQ(BSDDir_FindFiles(nullptr, folder.path().c_str(), 0, ""), 2);
}

TEST(FindFiles, ReadsNoMoreThanItsBuffer) {
  const Workspace folder;
  for (int i = 10; i < 60; ++i) folder.makeFile("name of 20 bytes--" + std::to_string(i));
  // 255 bytes hold 12 lines of 21 bytes and 3 bytes of the next one; 511 hold 24 lines and 7 bytes.
  EXPECT_EQ(find(folder.path(), 0, "").count, 13);
  EXPECT_EQ(find(folder.path(), 1, "").count, 13);
  EXPECT_EQ(find(folder.path(), 2, "").count, 25);
  EXPECT_EQ(find(folder.path(), 10, "").count, 50);
}

TEST(FindFiles, ReadsOneByteLessThanItsBuffer) {
  const Workspace folder;
  folder.makeFile(std::string(254, 'a'));
  folder.makeFile("b");
  // The 255 bytes end with the first line; the 256th would begin the second one.
  for (const int max : {0, 1}) {
    EXPECT_EQ(find(folder.path(), max, "").count, 1);
    EXPECT_EQ(literalFind(folder.path(), max, "").count, 1);
  }
  EXPECT_EQ(find(folder.path(), 2, "").count, 2);
}

TEST(FindFiles, StoresALineCutByTheBuffer) {
  const Workspace folder;
  folder.makeFile(std::string(250, 'a'));
  folder.makeFile("bcdefg");
  EXPECT_EQ(find(folder.path(), 1, "").count, 2);
  EXPECT_EQ(literalFind(folder.path(), 1, "").count, 2);
  folder.makeFile(std::string(255, 'a'));
  const Found found = find(folder.path(), 1, "aaaa");
  EXPECT_EQ(found.names, (Names{std::string(250, 'a')}));
}

TEST(FindFiles, LeavesFoldersOutAndMarksOn) {
  const Workspace folder;
  folder.makeFile("plain");
  chmod(folder.makeFile("runs").c_str(), 0755);
  chmod(folder.makeFile("star*").c_str(), 0644);
  chmod(folder.makeFile("two**").c_str(), 0755);
  folder.makeFolder("folder");
  folder.makeLink("link", "plain");
  folder.makeLink("link to folder", "folder");
  mkfifo(folder.path("fifo").c_str(), 0644);
  const Names expected = {"fifo|", "link@", "link to folder@", "plain", "runs", "star", "two**"};
  const Found found = find(folder.path(), 20, "");
  EXPECT_EQ(found.names, expected);
  EXPECT_EQ(found.count, 7);
  EXPECT_EQ(visited(folder.path(), ""), expected);
}

TEST(FindFiles, TakesNamesOf255Bytes) {
  const Workspace folder;
  folder.makeFile(std::string(255, 'x'));
  EXPECT_EQ(find(folder.path(), 2, "xx").names, (Names{std::string(255, 'x')}));
  // With a mark after it, such a name no longer fits its row.
  folder.makeLink(std::string(255, 'y'), "nowhere");
  EXPECT_EQ(find(folder.path(), 2, "yy").names, (Names{std::string(255, 'y')}));
}

TEST(FindFiles, SearchesInAnyCase) {
  const Workspace folder;
  for (const char *name : {"A.TAB", "b.tab", "c.Tab", "d.txt"}) folder.makeFile(name);
  EXPECT_EQ(find(folder.path(), 9, ".tab").names, (Names{"A.TAB", "b.tab", "c.Tab"}));
  EXPECT_EQ(find(folder.path(), 9, "^[ab]").names, (Names{"A.TAB", "b.tab"}));
  EXPECT_EQ(find(folder.path(), 9, "nothing").count, 0);
}

TEST(FindFiles, CarriesNamesByteForByteWhateverTheLocale) {
  const Workspace folder;
  const Names names = {"\x80\x9F\xFF.tab", "a.tab", "caf\xC3\xA9.tab", "caf\xE9.tab",
                       "tab\there.tab"};
  for (const std::string &name : names) folder.makeFile(name);
  Names sorted = names;
  std::sort(sorted.begin(), sorted.end());
  for (const char *locale : {"C", "C.UTF-8"}) {
    const Variable all("LC_ALL", locale);
    EXPECT_EQ(find(folder.path(), 9, ".tab").names, sorted) << locale;
    EXPECT_EQ(find(folder.path(), 9, "caf\xE9").names, (Names{"caf\xE9.tab"})) << locale;
    EXPECT_EQ(visited(folder.path(), ".tab"), sorted) << locale;
  }
  const Variable all("LC_ALL", nullptr), type("LC_CTYPE", "C.UTF-8"), style("QUOTING_STYLE", "c");
  EXPECT_EQ(find(folder.path(), 9, ".tab").names, sorted);
  EXPECT_EQ(visited(folder.path(), ".tab"), sorted);
}

TEST(FindFiles, LeavesTheCallersEnvironmentAlone) {
  const Variable all("LC_ALL", "C.UTF-8"), mark("KORVEL_SHELL_TEST", "here");
  const FakeTools tools;
  tools.add("ls", "echo \"$LC_ALL $KORVEL_SHELL_TEST\"");
  EXPECT_EQ(find("/tmp", 1, "").names, (Names{"C here"}));
  EXPECT_STREQ(std::getenv("LC_ALL"), "C.UTF-8");
}

TEST(FindFiles, FindsNothingInNoFolder) {
  const Workspace folder;
  folder.makeFile("file");
  EXPECT_EQ(find("", 2, "").count, 0);
  EXPECT_EQ(find(folder.path("missing"), 2, "").count, 0);
  EXPECT_EQ(find(folder.path("file"), 2, "").count, 0);
}

TEST(FindFiles, RunsNothingForAnEmptyOrMissingFolder) {
  const FakeTools tools;
  tools.add("ls");
  EXPECT_EQ(find("", 2, "").count, 0);
  EXPECT_EQ(find("/missing", 2, "").count, 0);
  EXPECT_TRUE(visited("", "").empty());
  EXPECT_TRUE(visited("/missing", "").empty());
  EXPECT_EQ(tools.calls(), "");
}

TEST(FindFiles, RunsTheToldCommand) {
  const FakeTools tools;
  tools.add("ls", "echo x");
  tools.add("grep", "echo y");
  EXPECT_EQ(find("/tmp", 2, "a b").names, (Names{"y"}));
  EXPECT_EQ(visited("/tmp", "c d"), (Names{"y"}));
  std::string calls = tools.calls();
  // The two tools of a pipe start in any order.
  for (const char *call : {"ls[-1F][/tmp/]\n", "grep[-i][a b]\n", "grep[-i][c d]\n"}) {
    const std::size_t place = calls.find(call);
    ASSERT_NE(place, std::string::npos) << call;
    calls.erase(place, std::string_view(call).size());
  }
  EXPECT_EQ(calls, "ls[-1F][/tmp/]\n");
}

TEST(FindFiles, RefusesWhatMakesNoSense) {
  PoisonedBuffer out(256);
  EXPECT_EQ(BSDDir_FindFiles(out.data(), "/", -1, ""), 0);
  EXPECT_EQ(BSDDir_FindFiles(out.data(), nullptr, 1, ""), 0);
  EXPECT_EQ(BSDDir_FindFiles(out.data(), "/", 1, nullptr), 0);
  EXPECT_EQ(BSDDir_FindFiles(nullptr, "/", 1, ""), 0);
  const SystemVersion system(0x0922);
  EXPECT_EQ(BSDDir_FindFiles(out.data(), "/", 1, ""), 0);
  EXPECT_TRUE(out.untouchedFrom(0));
}

// Kept: the count has 16 bits and goes on from 0 after 65535.
TEST(FindFiles, CountsIn16Bits) {
  const FakeTools tools;
  const struct {
    int files, count;
  } kRows[] = {{32767, 32767}, {32768, 32768}, {65535, 65535}, {65536, 0}, {65540, 4}};
  for (const auto &row : kRows) {
    tools.add("ls", "seq -f f%g " + std::to_string(row.files));
    Names slots(3000);
    std::vector<char> out(3000 * 256, '#');
    EXPECT_EQ(BSDDir_FindFiles(out.data(), "/tmp", 3000, ""), row.count) << row.files;
    EXPECT_STREQ(out.data(), "f1");
    EXPECT_STREQ(out.data() + 2999 * 256, "f3000");
  }
  // If rows are left, names are stored from the first one again.
  std::vector<char> out(65538 * 256, '#');
  EXPECT_EQ(BSDDir_FindFiles(out.data(), "/tmp", 65538, ""), 4);
  EXPECT_STREQ(out.data(), "f65537");
  EXPECT_STREQ(out.data() + 256, "f65538");
  EXPECT_STREQ(out.data() + 2 * 256, "f3");
  EXPECT_EQ(out[65536 * 256], '#');
}

TEST(FindFiles, AgreesWithTheRulesOnRandomFolders) {
  std::mt19937 random(1007);
  for (int round = 0; round < 25; ++round) {
    SCOPED_TRACE(round);
    const Workspace folder;
    for (std::size_t entries = random() % 60; entries > 0; --entries) {
      makeRandomEntry(random, folder);
    }
    for (const char *pattern : {"", "a", "\xE9", "[ab]", "*", "b$"}) {
      const int max = static_cast<int>(random() % 30);
      const Found ours = find(folder.path(), max, pattern);
      const Found literal = literalFind(folder.path(), max, pattern);
      EXPECT_EQ(ours.count, literal.count) << pattern << " " << max;
      EXPECT_EQ(ours.names, literal.names) << pattern << " " << max;
    }
  }
}

TEST(ProcessFiles, HandsOverEveryFile) {
  const ResultGlobals saved;
  const Workspace folder;
  for (const char *name : {"a.tab", "b.TAB", "c.txt"}) folder.makeFile(name);
  chmod(folder.makeFile("d.tab").c_str(), 0755);
  folder.makeFolder("e.tab");
  BSDcr = 7;
  EXPECT_EQ(visited(folder.path(), ".tab"), (Names{"a.tab", "b.TAB", "d.tab"}));
  EXPECT_EQ(BSDnNbFic, 3);
  EXPECT_EQ(BSDcr, 0);
  EXPECT_EQ(BSDDir_ProcessFiles_fPtr, visit);
}

TEST(ProcessFiles, StopsAtANonZeroResultAndReturnsIt) {
  const ResultGlobals saved;
  const Workspace folder;
  for (const char *name : {"a", "b", "c", "d"}) folder.makeFile(name);
  EXPECT_EQ(visited(folder.path(), "", 2), (Names{"a", "b"}));
  EXPECT_EQ(BSDcr, 42);
  EXPECT_EQ(BSDnNbFic, 2);
  visitedNames.clear();
  EXPECT_EQ(BSDDir_ProcessFiles(folder.path().c_str(), "", visit), 42);
}

// The result is the one of an earlier listing when no file matches.
TEST(ProcessFiles, WithoutAMatchReturnsThePreviousResult) {
  const ResultGlobals saved;
  const Workspace folder;
  folder.makeFile("a");
  BSDcr = 42;
  BSDnNbFic = 5;
  EXPECT_EQ(BSDDir_ProcessFiles(folder.path().c_str(), "zzz", visit), 42);
  EXPECT_EQ(BSDcr, 42);
  EXPECT_EQ(BSDnNbFic, 0);
}

TEST(ProcessFiles, OfNoFolderGivesZeroAndChangesNothing) {
  const ResultGlobals saved;
  BSDcr = 42;
  BSDnNbFic = 5;
  BSDDir_ProcessFiles_fPtr = nullptr;
  EXPECT_EQ(BSDDir_ProcessFiles("", "", visit), 0);
  EXPECT_EQ(BSDDir_ProcessFiles("/missing", "", visit), 0);
  EXPECT_EQ(BSDDir_ProcessFiles(nullptr, "", visit), 0);
  EXPECT_EQ(BSDDir_ProcessFiles("/", nullptr, visit), 0);
  EXPECT_EQ(BSDDir_ProcessFiles("/", "", nullptr), 0);
  EXPECT_EQ(BSDcr, 42);
  EXPECT_EQ(BSDnNbFic, 5);
  EXPECT_EQ(BSDDir_ProcessFiles_fPtr, nullptr);
}

TEST(ProcessFiles, HasNoLimitOfNames) {
  const ResultGlobals saved;
  const FakeTools tools;
  tools.add("ls", "seq -f f%g 70000");
  EXPECT_EQ(visited("/tmp", "").size(), 70000u);
  EXPECT_EQ(BSDnNbFic, 70000);
}

TEST(ProcessFilesF, HandlesOneLine) {
  const ResultGlobals saved;
  const struct {
    const char *line;
    Names names;
  } kRows[] = {
      {"a", {"a"}}, {"a*", {"a"}},     {"a**", {"a*"}}, {"a/", {}},
      {"a/*", {}},  {"/x/y/b", {"b"}}, {"x/b*", {"b"}}, {"link@", {"link@"}},
      {"", {""}},   {"*", {""}},       {"/", {}},       {"caf\xE9*", {"caf\xE9"}},
      {"a/b/", {}}, {"*/b", {"b"}},
  };
  for (const auto &row : kRows) {
    visitedNames.clear();
    lastVisit = 1;
    BSDcr = 7;
    BSDnNbFic = 10;
    BSDDir_ProcessFiles_fPtr = visit;
    std::string line = row.line;
    const bool isFile = !row.names.empty();
    EXPECT_EQ(BSDDir_ProcessFiles_f(line.data()), isFile ? 41 : 0) << row.line;
    EXPECT_EQ(visitedNames, row.names) << row.line;
    EXPECT_EQ(BSDcr, isFile ? 41 : 7) << row.line;
    EXPECT_EQ(BSDnNbFic, isFile ? 11 : 10) << row.line;
  }
}

TEST(ProcessFilesF, DoesNothingWithoutAFunction) {
  const ResultGlobals saved;
  BSDDir_ProcessFiles_fPtr = nullptr;
  BSDnNbFic = 3;
  char line[] = "a*";
  EXPECT_EQ(BSDDir_ProcessFiles_f(line), 0);
  EXPECT_STREQ(line, "a*");
  BSDDir_ProcessFiles_fPtr = visit;
  EXPECT_EQ(BSDDir_ProcessFiles_f(nullptr), 0);
  EXPECT_EQ(BSDnNbFic, 3);
}

}  // namespace
}  // namespace korvel::test
