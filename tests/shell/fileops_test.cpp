// SPDX-License-Identifier: MIT
// Copies and removals, with the real tools and with recording ones.
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"

namespace korvel::test {
namespace {

int copy(const std::string &source, const std::string &folder) {
  return BSDCopy(source.c_str(), folder.c_str());
}

// Tools that only record their calls.
class IdleTools : public FakeTools {
 public:
  IdleTools() {
    for (const char *name : {"cp", "rm", "ls", "sudo", "xdg-open"}) add(name);
  }
};

TEST(Remove, RemovesFilesLinksAndFolders) {
  const Workspace workspace;
  workspace.makeFile("file");
  workspace.makeFolder("folder/sub");
  workspace.makeFile("folder/sub/file");
  workspace.makeFolder("empty");
  workspace.makeFile("aim", "kept");
  workspace.makeLink("link", "aim");
  workspace.makeLink("dangling", "nowhere");
  workspace.makeFile(" odd $name\n\xE9");
  for (const char *name : {"file", "folder", "empty", "link", "dangling", " odd $name\n\xE9"}) {
    EXPECT_EQ(BSDRemove(workspace.path(name).c_str()), 0) << name;
    EXPECT_FALSE(isThere(workspace.path(name))) << name;
  }
  EXPECT_EQ(contentOf(workspace.path("aim")), "kept");
}

TEST(Remove, OfNothingGivesMinusOneWithoutRunningAnything) {
  const IdleTools tools;
  EXPECT_EQ(BSDRemove(""), -1);
  EXPECT_EQ(BSDRemove(nullptr), -1);
  EXPECT_EQ(BSDRemove("/missing/at/all"), -1);
  EXPECT_EQ(BSDRemove_psw("", "secret"), -1);
  EXPECT_EQ(BSDRemove_psw("/missing/at/all", "secret"), -1);
  EXPECT_EQ(BSDRemove_psw("/", nullptr), -1);
  EXPECT_EQ(BSDRemove_psw(nullptr, "secret"), -1);
  EXPECT_EQ(tools.calls(), "");
}

TEST(Remove, GivesMinusOneWhenThePathIsStillThere) {
  const Workspace workspace;
  const std::string file = workspace.makeFile("a file");
  const IdleTools tools;
  EXPECT_EQ(BSDRemove(file.c_str()), -1);
  EXPECT_EQ(tools.calls(), "rm[-dr][" + file + "]\n");
}

TEST(Remove, AsSuperUserHandsThePasswordOver) {
  const Workspace workspace;
  const std::string file = workspace.makeFile("a file"), folder = workspace.makeFolder("folder");
  const FakeTools tools;
  tools.addReader("sudo", "shift 3; exec \"$@\"");
  EXPECT_EQ(BSDRemove_psw(file.c_str(), "pass w\xF6rd$"), 0);
  EXPECT_EQ(tools.inputOf("sudo"), "pass w\xF6rd$");
  EXPECT_EQ(BSDRemove_psw(folder.c_str(), ""), 0);
  EXPECT_EQ(tools.inputOf("sudo"), "");
  EXPECT_EQ(tools.calls(),
            "sudo[-S][-p][][rm][-dr][" + file + "]\nsudo[-S][-p][][rm][-dr][" + folder + "]\n");
}

TEST(Copy, CopiesIntoTheFolderUnderItsOwnName) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to"), slash = workspace.makeFolder("to2") + "/";
  workspace.makeFile("file", "text");
  workspace.makeFolder("tree/sub");
  workspace.makeFile("tree/sub/leaf", "green");
  workspace.makeLink("dangling", "nowhere");
  workspace.makeFile("o dd\n$1 \xE9");
  for (const char *name : {"file", "tree", "dangling", "o dd\n$1 \xE9"}) {
    for (const std::string &folder : {to, slash}) {
      EXPECT_EQ(copy(workspace.path(name), folder), 0) << name;
      EXPECT_TRUE(isThere(folder + "/" + name)) << name;
    }
  }
  EXPECT_EQ(contentOf(to + "/file"), "text");
  EXPECT_EQ(contentOf(to + "/tree/sub/leaf"), "green");
}

TEST(Copy, TakesARelativeSource) {
  const Workspace workspace;
  workspace.makeFolder("to");
  workspace.makeFile("file", "text");
  char before[4096];
  ASSERT_NE(getcwd(before, sizeof before), nullptr);
  ASSERT_EQ(chdir(workspace.path().c_str()), 0);
  EXPECT_EQ(copy("file", "to"), 0);
  ASSERT_EQ(chdir(before), 0);
  EXPECT_EQ(contentOf(workspace.path("to/file")), "text");
}

TEST(Copy, RemovesAnOldFileFirst) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to");
  const std::string source = workspace.makeFile("name", "new");
  workspace.makeFile("to/name", "old");
  struct stat old, now;
  ASSERT_EQ(link((to + "/name").c_str(), (to + "/other name").c_str()), 0);
  ASSERT_EQ(stat((to + "/name").c_str(), &old), 0);
  EXPECT_EQ(copy(source, to), 0);
  ASSERT_EQ(stat((to + "/name").c_str(), &now), 0);
  EXPECT_NE(old.st_ino, now.st_ino);
  EXPECT_EQ(contentOf(to + "/name"), "new");
  EXPECT_EQ(contentOf(to + "/other name"), "old");
}

