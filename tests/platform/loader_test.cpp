// SPDX-License-Identifier: MIT
// The desktop module: found, loaded, refused with one line.
#include "platform/loader.h"

#include <cstdlib>

#include <sys/wait.h>

#include <gtest/gtest.h>

#include <korvel/desktop.h>

#include "platform/desktop.h"
#include "tests/platform/scripted_desktop.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {
namespace {

using test::EnvironmentGuard;

// The lines on standard error; every failed load writes one.
template <typename Call>
std::string errorOf(Call call) {
  testing::internal::CaptureStderr();
  call();
  return testing::internal::GetCapturedStderr();
}

bool isOneLine(const std::string &text) {
  return text.size() > 1 && text.find('\n') == text.size() - 1;
}

void expectRefused(const std::string &module, const std::string &reason) {
  const EnvironmentGuard chosen("KORVEL_DESKTOP", module.c_str());
  Desktop *loaded = nullptr;
  const std::string error = errorOf([&] { loaded = desktop(); });
  EXPECT_EQ(loaded, nullptr);
  EXPECT_TRUE(isOneLine(error)) << error;
  EXPECT_NE(error.find(reason), std::string::npos) << error;
}

TEST(Loader, AModuleThatIsNotThereIsRefused) {
  expectRefused("/nowhere/korvel-qt.so", "/nowhere/korvel-qt.so");
}

TEST(Loader, AFileThatIsNoLibraryIsRefused) {
  const test::TemporaryFolder folder;
  expectRefused(folder.add("korvel-qt.so", "no library"), "korvel-qt.so");
}

TEST(Loader, ALibraryThatIsNoModuleIsRefused) {
  expectRefused(KORVEL_TEST_NO_MODULE, "is not one");
}

TEST(Loader, AModuleOfAnotherVersionIsRefused) {
  expectRefused(KORVEL_TEST_OTHER_VERSION, "another version");
}

TEST(Loader, ABareNameIsAFileHereAndNotAnInstalledLibrary) { expectRefused("libc.so.6", "./libc"); }

TEST(Loader, WithoutAModuleBesideTheLibraryBothPlacesAreNamed) {
  const EnvironmentGuard unset("KORVEL_DESKTOP", nullptr);
  const std::string error = errorOf([] { EXPECT_EQ(desktop(), nullptr); });
  EXPECT_TRUE(isOneLine(error)) << error;
  EXPECT_NE(error.find("korvel-qt.so is neither in "), std::string::npos) << error;
  EXPECT_NE(error.find("/korvel\n"), std::string::npos) << error;
}

// A loaded module stays, so each of these has a process to itself.
void endWith(bool isRight) { std::_Exit(isRight ? 0 : 1); }

void loadAfterAFailure() {
  const EnvironmentGuard nowhere("KORVEL_DESKTOP", "/nowhere/korvel-qt.so");
  const bool hasFailed = desktop() == nullptr;
  const EnvironmentGuard chosen("KORVEL_DESKTOP", KORVEL_TEST_MODULE);
  endWith(hasFailed && desktop() != nullptr);
}

void loadTwice() {
  const EnvironmentGuard chosen("KORVEL_DESKTOP", KORVEL_TEST_MODULE);
  Desktop *loaded = desktop();
  const EnvironmentGuard other("KORVEL_DESKTOP", "/nowhere/korvel-qt.so");
  endWith(loaded != nullptr && desktop() == loaded);
}

TEST(Loader, AFailedLoadIsTriedAgain) {
  EXPECT_EXIT(loadAfterAFailure(), testing::ExitedWithCode(0), "nowhere");
}

TEST(Loader, ALoadedModuleStays) { EXPECT_EXIT(loadTwice(), testing::ExitedWithCode(0), ""); }

TEST(Loader, AGivenDesktopIsUsedUntilItIsTakenBack) {
  const EnvironmentGuard chosen("KORVEL_DESKTOP", "/nowhere/korvel-qt.so");
  {
    test::ScriptedDesktop desk;
    EXPECT_EQ(desktop(), &desk);
    EXPECT_EQ(desktopWithScreen(), &desk);
    desk.finish();
  }
  EXPECT_NE(errorOf([] { EXPECT_EQ(desktop(), nullptr); }), "");
}

TEST(Loader, WhatIsWrongIsToldOnceToDrawing) {
  const EnvironmentGuard chosen("KORVEL_DESKTOP", "/nowhere/korvel-qt.so");
  {
    test::ScriptedDesktop desk;
    EXPECT_EQ(desktopForDrawing(), &desk);
    desk.finish();
  }
  EXPECT_TRUE(isOneLine(errorOf([] { EXPECT_EQ(desktopForDrawing(), nullptr); })));
  EXPECT_EQ(errorOf([] { EXPECT_EQ(desktopForDrawing(), nullptr); }), "");
  EXPECT_TRUE(isOneLine(errorOf([] { EXPECT_EQ(desktop(), nullptr); })))
      << "a dialog tells it each time";
}

TEST(Loader, ADesktopWithoutAScreenIsToldInOneLine) {
  test::ScriptedDesktop desk;
  desk.takeScreenAway("no screen: it is dark");
  const std::string error = errorOf([] { EXPECT_EQ(desktopWithScreen(), nullptr); });
  EXPECT_TRUE(isOneLine(error)) << error;
  EXPECT_NE(error.find("it is dark"), std::string::npos);
  EXPECT_EQ(desktop(), &desk);
  desk.finish();
}

TEST(HostWindow, NullIsNoWindowAndLoadsNoDesktop) {
  const EnvironmentGuard chosen("KORVEL_DESKTOP", "/nowhere/korvel-qt.so");
  EXPECT_EQ(errorOf([] { EXPECT_EQ(KorvelWidgetWindow(nullptr), nullptr); }), "");
}

TEST(HostWindow, WithoutADesktopThereIsNoWindow) {
  const EnvironmentGuard chosen("KORVEL_DESKTOP", "/nowhere/korvel-qt.so");
  int widget = 0;
  const std::string error = errorOf([&] { EXPECT_EQ(KorvelWidgetWindow(&widget), nullptr); });
  EXPECT_TRUE(isOneLine(error)) << error;
}

// Runs a program without the screen of this process.
int exitStatusWith(const char *environment, const char *program = KORVEL_TEST_NO_SCREEN) {
  const std::string command =
      "env -u KORVEL_UNSEEN -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM " +
      std::string(environment) + " KORVEL_DESKTOP='" KORVEL_TEST_MODULE "' '" + program + "'";
  return std::system(command.c_str());
}

TEST(NoScreen, NothingToShowOnIsNoReasonToDie) {
  const struct {
    const char *environment;
    const char *reason;
  } kCases[] = {
      {"", "neither DISPLAY nor WAYLAND_DISPLAY"},
      {"DISPLAY=:4711", "X server"},
      {"DISPLAY=nonsense", "X server"},
      {"WAYLAND_DISPLAY=/nowhere/wayland", "compositor"},
      {"DISPLAY=:4711 WAYLAND_DISPLAY=nowhere", "compositor"},
      {"QT_QPA_PLATFORM=xcb", "X server"},
      {"QT_QPA_PLATFORM=nonsense", "no plugin for platform nonsense"},
      {"QT_QPA_PLATFORM='wayland;xcb' DISPLAY=:4711", "X server"},
      {"QT_QPA_PLATFORM=XCB", "X server"},
      {"QT_QPA_PLATFORM='xcb:nowhere:0' DISPLAY=:4711", "X server"},
      {"QT_QPA_PLATFORM=offscreen", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=OffScreen", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=offscreen:xyz", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=offscreen KORVEL_UNSEEN=0", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=offscreen KORVEL_UNSEEN=", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=minimal", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=vnc", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=eglfs", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=linuxfb:fb=/dev/fb0", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=minimalegl", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM=vkkhrdisplay", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM='xcb;offscreen;vnc'", "KORVEL_UNSEEN"},
      {"QT_QPA_PLATFORM='offscreen;xcb'", "X server"},
      {"QT_QPA_PLATFORM=';'", "no plugin for platform"},
      {"QT_QPA_PLATFORM=':offscreen'", "no plugin for platform"},
      {"QT_QPA_PLATFORM=../offscreen", "no plugin for platform"},
      {"QT_QPA_PLATFORM=\"$(printf 'deux\\nlignes')\"", "deux?lignes"},
  };
  for (const auto &each : kCases) {
    int status = -1;
    const std::string error = errorOf([&] { status = exitStatusWith(each.environment); });
    EXPECT_EQ(status, 0) << each.environment;
    EXPECT_TRUE(isOneLine(error)) << each.environment << ": " << error;
    EXPECT_NE(error.find(each.reason), std::string::npos) << each.environment << ": " << error;
  }
}

// Whether there is a screen then depends on the machine, but the process survives and soon knows.
TEST(NoScreen, WhatIsMeantUnseenIsNoReasonToDieEither) {
  for (const char *platform :
       {"offscreen:xyz", "offscreen:configfile=/nowhere", "minimal", "minimal:xyz", "vnc",
        "vnc:port=nonsense", "eglfs", "linuxfb", "linuxfb:fb=/dev/null", "minimalegl",
        "vkkhrdisplay", "eglfs;linuxfb;vkkhrdisplay"}) {
    const std::string environment =
        "timeout 60 env KORVEL_UNSEEN=1 QT_QPA_PLATFORM='" + std::string(platform) + "'";
    int status = -1;
    const std::string error = errorOf([&] { status = exitStatusWith(environment.c_str()); });
    ASSERT_TRUE(WIFEXITED(status)) << platform;
    EXPECT_TRUE(WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == 1)
        << platform << ": " << WEXITSTATUS(status);
    EXPECT_EQ(isOneLine(error), WEXITSTATUS(status) == 0) << platform << ": " << error;
  }
}

TEST(NoScreen, WhatIsMeantUnseenIsAScreen) {
  const int status = exitStatusWith("KORVEL_UNSEEN=1 QT_QPA_PLATFORM=offscreen");
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
}

TEST(NoScreen, ImagesAreDrawnAndThenThereIsStillNoScreen) {
  for (const char *environment : {"", "DISPLAY=:4711", "QT_QPA_PLATFORM=xcb", "LC_ALL=C",
                                  "-u XDG_RUNTIME_DIR", "XDG_RUNTIME_DIR=/tmp"}) {
    int status = -1;
    const std::string error =
        errorOf([&] { status = exitStatusWith(environment, KORVEL_TEST_DRAWING_WITHOUT_SCREEN); });
    EXPECT_EQ(status, 0) << environment;
    EXPECT_TRUE(isOneLine(error)) << environment << ": " << error;
    EXPECT_NE(error.find("no screen"), std::string::npos) << environment << ": " << error;
  }
}

// Why there is none is a text of the module's, which the library gives back.
TEST(NoScreen, AnApplicationsOwnMemoryServesTheLibraryAndTheModule) {
  int status = -1;
  const std::string error = errorOf([&] { status = exitStatusWith("", KORVEL_TEST_OWN_MEMORY); });
  EXPECT_EQ(status, 0);
  EXPECT_NE(error.find("neither DISPLAY nor WAYLAND_DISPLAY"), std::string::npos) << error;
}

}  // namespace
}  // namespace korvel::platform
