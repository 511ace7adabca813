// SPDX-License-Identifier: MIT
// The pixels of images drawn by the desktop module.
#include <string>

#include <korvel/draw.h>

#include "tests/draw/module_fixture.h"

namespace korvel::test {
namespace {

using ModulePixels = ModuleTest;

constexpr int kSide = 60;
constexpr int kWhite = 0xFFFFFF;
constexpr int kBlack = 0x000000;
constexpr int kRed = 0xFF0000;

// The bounds of all that is not white, as "left,top-right,bottom" with the last pixels inside; ""
// for nothing.
std::string inkOf(const Image &image) {
  int left = kSide;
  int top = kSide;
  int right = -1;
  int bottom = -1;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      if (image.pixel(x, y) == kWhite) continue;
      left = std::min(left, x);
      top = std::min(top, y);
      right = std::max(right, x);
      bottom = std::max(bottom, y);
    }
  }
  if (right < 0) return "";
  return std::to_string(left) + ',' + std::to_string(top) + '-' + std::to_string(right) + ',' +
         std::to_string(bottom);
}

int countOf(const Image &image, int colour) {
  int count = 0;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) count += image.pixel(x, y) == colour ? 1 : 0;
  }
  return count;
}

TEST_F(ModulePixels, ThePaletteIsShownAsItIs) {
  const Image image(kSide, kSide);
  constexpr int kShown[] = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080,
                            0x008080, 0x808080, 0xC0C0C0, 0xFF0000, 0x00FF00, 0xFFFF00,
                            0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
  for (int index = 0; index < 16; ++index) {
    Rectangle_Ex(image.port(), 10, 10, 5, 5, index);
    EXPECT_EQ(image.pixel(12, 12), kShown[index]) << index;
  }
}

TEST_F(ModulePixels, ARectangleIsFilledInsideAFrameOfOnePixel) {
  const Image image(kSide, kSide);
  Rectangle_Ex(image.port(), 10, 20, 30, 15, 9);
  EXPECT_EQ(inkOf(image), "10,20-39,34");
  EXPECT_EQ(countOf(image, kRed), 28 * 13);
  EXPECT_EQ(countOf(image, kBlack), 30 * 15 - 28 * 13);
  EXPECT_EQ(image.pixel(11, 21), kRed);
  EXPECT_EQ(image.pixel(10, 21), kBlack);
}

// As TextOut_0 and as TextOut_Ext draw it.
std::string inkOfText(const std::string &text, bool isRich) {
  const Image image(kSide, kSide);
  const int length = static_cast<int>(text.size());
  ch_font_set(image.port(), "Arial", 0, 255, 13);
  if (isRich)
    TextOut_Ext(image.port(), 0, 0, 5, 5, text.data(), length);
  else
    TextOut_0(image.port(), 5, 5, text.data(), length);
  std::string pixels;
  for (int y = 0; y < kSide; ++y)
    for (int x = 0; x < kSide; ++x) pixels += image.pixel(x, y) == kWhite ? '.' : '#';
  return pixels;
}

TEST_F(ModulePixels, ASpaceThatDoesNotBreakLooksLikeOneThatDoes) {
  for (const bool isRich : {false, true}) {
    EXPECT_EQ(inkOfText("a\xA0?", isRich), inkOfText("a ?", isRich));
    EXPECT_NE(inkOfText("a\xA0?", isRich), inkOfText("a?", isRich));
  }
}

TEST_F(ModulePixels, AnEmptyRectangleShowsNothing) {
  const Image image(kSide, kSide);
  Rectangle_Ex(image.port(), 10, 20, 0, 15, 9);
  Rectangle_Ex(image.port(), 10, 20, 15, 0, 9);
  EXPECT_EQ(inkOf(image), "");
  Rectangle_Ex(image.port(), 10, 20, 1, 1, 9);
  EXPECT_EQ(image.pixel(10, 20), kBlack);
  EXPECT_EQ(inkOf(image), "10,20-10,20");
}

TEST_F(ModulePixels, ALineIsAsWideAsItsPenAndHoldsBothEnds) {
  const struct {
    int x1, y1, x2, y2, width;
    const char *ink;
    int pixels;
  } kRows[] = {
      {5, 10, 20, 10, 1, "5,10-20,10", 16},
      {20, 10, 5, 10, 1, "5,10-20,10", 16},
      {5, 10, 5, 20, 1, "5,10-5,20", 11},
      {5, 10, 5, 10, 1, "5,10-5,10", 1},
      {5, 10, 20, 10, 2, "5,10-21,11", 17 * 2},
      {5, 10, 5, 20, 3, "5,10-7,22", 3 * 13},
      {5, 10, 20, 10, 0, "", 0},
  };
  for (const auto &row : kRows) {
    const Image image(kSide, kSide);
    Line_Ex(image.port(), row.x1, row.y1, row.x2, row.y2, 9, row.width);
    EXPECT_EQ(inkOf(image), row.ink);
    EXPECT_EQ(countOf(image, kRed), row.pixels) << row.ink;
  }
}

