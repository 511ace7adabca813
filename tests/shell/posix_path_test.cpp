// SPDX-License-Identifier: MIT
// Colon paths by the rule of the shell tools, with the tool itself as the judge of volumes.
#include <random>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvel/desktop.h>
#include <korvel/shell.h>

#include "tests/shell/workspace.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel::test {
namespace {

std::string converted(const std::string &macPath) {
  PoisonedBuffer out(256);
  const int length = BSDMAC2UNIX(macPath.c_str(), out.data());
  EXPECT_EQ(static_cast<std::size_t>(length), out.text().size()) << macPath;
  EXPECT_TRUE(out.guardsIntact());
  return std::string(out.text());
}

// A model in which the tool itself looks for the volume.
std::string literal(const std::string &volumes, const std::string &macPath) {
  const std::size_t colon = macPath.find(':');
  const std::string volume = macPath.substr(0, colon);
  const bool known = !popenOf("ls -a '" + volumes + "/" + volume + "' 2>/dev/null", 1).text.empty();
  const std::string rest = known                        ? ":" + macPath
                           : colon == std::string::npos ? ""
                                                        : macPath.substr(colon);
  std::string posix;
  for (const char c : rest) posix += c == ':' ? '/' : c == '/' ? ':' : c;
  return (known ? volumes : "") + posix;
}

TEST(Volumes, StandUnderTheUsualFolder) { EXPECT_STREQ(szVolumes, "/Volumes"); }

TEST(Mac2Unix, PutsAKnownVolumeUnderTheVolumesFolder) {
  const Workspace workspace;
  workspace.makeFolder("Data");
  workspace.makeFile("File");
  workspace.makeLink("Link", "Data");
  workspace.makeLink("Dangling", "nowhere");
  workspace.makeFolder("caf\xE9");
  workspace.makeFolder("a/b");
  const std::string v = workspace.path();
  const struct {
    const char *macPath;
    std::string posix;
  } kRows[] = {
      {"Data:Docs:a/b", v + "/Data/Docs/a:b"},
      {"Data:", v + "/Data/"},
      {"Data::x", v + "/Data//x"},
      {"Data", v + "/Data"},
      {"Link:x", v + "/Link/x"},
      {"File:x", v + "/File/x"},
      {"Dangling:x", v + "/Dangling/x"},
      {"caf\xE9:\xE9t\xE9", v + "/caf\xE9/\xE9t\xE9"},
      // An unknown volume is dropped: the path is taken from the root.
      {"Other:Docs:a/b", "/Docs/a:b"},
      {"data:x", "/x"},
      {"Other:", "/"},
      // A path without ":" names a volume.
      {"Other", ""},
      // The empty volume name is the volumes folder itself.
      {":x:y", v + "//x/y"},
      {"", v + "/"},
      // The volume is looked for under its name as written.
      {"a/b:c", v + "/a:b/c"},
      {"a/c:d", "/d"},
  };
  for (const std::string end : {"", "/", "///"}) {
    const Volumes volumes(v + end);
    for (const auto &row : kRows) EXPECT_EQ(converted(row.macPath), row.posix) << row.macPath;
  }
}

TEST(Mac2Unix, WithoutAVolumesFolderEveryVolumeIsUnknown) {
  const Workspace workspace;
  const Volumes volumes(workspace.path("missing"));
  EXPECT_EQ(converted("Data:Docs:a/b"), "/Docs/a:b");
  EXPECT_EQ(converted("Data"), "");
  EXPECT_EQ(converted(":x:y"), "/x/y");
  EXPECT_EQ(converted(""), "");
}

TEST(Mac2Unix, LeavesTheVolumesFolderAsItIs) {
  const Workspace workspace;
  workspace.makeFolder("it:has:colons/Data");
  const Volumes volumes(workspace.path("it:has:colons"));
  EXPECT_EQ(converted("Data:a/b"), workspace.path("it:has:colons/Data/a:b"));
}

TEST(Mac2Unix, TakesTheRootForAnEmptyVolumesFolder) {
  const Volumes volumes("");
  EXPECT_EQ(converted("tmp:x"), "/tmp/x");
}

TEST(Mac2Unix, ReadsTheVolumesFolderAtEveryCall) {
  const Workspace workspace;
  workspace.makeFolder("one/Data");
  workspace.makeFolder("two/Data");
  for (const char *name : {"one", "two", "one"}) {
    const Volumes volumes(workspace.path(name));
    EXPECT_EQ(converted("Data:x"), workspace.path(name) + "/Data/x");
  }
}

TEST(Mac2Unix, ReadsAVolumesFolderWithoutTerminatorToItsEnd) {
  const Volumes volumes("/" + std::string(255, 'v'));
  EXPECT_EQ(converted("Data:x"), "/x");
}

TEST(Mac2Unix, GivesNothingForAPathThatDoesNotFit) {
  const Workspace workspace;
  workspace.makeFolder("Data");
  const Volumes volumes(workspace.path());
  const std::string known = workspace.path("Data/");
  for (const std::size_t length : {253u, 254u, 255u, 256u, 257u, 3000u}) {
    const std::string name(length - known.size(), 'n');
    EXPECT_EQ(converted("Data:" + name), length <= 255 ? known + name : "") << length;
    const std::string fromRoot(length - 1, 'n');
    EXPECT_EQ(converted("Other:" + fromRoot), length <= 255 ? "/" + fromRoot : "") << length;
  }
  EXPECT_EQ(converted(std::string(10000, 'V') + ":x"), "/x");
}

TEST(Mac2Unix, ConvertsInPlace) {
  const Workspace workspace;
  workspace.makeFolder("Data");
  const Volumes volumes(workspace.path());
  PoisonedBuffer path(256, "Data:a/b:c");
  BSDMAC2UNIX(path.data(), path.data());
  EXPECT_EQ(path.text(), workspace.path("Data/a:b/c"));
  EXPECT_TRUE(path.guardsIntact());
}

// Dropped, such a volume's paths would lead to something else from the root.
TEST(Mac2Unix, AVolumeThatMayNotBeListedExists) {
  const Workspace workspace;
  const Volumes volumes(workspace.path());
  for (const char *name : {"searchable", "shut"}) workspace.makeFolder(name);
  chmod(workspace.path("searchable").c_str(), 0311);
  chmod(workspace.path("shut").c_str(), 0000);
  for (const std::string name : {"searchable", "shut"}) {
    const std::string answer = asPlainUser([&] {
      return (BSDIsExisting(workspace.path(name).c_str()) == 0 ? "unlisted " : "listed ") +
             converted(name + ":x");
    });
    EXPECT_EQ(answer.substr(answer.find(';')), ";unlisted " + workspace.path(name) + "/x");
    EXPECT_NE(answer.substr(0, 6), "uid 0;");
  }
}

TEST(Mac2Unix, RefusesNull) {
  PoisonedBuffer out(256);
  EXPECT_EQ(BSDMAC2UNIX(nullptr, out.data()), 0);
  EXPECT_EQ(out.text(), "");
  EXPECT_TRUE(out.untouchedFrom(1));
  EXPECT_EQ(BSDMAC2UNIX("Data:x", nullptr), 0);
}

TEST(Mac2Unix, StartsNoProcess) {
  const Workspace workspace;
  workspace.makeFolder("Data");
  const Volumes volumes(workspace.path());
  const FakeTools tools;
  tools.add("ls");
  EXPECT_EQ(converted("Data:x"), workspace.path("Data/x"));
  EXPECT_EQ(converted("Other:x"), "/x");
  EXPECT_EQ(tools.calls(), "");
}

// Kept: a quote in the name of a volume is read by a shell.
TEST(Mac2Unix, RunsTheToolForAVolumeWithAQuote) {
  const Workspace workspace;
  workspace.makeFolder("its");
  workspace.makeFolder("it's");
  const Volumes volumes(workspace.path());
  EXPECT_EQ(converted("it''s:x"), workspace.path("it''s/x"));
  EXPECT_EQ(converted("it's:x"), "/x");
}

TEST(Mac2Unix, AgreesWithTheRulesOnRandomPaths) {
  const Workspace workspace;
  for (const char *name : {"a", "b", "ab", "a/b", "a'b"}) workspace.makeFolder(name);
  workspace.makeLink("ba", "nowhere");
  const Volumes volumes(workspace.path());
  std::mt19937 random(10);
  for (int round = 0; round < 400; ++round) {
    std::string path;
    for (std::size_t length = random() % 8; length > 0; --length) path += "ab:/'\xE9"[random() % 6];
    EXPECT_EQ(converted(path), literal(workspace.path(), path)) << path;
  }
}

}  // namespace
}  // namespace korvel::test
