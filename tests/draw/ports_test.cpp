// SPDX-License-Identifier: MIT
// Ports: made, current, given back, gone with a window.
#include <climits>
#include <functional>
#include <iterator>
#include <vector>

#include "platform/loader.h"
#include "tests/draw/drawing_fixture.h"

namespace korvel::test {
namespace {

class Ports : public testing::Test {
 protected:
  void TearDown() override { desk.finish(); }

  static CGrafPtr current() {
    CGrafPtr port = reinterpret_cast<CGrafPtr>(&desk_);  // anything but a port
    GetPort(&port);
    return port;
  }
  // The result of drawing on the port: a width, or 0 without a surface.
  static int widthOn(CGrafPtr port) { return TextOut_0(port, 0, 0, "a", 1); }

  DrawingGlobals globals;
  ScriptedDesktop desk;

 private:
  static inline char desk_ = 0;
};

// ---- Images ----

TEST_F(Ports, AnImageIsDrawnOnUntilItIsGivenBack) {
  CGrafPtr port = KorvelImagePort(20, 10);
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(widthOn(port), 6);
  KorvelPortRelease(port);
  EXPECT_FALSE(desk.drawn().isOpen);
  EXPECT_EQ(widthOn(port), 0);
  KorvelPortRelease(port);
}

TEST_F(Ports, AnImageHasASize) {
  const struct {
    int width, height;
    bool canBeHad;
  } kRows[] = {
      {1, 1, true},        {32767, 1, true},    {1, 32767, true},          {0, 1, false},
      {1, 0, false},       {-1, 5, false},      {32768, 1, false},         {1, 32768, false},
      {INT_MAX, 1, false}, {INT_MIN, 1, false}, {INT_MAX, INT_MAX, false},
  };
  for (const auto &row : kRows) {
    CGrafPtr port = KorvelImagePort(row.width, row.height);
    EXPECT_EQ(port != nullptr, row.canBeHad) << row.width << " x " << row.height;
    KorvelPortRelease(port);
  }
}

TEST_F(Ports, ANewPortIsBlackOnWhiteTransparentAndPlain) {
  CGrafPtr port = KorvelImagePort(20, 10);
  widthOn(port);
  EXPECT_EQ(desk.drawn().takeLines(), "text (0,0) \"a\" black, system 12\n");
  KorvelPortRelease(port);
}

TEST_F(Ports, SeveralLiveSideBySide) {
  CGrafPtr ports[5];
  for (CGrafPtr &port : ports) port = KorvelImagePort(20, 10);
  for (int i = 0; i < 5; ++i) Line_Ex(ports[i], i, 0, i, 9, 0, 1);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(desk.drawn(i).operations.size(), 1u);
    EXPECT_EQ(desk.drawn(i).operations[0].places[0], static_cast<int>(i));
  }
  for (CGrafPtr port : ports) KorvelPortRelease(port);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_FALSE(desk.drawn(i).isOpen);
}

// An application that makes and releases a port for each picture does not grow.
TEST_F(Ports, PlacesOfPortsGivenBackAreUsedAgain) {
  CGrafPtr first = KorvelImagePort(20, 10);
  KorvelPortRelease(first);
  for (int i = 0; i < 100; ++i) {
    CGrafPtr port = KorvelImagePort(20, 10);
    EXPECT_EQ(port, first);
    KorvelPortRelease(port);
  }
}

// ---- Painters ----

TEST_F(Ports, APainterIsLentUntilItIsGivenBack) {
  int painter = 0;
  CGrafPtr port = KorvelPainterPort(&painter);
  EXPECT_EQ(widthOn(port), 6);
  KorvelPortRelease(port);
  EXPECT_FALSE(desk.drawn().isOpen);
  EXPECT_EQ(KorvelPainterPort(nullptr), nullptr);
}

// ---- Windows ----

TEST_F(Ports, AWindowHasOnePort) {
  const WindowRef window = desk.addWindow({0, 0, 100, 50});
  const WindowRef other = desk.addWindow({0, 0, 100, 50});
  CGrafPtr port = GetWindowPort(window);
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(GetWindowPort(window), port);
  EXPECT_NE(GetWindowPort(other), port);
  EXPECT_EQ(widthOn(port), 6);
}

TEST_F(Ports, AWindowsPortIsNotGivenBackByAnybody) {
  const WindowRef window = desk.addWindow({0, 0, 100, 50});
  CGrafPtr port = GetWindowPort(window);
  SetPort(port);
  KorvelPortRelease(port);
  EXPECT_EQ(widthOn(port), 6);
  EXPECT_EQ(current(), port);
}

TEST_F(Ports, AWindowsPortGoesWithTheWindow) {
  const WindowRef window = desk.addWindow({0, 0, 100, 50});
  CGrafPtr port = GetWindowPort(window);
  SetPort(port);
  desk.closeWindow(window);
  EXPECT_EQ(widthOn(port), 0);
  EXPECT_EQ(current(), nullptr);
  EXPECT_EQ(GetWindowPort(window), nullptr);
}

TEST_F(Ports, ThePlaceOfAWindowsPortIsUsedAgain) {
  const WindowRef window = desk.addWindow({0, 0, 100, 50});
  CGrafPtr port = GetWindowPort(window);
  SetPort(port);
  desk.closeWindow(window);
  // Free places are reused in any order.
  std::vector<CGrafPtr> images;
  do {
    images.push_back(KorvelImagePort(20, 10));
    EXPECT_EQ(current(), nullptr) << "what was current has gone";
  } while (images.back() != port && images.size() < 100);
  EXPECT_EQ(images.back(), port);
  EXPECT_EQ(widthOn(port), 6);
  for (CGrafPtr image : images) KorvelPortRelease(image);
  EXPECT_EQ(widthOn(port), 0);
}

TEST_F(Ports, NoWindowHasNoPort) {
  int noWindow = 0;
  EXPECT_EQ(GetWindowPort(nullptr), nullptr);
  EXPECT_EQ(GetWindowPort(reinterpret_cast<WindowRef>(&noWindow)), nullptr);
}

// ---- The current port ----

TEST_F(Ports, TheCurrentPortIsTheOneSet) {
  EXPECT_EQ(current(), nullptr);
  CGrafPtr a = KorvelImagePort(20, 10);
  CGrafPtr b = KorvelImagePort(20, 10);
  SetPort(a);
  EXPECT_EQ(current(), a);
  SetPort(b);
  EXPECT_EQ(current(), b);
  SetPort(nullptr);
  EXPECT_EQ(current(), nullptr);
  GetPort(nullptr);
  KorvelPortRelease(a);
  KorvelPortRelease(b);
}

TEST_F(Ports, DrawingLeavesTheCurrentPortAlone) {
  PictureFolder folder;
  folder.add("coeur.svg", "20x10");
  CGrafPtr drawnOn = KorvelImagePort(200, 100);
  CGrafPtr other = KorvelImagePort(200, 100);
  int cx = 0;
  int cy = 0;
  const std::function<void()> kFunctions[] = {
      [&] { Line_Ex(drawnOn, 1, 2, 3, 4, 5, 2); },
      [&] {
        LineC_Ex(drawnOn, 1, 2, 3, 4, RGBColor{1, 2, 3}, 2);
      },
      [&] { Rectangle_Ex(drawnOn, 1, 2, 30, 40, 5); },
      [&] { EXPECT_EQ(BMP_affic_desfond0("coeur", drawnOn, 1, 2), 0); },
      [&] { EXPECT_EQ(BMP_affic_dimfond0("coeur", &cx, &cy), 0); },
      [&] { ch_font_set(drawnOn, "Arial", 1, 2, 12); },
      [&] { ch_font_set_ext(drawnOn, "Arial", 1, 2, 12, 1); },
      [&] { ch_font_metrics(drawnOn, &cx, &cy, nullptr); },
      [&] { TextOut_0(drawnOn, 1, 2, "abc", 3); },
      [&] { GetTextExtent_0(drawnOn, "abc", 3, &cx, &cy); },
      [&] { TextOut_Ext(drawnOn, 1, 2, 3, 4, "abc\xFF\x8A", 5); },
      [&] { GetTextExtent_Ext(drawnOn, 1, 2, "abc\xFF\x8A", 5, &cx, &cy); },
      [&] { ch_font_printstr(drawnOn, 1, 2, 100, 3, 4, 12, "abc"); },
      [&] { KorvelPortSave(drawnOn, ""); },
  };
  for (CGrafPtr before : {other, drawnOn, CGrafPtr{nullptr}}) {
    SetPort(before);
    for (std::size_t i = 0; i < std::size(kFunctions); ++i) {
      kFunctions[i]();
      EXPECT_EQ(current(), before) << "function " << i;
    }
  }
  EXPECT_NE(desk.drawn(0).takeLines().find("picture (1,2) coeur"), std::string::npos);
  KorvelPortRelease(drawnOn);
  KorvelPortRelease(other);
}

TEST_F(Ports, GivingBackTheCurrentPortLeavesNone) {
  CGrafPtr a = KorvelImagePort(20, 10);
  CGrafPtr b = KorvelImagePort(20, 10);
  SetPort(a);
  KorvelPortRelease(b);
  EXPECT_EQ(current(), a);
  KorvelPortRelease(a);
  EXPECT_EQ(current(), nullptr);
  CGrafPtr c = KorvelImagePort(20, 10);
  EXPECT_EQ(current(), nullptr) << "its place is used again";
  KorvelPortRelease(c);
}

TEST_F(Ports, APortGivenBackCannotBecomeCurrent) {
  CGrafPtr port = KorvelImagePort(20, 10);
  KorvelPortRelease(port);
  SetPort(port);
  EXPECT_EQ(current(), nullptr);
}

// ---- Saving and reading back ----

TEST_F(Ports, AnImageIsSaved) {
  CGrafPtr port = KorvelImagePort(20, 10);
  EXPECT_EQ(KorvelPortSave(port, "/tmp/page.png"), 1);
  EXPECT_EQ(desk.drawn().savedTo, "/tmp/page.png");
  EXPECT_EQ(KorvelPortSave(port, nullptr), 0);
  EXPECT_EQ(KorvelPortSave(nullptr, "/tmp/page.png"), 0);
  KorvelPortRelease(port);
  EXPECT_EQ(KorvelPortSave(port, "/tmp/page.png"), 0);
}

TEST_F(Ports, APainterIsNeitherSavedNorRead) {
  int painter = 0;
  CGrafPtr port = KorvelPainterPort(&painter);
  RGBColor colour{1, 2, 3};
  EXPECT_EQ(KorvelPortSave(port, "/tmp/page.png"), 0);
  EXPECT_EQ(KorvelPortPixel(port, 0, 0, &colour), 0);
  EXPECT_EQ(colour.red, 1);
  KorvelPortRelease(port);
}

TEST_F(Ports, APixelIsReadBack) {
  CGrafPtr port = KorvelImagePort(20, 10);
  Rectangle_Ex(port, 5, 5, 5, 5, 9);
  RGBColor colour{1, 2, 3};
  EXPECT_EQ(KorvelPortPixel(port, 7, 7, &colour), 1);
  EXPECT_EQ(colour.red, 0xFFFF);
  EXPECT_EQ(colour.green, 0);
  EXPECT_EQ(KorvelPortPixel(port, 0, 0, &colour), 1);
  EXPECT_EQ(colour.green, 0xFFFF);
  KorvelPortRelease(port);
}

TEST_F(Ports, APixelThatIsNoneLeavesTheColour) {
  CGrafPtr port = KorvelImagePort(20, 10);
  RGBColor colour{1, 2, 3};
  EXPECT_EQ(KorvelPortPixel(port, -1, 0, &colour), 0);
  EXPECT_EQ(KorvelPortPixel(port, 20, 0, &colour), 0);
  EXPECT_EQ(KorvelPortPixel(port, 0, 10, &colour), 0);
  EXPECT_EQ(KorvelPortPixel(port, INT_MIN, INT_MAX, &colour), 0);
  EXPECT_EQ(KorvelPortPixel(nullptr, 0, 0, &colour), 0);
  EXPECT_EQ(KorvelPortPixel(port, 0, 0, nullptr), 0);
  EXPECT_EQ(colour.red, 1);
  EXPECT_EQ(colour.blue, 3);
  KorvelPortRelease(port);
}

// ---- Without a desktop ----

class WithoutADesktop : public testing::Test {
 protected:
  ~WithoutADesktop() override { platform::setDesktop(before_); }