TEST_F(ModulePixels, AFrameOfRichTextIsTwoPixelsWideAndSharp) {
  const Image image(kSide, kSide);
  ch_font_set(image.port(), "Arial", 0, 255, 12);                // an X is 8 wide
  constexpr char kFrame[] = "\xFF\xC8\x22\x20\xFF\xD5\x2C\x28";  // pen (8,0), point (48,2 lines)
  int height = 0;
  int leading = 0;
  SetPort(image.port());
  ch_font_metrics(nullptr, &height, nullptr, &leading);
  const int bottom = 2 * (height + leading);
  TextOut_Ext(image.port(), 0, 0, 0, 0, kFrame, sizeof kFrame - 1);
  EXPECT_EQ(inkOf(image), "8,0-49," + std::to_string(bottom + 1));
  EXPECT_EQ(countOf(image, kBlack), 42 * (bottom + 2) - 38 * (bottom - 2));
}

TEST_F(ModulePixels, TransparentTextLeavesTheGroundAndOpaqueTextFillsIt) {
  const Image image(kSide, kSide);
  Rectangle_Ex(image.port(), 0, 0, kSide, kSide, 11);
  ch_font_set(image.port(), "Arial", 0, 255, 12);
  const int width = TextOut_0(image.port(), 5, 5, "il", 2);
  EXPECT_EQ(countOf(image, kWhite), 0);
  ch_font_set(image.port(), "Arial", 0, 15, 12);
  TextOut_0(image.port(), 5, 25, "il", 2);
  EXPECT_GT(countOf(image, kWhite), 0);
  EXPECT_NE(image.pixel(4, 30), kWhite);
  EXPECT_NE(image.pixel(5 + width, 30), kWhite);
}

TEST_F(ModulePixels, TheBaselineIsCharDyBelowThePosition) {
  const Image image(kSide, kSide);
  ch_font_set(image.port(), "Arial", 0, 255, 20);
  TextOut_0(image.port(), 5, 10, "H", 1);
  const std::string ink = inkOf(image);
  EXPECT_EQ(ink.substr(ink.rfind(',') + 1), std::to_string(10 + char_dy - 1));
}

TEST_F(ModulePixels, APictureIsDrawnInItsOwnSizeAtThePosition) {
  const Image image(kSide, kSide);
  int cx = 0;
  int cy = 0;
  ASSERT_EQ(BMP_affic_dimfond0("puceb", &cx, &cy), 0);
  EXPECT_EQ(cx, 16);
  EXPECT_EQ(cy, 16);
  EXPECT_EQ(BMP_affic_desfond0("puceb", image.port(), 100, 100), 0);
  EXPECT_EQ(inkOf(image), "");
  EXPECT_EQ(BMP_affic_desfond0("puceb", image.port(), 20, 30), 0);
  int inside = 0;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const bool isInside = x >= 20 && x < 36 && y >= 30 && y < 46;
      if (isInside && image.pixel(x, y) != kWhite) ++inside;
      if (!isInside) {
        EXPECT_EQ(image.pixel(x, y), kWhite) << x << ' ' << y;
      }
    }
  }
  EXPECT_GT(inside, 20);
}

TEST_F(ModulePixels, EachPictureOfRichTextIsThere) {
  for (int code = 148; code <= 168; code = code == 161 ? 168 : code + 1) {
    const Image image(kSide, kSide);
    const char text[] = {'\xFF', static_cast<char>(code)};
    TextOut_Ext(image.port(), 20, 30, 0, 0, text, 2);
    EXPECT_NE(inkOf(image), "") << code;
  }
}

TEST_F(ModulePixels, AlignedTextEndsWhereItShould) {
  const Image left(kSide, kSide);
  const Image right(kSide, kSide);
  ch_font_set(left.port(), "Arial", 0, 255, 12);
  ch_font_set(right.port(), "Arial", 0, 255, 12);
  const int width = TextOut_0(left.port(), 10, 5, "abc", 3);
  TextOut_Ext(right.port(), 10 + width, 5, 0, 0, "\xFF\x83\x61\x62\x63", 5);
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) EXPECT_EQ(left.pixel(x, y), right.pixel(x, y));
  }
}

}  // namespace
}  // namespace korvel::test