TEST(Copy, ReplacesAFolderAsAWhole) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to");
  workspace.makeFolder("tree");
  workspace.makeFile("tree/new");
  workspace.makeFolder("to/tree");
  workspace.makeFile("to/tree/old");
  EXPECT_EQ(copy(workspace.path("tree"), to), 0);
  EXPECT_TRUE(isThere(to + "/tree/new"));
  EXPECT_FALSE(isThere(to + "/tree/old"));
}

TEST(Copy, ReplacesALinkAndNotWhatItLeadsTo) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to");
  workspace.makeFile("name", "new");
  workspace.makeFile("aim", "kept");
  workspace.makeLink("to/name", "../aim");
  EXPECT_EQ(copy(workspace.path("name"), to), 0);
  EXPECT_EQ(contentOf(to + "/name"), "new");
  EXPECT_EQ(contentOf(workspace.path("aim")), "kept");
}

TEST(Copy, RunsTheToldCommands) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to"), source = workspace.makeFile("a b");
  workspace.makeFile("to/a b");
  const FakeTools tools;
  tools.add("rm", "exec /bin/rm \"$@\"");
  tools.add("cp", "exec /bin/cp \"$@\"");
  EXPECT_EQ(copy(source, to), 0);
  EXPECT_EQ(tools.calls(), "rm[-dr][" + to + "/a b]\ncp[-R][" + source + "][" + to + "]\n");
}

TEST(Copy, AsSuperUserHandsThePasswordToEveryTool) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to"), source = workspace.makeFile("name", "new");
  workspace.makeFile("to/name", "old");
  const FakeTools tools;
  tools.addReader("sudo",
                  "/bin/cat \"$log/sudo.input\" >> \"$log/passwords\"; echo >> "
                  "\"$log/passwords\"; shift 3; exec \"$@\"");
  EXPECT_EQ(BSDCopy_psw(source.c_str(), to.c_str(), "s\xE9same"), 0);
  EXPECT_EQ(contentOf(to + "/name"), "new");
  EXPECT_EQ(tools.calls(), "sudo[-S][-p][][rm][-dr][" + to + "/name]\nsudo[-S][-p][][cp][-R][" +
                               source + "][" + to + "]\n");
  EXPECT_EQ(tools.written("passwords"), "s\xE9same\ns\xE9same\n");
}

