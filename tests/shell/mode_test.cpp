// SPDX-License-Identifier: MIT
// Modes opened to all, beside what "chmod" makes of the same entries.
#include <algorithm>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"

namespace korvel::test {
namespace {

unsigned modeOf(const std::string &path) {
  struct stat entry;
  return lstat(path.c_str(), &entry) == 0 ? entry.st_mode & 07777u : 0xFFFFu;
}

// The same entries on each of two volumes: one for the library, one for the command.
void makeZoo(const Workspace &workspace, const std::string &volume) {
  const auto name = [&](std::string_view entry) { return volume + "/" + std::string(entry); };
  workspace.makeFolder(volume);
  for (const unsigned mode : {0000u, 0400u, 0644u, 0755u, 0777u, 02755u, 04755u, 06711u, 01755u}) {
    const std::string number = std::to_string(mode);
    workspace.makeFile(name("file " + number));
    chmod(workspace.path(name("file " + number)).c_str(), mode);
    workspace.makeFolder(name("folder " + number));
    chmod(workspace.path(name("folder " + number)).c_str(), mode);
  }
  for (const char *odd : {"caf\xE9", "line\nfeed", "$HOME", "-x", "a:b", "two''parts", "twoparts",
                          "it's", "*", "aim of links", "aim in folder"}) {
    workspace.makeFile(name(odd));
    chmod(workspace.path(name(odd)).c_str(), 0600);
  }
  workspace.makeFolder(name("aim folder"));
  chmod(workspace.path(name("aim folder")).c_str(), 02700);
  workspace.makeLink(name("to file"), "aim of links");
  workspace.makeLink(name("to folder"), "aim folder");
  workspace.makeLink(name("dangling"), "nowhere");
}

std::vector<std::string> entriesOf(const std::string &folder) {
  std::vector<std::string> names = {"", "missing", "missing/x", "to file/", "to folder/"};
  const std::string list = popenOf("ls -A --zero '" + folder + "'").text;
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = list.find('\0', begin);
    names.push_back(list.substr(begin, end - begin));
    begin = end + 1;
  }
  return names;
}

std::string colonPath(std::string_view volume, std::string posix) {
  for (char &c : posix) c = c == '/' ? ':' : c == ':' ? '/' : c;
  return std::string(volume) + ":" + posix;
}

int literalChmod(const std::string &path) {
  if (popenOf("ls -a '" + path + "' 2>/dev/null", 1).text.empty()) return -1;
  popenOf("chmod 0777 '" + path + "' 2>/dev/null");
  return 0;
}

// The entries on which the library and the command differ.
std::string differences(const Workspace &workspace) {
  const Volumes volumes(workspace.path());
  const std::vector<std::string> names = entriesOf(workspace.path("ours"));
  std::string text;
  for (const std::string &name : names) {
    if (BSDMACchmodrwx(colonPath("ours", name).c_str()) !=
        literalChmod(workspace.path("theirs/" + name))) {
      text += "result of " + name + "\n";
    }
  }
  for (const std::string &name : names) {
    const unsigned ours = modeOf(workspace.path("ours/" + name));
    const unsigned theirs = modeOf(workspace.path("theirs/" + name));
    if (ours != theirs) {
      text += name + " " + std::to_string(ours) + " not " + std::to_string(theirs) + "\n";
    }
  }
  return text;
}

TEST(Chmodrwx, AgreesWithTheToolOnAZooOfPaths) {
  const Workspace workspace;
  makeZoo(workspace, "ours");
  makeZoo(workspace, "theirs");
  ASSERT_GT(entriesOf(workspace.path("ours")).size(), 30u);
  EXPECT_EQ(differences(workspace), "");
}

TEST(Chmodrwx, AgreesWithTheToolForTheOwner) {
  const std::string answer = asPlainUser([] {
    const Workspace workspace;
    makeZoo(workspace, "ours");
    makeZoo(workspace, "theirs");
    return differences(workspace);
  });
  EXPECT_EQ(answer.substr(answer.find(';')), ";");
  EXPECT_NE(answer.substr(0, 6), "uid 0;");
}

TEST(Chmodrwx, OpensFilesAndFoldersToAll) {
  const Workspace workspace;
  const Volumes volumes(workspace.path());
  workspace.makeFolder("Data/sub");
  workspace.makeFile("Data/sub/a:b");
  chmod(workspace.path("Data/sub/a:b").c_str(), 04600);
  chmod(workspace.path("Data/sub").c_str(), 02700);
  EXPECT_EQ(BSDMACchmodrwx("Data:sub:a/b"), 0);
  EXPECT_EQ(BSDMACchmodrwx("Data:sub"), 0);
  EXPECT_EQ(modeOf(workspace.path("Data/sub/a:b")), 0777u);
  EXPECT_EQ(modeOf(workspace.path("Data/sub")), 02777u);
}

TEST(Chmodrwx, SaysWhetherThePathExists) {
  const Workspace workspace;
  const Volumes volumes(workspace.path());
  workspace.makeLink("dangling", "nowhere");
  EXPECT_EQ(BSDMACchmodrwx("dangling"), 0);
  EXPECT_EQ(BSDMACchmodrwx("missing:file"), -1);
  EXPECT_EQ(BSDMACchmodrwx("missing"), -1);
  EXPECT_EQ(BSDMACchmodrwx(("dangling:" + std::string(400, 'x')).c_str()), -1);
  EXPECT_EQ(BSDMACchmodrwx(nullptr), -1);
}

TEST(Chmodrwx, GivesZeroWhereTheModeCannotBeChanged) {
  const Workspace workspace;
  const Volumes volumes(workspace.path());
  const std::string file = workspace.makeFile("file");
  chmod(file.c_str(), 0644);
  struct stat entry;
  ASSERT_EQ(stat(file.c_str(), &entry), 0);
  const std::string answer = asPlainUser([&] {
    return entry.st_uid == 0 ? std::to_string(BSDMACchmodrwx("file")) : std::string("0");
  });
  EXPECT_EQ(answer.substr(answer.find(';')), ";0");
  EXPECT_EQ(modeOf(file), 0644u);
}

TEST(Chmodrwx, StartsNoProcess) {
  const Workspace workspace;
  const Volumes volumes(workspace.path());
  workspace.makeFile("file");
  const FakeTools tools;
  tools.add("ls");
  tools.add("chmod");
  EXPECT_EQ(BSDMACchmodrwx("file"), 0);
  EXPECT_EQ(modeOf(workspace.path("file")), 0777u);
  EXPECT_EQ(tools.calls(), "");
}

TEST(Chmodrwx, RunsTheToolWhereItsTextDecides) {
  const Volumes volumes("/missing");
  const FakeTools tools;
  tools.add("ls", "[ \"$2\" = '/its here' ] && echo anything");
  tools.add("chmod", "exit 1");
  EXPECT_EQ(BSDMACchmodrwx(":it''s here"), 0);
  EXPECT_EQ(BSDMACchmodrwx(":it''s there"), -1);
  EXPECT_EQ(tools.calls(), "ls[-a][/its here]\nchmod[0777][/its here]\nls[-a][/its there]\n");
}

}  // namespace
}  // namespace korvel::test
