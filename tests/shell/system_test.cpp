// SPDX-License-Identifier: MIT
// The system's version and its one bundle.
#include <stdio.h>
#include <string>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include <korvel/shell.h>

#include "tests/shell/workspace.h"

namespace korvel::test {
namespace {

TEST(System, IsAUnixOfAFixedVersion) {
  EXPECT_EQ(MACOSVersion(), 0x1060);
  EXPECT_EQ(RunningOnCarbonX(), 1);
}

TEST(System, IsAUnixFromVersionTenOn) {
  constexpr struct {
    int version, onUnix;
  } kVersions[] = {{0, 0}, {0x0922, 0}, {0x0FFF, 0}, {0x1000, 1}, {0x1060, 1}};
  for (const auto &row : kVersions) {
    const SystemVersion system(row.version);
    EXPECT_EQ(MACOSVersion(), row.version);
    EXPECT_EQ(RunningOnCarbonX(), row.onUnix) << row.version;
  }
}

TEST(System, RunsNothingBeforeVersionTen) {
  const Workspace workspace;
  const std::string mark = "touch '" + workspace.path("mark") + "'";
  const SystemVersion system(0x0FFF);
  char out[8] = "before";
  EXPECT_EQ(BSDInvokeTool(mark.c_str(), nullptr, 0), -1);
  EXPECT_EQ(BSDInvokeTool(mark.c_str(), out, sizeof out), -1);
  EXPECT_STREQ(out, "before");
  EXPECT_EQ(BSDInvokeToolWr(mark.c_str(), "input"), -1);
  EXPECT_EQ(BSDInvokeToolPr(mark.c_str(), BSDprocesst), -1);
  EXPECT_EQ(BSDopen(workspace.path().c_str()), -1);
  EXPECT_EQ(BSDSCopy(workspace.path().c_str(), workspace.path("copy").c_str()), -1);
  EXPECT_EQ(workspace.snapshot(), "");
}

using Loader = int (*)(const char *, CFBundleRef *);
class Bundle : public testing::TestWithParam<Loader> {};

TEST_P(Bundle, GivesTheCLibrary) {
  CFBundleRef bundle = nullptr;
  ASSERT_EQ(GetParam()("System.framework", &bundle), 0);
  ASSERT_NE(bundle, nullptr);
  for (const char *name : {"popen", "pclose", "fread", "fwrite"}) {
    EXPECT_NE(dlsym(bundle, name), nullptr) << name;
  }
  using Close = int (*)(FILE *);
  using Open = FILE *(*)(const char *, const char *);
  FILE *pipe = reinterpret_cast<Open>(dlsym(bundle, "popen"))("exit 3", "r");
  ASSERT_NE(pipe, nullptr);
  EXPECT_EQ(reinterpret_cast<Close>(dlsym(bundle, "pclose"))(pipe), 3 << 8);
}

TEST_P(Bundle, IsLoadedAnewByEveryCall) {
  CFBundleRef first = nullptr, second = nullptr;
  EXPECT_EQ(GetParam()("System.framework", &first), 0);
  EXPECT_EQ(GetParam()("System.framework", &second), 0);
  EXPECT_NE(dlsym(second, "popen"), nullptr);
}

TEST_P(Bundle, OfAnyOtherNameIsNotFound) {
  for (const char *name : {"", "System", "system.framework", "System.framework/", "libc.so.6"}) {
    CFBundleRef bundle = reinterpret_cast<CFBundleRef>(&bundle);
    EXPECT_EQ(GetParam()(name, &bundle), -4960) << name;
    EXPECT_EQ(bundle, nullptr) << name;
  }
  CFBundleRef bundle = reinterpret_cast<CFBundleRef>(&bundle);
  EXPECT_EQ(GetParam()(nullptr, &bundle), -4960);
  EXPECT_EQ(bundle, nullptr);
  EXPECT_EQ(GetParam()("System.framework", nullptr), -4960);
}

INSTANTIATE_TEST_SUITE_P(BothDomains, Bundle,
                         testing::Values(LoadFrameworkBundle, LoadFrameworkBundleSystem));

}  // namespace
}  // namespace korvel::test
