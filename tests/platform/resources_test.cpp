// SPDX-License-Identifier: MIT
// Resource files: the folders, the names, the endings.
#include "platform/resources.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

#include <korvel/desktop.h>

#include "platform/librarypath.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

class Resources : public testing::Test {
 protected:
  void SetUp() override { std::memcpy(before_, szResources, sizeof before_); }
  void TearDown() override { std::memcpy(szResources, before_, sizeof before_); }

  void chooseFolder(const std::string &path) {
    ASSERT_LT(path.size(), sizeof szResources);
    std::strcpy(szResources, path.c_str());
  }

  test::TemporaryFolder folder_;

 private:
  char before_[sizeof szResources];
};

TEST_F(Resources, TheFolderIsNotChosenAtFirst) {
  EXPECT_STREQ(szResources, "");
  EXPECT_EQ(sizeof szResources, 256u);
}

TEST_F(Resources, AFileOfTheChosenFolderIsFound) {
  chooseFolder(folder_.path());
  const std::string icon = folder_.add("icons/7.png");
  EXPECT_EQ(findResource("icons/7", {".svg", ".png"}), icon);
}

TEST_F(Resources, EndingsAreTriedInOrder) {
  chooseFolder(folder_.path());
  const std::string picture = folder_.add("icons/7.png");
  const std::string drawing = folder_.add("icons/7.svg");
  EXPECT_EQ(findResource("icons/7", {".svg", ".png"}), drawing);
  EXPECT_EQ(findResource("icons/7", {".png", ".svg"}), picture);
}

TEST_F(Resources, TheFolderIsReadAtEachUse) {
  const test::TemporaryFolder other;
  folder_.add("icons/7.png");
  const std::string late = other.add("icons/7.png");
  chooseFolder(folder_.path());
  ASSERT_NE(findResource("icons/7", {".png"}), late);
  chooseFolder(other.path());
  EXPECT_EQ(findResource("icons/7", {".png"}), late);
}

TEST_F(Resources, AFolderIsNoResource) {
  chooseFolder(folder_.path());
  folder_.add("icons/7.svg/inside");
  EXPECT_EQ(findResource("icons/7", {".svg"}), "");
}

TEST_F(Resources, WhatIsNowhereIsEmpty) {
  chooseFolder(folder_.path());
  EXPECT_EQ(findResource("icons/4711", {".svg", ".png"}), "");
  EXPECT_EQ(findResource("icons/4711", {}), "");
}

TEST_F(Resources, ABufferFilledToItsLastByteIsReadNoFurther) {
  std::memset(szResources, 'x', sizeof szResources);
  EXPECT_EQ(findResource("icons/4711", {".svg"}), "");
}

TEST_F(Resources, ANameOfAnApplicationIsUtf8OnDisk) {
  chooseFolder(folder_.path());
  const std::string converted = folder_.add("pictures/\xC3\xA9t\xC3\xA9.png");
  const std::string plain = folder_.add("pictures/puce.png");
  EXPECT_EQ(findNamed("pictures", "\xE9t\xE9", {".svg", ".png"}), converted);
  EXPECT_EQ(findNamed("pictures", "\xC3\xA9t\xC3\xA9", {".png"}), converted) << "UTF-8 already";
  EXPECT_EQ(findNamed("pictures", "puce", {".png"}), plain);
  EXPECT_EQ(findNamed("pictures", "../pictures/puce", {".png"}), "") << "another folder";
  EXPECT_EQ(findNamed("pictures", "none", {".png"}), "");
}

TEST_F(Resources, TheDefaultSetIsBesideTheLibraryOrInTheDataFolder) {
  const auto folders = defaultResourceFolders("/opt/korvel/lib");
  ASSERT_EQ(folders.size(), 2u);
  EXPECT_EQ(folders[0], "/opt/korvel/lib/resources");
  EXPECT_EQ(folders[1].rfind("/opt/korvel/lib/", 0), 0u);
  EXPECT_NE(folders[1].find("share/korvel/resources"), std::string::npos);
}

TEST(LibraryPath, AnExecutableTakenAwayWhileItRunsStillFindsItsResources) {
  const test::TemporaryFolder folder;
  folder.add("resources/pictures/puce.png");
  const std::string program = folder.path() + "/program";
  std::filesystem::copy_file(KORVEL_TEST_UNLINKED, program);
  EXPECT_EQ(std::system(program.c_str()), 0);
  EXPECT_FALSE(isFile(program));
}

TEST(LibraryPath, AnExecutableThatHoldsTheLibraryIsItsPlace) {
  EXPECT_EQ(libraryFolder(), executableFolder());
  EXPECT_TRUE(isFile(executableFolder() + "/platform_test"));
  EXPECT_FALSE(isFile(executableFolder()));
  EXPECT_FALSE(isFile(executableFolder() + "/none"));
}

}  // namespace
}  // namespace korvel::platform