TEST(Copy, NeedsSourceAndFolder) {
  const Workspace workspace;
  const std::string file = workspace.makeFile("file"), to = workspace.makeFolder("to");
  const IdleTools tools;
  EXPECT_EQ(copy(workspace.path("missing"), to), -1);
  EXPECT_EQ(copy(file, workspace.path("missing")), -1);
  EXPECT_EQ(copy(file, ""), -1);
  EXPECT_EQ(copy("", to), -1);
  EXPECT_EQ(BSDCopy(nullptr, to.c_str()), -1);
  EXPECT_EQ(BSDCopy(file.c_str(), nullptr), -1);
  EXPECT_EQ(BSDCopy_psw(file.c_str(), workspace.path("missing").c_str(), "x"), -1);
  EXPECT_EQ(BSDCopy_psw(nullptr, to.c_str(), "x"), -1);
  EXPECT_EQ(BSDCopy_psw(file.c_str(), nullptr, "x"), -1);
  EXPECT_EQ(BSDCopy_psw(file.c_str(), to.c_str(), nullptr), -1);
  EXPECT_EQ(tools.calls(), "");
}

TEST(Copy, GivesMinusOneWhenTheOldOneStays) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to"), source = workspace.makeFile("name", "new");
  workspace.makeFile("to/name", "old");
  const IdleTools tools;
  EXPECT_EQ(copy(source, to), -1);
  EXPECT_EQ(tools.calls(), "rm[-dr][" + to + "/name]\n");
}

TEST(Copy, GivesMinusOneWhenNothingArrives) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to"), source = workspace.makeFile("name");
  {
    const IdleTools tools;
    EXPECT_EQ(copy(source, to), -1);
    EXPECT_EQ(tools.calls(), "cp[-R][" + source + "][" + to + "]\n");
  }
  EXPECT_EQ(copy(source, source), -1);
}

// Copies that must not begin: what they would remove is the source itself, holds it, leads to it or
// is part of it.
TEST(Copy, RemovesNothingThatItWasNotAskedToReplace) {
  const Workspace workspace;
  workspace.makeFolder("d/sub/d");
  workspace.makeFile("d/sub/d/x", "deep");
  workspace.makeFile("d/file", "text");
  workspace.makeFolder("d/d");
  workspace.makeFile("d/d/file", "inner");
  workspace.makeLink("d/sub/file", "../file");
  workspace.makeFolder("other");
  workspace.makeLink("other/file", "../d/file");
  workspace.makeFolder("hard");
  ASSERT_EQ(link(workspace.path("d/file").c_str(), workspace.path("hard/file").c_str()), 0);
  workspace.makeLink("d link", "d");
  workspace.makeFolder("into/d");
  workspace.makeLink("into/d/back", "../../d");
  workspace.makeLink("into/link", "../d/sub");
  workspace.makeFolder("through");
  workspace.makeLink("through/d", "../d");
  workspace.makeLink("sub link", "d/sub");
  const FakeTools tools;
  tools.addReader("sudo", "shift 3; exec \"$@\"");
  const std::string before = workspace.snapshot();
  const struct {
    const char *source, *folder;
  } kRows[] = {
      // The same file or folder, in other spellings.
      {"d/file", "d"},
      {"d/file", "d/"},
      {"d/file", "d//"},
      {"d//file", "d/."},
      {"d/./file", "d/sub/.."},
      {"d/file", "d link"},
      {"d link/file", "d"},
      {"d/d", "d"},
      {"d", ""},
      // The same by a link, in either direction, and by a hard link.
      {"d/sub/file", "d"},
      {"d/file", "d/sub"},
      {"d/file", "other"},
      {"other/file", "d"},
      {"d/file", "hard"},
      {"d", "through"},
      // The source is inside what would be removed, or its path leads through it.
      {"d/sub/d", ""},
      {"d/d", ""},
      {"through/d/d", "through"},
      {"sub link/d", ""},
      {"through/d/sub/d", "through"},
      {"into/d/../../through/d", "into"},
      // What would be removed is inside the source.
      {"d", "d"},
      {"d", "d/sub"},
      {"d", "into/link"},
      // A source without a last component.
      {"d/", "other"},
      {"d/file/", "other"},
      {"d/.", "other"},
      {"d/..", "other"},
      {"d/sub/", "other"},
      {"/", "other"},
  };
  for (const auto &row : kRows) {
    SCOPED_TRACE(testing::Message() << row.source << " into " << row.folder);
    const std::string source = workspace.path(row.source);
    const std::string folder = workspace.path(row.folder);
    EXPECT_EQ(copy(source, folder), -1);
    EXPECT_EQ(BSDCopy_psw(source.c_str(), folder.c_str(), "password"), -1);
    ASSERT_EQ(workspace.snapshot(), before);
  }
  EXPECT_EQ(tools.calls(), "");
}

