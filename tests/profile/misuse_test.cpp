// SPDX-License-Identifier: MIT
// What is told of values that are cut and of names that a profile cannot hold.
#include "profile/misuse.h"

#include <cerrno>
#include <string>

#include <korvel/files.h>
#include <korvel/profile.h>

#include "tests/files/volumes.h"
#include "tests/support/page_end.h"
#include "tests/support/told.h"

namespace korvel::test {
namespace {

class ProfileMisuse : public testing::Test {
 protected:
  ProfileMisuse() { volumes_.file("p.ini", "[A]\r\nx=abcd\r\nn=12\r\nm=-5\r\n"); }

  Volumes volumes_;
  char text_[64] = "";
};

TEST_F(ProfileMisuse, ADefaultWithoutAnEnd) {
  PageEnd text("wxyz"), full("wxyz"), again("wxyz");
  EXPECT_EQ(GetPrivateProfileString("A", "none", full.data(), full.data(), 4, "Data:p.ini"), 3);
  EXPECT_EQ(GetPrivateProfileString("A", "none", text.data(), text_, 4, "Data:p.ini"), 3);
  EXPECT_STREQ(text_, "wxy");
  const std::string line =
      "GetPrivateProfileString(\"A\", \"none\", \"wxyz\", ..., 4, \"Data:p.ini\"): the default is "
      "cut to 3 characters";
  EXPECT_TOLD(GetPrivateProfileString("A", "none", again.data(), again.data(), 4, "Data:p.ini"),
              line);
  EXPECT_TOLD(GetPrivateProfileString("A", "none", text.data(), text_, 4, "Data:p.ini"), line);
}

TEST_F(ProfileMisuse, AValueThatIsCut) {
  EXPECT_TOLD(
      GetPrivateProfileString("A", "x", "", text_, 4, "Data:p.ini"),
      "GetPrivateProfileString(\"A\", \"x\", \"\", ..., 4, \"Data:p.ini\"): the value has 4 "
      "characters and is cut to 3");
  EXPECT_TOLD(GetPrivateProfileString("A", "none", "abcd", text_, 4, "Data:p.ini"),
              "GetPrivateProfileString(\"A\", \"none\", \"abcd\", ..., 4, \"Data:p.ini\"): the "
              "default is cut to 3 characters");
  EXPECT_TOLD(GetPrivateProfileString("A", "x", "", text_, 5, "Data:p.ini"), "");
  EXPECT_FAILS(GetPrivateProfileString("A", "x", "", text_, 0, "Data:p.ini"), 0,
               "GetPrivateProfileString(\"A\", \"x\", \"\", ..., 0, \"Data:p.ini\"): a buffer of 0 "
               "bytes holds nothing");
  EXPECT_FAILS(GetPrivateProfileString("A", "x", "", nullptr, 5, "Data:p.ini"), 0,
               "GetPrivateProfileString(\"A\", \"x\", \"\", null, 5, \"Data:p.ini\"): there is no "
               "buffer to fill");
}

TEST_F(ProfileMisuse, AKeyOrFileThatIsMissingIsNone) {
  EXPECT_TOLD(GetPrivateProfileString("A", "none", "", text_, 64, "Data:p.ini"), "");
  EXPECT_TOLD(GetPrivateProfileString("A", "x", nullptr, text_, 64, "Data:none.ini"), "");
  EXPECT_TOLD(GetPrivateProfileInt("A", "none", 5, "Data:p.ini"), "");
}

TEST_F(ProfileMisuse, AValueThatIsNoNumber) {
  EXPECT_FAILS(GetPrivateProfileInt("A", "x", 0, "Data:p.ini"), 0,
               "GetPrivateProfileInt(\"A\", \"x\", 0, \"Data:p.ini\"): the value \"abcd\" is no "
               "integer from 0 to 2147483647");
  EXPECT_FAILS(GetPrivateProfileInt("A", "m", 0, "Data:p.ini"), 0,
               "GetPrivateProfileInt(\"A\", \"m\", 0, \"Data:p.ini\"): the value \"-5\" is no "
               "integer from 0 to 2147483647");
  EXPECT_TOLD(
      GetPrivateProfileInt("A", "n", -1, "Data:p.ini"),
      "GetPrivateProfileInt(\"A\", \"n\", -1, \"Data:p.ini\"): a default of -1 counts as 0");
  EXPECT_TOLD(GetPrivateProfileInt("A", "n", 0, "Data:p.ini"), "");
  EXPECT_FAILS(GetPrivateProfileInt(nullptr, "n", 0, "Data:p.ini"), 0,
               "GetPrivateProfileInt(null, \"n\", 0, \"Data:p.ini\"): argument 1 is null");
}

TEST_F(ProfileMisuse, NamesAndPaths) {
  EXPECT_FAILS(GetPrivateProfileString("A]", "x", "", text_, 64, "Data:p.ini"), 0,
               "GetPrivateProfileString(\"A]\", \"x\", \"\", ..., 64, \"Data:p.ini\"): the section "
               "\"A]\" has a character that ends it");
  EXPECT_FAILS(GetPrivateProfileString("A", "x=", "", text_, 64, "Data:p.ini"), 0,
               "GetPrivateProfileString(\"A\", \"x=\", \"\", ..., 64, \"Data:p.ini\"): the key "
               "\"x=\" has a character that ends it");
  EXPECT_FAILS(
      GetPrivateProfileString("A", "\xC3\xA9", "", text_, 64, "Data:p.ini"), 0,
      "GetPrivateProfileString(\"A\", \"Ã©\", \"\", ..., 64, \"Data:p.ini\"): the key looks "
      "like UTF-8: texts are CP1252");
  EXPECT_FAILS(
      GetPrivateProfileString("A", "x", "", text_, 64, "/etc/p.ini"), 0,
      "GetPrivateProfileString(\"A\", \"x\", \"\", ..., 64, \"/etc/p.ini\"): \"/etc/p.ini\" "
      "is a path of the system, and a colon path is meant: \"Volume:folder:file\"");
  EXPECT_FAILS(
      GetPrivateProfileString("A", "x", "", text_, 64, "Data:none:p.ini"), 0,
      "GetPrivateProfileString(\"A\", \"x\", \"\", ..., 64, \"Data:none:p.ini\"): there is "
      "no folder \"Data:none\"");
  for (int i = 0; i < 5; ++i) MFil_Open("", 0, 0);
  EXPECT_FAILS(GetPrivateProfileString("A", "x", "", text_, 64, "Data:p.ini"), 0,
               "GetPrivateProfileString(\"A\", \"x\", \"\", ..., 64, \"Data:p.ini\"): all 5 memory "
               "files are open: close one with MFil_Close");
}

TEST_F(ProfileMisuse, Writing) {
  EXPECT_FAILS(WritePrivateProfileString(nullptr, "x", "1", "Data:p.ini"), 0,
               "WritePrivateProfileString(null, \"x\", \"1\", \"Data:p.ini\"): argument 1 is null");
  EXPECT_FAILS(WritePrivateProfileString("A", "x", "\xC3\xA9", "Data:p.ini"), 1,
               "WritePrivateProfileString(\"A\", \"x\", \"Ã©\", \"Data:p.ini\"): the value looks "
               "like UTF-8: texts are CP1252");
  const std::string longest(16382, 'a');
  EXPECT_NE(told([&] {
              WritePrivateProfileString("A", "x", longest.c_str(), "Data:p.ini");
            }).find("the line has 16384 characters and is cut to 16383"),
            std::string::npos);
  EXPECT_FAILS(WritePrivateProfileString("A", "x", "1", "Data:none:p.ini"), 0,
               "WritePrivateProfileString(\"A\", \"x\", \"1\", \"Data:none:p.ini\"): there is no "
               "folder \"Data:none\"");
  EXPECT_FAILS(WritePrivateProfileString("A", "x", "1", "Data"), 0,
               "WritePrivateProfileString(\"A\", \"x\", \"1\", \"Data\"): the system refuses: Is a "
               "directory");
  EXPECT_FAILS(
      WritePrivateProfileSection("A", "x=1", "/etc/p.ini"), 1,
      "WritePrivateProfileSection(\"A\", \"x=1\", \"/etc/p.ini\"): \"/etc/p.ini\" is a path "
      "of the system, and a colon path is meant: \"Volume:folder:file\"");
  EXPECT_FAILS(WritePrivateProfileSection(nullptr, "x=1", "Data:p.ini"), 0,
               "WritePrivateProfileSection(null, \"x=1\", \"Data:p.ini\"): argument 1 is null");
  EXPECT_TOLD(WritePrivateProfileSection("A", nullptr, "Data:p.ini"), "");
  EXPECT_TOLD(WritePrivateProfileString("A", "x", nullptr, "Data:p.ini"), "");
}

// A write takes two memory files.
TEST_F(ProfileMisuse, WritingWithOneMemoryFileLeft) {
  for (int i = 0; i < 4; ++i) MFil_Open("", 0, 0);
  int withLines = -1;
  EXPECT_TOLD(
      (errno = 5, WritePrivateProfileString("A", "x", "1", "Data:p.ini"), withLines = errno),
      "WritePrivateProfileString(\"A\", \"x\", \"1\", \"Data:p.ini\"): it takes 2 memory "
      "files, and 1 is free: close one with MFil_Close");
  errno = 5;
  WritePrivateProfileString("A", "x", "1", "Data:p.ini");
  EXPECT_EQ(withLines, errno);
  EXPECT_TOLD(GetPrivateProfileString("A", "x", "", text_, 64, "Data:p.ini"), "");
}

}  // namespace
}  // namespace korvel::test
