// SPDX-License-Identifier: MIT
// Lists of files: the first missing one, and the list without the missing ones.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvel/files.h>
#include <korvel/strings.h>

#include "tests/files/volumes.h"
#include "tests/support/page_end.h"

namespace korvel::test {
namespace {

using Names = std::vector<std::string>;

std::string listOf(const Names &names) {
  std::string bytes;
  for (const std::string &name : names) bytes.append(name).append(1, '\0');
  return bytes.append(1, '\0');
}

// A list that fills readable memory to its last byte.
class FileList : public PageEnd {
 public:
  explicit FileList(const Names &names) : PageEnd(listOf(names)) {}

  Names names() {
    Names found;
    for (const char *name = data(); *name != '\0'; name += found.back().size() + 1)
      found.emplace_back(name);
    return found;
  }
};

// A volume with files a, b, c and a folder.
class MissingFiles : public testing::Test {
 protected:
  MissingFiles() {
    for (const char *name : {"a", "b", "c"}) volumes_.file(name, "x");
    mkdir(volumes_.posix("folder").c_str(), 0777);
  }

  // The index of the missing item that is found, or -1.
  static int detected(const Names &names, const char *directory = "Data") {
    FileList list(names);
    char *item = nullptr;
    const int result = ChCh_Detect_Missing_File(directory, list.data(), &item);
    EXPECT_EQ(list.bytes(), listOf(names));
    EXPECT_EQ(result, item == nullptr ? 0 : 1);
    if (item == nullptr) return -1;
    int index = 0;
    for (char *at = list.data(); at != item; at += std::string_view(at).size() + 1) ++index;
    return index;
  }
  // What is left, with the result.
  static std::pair<Names, int> removed(const Names &names, const char *directory = "Data") {
    FileList list(names);
    const int result = ChCh_Remove_Missing_File(directory, list.data());
    return {list.names(), result};
  }

  using Left = std::pair<Names, int>;
  Volumes volumes_;
};

TEST_F(MissingFiles, FirstOneIsDetected) {
  EXPECT_EQ(detected({"a", "b", "c"}), -1);
  EXPECT_EQ(detected({"x"}), 0);
  EXPECT_EQ(detected({"x", "a"}), 0);
  EXPECT_EQ(detected({"a", "x", "b"}), 1);
  EXPECT_EQ(detected({"a", "b", "x"}), 2);
  EXPECT_EQ(detected({"a", "x", "y"}), 1);
  // A folder is not a file.
  EXPECT_EQ(detected({"a", "folder"}), 1);
  EXPECT_EQ(detected({}), -1);
}

TEST_F(MissingFiles, DetectionTakesNoPlaceForTheAnswer) {
  FileList list({"a", "x"});
  EXPECT_EQ(ChCh_Detect_Missing_File("Data", list.data(), nullptr), 1);
  EXPECT_EQ(ChCh_Detect_Missing_File("Data", nullptr, nullptr), 0);
}

TEST_F(MissingFiles, AreRemovedInPlace) {
  EXPECT_EQ(removed({"a", "b", "c"}), Left({"a", "b", "c"}, 1));
  EXPECT_EQ(removed({"x", "a"}), Left({"a"}, 1));
  EXPECT_EQ(removed({"x", "y", "a", "z", "b"}), Left({"a", "b"}, 1));
  EXPECT_EQ(removed({"a", "folder", "b"}), Left({"a", "b"}, 1));
  // The result is the outcome of the last test.
  EXPECT_EQ(removed({"a", "b", "x"}), Left({"a", "b"}, 0));
  EXPECT_EQ(removed({"x"}), Left({}, 0));
  EXPECT_EQ(removed({"x", "y"}), Left({}, 0));
  EXPECT_EQ(removed({}), Left({}, 1));
  EXPECT_EQ(ChCh_Remove_Missing_File("Data", nullptr), 1);
}

TEST_F(MissingFiles, WithoutADirectoryTheItemIsThePath) {
  EXPECT_EQ(removed({"Data:a", "Data:x", "a"}, ""), Left({"Data:a"}, 0));
  EXPECT_EQ(removed({"Data:a", "Data:x"}, nullptr), Left({"Data:a"}, 0));
  EXPECT_EQ(detected({"Data:a", "Data:x"}, ""), 1);
}

// A volume that is a file leads to the root; after a ":" it would be a folder of that name.
TEST_F(MissingFiles, WithoutADirectoryNoSeparatorStandsInFront) {
  std::ofstream(volumes_.root() + "/start") << "x";
  std::string path = "start" + volumes_.posix("a");
  std::replace(path.begin(), path.end(), '/', ':');
  EXPECT_EQ(removed({path, path + "x"}, ""), Left({path}, 0));
  EXPECT_EQ(removed({path, path + "x"}, nullptr), Left({path}, 0));
  EXPECT_EQ(detected({path, path + "x"}, ""), 1);
}

// Kept: a ':' at the end of the directory is not looked for.
TEST_F(MissingFiles, DirectoryIsTakenUnchanged) {
  volumes_.file("folder/d", "x");
  EXPECT_EQ(removed({"d", "a"}, "Data:folder"), Left({"d"}, 0));
  // Two separators in a row are one in the path made of them.
  EXPECT_EQ(removed({"a", "x"}, "Data:"), Left({"a"}, 0));
}

TEST_F(MissingFiles, PathsOf255CharactersAreTested) {
  // "Data", folders and the name; the POSIX name of each stays within what file systems hold.
  std::string directory = "Data";
  std::string posix = volumes_.folder();
  while (directory.size() < 200) {
    directory += ":" + std::string(49, 'd');
    posix += "/" + std::string(49, 'd');
  }
  ASSERT_TRUE(std::filesystem::create_directories(posix));
  for (const std::size_t length : {253U, 254U, 255U, 256U, 300U}) {
    const std::string name(length - directory.size() - 1, 'n');
    volumes_.file(posix.substr(volumes_.folder().size() + 1) + "/" + name, "x");
    EXPECT_EQ(removed({name}, directory.c_str()), Left({name}, 1)) << length;
    EXPECT_EQ(removed({name + "x", name}, directory.c_str()), Left({name}, 1)) << length;
  }
}

TEST_F(MissingFiles, NoPathIsTooLong) {
  const std::string name(5000, 'n');
  EXPECT_EQ(removed({"a", name, "b"}), Left({"a", "b"}, 1));
  EXPECT_EQ(detected({"a", name}), 1);
  EXPECT_EQ(removed({"a"}, name.c_str()), Left({}, 0));
}

TEST_F(MissingFiles, NamesWith8BitLettersAreBytes) {
  volumes_.file("\xE9t\xE9", "x");
  EXPECT_EQ(removed({"\xE9t\xE8", "\xE9t\xE9"}), Left({"\xE9t\xE9"}, 1));
}

TEST_F(MissingFiles, AgreeWithAVectorOfNames) {
  std::mt19937 random(3);
  for (int run = 0; run < 500; ++run) {
    Names names(random() % 8);
    for (std::string &name : names) name = "abcxyz"[random() % 6];
    Names left;
    int missing = -1;
    int last = 1;
    for (std::size_t i = 0; i < names.size(); ++i) {
      last = names[i] < "d" ? 1 : 0;
      if (last == 1) left.push_back(names[i]);
      if (last == 0 && missing < 0) missing = static_cast<int>(i);
    }
    ASSERT_EQ(detected(names), missing);
    ASSERT_EQ(removed(names), Left(left, last));
  }
}

}  // namespace
}  // namespace korvel::test
