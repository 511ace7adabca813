// SPDX-License-Identifier: MIT
// Rich text: each escape drawn and measured, in texts made by hand.
#include <climits>
#include <memory>
#include <string>

#include "tests/draw/drawing_fixture.h"

namespace korvel::test {
namespace {

// An escape: its code and its arguments.
std::string esc(int code, const std::string &arguments = "") {
  return std::string("\xFF") + static_cast<char>(code) + arguments;
}
// A number as an argument of one byte, and of two.
std::string one(int value) { return {static_cast<char>(value + 32)}; }
std::string two(int value) { return one(value % 224) + one(value / 224); }

// At 16 points a character is 8 wide, the ascent 12, the descent 4, the leading 2; so cw is 8 and
// lh is 18. With no font chosen, text is drawn at y itself.
class RichText : public DrawTest {
 protected:
  RichText() {
    setSize(16);
    folder.add("puceb.svg", "16x16");
    folder.add("repferb.svg", "16x16");
  }
  void setSize(int size) {
    ch_font_set(port, "Arial", 0, 255, size);
    char_dy = 0;
  }
  int draw(const std::string &text, int x = 0, int y = 0, int x0 = 0, int y0 = 0) {
    return TextOut_Ext(port, x, y, x0, y0, text.data(), static_cast<int>(text.size()));
  }
  // "<width>x<height>", with " tab" when the result says so.
  std::string measure(const std::string &text, int x = 0) {
    int cx = -1;
    int cy = -1;
    const int result =
        GetTextExtent_Ext(port, x, 99, text.data(), static_cast<int>(text.size()), &cx, &cy);
    EXPECT_TRUE(result == 0 || result == 1) << result;
    return std::to_string(cx) + 'x' + std::to_string(cy) + (result == 1 ? "" : " tab");
  }

