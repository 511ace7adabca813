// SPDX-License-Identifier: MIT
// Listings of folders given as colon paths: trimmed patterns, rows and their colon paths.
#include <algorithm>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvel/files.h>

#include "tests/files/volumes.h"
#include "tests/support/poisoned_buffer.h"

namespace korvel {
namespace {

using test::PoisonedBuffer;
using test::Restored;
using test::Volumes;

std::vector<std::string> visited;
int stopAt = -1;

int visit(const char *name) {
  visited.emplace_back(name);
  return static_cast<int>(visited.size()) == stopAt ? 7 : 0;
}

class Listing : public testing::Test {
 protected:
  Listing() {
    visited.clear();
    stopAt = -1;
    for (const char *name : {"actes.tab", "ACTES.TAB", "b.tab.bak", "note.txt", "xabcx", "star*"})
      volumes_.file(name, "");
    volumes_.file("tool.tab", "");
    chmod(volumes_.posix("tool.tab").c_str(), 0755);
    mkdir(volumes_.posix("folder.tab").c_str(), 0777);
  }

  // The rows that a call stored.
  std::vector<std::string> find(const std::string &directory, int rows, const char *pattern,
                                int *found = nullptr) {
    PoisonedBuffer list(static_cast<std::size_t>(256 * std::max(rows, 0)));
    const int count = Dir_FindFiles(list.data(), directory.c_str(), rows, pattern);
    if (found != nullptr) *found = count;
    EXPECT_TRUE(list.guardsIntact());
    std::vector<std::string> texts;
    for (int i = 0; i < std::min(rows, count); ++i) texts.emplace_back(list.data() + 256 * i);
    EXPECT_TRUE(list.untouchedFrom(256 * texts.size()));
    return texts;
  }
  std::vector<std::string> process(const char *directory, const char *pattern) {
    visited.clear();
    Dir_ProcessFiles(directory, pattern, visit);
    return visited;
  }

