// SPDX-License-Identifier: MIT
// Existence of paths, beside what "ls -a" prints.
#include <cstring>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"

namespace korvel::test {
namespace {

int printsAnything(const std::string &path) {
  return popenOf("ls -a '" + path + "' 2>/dev/null", 1).text.empty() ? 0 : 1;
}

// One path of each kind, relative to the workspace.
std::vector<std::string> makeZoo(const Workspace &zoo) {
  zoo.makeFile("file");
  zoo.makeFile("empty", "");
  zoo.makeFile("closed file");
  chmod(zoo.path("closed file").c_str(), 0000);
  zoo.makeFolder("folder");
  zoo.makeFile("folder/inside");
  zoo.makeFolder("empty folder");
  mkfifo(zoo.path("fifo").c_str(), 0644);
  zoo.makeSocket("socket");
  zoo.makeLink("to file", "file");
  zoo.makeLink("to folder", "folder");
  zoo.makeLink("to link", "to folder");
  zoo.makeLink("to device", "/dev/null");
  zoo.makeLink("dangling", "nowhere");
  zoo.makeLink("dangling far", "/nowhere/at/all");
  zoo.makeLink("through file", "file/x");
  zoo.makeLink("to itself", "to itself");
  zoo.makeLink("to long name", std::string(300, 'n'));
  zoo.makeFolder("unreadable/sub");
  zoo.makeFile("unreadable/inside");
  zoo.makeLink("to unreadable", "unreadable");
  zoo.makeFolder("unsearchable/sub");
  zoo.makeFile("unsearchable/inside");
  zoo.makeLink("into unsearchable", "unsearchable/inside");
  zoo.makeFolder("shut/sub");
  zoo.makeLink("into shut", "shut/sub");
  zoo.makeLink("into nothing in shut", "shut/nothing");
  zoo.makeFolder("for the owner");
  zoo.makeFolder("for others");
  chmod(zoo.path("unreadable").c_str(), 0311);
  chmod(zoo.path("unsearchable").c_str(), 0644);
  chmod(zoo.path("shut").c_str(), 0000);
  chmod(zoo.path("for the owner").c_str(), 0700);
  chmod(zoo.path("for others").c_str(), 0007);
  std::vector<std::string> names = {
      "file", "file/", "file/.", "file/x", "empty", "closed file", "folder", "folder/", "folder//",
      "folder/.", "folder/..", "folder/inside", "folder/missing", "empty folder", "fifo", "socket",
      "to file", "to file/", "to folder", "to folder/", "to folder/inside", "to link", "to link/",
      "to device", "dangling", "dangling/", "dangling/x", "dangling far", "through file",
      "to itself", "to itself/", "to itself/x", "to long name", "unreadable", "unreadable/",
      "unreadable/sub", "unreadable/inside", "unreadable/missing", "to unreadable",
      "to unreadable/", "unsearchable", "unsearchable/", "unsearchable/sub", "unsearchable/inside",
      "into unsearchable", "shut", "shut/sub", "into shut", "into nothing in shut", "for the owner",
      "for others", "missing", "missing/x", std::string(255, 'n'), std::string(256, 'n'),
      std::string(5000, 'n'),
      // Quotes change the command.
      "fi''le", "it's", "file' 'folder", "missing' '", "'", "''"};
  for (const char *odd :
       {" ",    "two  words", " edges ", "line\nfeed", "tab\there",   "back\\slash",
        "a\"b", "$HOME",      "`id`",    "a;b",        "a&b",         "a|b",
        "*",    "?",          "[ab]",    "#",          "~",           "-",
        "-a",   "--help",     "caf\xE9", "\xFF\xFE",   "caf\xC3\xA9", "\x01"}) {
    zoo.makeFile(odd);
    names.push_back(odd);
    names.push_back(std::string("missing ") + odd);
  }
  return names;
}

// The paths of the zoo for which the library and the tool differ.
std::string differences(const Workspace &zoo, const std::vector<std::string> &names) {
  std::string text;
  for (const std::string &name : names) {
    const std::string path = zoo.path(name);
    if (BSDIsExisting(path.c_str()) != printsAnything(path)) text += path + "\n";
  }
  return text;
}

TEST(IsExisting, AgreesWithTheToolOnAZooOfPaths) {
  const Workspace zoo;
  const std::vector<std::string> names = makeZoo(zoo);
  EXPECT_EQ(differences(zoo, names), "");
}

TEST(IsExisting, AgreesWithTheToolForAPlainUser) {
  const Workspace zoo;
  const std::vector<std::string> names = makeZoo(zoo);
  const std::string answer = asPlainUser([&] { return differences(zoo, names); });
  EXPECT_EQ(answer.substr(answer.find(';')), ";");
  EXPECT_NE(answer.substr(0, 6), "uid 0;");
}

TEST(IsExisting, AgreesWithTheToolForTheOwner) {
  const std::string answer = asPlainUser([] {
    const Workspace zoo;
    return differences(zoo, makeZoo(zoo));
  });
  EXPECT_EQ(answer.substr(answer.find(';')), ";");
  EXPECT_NE(answer.substr(0, 6), "uid 0;");
}

TEST(IsExisting, AgreesWithTheToolOnRelativePaths) {
  const Workspace zoo;
  makeZoo(zoo);
  const InFolder folder(zoo.path());
  for (const char *path : {"file", "missing", ".", "..", "/", "./file", "folder/inside", "-", "-a",
                           "-x", "--", "--help", "--version", "-no such option", "--all", "", "'",
                           "file' 'missing", "'$(echo file)'"}) {
    EXPECT_EQ(BSDIsExisting(path), printsAnything(path)) << path;
  }
}

// The answers for an owner who is bound by modes.
TEST(IsExisting, CountsWhatIsListed) {
  const struct {
    const char *name;
    char exists;
  } kRows[] = {
      {"file", '1'},       {"folder", '1'},     {"empty folder", '1'},      {"closed file", '1'},
      {"dangling", '1'},   {"unreadable", '0'}, {"to unreadable", '0'},     {"shut/sub", '0'},
      {"into shut", '0'},  {"missing", '0'},    {"unreadable/inside", '1'}, {"for the owner", '1'},
      {"for others", '0'},
  };
  const std::string answers = asPlainUser([&] {
    const Workspace zoo;
    makeZoo(zoo);
    std::string text;
    for (const auto &row : kRows) text += BSDIsExisting(zoo.path(row.name).c_str()) ? '1' : '0';
    return text;
  });
  std::string expected;
  for (const auto &row : kRows) expected += row.exists;
  EXPECT_NE(answers.substr(0, 6), "uid 0;");
  EXPECT_EQ(answers.substr(answers.find(';') + 1), expected) << answers;
}

TEST(IsExisting, OfNothingIsNo) {
  EXPECT_EQ(BSDIsExisting(""), 0);
  EXPECT_EQ(BSDIsExisting(nullptr), 0);
}

TEST(IsExisting, StartsNoProcess) {
  const Workspace zoo;
  const std::string file = zoo.makeFile("file"), link = zoo.makeLink("link", "nowhere");
  const FakeTools tools;
  tools.add("ls", "exit 1");
  EXPECT_EQ(BSDIsExisting(file.c_str()), 1);
  EXPECT_EQ(BSDIsExisting(link.c_str()), 1);
  EXPECT_EQ(BSDIsExisting(zoo.path().c_str()), 1);
  EXPECT_EQ(BSDIsExisting(zoo.path("missing").c_str()), 0);
  EXPECT_EQ(tools.calls(), "");
}

TEST(IsExisting, RunsTheToolWhereItsTextDecides) {
  const FakeTools tools;
  tools.add("ls", "echo anything");
  EXPECT_EQ(BSDIsExisting("-x y"), 1);
  EXPECT_EQ(BSDIsExisting("/no'  'where"), 1);
  EXPECT_EQ(tools.calls(), "ls[-a][-x y]\nls[-a][/no][where]\n");
}

TEST(IsExisting, NoToolNoAnswer) {
  const SystemVersion system(0x0922);
  EXPECT_EQ(BSDIsExisting("-a"), 0);
}

}  // namespace
}  // namespace korvel::test