TEST(Copy, ReplacesNothingByAPathThatTheToolsReadDifferently) {
  const Workspace workspace;
  workspace.makeFolder("to");
  workspace.makeFile("its", "source");
  workspace.makeFile("to/its", "old");
  const std::string before = workspace.snapshot();
  EXPECT_EQ(copy(workspace.path("it''s"), workspace.path("to")), -1);
  EXPECT_EQ(copy(workspace.path("it''s"), workspace.path()), -1);
  EXPECT_EQ(copy(workspace.path("its"), workspace.path("t''o")), -1);
  EXPECT_EQ(workspace.snapshot(), before);
  char folder[4096];
  ASSERT_NE(getcwd(folder, sizeof folder), nullptr);
  workspace.makeFile("-x", "source");
  workspace.makeFile("to/-x", "old");
  ASSERT_EQ(chdir(workspace.path().c_str()), 0);
  EXPECT_EQ(copy("-x", "to"), -1);
  ASSERT_EQ(chdir(folder), 0);
  EXPECT_EQ(contentOf(workspace.path("to/-x")), "old");
}

TEST(Copy, OfALinkIntoAnotherFolderReplacesAsAsked) {
  const Workspace workspace;
  workspace.makeFolder("real/sub");
  workspace.makeFile("real/sub/name", "old");
  workspace.makeLink("name", "real");
  // The link is copied as a link, so that what it leads to is not part of the source.
  EXPECT_EQ(copy(workspace.path("name"), workspace.path("real/sub")), 0);
  char aim[8] = "";
  EXPECT_EQ(readlink(workspace.path("real/sub/name").c_str(), aim, sizeof aim), 4);
}

// The outcome is judged by what is there afterwards, whole or cut, not by the status of the tool.
TEST(Copy, GivesZeroForACopyThatWasCut) {
  const Workspace workspace;
  const std::string to = workspace.makeFolder("to"), source = workspace.makeFile("name", "whole");
  workspace.makeFile("to/name", "old");
  const FakeTools tools;
  tools.add("cp", "printf wh > '" + to + "/name'; echo No space left >> \"$log/errors\"; exit 1");
  EXPECT_EQ(copy(source, to), 0);
  EXPECT_EQ(contentOf(to + "/name"), "wh");
  EXPECT_EQ(tools.written("errors"), "No space left\n");
}

TEST(SCopy, CopiesWithoutAnyCheckAndGivesTheCloseStatus) {
  const Workspace workspace;
  const std::string source = workspace.makeFile("file", "text");
  EXPECT_EQ(BSDSCopy(source.c_str(), workspace.path("new name").c_str()), 0);
  EXPECT_EQ(contentOf(workspace.path("new name")), "text");
  EXPECT_EQ(BSDSCopy(workspace.path("missing").c_str(), workspace.path("x").c_str()), 1 << 8);
  EXPECT_EQ(BSDSCopy(nullptr, source.c_str()), -1);
  EXPECT_EQ(BSDSCopy(source.c_str(), nullptr), -1);
  const FakeTools tools;
  tools.add("cp", "exit 5");
  EXPECT_EQ(BSDSCopy("a b", "/c \xE9"), 5 << 8);
  EXPECT_EQ(tools.calls(), "cp[-R][a b][/c \xE9]\n");
}

}  // namespace
}  // namespace korvel::test