  Volumes volumes_;
  Restored<int> result_{BSDcr};
};

TEST_F(Listing, RowsHoldColonPaths) {
  int found = 0;
  EXPECT_EQ(find("Data", 10, "*.txt", &found), std::vector<std::string>{"Data:note.txt"});
  EXPECT_EQ(found, 1);
  EXPECT_EQ(find("Data", 10, "*.tab"),
            (std::vector<std::string>{"Data:ACTES.TAB", "Data:actes.tab", "Data:b.tab.bak",
                                      "Data:tool.tab"}));
}

// Kept: a directory given with a final ":" gets a second one.
TEST_F(Listing, AFinalColonIsFollowedByAnother) {
  EXPECT_EQ(find("Data:", 10, "*.txt"), std::vector<std::string>{"Data::note.txt"});
}

TEST_F(Listing, WithMoreMatchesThanRowsAllAreCountedAndTheFirstStored) {
  int found = 0;
  EXPECT_EQ(find("Data", 2, "*.tab", &found),
            (std::vector<std::string>{"Data:ACTES.TAB", "Data:actes.tab"}));
  EXPECT_EQ(found, 4);
  EXPECT_EQ(find("Data", 4, "*.tab", &found).size(), 4u);
  EXPECT_EQ(find("Data", 5, "*.tab", &found).size(), 4u);
  EXPECT_EQ(find("Data", 1, "*.txt", &found).size(), 1u);
  EXPECT_EQ(find("Data", 0, "*.txt", &found).size(), 0u);
  EXPECT_EQ(found, 1);
  EXPECT_EQ(Dir_FindFiles(nullptr, "Data", 0, "*.txt"), 1);
}

TEST_F(Listing, OneStarAtEachEndOfThePatternIsLeftOut) {
  const struct {
    const char *pattern;
    std::size_t files;
  } kCases[] = {
      {"*abc*", 1},
      {"abc", 1},
      {"abc*", 1},
      {"*abc", 1},
      {"*", 7},
      {"**", 7},
      {"", 7},
      // One more star is left to grep, which takes it literally at the beginning: it is in "star*"
      // and in the executable mark of tool.tab.
      {"***", 2},
      {"**abc", 0},
      // A grep pattern: any character, any case.
      {"*.TAB", 4},
      {"a.c", 1},
  };
  for (const auto &row : kCases) {
    int found = 0;
    find("Data", 10, row.pattern, &found);
    EXPECT_EQ(static_cast<std::size_t>(found), row.files) << row.pattern;
    EXPECT_EQ(process("Data", row.pattern).size(), row.files) << row.pattern;
  }
}

TEST_F(Listing, ARowThatWouldNotFitIsEmpty) {
  const std::size_t room = 255 - 5;
  volumes_.file(std::string(room - 4, 'n') + ".fit", "");
  volumes_.file(std::string(room - 3, 'n') + ".not", "");
  EXPECT_EQ(find("Data", 10, "*.fit"),
            std::vector<std::string>{"Data:" + std::string(room - 4, 'n') + ".fit"});
  EXPECT_EQ(find("Data", 10, "*.not"), std::vector<std::string>{""});
}

TEST_F(Listing, NamesComeByteForByte) {
  volumes_.file("\xE9t\xE9.tab", "");
  const auto rows = find("Data", 10, "t\xE9");
  EXPECT_EQ(rows, std::vector<std::string>{"Data:\xE9t\xE9.tab"});
}

// The tools read the apostrophe; the folder is not looked for from the root.
TEST_F(Listing, AVolumeWithAnApostropheGivesNothing) {
  mkdir((volumes_.root() + "/l'\xE9t\xE9").c_str(), 0777);
  std::string path = "l'\xE9t\xE9" + volumes_.folder();
  std::replace(path.begin(), path.end(), '/', ':');
  EXPECT_EQ(find(path, 10, "*").size(), 0u);
  EXPECT_TRUE(process(path.c_str(), "*").empty());
}

TEST_F(Listing, AFolderOf511BytesIsListed) {
  std::string posix = volumes_.folder();
  std::string mac = "Data";
  const auto enter = [&](std::size_t length) {
    const std::string name(length, 'd');
    posix += "/" + name;
    mac += ":" + name;
    mkdir(posix.c_str(), 0777);
  };
  while (posix.size() < 400) enter(40);
  enter(511 - posix.size() - 1);
  std::ofstream(posix + "/a") << "x";
  EXPECT_EQ(process(mac.c_str(), "a"), std::vector<std::string>{"a"});
}

TEST_F(Listing, NoSuchFolderOrNoListGivesNothing) {
  EXPECT_EQ(find("Data:none", 10, "*").size(), 0u);
  EXPECT_EQ(find("Data", -1, "*").size(), 0u);
  char row[256] = "kept";
  EXPECT_EQ(Dir_FindFiles(nullptr, "Data", 1, "*"), 0);
  EXPECT_EQ(Dir_FindFiles(row, nullptr, 1, "*"), 0);
  EXPECT_EQ(Dir_FindFiles(row, "Data", 1, nullptr), 0);
  EXPECT_EQ(Dir_FindFiles(row, std::string(1000, 'n').c_str(), 1, "*"), 0);
  EXPECT_STREQ(row, "kept");
  EXPECT_EQ(Dir_ProcessFiles(nullptr, "*", visit), 0);
  EXPECT_EQ(Dir_ProcessFiles("Data", nullptr, visit), 0);
  EXPECT_EQ(Dir_ProcessFiles("Data:none", "*", visit), 0);
  EXPECT_TRUE(visited.empty());
}

TEST_F(Listing, ProcessingHandsOverNamesUntilAResult) {
  EXPECT_EQ(process("Data", "*.tab"),
            (std::vector<std::string>{"ACTES.TAB", "actes.tab", "b.tab.bak", "tool.tab"}));
  stopAt = 2;
  visited.clear();
  EXPECT_EQ(Dir_ProcessFiles("Data:", "*.tab", visit), 7);
  EXPECT_EQ(visited.size(), 2u);
  EXPECT_EQ(Dir_ProcessFiles("Data", "no such name", visit), 7) << "the result of before";
}

}  // namespace
}  // namespace korvel
