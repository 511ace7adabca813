// SPDX-License-Identifier: MIT
// What is told of paths that a shell or a tool reads in another way, and of what is not there.
#include "shell/misuse.h"

#include <string>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"
#include "tests/support/told.h"

namespace korvel::test {
namespace {

int stop(const char *) { return 1; }
int stopLine(char *) { return 1; }

class ShellMisuse : public testing::Test {
 protected:
  // A path in the workspace, in quotes.
  std::string shown(const std::string &name) const { return '"' + space_.path(name) + '"'; }

  Workspace space_;
  InFolder there_{space_.path()};
  char out_[1024] = "";
};

TEST_F(ShellMisuse, NothingToRun) {
  EXPECT_FAILS(BSDInvokeTool(nullptr, out_, 5), -1,
               "BSDInvokeTool(null, ..., 5): argument 1 is null");
  EXPECT_FAILS(BSDInvokeTool("true", out_, -1), -1,
               "BSDInvokeTool(\"true\", ..., -1): there is no buffer of -1 bytes");
  EXPECT_TOLD(BSDInvokeTool("true", nullptr, 0), "");
  EXPECT_FAILS(BSDInvokeToolWr("true", nullptr), -1,
               "BSDInvokeToolWr(\"true\", null): argument 2 is null");
  EXPECT_FAILS(BSDInvokeToolPr("true", nullptr), -1,
               "BSDInvokeToolPr(\"true\", null): argument 2 is null");
  EXPECT_TOLD(BSDkill(nullptr), "BSDkill(null): argument 1 is null");
  EXPECT_TOLD(BSDprocessf(nullptr), "BSDprocessf(null): argument 1 is null");
  EXPECT_TOLD(BSDtestProcess(nullptr), "BSDtestProcess(null): argument 1 is null");
  EXPECT_FAILS(BSDDir_ProcessFiles_f(nullptr), 0,
               "BSDDir_ProcessFiles_f(null): argument 1 is null");
}

TEST_F(ShellMisuse, ABundleThatThereIsNot) {
  CFBundleRef bundle = nullptr;
  EXPECT_FAILS(LoadFrameworkBundle("Other.framework", &bundle), KorvelNoBundleStatus,
               "LoadFrameworkBundle(\"Other.framework\", ...): there is no such bundle: "
               "\"System.framework\" is the only one");
  EXPECT_FAILS(LoadFrameworkBundleSystem("System.framework", nullptr), KorvelNoBundleStatus,
               "LoadFrameworkBundleSystem(\"System.framework\", null): argument 2 is null");
  EXPECT_TOLD(LoadFrameworkBundleSystem("System.framework", &bundle), "");
}

TEST_F(ShellMisuse, APathThatAToolReadsOtherwise) {
  EXPECT_FAILS(BSDIsExisting("Data:a"), 0,
               "BSDIsExisting(\"Data:a\"): \"Data:a\" is a colon path, and a path of the system is "
               "meant: \"/folder/file\"");
  EXPECT_FAILS(BSDIsExisting(""), 0, "BSDIsExisting(\"\"): an empty path names nothing");
  // What follows the quote is no command.
  EXPECT_FAILS(
      BSDIsExisting("none'"), 0,
      "BSDIsExisting(\"none'\"): the \"'\" in \"none'\" ends the shell's quotes, and it runs "
      "the rest");
  EXPECT_TOLD(BSDIsExisting("none"), "");
  EXPECT_TOLD(BSDSCopy("a", nullptr), "BSDSCopy(\"a\", null): argument 2 is null");
  // "cp" prints the usage of the option.
  EXPECT_TOLD(BSDSCopy("-x", "a"),
              "BSDSCopy(\"-x\", \"a\"): \"-x\" is an option of the tool: write \"./\" in front");
  EXPECT_FAILS(BSDopen(nullptr), -1, "BSDopen(null): argument 1 is null");
  Variable path("PATH", space_.path().c_str());
  EXPECT_TOLD(BSDopen("a\"b"),
              "BSDopen(\"a\\\"b\"): the shell reads a \"$\", \"`\", \"\\\" or quote in "
              "\"a\\\"b\"");
}

TEST_F(ShellMisuse, WhatIsNotThere) {
  const std::string file = space_.makeFile("a"), folder = space_.makeFolder("folder");
  const std::string none = space_.path("none");
  EXPECT_FAILS(
      BSDCopy(none.c_str(), folder.c_str()), -1,
      "BSDCopy(" + shown("none") + ", " + shown("folder") + "): there is no " + shown("none"));
  EXPECT_FAILS(
      BSDCopy_psw(file.c_str(), none.c_str(), ""), -1,
      "BSDCopy_psw(" + shown("a") + ", " + shown("none") + ", ...): there is no " + shown("none"));
  EXPECT_TOLD(BSDCopy(file.c_str(), folder.c_str()), "");
  EXPECT_FAILS(BSDRemove(none.c_str()), -1,
               "BSDRemove(" + shown("none") + "): there is no " + shown("none"));
  EXPECT_FAILS(BSDRemove_psw(none.c_str(), ""), -1,
               "BSDRemove_psw(" + shown("none") + ", ...): there is no " + shown("none"));
  EXPECT_FAILS(
      BSDCopy((file + "/").c_str(), folder.c_str()), -1,
      "BSDCopy(\"" + file + "/\", " + shown("folder") + "): there is no \"" + file + "/\"");
  EXPECT_FAILS(
      BSDCopy("..", folder.c_str()), -1,
      "BSDCopy(\"..\", " + shown("folder") +
          "): nothing is copied: the source has no name of its own, would be destroyed, or "
          "the tool refuses");
  EXPECT_TOLD(BSDRemove("a"), "");
}

TEST_F(ShellMisuse, WhatAToolRefuses) {
  // "rm" without the tool of that name.
  space_.makeFile("a");
  Variable path("PATH", space_.path().c_str());
  EXPECT_FAILS(BSDRemove("a"), -1, "BSDRemove(\"a\"): it is still there: the tool refuses");
}

TEST_F(ShellMisuse, AColonPath) {
  EXPECT_FAILS(
      BSDMAC2UNIX("/srv/a", out_), 0,
      "BSDMAC2UNIX(\"/srv/a\", ...): \"/srv/a\" is a path of the system, and a colon path is "
      "meant: \"Volume:folder:file\"");
  EXPECT_FAILS(BSDMAC2UNIX("Data:a", nullptr), 0,
               "BSDMAC2UNIX(\"Data:a\", null): argument 2 is null");
  EXPECT_TOLD(BSDMAC2UNIX("Foo", out_),
              "BSDMAC2UNIX(\"Foo\", ...): there is no volume \"Foo\", and nothing is left of the "
              "path");
  const std::string longest = ':' + std::string(255, 'a');
  EXPECT_NE(told([&] { BSDMAC2UNIX(longest.c_str(), out_); }).find("more than 255 characters"),
            std::string::npos);
  EXPECT_FAILS(BSDMACchmodrwx("none:none"), -1,
               "BSDMACchmodrwx(\"none:none\"): there is nothing at this path");
  EXPECT_FAILS(BSDMACchmodrwx(nullptr), -1, "BSDMACchmodrwx(null): argument 1 is null");
}

TEST_F(ShellMisuse, AListing) {
  space_.makeFile("a.txt");
  space_.makeFile("b.txt");
  EXPECT_FAILS(BSDDir_FindFiles(out_, "none", 4, "txt"), 0,
               "BSDDir_FindFiles(..., \"none\", 4, \"txt\"): there is no \"none\"");
  EXPECT_FAILS(BSDDir_FindFiles(out_, ".", -1, "txt"), 0,
               "BSDDir_FindFiles(..., \".\", -1, \"txt\"): there are no -1 slots: 0 is the least");
  EXPECT_FAILS(BSDDir_FindFiles(nullptr, ".", 1, "txt"), 0,
               "BSDDir_FindFiles(null, \".\", 1, \"txt\"): there is no list of 1 slots");
  EXPECT_TOLD(BSDDir_FindFiles(out_, ".", 1, "txt"),
              "BSDDir_FindFiles(..., \".\", 1, \"txt\"): 2 files are found, and the list has 1 "
              "slots");
  EXPECT_TOLD(BSDDir_FindFiles(out_, ".", 2, "txt"), "");
  EXPECT_FAILS(BSDDir_ProcessFiles("none", "txt", stop), 0,
               "BSDDir_ProcessFiles(\"none\", \"txt\", ...): there is no \"none\"");
  EXPECT_TOLD(BSDInvokeToolPr("true", stopLine), "");
}

}  // namespace
}  // namespace korvel::test
