// SPDX-License-Identifier: MIT
// Which characters of paths and patterns the shell or a tool reads.
#include <string>

#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"

namespace korvel::test {
namespace {

// Kept: nothing is escaped, so a single quote in the path breaks the command.
TEST(Quoting, ASingleQuoteInAPathEndsIt) {
  const Workspace workspace;
  const std::string file = workspace.makeFile("it's");
  EXPECT_EQ(BSDIsExisting(file.c_str()), 0) << "the command breaks";
  EXPECT_EQ(BSDRemove(file.c_str()), -1);
  EXPECT_TRUE(isThere(file));
  EXPECT_EQ(BSDIsExisting("/nowhere'; echo 'printed"), 1);
  EXPECT_EQ(BSDIsExisting(("/nowhere'; touch '" + workspace.path("made")).c_str()), 0);
  EXPECT_TRUE(isThere(workspace.path("made"))) << "what follows is run";
}

TEST(Quoting, ASingleQuoteInAPatternEndsIt) {
  const Workspace folder;
  folder.makeFile("a");
  folder.makeFile("b");
  EXPECT_EQ(BSDDir_FindFiles(nullptr, folder.path().c_str(), 0, "a'"), 0);
  EXPECT_EQ(BSDDir_FindFiles(nullptr, folder.path().c_str(), 0, "a'; echo 'c"), 2);
}

TEST(Quoting, ADashAtTheBeginningOfAPatternIsAnOption) {
  const Workspace folder;
  folder.makeFile("a-v");
  EXPECT_EQ(BSDDir_FindFiles(nullptr, folder.path().c_str(), 0, "a-v"), 1);
  EXPECT_EQ(BSDDir_FindFiles(nullptr, folder.path().c_str(), 0, "-v"), 0);
  EXPECT_EQ(BSDDir_FindFiles(nullptr, folder.path().c_str(), 0, "-c"), 0);
  EXPECT_EQ(BSDDir_FindFiles(nullptr, folder.path().c_str(), 0, "[-]v"), 1);
}

TEST(Quoting, OtherCharactersAreThemselves) {
  const Workspace workspace;
  const FakeTools tools;
  tools.add("cp");
  for (const std::string odd : {"$HOME", "`id`", "$(id)", "a\"b", "a\\b", "a;b", "a b", "*"}) {
    BSDSCopy(odd.c_str(), "to");
    EXPECT_TRUE(tools.calls().ends_with("cp[-R][" + odd + "][to]\n")) << tools.calls();
  }
}

TEST(Quoting, OpeningReadsWhatShellsReadBetweenDoubleQuotes) {
  const FakeTools tools;
  const Variable variable("KORVEL_ODD", "value");
  tools.add("xdg-open");
  std::string calls;
  // The opener need not have ended when the call does.
  const auto opens = [&](const char *path, const std::string &arguments) {
    calls += "xdg-open" + arguments + "\n";
    BSDopen(path);
    for (int i = 0; i < 500 && tools.calls().size() < calls.size(); ++i) usleep(10000);
    return tools.calls() == calls;
  };
  EXPECT_TRUE(opens("it's", "[it's]"));
  EXPECT_TRUE(opens("$KORVEL_ODD", "[value]"));
  EXPECT_TRUE(opens("`echo run`", "[run]"));
  EXPECT_TRUE(opens("a\\\\b", "[a\\b]"));
  EXPECT_TRUE(opens("x\" \"y", "[x][y]"));
}

}  // namespace
}  // namespace korvel::test
