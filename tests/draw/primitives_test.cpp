// SPDX-License-Identifier: MIT
// Lines and framed rectangles.
#include <climits>

#include "tests/draw/drawing_fixture.h"

namespace korvel::test {
namespace {

using Primitives = DrawTest;

// ---- Lines ----

TEST_F(Primitives, ALineGoesFromPointToPointInItsColour) {
  Line_Ex(port, 3, 4, 50, -6, 9, 5);
  EXPECT_EQ(drawn(), "line (3,4)-(50,-6) 5 red\n");
}

TEST_F(Primitives, ALineOfAnyColour) {
  LineC_Ex(port, 1, 2, 3, 4, RGBColor{0x1234, 0x5678, 0x9ABC}, 1);
  EXPECT_EQ(drawn(), "line (1,2)-(3,4) 1 1234/5678/9abc\n");
}

TEST_F(Primitives, ALineOfNoWidthShowsNothing) {
  Line_Ex(port, 0, 0, 9, 9, 0, 0);
  Line_Ex(port, 0, 0, 9, 9, 0, -1);
  EXPECT_EQ(drawn(), "");
}

// The colours set before do not matter.
TEST_F(Primitives, AfterALineTheForegroundIsBlack) {
  ch_font_set(port, "Arial", 12, 255, 12);
  for (int colour = 0; colour < 16; ++colour) {
    Line_Ex(port, 0, 0, 9, 9, colour, 1);
    drawn();
    TextOut_0(port, 0, 0, "a", 1);
    EXPECT_EQ(drawn(), "text (0,10) \"a\" black, Arial 12\n");
  }
}

TEST_F(Primitives, ALinesPenIsItsOwn) {
  Line_Ex(port, 0, 0, 9, 9, 0, 7);
  Rectangle_Ex(port, 0, 0, 9, 9, 0);
  Line_Ex(port, 0, 0, 9, 9, 0, 1);
  EXPECT_EQ(drawn(),
            "line (0,0)-(9,9) 7 black\n"
            "fill (0,0)-(9,9) black\n"
            "frame (0,0)-(9,9) black\n"
            "line (0,0)-(9,9) 1 black\n");
}

TEST_F(Primitives, FarEndsReachTheDesktopAsTheyAre) {
  Line_Ex(port, INT_MIN, INT_MAX, INT_MAX, INT_MIN, -1, INT_MAX);
  EXPECT_EQ(drawn(), "line (-2147483648,2147483647)-(2147483647,-2147483648) 2147483647 white\n");
}

// ---- Rectangles ----

TEST_F(Primitives, ARectangleIsFilledAndHasABlackFrame) {
  Rectangle_Ex(port, 10, 20, 30, 5, 12);
  EXPECT_EQ(drawn(), "fill (10,20)-(40,25) blue\nframe (10,20)-(40,25) black\n");
}

TEST_F(Primitives, AnEmptyRectangleShowsNeitherFillNorFrame) {
  Rectangle_Ex(port, 10, 20, 0, 5, 9);
  Rectangle_Ex(port, 10, 20, 5, 0, 9);
  Rectangle_Ex(port, 10, 20, -5, 5, 9);
  EXPECT_EQ(drawn(), "");
}

TEST_F(Primitives, AfterARectangleTheForegroundIsBlack) {
  ch_font_set(port, "Arial", 12, 255, 12);
  Rectangle_Ex(port, 0, 0, 9, 9, 9);
  drawn();
  TextOut_0(port, 0, 0, "a", 1);
  EXPECT_EQ(drawn(), "text (0,10) \"a\" black, Arial 12\n");
}

TEST_F(Primitives, ARectanglesSidesAreShorts) {
  Rectangle_Ex(port, 65536 + 1, 65536 * 3 + 2, 10, 10, 9);
  EXPECT_EQ(drawn(), "fill (1,2)-(11,12) red\nframe (1,2)-(11,12) black\n");
  Rectangle_Ex(port, 32767, 0, 1, 10, 9);  // the right side is -32768
  EXPECT_EQ(drawn(), "");
  Rectangle_Ex(port, 32766, 0, 1, 10, 9);
  EXPECT_EQ(drawn(), "fill (32766,0)-(32767,10) red\nframe (32766,0)-(32767,10) black\n");
  Rectangle_Ex(port, INT_MAX, INT_MAX, INT_MAX, INT_MAX, 9);  // (-1,-1)-(-2,-2)
  Rectangle_Ex(port, INT_MIN, INT_MIN, INT_MIN, INT_MIN, 9);  // (0,0)-(0,0)
  EXPECT_EQ(drawn(), "");
}

// ---- No port ----

TEST_F(Primitives, WithoutAPortNothingHappens) {
  Line_Ex(nullptr, 0, 0, 9, 9, 0, 1);
  LineC_Ex(nullptr, 0, 0, 9, 9, RGBColor{}, 1);
  Rectangle_Ex(nullptr, 0, 0, 9, 9, 0);
  EXPECT_EQ(drawn(), "");
}

TEST_F(Primitives, DrawingLeavesTheCurrentPortAlone) {
  CGrafPtr other = KorvelImagePort(10, 10);
  SetPort(other);
  Line_Ex(port, 0, 0, 9, 9, 0, 1);
  LineC_Ex(port, 0, 0, 9, 9, RGBColor{}, 1);
  Rectangle_Ex(port, 0, 0, 9, 9, 0);
  CGrafPtr current = nullptr;
  GetPort(&current);
  EXPECT_EQ(current, other);
  EXPECT_EQ(desk.drawn(1).takeLines(), "");
  KorvelPortRelease(other);
}

}  // namespace
}  // namespace korvel::test
