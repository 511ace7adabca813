// SPDX-License-Identifier: MIT
// Sizes and places in a message box.
#include "messages/layout.h"

#include <limits>

#include <gtest/gtest.h>

namespace korvel::messages {
namespace {

using platform::centredOn;

constexpr int kInt = std::numeric_limits<int>::max();

TEST(Layout, AnyTextOf51CharactersWidensTheBox) {
  EXPECT_EQ(boxWidth(0, 0, 1280), 400);
  EXPECT_EQ(boxWidth(50, 50, 1280), 400);
  EXPECT_EQ(boxWidth(51, 0, 1280), 540);
  EXPECT_EQ(boxWidth(0, 51, 1280), 540);
  EXPECT_EQ(boxWidth(255, 4095, 1280), 540);
}

TEST(Layout, NoBoxIsWiderThanTheScreen) {
  constexpr struct {
    std::size_t text;
    int most, width;
  } kCases[] = {
      {51, 541, 540},
      {51, 540, 540},
      {51, 539, 539},
      {51, 400, 400},
      {51, 320, 320},
      {50, 401, 400},
      {50, 399, 399},
      {50, 220, 220},
      // Always wide enough for the buttons.
      {50, 219, 220},
      {51, 1, 220},
      // A screen of unknown size.
      {51, 0, 540},
      {50, -kInt, 400},
  };
  for (const auto &[text, most, width] : kCases) EXPECT_EQ(boxWidth(0, text, most), width) << most;
  EXPECT_GE(firstOfTwoButtons(220, 90).left, 20);
}

TEST(Layout, HeightFollowsTheLines) {
  constexpr struct {
    Kind kind;
    int lines, most, height;
  } kCases[] = {
      {Kind::Question, 2, 1000, 90},
      {Kind::Note, 2, 1000, 90},
      {Kind::Question, 3, 1000, 110},
      {Kind::Note, 3, 1000, 104},
      {Kind::Question, 1, 1000, 70},
      {Kind::Note, 1, 1000, 76},
      // Below 1 counts as 1.
      {Kind::Question, 0, 1000, 70},
      {Kind::Note, 0, 1000, 76},
      {Kind::Question, -kInt - 1, 1000, 70},
      {Kind::Note, -kInt - 1, 1000, 76},
      // No higher than the screen, but always high enough for a button.
      {Kind::Question, 47, 990, 990},
      {Kind::Question, 48, 990, 990},
      {Kind::Note, 4096, 990, 990},
      {Kind::Question, kInt, 990, 990},
      {Kind::Note, kInt, 990, 990},
      {Kind::Question, 10, 0, 70},
      {Kind::Note, 10, -5, 76},
  };
  for (const auto &row : kCases)
    EXPECT_EQ(boxHeight(row.kind, row.lines, row.most), row.height)
        << row.lines << " lines of " << row.most;
}

TEST(Layout, IsCentredOnTheOwnerWithNoNegativeCorner) {
  EXPECT_EQ(centredOn({100, 200, 900, 800}, 400, 90, 0), (Rect{300, 455, 700, 545}));
  EXPECT_EQ(centredOn({101, 200, 900, 801}, 400, 90, 0), (Rect{300, 455, 700, 545}));
  EXPECT_EQ(centredOn({0, 0, 100, 50}, 400, 90, 0), (Rect{0, 0, 400, 90}));
  EXPECT_EQ(centredOn({-800, 300, -100, 400}, 400, 90, 0), (Rect{0, 305, 400, 395}));
  EXPECT_EQ(centredOn({0, 0, kInt, kInt}, 400, 90, 0).left, (kInt - 400) / 2);
}

TEST(Layout, ButtonsAreAtTheFoot) {
  EXPECT_EQ(firstOfTwoButtons(400, 90), (Rect{200, 58, 280, 78}));
  EXPECT_EQ(lastButton(400, 90), (Rect{300, 58, 380, 78}));
  EXPECT_EQ(firstOfTwoButtons(540, 110), (Rect{340, 78, 420, 98}));
  EXPECT_EQ(lastButton(540, 110), (Rect{440, 78, 520, 98}));
  EXPECT_EQ(lastButton(540, 104), (Rect{440, 72, 520, 92}));
}

TEST(Layout, ThePaneHoldsAllLinesAboveTheButtons) {
  constexpr int kDescent = 4;
  for (const Kind kind : {Kind::Question, Kind::Note}) {
    for (int lines = 1; lines < 40; ++lines) {
      const int height = boxHeight(kind, lines, 10000);
      const Rect pane = textPane(400, height);
      EXPECT_EQ(pane.left, 80);
      EXPECT_LE(kFirstBaseline + (lines - 1) * kLinePitch + kDescent, pane.bottom) << lines;
      EXPECT_LT(pane.bottom, lastButton(400, height).top);
    }
  }
}

}  // namespace
}  // namespace korvel::messages