  PictureFolder folder;
};

// ---- Runs ----

TEST_F(RichText, ATextWithoutEscapesIsARun) {
  EXPECT_EQ(draw("abc", 10, 20, 100, 200), 24);
  EXPECT_EQ(drawn(), "text (110,220) \"abc\" black, Arial 16\n");
  EXPECT_EQ(measure("abc"), "24x0");
}

TEST_F(RichText, RunsFollowEachOther) {
  EXPECT_EQ(draw("ab" + esc(130) + "c"), 24);
  EXPECT_EQ(drawn(), "text (0,0) \"ab\" black, Arial 16\ntext (16,0) \"c\" black, Arial 16\n");
}

TEST_F(RichText, IsConvertedForTheScreen) {
  draw("\xE9t\xE9");
  EXPECT_EQ(drawn(), "text (0,0) \"été\" black, Arial 16\n");
}

TEST_F(RichText, TheOffsetIsReadAtEachDraw) {
  char_dy = 7;
  draw("a", 0, 20);
  EXPECT_EQ(drawn(), "text (0,27) \"a\" black, Arial 16\n");
}

TEST_F(RichText, AnEmptyTextIsNothing) {
  EXPECT_EQ(draw(""), 0);
  EXPECT_EQ(measure(""), "0x0");
  EXPECT_EQ(TextOut_Ext(port, 5, 0, 0, 0, nullptr, 0), 0);
  int cx = -1;
  EXPECT_EQ(GetTextExtent_Ext(port, 5, 0, nullptr, 0, &cx, nullptr), 1);
  EXPECT_EQ(cx, 0);
  EXPECT_EQ(drawn(), "");
}

TEST_F(RichText, ARunThatIsTooLongAddsNothing) {
  const std::string longest(255, 'x');
  EXPECT_EQ(draw(longest), 255 * 8);
  EXPECT_EQ(measure(longest), "2040x0");
  drawn();
  EXPECT_EQ(draw(longest + "x" + esc(138)), 16);
  EXPECT_EQ(drawn(), "fill (4,4)-(12,12) red\nframe (4,4)-(12,12) black\n");
  EXPECT_EQ(measure(longest + "x"), "0x0");
}

TEST_F(RichText, OnlyARunIsLimitedNotTheText) {
  const std::string run(200, 'x');
  EXPECT_EQ(draw(run + esc(130) + run), 400 * 8);
}

TEST_F(RichText, ALoneEscapeAtTheEndIsDropped) {
  EXPECT_EQ(draw("abc\xFF"), 24);
  EXPECT_EQ(drawn(), "text (0,0) \"abc\" black, Arial 16\n");
  EXPECT_EQ(measure("abc\xFF"), "24x0");
  EXPECT_EQ(draw("\xFF"), 0);
}

TEST_F(RichText, ACodeWithoutMeaningIsSkipped) {
  for (int code = 0; code < 256; ++code) {
    const bool hasMeaning = (code >= 128 && code <= 131) || code == 133 || code == 134 ||
                            code == 138 || (code >= 148 && code <= 161) || code == 168 ||
                            (code >= 200 && code <= 203) || (code >= 211 && code <= 214);
    if (hasMeaning) continue;
    EXPECT_EQ(draw(esc(code) + "ab"), 16) << code;
    EXPECT_EQ(drawn(), "text (0,0) \"ab\" black, Arial 16\n") << code;
    EXPECT_EQ(measure(esc(code) + "ab"), "16x0") << code;
  }
}

// ---- Units ----

TEST_F(RichText, AnXNarrowerThan8PixelsCountsAs8) {
  setSize(12);  // X is 6 wide
  EXPECT_EQ(draw(esc(138)), 16);
  EXPECT_EQ(measure(esc(138)), "16x16");
  EXPECT_EQ(draw(esc(128, one(2))), 8);
  setSize(14);
  EXPECT_EQ(draw(esc(138)), 16);
  setSize(18);
  EXPECT_EQ(draw(esc(138)), 18);
}

TEST_F(RichText, HalvesAreTruncated) {
  setSize(18);  // cw 9, lh 20
  EXPECT_EQ(draw(esc(128, one(1))), 4);
  EXPECT_EQ(draw(esc(128, one(3))), 13);
  EXPECT_EQ(draw(esc(128, one(-1)), -20), 16) << "toward zero: from -20 to -4";
  setSize(22);  // cw 11, lh 16 + 5 + 3
  draw(esc(200, one(-1) + one(-1)) + esc(202, one(1) + one(1)));
  EXPECT_EQ(drawn(), "line (-5,-6)-(5,6) 2 black\n");
}

// ---- Tabs ----

struct TabRow {
  int x;
  std::string text;
  int advance;
};

TEST_F(RichText, TabsMoveX) {
  const TabRow kRows[] = {
      // To a position right of x, to x itself, to its left.
      {0, esc(128, one(8)), 32},
      {31, esc(128, one(8)), 1},
      {32, esc(128, one(8)), 0},
      {33, esc(128, one(8)), 0},
      {-50, esc(128, one(0)), 50},
      {-50, esc(128, one(-8)), 18},
      {0, esc(128, "\xFF"), 223 * 4},  // 255 may be an argument
      {0, esc(128, std::string(1, '\0')), 0},
      {-200, esc(128, std::string(1, '\0')), 72},
      // By two bytes.
      {0, esc(133, two(8)), 32},
      {0, esc(133, two(224)), 224 * 4},
      {0, esc(133, two(1000)), 4000},
      {0, esc(133, "\xFF\x20"), 223 * 4},
      {0, esc(133, one(0) + one(-1)), 0},
      {-2000, esc(133, one(0) + one(-1)), 2000 - 896},
      // Positions are shorts: 8192 * 4 becomes -32768.
      {0, esc(133, two(8191)), 32764},
      {0, esc(133, two(8192)), 0},
      {-40000, esc(133, two(8192)), 40000 - 32768},
      {0, esc(133, two(16385)), 4},
      // The smallest multiple of the step greater than x. 255, 129, 40 is a step of 32.
      {32, esc(129, "\x28"), 32},
      {0, esc(129, "\x28"), 32},
      {31, esc(129, one(8)), 1},
      {33, esc(129, one(8)), 31},
      {-1, esc(129, one(8)), 1},
      {-32, esc(129, one(8)), 32},
      {-33, esc(129, one(8)), 1},
      {-31, esc(129, one(8)), 31},
      {0, esc(129, "\xFF"), 223 * 4},
      {5, esc(134, two(1000)), 3995},
      {-100000, esc(134, two(2)), 8},
      // A step of 0 or below has no effect.
      {5, esc(129, one(0)), 0},
      {5, esc(129, one(-1)), 0},
      {5, esc(134, two(0)), 0},
      {5, esc(134, two(16384)), 0},  // 65536
      {5, esc(134, two(8192)), 0},   // -32768
      {5, esc(134, two(16385)), 3},  // 4
      // The ends of the range.
      {INT_MIN, esc(129, one(8)), 32},
      {INT_MAX, esc(129, one(8)), 1},
      {INT_MIN, esc(128, one(0)), INT_MAX},  // one more than an int holds
  };
  for (const TabRow &row : kRows) {
    EXPECT_EQ(draw(row.text, row.x), row.advance)
        << row.x << ' ' << testing::PrintToString(row.text);
    EXPECT_EQ(measure(row.text, row.x), std::to_string(row.advance) + "x0 tab");
  }
  EXPECT_EQ(drawn(), "");
}

TEST_F(RichText, WhatFollowsATabIsDrawnFromItsPositionOn) {
  EXPECT_EQ(draw("ab" + esc(128, one(10)) + "c" + esc(129, one(8)) + "d", 1, 2, 100, 200),
            64 - 1 + 8);
  EXPECT_EQ(drawn(),
            "text (101,202) \"ab\" black, Arial 16\n"
            "text (140,202) \"c\" black, Arial 16\n"
            "text (164,202) \"d\" black, Arial 16\n");
}

TEST_F(RichText, ATabThatIsCutOffHasNoEffect) {
  for (const int code : {128, 129, 133, 134}) {
    EXPECT_EQ(draw(std::string("a") + esc(code)), 8) << code;
    EXPECT_EQ(measure(std::string("a") + esc(code)), "8x0") << code;
  }
  for (const int code : {133, 134}) {
    EXPECT_EQ(draw(std::string("a") + esc(code, "x")), 8) << code;
    EXPECT_EQ(measure(std::string("a") + esc(code, "x")), "8x0") << code;
  }
}

// ---- Right-aligned runs ----

TEST_F(RichText, ARightAlignedRunEndsAtXAndDoesNotMoveIt) {
  EXPECT_EQ(draw(esc(131) + "abc", 100, 0, 1000, 0), 0);
  EXPECT_EQ(drawn(), "text (1076,0) \"abc\" black, Arial 16\n");
}

TEST_F(RichText, OnlyTheNextRunIsRightAligned) {
  EXPECT_EQ(draw(esc(131) + "abc" + esc(138) + "d", 100), 24);
  EXPECT_EQ(drawn(),
            "text (76,0) \"abc\" black, Arial 16\n"
            "fill (104,4)-(112,12) red\n"
            "frame (104,4)-(112,12) black\n"
            "text (116,0) \"d\" black, Arial 16\n");
}

TEST_F(RichText, AligningWaitsForTheNextRun) {
  draw(esc(131) + esc(138) + esc(128, one(10)) + "ab");
  EXPECT_EQ(drawn(),
            "fill (4,4)-(12,12) red\n"
            "frame (4,4)-(12,12) black\n"
            "text (24,0) \"ab\" black, Arial 16\n");
}

TEST_F(RichText, AligningIsTakenBack) {
  EXPECT_EQ(draw(esc(131) + esc(130) + "abc", 100), 24);
  EXPECT_EQ(drawn(), "text (100,0) \"abc\" black, Arial 16\n");
}

TEST_F(RichText, AligningOutlastsTheText) {
  EXPECT_EQ(draw(esc(131)), 0);
  EXPECT_EQ(measure("abc"), "24x0") << "measuring has a switch of its own";
  EXPECT_EQ(draw("abc", 100), 0);
  EXPECT_EQ(draw("abc", 100), 24);
  EXPECT_EQ(drawn(),
            "text (76,0) \"abc\" black, Arial 16\n"
            "text (100,0) \"abc\" black, Arial 16\n");
}

TEST_F(RichText, AligningEndsWithARunThatIsTooLong) {
  EXPECT_EQ(draw(esc(131) + std::string(256, 'x') + esc(130), 100), 0);
  EXPECT_EQ(draw(esc(131) + std::string(256, 'x'), 100), 0);
  EXPECT_EQ(draw("ab", 100), 16);
}

TEST_F(RichText, BehindAnAlignmentNoRunIsMeasuredUntilItIsTakenBack) {
  // Kept: right alignment lasts until it is taken back, and not for the next run only.
  EXPECT_EQ(measure(esc(131) + "abc" + esc(138) + "d"), "16x16");
  EXPECT_EQ(measure("abc"), "0x0");
  EXPECT_EQ(draw("abc", 100), 24) << "drawing has a switch of its own";
  EXPECT_EQ(measure("ab" + esc(130) + "c"), "8x0");
  EXPECT_EQ(measure("abc"), "24x0");
}

// ---- Bullets and pictures ----

TEST_F(RichText, ABulletIsARedSquareInABlackFrame) {
  setSize(18);  // cw 9
  EXPECT_EQ(draw("a" + esc(138) + "b", 3, 5, 10, 20), 36);
  EXPECT_EQ(drawn(),
            "text (13,25) \"a\" black, Arial 18\n"
            "fill (26,29)-(35,38) red\n"
            "frame (26,29)-(35,38) black\n"
            "text (40,25) \"b\" black, Arial 18\n");
  EXPECT_EQ(measure("a" + esc(138) + "b"), "36x18");
}

TEST_F(RichText, APictureIsDrawnOnePixelBelowTheLine) {
  EXPECT_EQ(draw("a" + esc(168) + "b" + esc(148), 3, 5, 10, 20), 48);
  EXPECT_EQ(drawn(),
            "text (13,25) \"a\" black, Arial 16\n"
            "picture (21,26) puceb\n"
            "text (37,25) \"b\" black, Arial 16\n"
            "picture (45,26) repferb\n");
  EXPECT_EQ(measure("a" + esc(168) + "b"), "32x16");
}

TEST_F(RichText, EachCodeHasItsPicture) {
  const struct {
    int code;
    const char *name;
  } kRows[] = {
      {148, "repferb"}, {149, "repouvb"}, {150, "repferr"}, {151, "repouvr"}, {152, "repferv"},
      {153, "repouvv"}, {154, "repferj"}, {155, "repouvj"}, {156, "repfero"}, {157, "repouvo"},
      {158, "repfebb"}, {159, "repfebr"}, {160, "repferl"}, {161, "repouvl"}, {168, "puceb"},
  };
  for (const auto &row : kRows) {
    folder.add(std::string(row.name) + ".svg", "16x16");
    EXPECT_EQ(draw(esc(row.code)), 16);
    EXPECT_EQ(drawn(), std::string("picture (0,1) ") + row.name + '\n');
    EXPECT_EQ(measure(esc(row.code)), "16x16") << row.code;
  }
}

TEST_F(RichText, APictureThatCannotBeReadStillTakesItsRoom) {
  folder.add("repouvb.svg", "no size");
  EXPECT_EQ(draw(esc(149) + "a"), 24);
  EXPECT_EQ(drawn(), "text (16,0) \"a\" black, Arial 16\n");
  EXPECT_EQ(measure(esc(149) + "a"), "24x16");
}

TEST_F(RichText, ABulletFarOutsideIsNotBroughtBack) {
  draw(esc(138), 65536);
  draw(esc(138), INT_MAX, INT_MAX, INT_MAX, INT_MAX);  // without a size there
  EXPECT_EQ(drawn(), "fill (65540,4)-(65548,12) red\nframe (65540,4)-(65548,12) black\n");
}

// Kept: as any framed rectangle, a bullet leaves the foreground black.
TEST_F(RichText, WhatFollowsABulletALineOrAFrameIsBlack) {
  const std::string kMarks[] = {esc(138), esc(202, one(2) + one(2)), esc(213, one(4) + one(4))};
  for (const std::string &mark : kMarks) {
    ch_font_set(port, "Arial", 9, 255, 16);
    draw("a" + mark + "b");
    EXPECT_EQ(desk.drawn(0).operations.front().look, "red, Arial 16");
    EXPECT_EQ(desk.drawn(0).operations.back().look, "black, Arial 16");
    drawn();
  }
}

// ---- Pen, lines, frames ----

TEST_F(RichText, ALineGoesFromThePenToThePoint) {
  // Across 4 pixels a half, down 18 * v / 4.
  EXPECT_EQ(draw(esc(200, one(2) + one(1)) + esc(202, one(10) + one(4)) + esc(202, one(0) + one(0)),
                 7, 9, 100, 200),
            0);
  EXPECT_EQ(drawn(), "line (108,204)-(140,218) 2 black\nline (140,218)-(100,200) 2 black\n");
}

TEST_F(RichText, AFrameHasThePenAndThePointAsCornersAndLeavesThePen) {
  draw(esc(200, one(2) + one(4)) + esc(213, one(10) + one(8)) + esc(202, one(0) + one(0)));
  EXPECT_EQ(drawn(),
            "line (8,18)-(40,18) 2 black\n"
            "line (40,18)-(40,36) 2 black\n"
            "line (40,36)-(8,36) 2 black\n"
            "line (8,36)-(8,18) 2 black\n"
            "line (8,18)-(0,0) 2 black\n");
}

TEST_F(RichText, PenLineAndFrameByTwoBytes) {
  draw(esc(201, two(300) + two(300)) + esc(203, two(1000) + two(400)) + esc(214, two(1) + two(4)));
  EXPECT_EQ(drawn(),
            "line (1200,1350)-(4000,1800) 2 black\n"
            "line (4000,1800)-(4,1800) 2 black\n"
            "line (4,1800)-(4,18) 2 black\n"
            "line (4,18)-(4000,18) 2 black\n"
            "line (4000,18)-(4000,1800) 2 black\n");
}

TEST_F(RichText, ThePenHasTwoCodesOfEachSize) {
  draw(esc(211, one(2) + one(4)) + esc(202, one(0) + one(0)));
  draw(esc(212, two(2) + two(4)) + esc(202, one(0) + one(0)));
  EXPECT_EQ(drawn(), "line (8,18)-(0,0) 2 black\nline (8,18)-(0,0) 2 black\n");
}

TEST_F(RichText, LinesDoNotMoveX) {
  EXPECT_EQ(draw("a" + esc(202, one(9) + one(9)) + "b"), 16);
  EXPECT_EQ(drawn(),
            "text (0,0) \"a\" black, Arial 16\n"
            "line (0,0)-(36,40) 2 black\n"
            "text (8,0) \"b\" black, Arial 16\n");
}

TEST_F(RichText, ThePenOutlastsTheText) {
  draw(esc(200, one(2) + one(4)));
  draw("abc");
  draw(esc(202, one(0) + one(0)));
  EXPECT_EQ(drawn(), "text (0,0) \"abc\" black, Arial 16\nline (8,18)-(0,0) 2 black\n");
}

TEST_F(RichText, ThePenIsKeptAsShorts) {
  draw(esc(201, two(8192) + two(0)) + esc(203, two(16385) + two(0)) + esc(202, one(0) + one(0)));
  EXPECT_EQ(drawn(), "line (-32768,0)-(65540,0) 2 black\nline (4,0)-(0,0) 2 black\n");
}

TEST_F(RichText, WhatIsLeftOfAPenEscapeIsConsumed) {
  const struct {
    std::string text;
    const char *pen;  // then, across and down
  } kRows[] = {
      // The pen is set across as soon as its h is there.
      {esc(200), "8,18"},
      {esc(200, one(10)), "40,18"},
      {esc(211, one(10)), "40,18"},
      {esc(201), "8,18"},
      {esc(201, one(10)), "8,18"},
      {esc(201, two(10)), "40,18"},
      {esc(201, two(10) + "x"), "40,18"},
      {esc(212, two(10)), "40,18"},
      // Lines and frames draw nothing and leave the pen.
      {esc(202), "8,18"},
      {esc(202, one(10)), "8,18"},
      {esc(203, two(10)), "8,18"},
      {esc(203, two(10) + "x"), "8,18"},
      {esc(213, one(10)), "8,18"},
      {esc(214, two(10)), "8,18"},
      {esc(214, two(10) + "x"), "8,18"},
      {esc(214, "x"), "8,18"},
  };
  for (const auto &row : kRows) {
    draw(esc(200, one(2) + one(4)));
    EXPECT_EQ(draw(row.text), 0) << testing::PrintToString(row.text);
    EXPECT_EQ(drawn(), "");
    draw(esc(202, one(0) + one(0)));
    EXPECT_EQ(drawn(), std::string("line (") + row.pen + ")-(0,0) 2 black\n")
        << testing::PrintToString(row.text);
  }
}

// Kept: the arguments of lines, frames and the pen are measured as text.
TEST_F(RichText, LinesFramesAndPenAreMeasuredWithTheirArgumentsAsText) {
  for (const int code : {200, 202, 211, 213}) {
    EXPECT_EQ(measure(esc(code, "hv") + "abc"), "40x0") << code;
    EXPECT_EQ(measure(esc(code, "h\xFF")), "8x0") << code;
    EXPECT_EQ(measure(esc(code)), "0x0") << code;
  }
  for (const int code : {201, 203, 212, 214}) {
    EXPECT_EQ(measure(esc(code, "hhvv") + "abc"), "56x0") << code;
  }
  // An argument of 255 starts an escape there.
  EXPECT_EQ(measure(esc(200, "\xFF\x8A")), "16x16");
  EXPECT_EQ(draw(esc(200, "\xFF\x8A")), 0);
  EXPECT_EQ(desk.drawn(0).takeLines(), "");
}

TEST_F(RichText, MeasuringLeavesThePen) {
  draw(esc(200, one(2) + one(4)));
  measure(esc(200, one(9) + one(9)));
  draw(esc(202, one(0) + one(0)));
  EXPECT_EQ(drawn(), "line (8,18)-(0,0) 2 black\n");
}

// ---- Outside the contract ----

TEST_F(RichText, ThatCannotBeReadIsNotDrawn) {
  int cx = -1;
  int cy = -2;
  EXPECT_EQ(TextOut_Ext(port, 0, 0, 0, 0, nullptr, 3), 0);
  EXPECT_EQ(TextOut_Ext(port, 0, 0, 0, 0, "abc", -1), 0);
  EXPECT_EQ(TextOut_Ext(port, 0, 0, 0, 0, "abc", INT_MIN), 0);
  EXPECT_EQ(TextOut_Ext(nullptr, 0, 0, 0, 0, "abc", 3), 0);
  EXPECT_EQ(GetTextExtent_Ext(port, 0, 0, nullptr, 3, &cx, &cy), 0);
  EXPECT_EQ(GetTextExtent_Ext(port, 0, 0, "abc", -1, &cx, &cy), 0);
  EXPECT_EQ(GetTextExtent_Ext(port, 0, 0, "abc", INT_MIN, &cx, &cy), 0);
  EXPECT_EQ(GetTextExtent_Ext(nullptr, 0, 0, "abc", 3, &cx, &cy), 0);
  EXPECT_EQ(cx, -1);
  EXPECT_EQ(cy, -2);
  EXPECT_EQ(drawn(), "");
  EXPECT_EQ(GetTextExtent_Ext(port, 0, 0, "abc", 3, nullptr, nullptr), 1);
}

TEST_F(RichText, FarOutsideIsClamped) {
  char_dy = 5;
  EXPECT_EQ(draw("a", INT_MAX, INT_MAX, INT_MAX, INT_MAX), 8);
  EXPECT_EQ(draw("a", INT_MIN, INT_MIN, INT_MIN, INT_MIN), 8);
  EXPECT_EQ(draw(esc(168), INT_MAX, INT_MAX, INT_MAX, INT_MAX), 16);
  EXPECT_EQ(draw(esc(200, one(2) + one(4)) + esc(202, one(0) + one(0)), 0, 0, INT_MAX, INT_MAX), 0);
  EXPECT_EQ(drawn(),
            "text (2147483647,2147483647) \"a\" black, Arial 16\n"
            "text (-2147483648,-2147483648) \"a\" black, Arial 16\n"
            "picture (2147483647,2147483647) puceb\n"
            "line (2147483647,2147483647)-(2147483647,2147483647) 2 black\n");
}

TEST_F(RichText, NothingIsReadBehindTheText) {
  for (const int code : {128, 129, 133, 134, 200, 201, 202, 203, 211, 212, 213, 214}) {
    for (std::size_t length = 0; length < 5; ++length) {
      const std::string text = esc(code, std::string(length, '@'));
      const auto bytes = std::make_unique<char[]>(text.size());  // watched by the sanitizers
      text.copy(bytes.get(), text.size());
      const int len = static_cast<int>(text.size());
      EXPECT_GE(TextOut_Ext(port, 0, 0, 0, 0, bytes.get(), len), 0);
      EXPECT_GE(GetTextExtent_Ext(port, 0, 0, bytes.get(), len, nullptr, nullptr), 0);
    }
  }
}

TEST_F(RichText, LeavesTheCurrentPortAlone) {
  CGrafPtr other = KorvelImagePort(10, 10);
  ch_font_set(other, "Arial", 0, 255, 100);
  SetPort(other);
  draw(esc(200, one(0) + one(4)) + esc(202, one(2) + one(4)));
  EXPECT_EQ(drawn(), "line (0,18)-(8,18) 2 black\n") << "in units of the port's own font";
  measure("abc");
  CGrafPtr current = nullptr;
  GetPort(&current);
  EXPECT_EQ(current, other);
  KorvelPortRelease(other);
}

// ---- In the middle of a box ----

class BoxedText : public RichText {
 protected:
  int print(const char *text, int width, int back = 255, int x = 10) {
    return ch_font_printstr(port, x, 20, width, 9, back, 16, text);
  }
};

TEST_F(BoxedText, IsDrawnInTheMiddleOfTheBox) {
  EXPECT_EQ(print("abc", 100), 10 + 38 + 24);
  EXPECT_EQ(drawn(), "text (48,33) \"abc\" red, Arial 16\n");
  EXPECT_EQ(char_dy, 13);
}

TEST_F(BoxedText, IsShiftedByWholePixels) {
  const struct {
    int width, x;
  } kRows[] = {{0, 10},  {-1, 10}, {INT_MIN, 10},
               {23, 10}, {24, 10}, {25, 10},
               {26, 11}, {27, 11}, {INT_MAX, 10 + (INT_MAX - 24) / 2}};
  for (const auto &row : kRows) {
    print("abc", row.width);
    EXPECT_EQ(desk.drawn(0).operations.at(0).places[0], row.x) << row.width;
    drawn();
  }
}

TEST_F(BoxedText, WithATabStartsAtX) {
  EXPECT_EQ(print(("a" + esc(128, one(10)) + "b").c_str(), 200), 40 + 8);
  EXPECT_EQ(drawn(), "text (10,33) \"a\" red, Arial 16\ntext (40,33) \"b\" red, Arial 16\n");
}

TEST_F(BoxedText, PlacesLinesFromThePortsCorner) {
  print((esc(200, one(2) + one(4)) + esc(202, one(0) + one(0))).c_str(), 0);
  EXPECT_EQ(drawn(), "line (8,18)-(0,0) 2 black\n");
}

TEST_F(BoxedText, LeavesTheForegroundBlack) {
  print("abc", 0);
  drawn();
  TextOut_0(port, 0, 0, "a", 1);
  EXPECT_EQ(drawn(), "text (0,13) \"a\" black, Arial 16\n");
}

TEST_F(BoxedText, HasABackgroundUnlessItIs255) {
  print("a", 0, 15);
  EXPECT_EQ(drawn(), "text (10,33) \"a\" red on white, Arial 16\n");
  print("a", 0, 11);
  print("a", 0, 255);
  EXPECT_EQ(drawn(),
            "text (10,33) \"a\" red on yellow, Arial 16\n"
            "text (10,33) \"a\" red, Arial 16\n");
}

TEST_F(BoxedText, KeepsTheChosenFontAndSetsTheSize) {
  ch_font_set_ext(port, "Courier New", 0, 255, 30, 1);
  print("a", 0);
  EXPECT_EQ(drawn(), "text (10,33) \"a\" red, Courier New 16 bold\n");
}

TEST_F(BoxedText, TakesArialWhereNoFontIsChosen) {
  ch_font_set_ext(port, "Courier New", 0, 255, 30, 1);
  ch_font_set(port, "", 0, 255, 12);
  print("a", 0);
  EXPECT_EQ(drawn(), "text (10,33) \"a\" red, Arial 16\n");
  EXPECT_STREQ(ch_font_FontName, "");
}

TEST_F(BoxedText, KeepsFontAndSizeWhereThereIsNoArialEither) {
  ch_font_set_ext(port, "Courier New", 0, 255, 30, 1);
  ch_font_FontName[0] = '\0';
  desk.setFonts({"Courier New"});
  print("a", 0);
  EXPECT_EQ(drawn(), "text (10,43) \"a\" red, Courier New 30 bold\n");
  EXPECT_EQ(char_dy, 23);
}

TEST_F(BoxedText, ReadsAFontsNameThatFillsItsBuffer) {
  ch_font_set(port, "Courier New", 0, 255, 30);
  std::memset(ch_font_FontName, 'x', sizeof ch_font_FontName);
  print("a", 0);
  EXPECT_EQ(drawn(), "text (10,33) \"a\" red, Courier New 16\n");
}

TEST_F(BoxedText, OfNothingDrawsNothing) {
  EXPECT_EQ(print("", 100), 10 + 50);
  EXPECT_EQ(print(nullptr, 100), 0);
  EXPECT_EQ(ch_font_printstr(nullptr, 10, 20, 100, 9, 255, 16, "abc"), 0);
  EXPECT_EQ(drawn(), "");
}

TEST_F(BoxedText, FarOutsideIsClamped) {
  EXPECT_EQ(print("abc", 100, 255, INT_MAX), INT_MAX);
  EXPECT_EQ(print("abc", INT_MAX, 255, INT_MIN), INT_MIN + (INT_MAX - 24) / 2 + 24);
}

TEST_F(BoxedText, LeavesTheCurrentPortAlone) {
  CGrafPtr other = KorvelImagePort(10, 10);
  SetPort(other);
  print("abc", 100);
  CGrafPtr current = nullptr;
  GetPort(&current);
  EXPECT_EQ(current, other);
  KorvelPortRelease(other);
}

}  // namespace
}  // namespace korvel::test