  DrawingGlobals globals;

 private:
  platform::Desktop *const before_ = platform::setDesktop(nullptr);
  const EnvironmentGuard nowhere_{"KORVEL_DESKTOP", "/nowhere/korvel-qt.so"};
};

TEST_F(WithoutADesktop, ThereAreNoPortsAndOneLineSaysWhy) {
  testing::internal::CaptureStderr();
  int anything = 0;
  int cx = -1;
  EXPECT_EQ(KorvelImagePort(10, 10), nullptr);
  EXPECT_EQ(KorvelPainterPort(&anything), nullptr);
  EXPECT_EQ(GetWindowPort(reinterpret_cast<WindowRef>(&anything)), nullptr);
  EXPECT_EQ(BMP_affic_dimfond0("puceb", &cx, nullptr), 1);
  EXPECT_EQ(BMP_affic_desfond0("puceb", nullptr, 0, 0), 1);
  EXPECT_EQ(cx, -1);
  const std::string error = testing::internal::GetCapturedStderr();
  EXPECT_NE(error.find("/nowhere/korvel-qt.so"), std::string::npos) << error;
  EXPECT_EQ(error.find('\n'), error.size() - 1) << error;
}

TEST_F(WithoutADesktop, DrawingOnNothingSaysNothing) {
  testing::internal::CaptureStderr();
  TextOut_0(nullptr, 0, 0, "a", 1);
  Line_Ex(nullptr, 0, 0, 1, 1, 0, 1);
  ch_font_printstr(nullptr, 0, 0, 10, 0, 255, 12, "a");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace korvel::test
