// SPDX-License-Identifier: MIT
// Choosing a font and reading its measures.
#include <climits>

#include "tests/draw/drawing_fixture.h"

namespace korvel::test {
namespace {

class Fonts : public DrawTest {
 protected:
  // How a text is drawn now, for example `black, Arial 12`.
  std::string look() {
    drawn();
    TextOut_0(port, 0, 0, "a", 1);
    return desk.drawn(0).operations.at(0).look;
  }
};

// ---- Choosing ----

TEST_F(Fonts, AKnownNameIsSelectedInSizeAndColour) {
  EXPECT_EQ(ch_font_set(port, "Courier New", 9, 255, 20), 0);
  EXPECT_EQ(look(), "red, Courier New 20");
  EXPECT_STREQ(ch_font_FontName, "Courier New");
  EXPECT_EQ(char_dy, 16);  // ascent 15
}

// Kept: 2 is underlined and 4 italic, the other way round from the bits of a face.
TEST_F(Fonts, StyleBitsAreTheInterfacesOwn) {
  const struct {
    int style;
    const char *look;
  } kRows[] = {
      {0, "black, Arial 12"},
      {1, "black, Arial 12 bold"},
      {2, "black, Arial 12 underlined"},
      {4, "black, Arial 12 italic"},
      {8, "black, Arial 12 condensed"},
      {16, "black, Arial 12 extended"},
      {1 + 4, "black, Arial 12 bold italic"},
      {31, "black, Arial 12 bold italic underlined condensed extended"},
      {32, "black, Arial 12"},
      {-1, "black, Arial 12 bold italic underlined condensed extended"},
  };
  for (const auto &row : kRows) {
    EXPECT_EQ(ch_font_set_ext(port, "Arial", 0, 255, 12, row.style), 0);
    EXPECT_EQ(look(), row.look) << row.style;
  }
}

TEST_F(Fonts, WithoutAStyleTheFaceIsPlain) {
  ch_font_set_ext(port, "Arial", 0, 255, 12, 1);
  ch_font_set(port, "Arial", 0, 255, 12);
  EXPECT_EQ(look(), "black, Arial 12");
}

TEST_F(Fonts, AnUnknownNameLeavesFontAndSizeButSetsTheRest) {
  ch_font_set(port, "Arial", 0, 255, 20);
  char_dy = 0;
  EXPECT_EQ(ch_font_set_ext(port, "Nimbus", 9, 15, 40, 1), 0);
  EXPECT_EQ(look(), "red on white, Arial 20");
  EXPECT_STREQ(ch_font_FontName, "Nimbus");
  EXPECT_EQ(char_dy, 16);
}

TEST_F(Fonts, AnEmptyNameIsEmptiedAndNothingElseChanges) {
  ch_font_set(port, "Arial", 9, 15, 20);
  char_dy = 77;
  EXPECT_EQ(ch_font_set(port, "", 12, 255, 40), 0);
  EXPECT_STREQ(ch_font_FontName, "");
  EXPECT_EQ(look(), "red on white, Arial 20");
  EXPECT_EQ(char_dy, 77);
}

TEST_F(Fonts, ABackgroundOf255LeavesTheColourAndIsTransparent) {
  ch_font_set(port, "Arial", 0, 11, 12);
  EXPECT_EQ(look(), "black on yellow, Arial 12");
  ch_font_set(port, "Arial", 0, 255, 12);
  EXPECT_EQ(look(), "black, Arial 12");
  ch_font_set(port, "Arial", 0, 256 + 255, 12);  // wraps to white
  EXPECT_EQ(look(), "black on white, Arial 12");
  ch_font_set(port, "Arial", 0, -1, 12);
  EXPECT_EQ(look(), "black on white, Arial 12");
}

TEST_F(Fonts, APortKeepsItsOwnFont) {
  CGrafPtr other = KorvelImagePort(10, 10);
  ch_font_set(port, "Arial", 9, 255, 20);
  ch_font_set(other, "Courier New", 12, 15, 30);
  EXPECT_EQ(look(), "red, Arial 20");
  KorvelPortRelease(other);
}

TEST_F(Fonts, ANameIsCutToTheBuffer) {
  const std::string longest(79, 'a');
  ch_font_set(port, longest.c_str(), 0, 255, 12);
  EXPECT_EQ(ch_font_FontName, longest);
  for (const int length : {80, 81, 5000}) {
    char_dy = 0;
    ch_font_set(port, std::string(static_cast<std::size_t>(length), 'b').c_str(), 0, 255, 12);
    EXPECT_EQ(ch_font_FontName, std::string(79, 'b')) << length;
    EXPECT_EQ(char_dy, 10);
  }
}

TEST_F(Fonts, TheNameMayBeTheBufferItself) {
  std::strcpy(ch_font_FontName, "xArial");
  ch_font_set(port, ch_font_FontName + 1, 0, 255, 12);
  EXPECT_STREQ(ch_font_FontName, "Arial");
  ch_font_set(port, ch_font_FontName, 0, 255, 13);
  EXPECT_STREQ(ch_font_FontName, "Arial");
  EXPECT_EQ(look(), "black, Arial 13");
}

TEST_F(Fonts, ANameOfAnotherLanguageIsLookedUpInTheScreensSet) {
  desk.setFonts({"\x8Epoque"});
  ch_font_set(port, "\xE9poque", 0, 255, 12);
  EXPECT_EQ(desk.drawn(0).operations.size(), 0u);
  TextOut_0(port, 0, 0, "a", 1);
  EXPECT_EQ(desk.drawn(0).operations.at(0).look, "black, \x8Epoque 12");
  EXPECT_STREQ(ch_font_FontName, "\xE9poque");
}

TEST_F(Fonts, AnEmptyNameIsEmptiedWithoutAPortToo) {
  for (const auto set :
       {ch_font_set, +[](CGrafPtr none, const char *name, int fore, int back, int size) {
          return ch_font_set_ext(none, name, fore, back, size, 1);
        }}) {
    std::strcpy(ch_font_FontName, "Arial");
    char_dy = 5;
    EXPECT_EQ(set(nullptr, "", 9, 15, 40), 0);
    EXPECT_STREQ(ch_font_FontName, "");
    EXPECT_EQ(char_dy, 5);
  }
}

TEST_F(Fonts, WithoutPortOrNameNothingHappens) {
  std::strcpy(ch_font_FontName, "Arial");
  char_dy = 5;
  EXPECT_EQ(ch_font_set(nullptr, "Courier New", 0, 255, 12), 0);
  EXPECT_EQ(ch_font_set(port, nullptr, 9, 15, 12), 0);
  EXPECT_EQ(ch_font_set_ext(port, nullptr, 9, 15, 12, 1), 0);
  EXPECT_STREQ(ch_font_FontName, "Arial");
  EXPECT_EQ(char_dy, 5);
  EXPECT_EQ(look(), "black, system 12");
}

TEST_F(Fonts, ChoosingLeavesTheCurrentPortAlone) {
  CGrafPtr other = KorvelImagePort(10, 10);
  SetPort(other);
  ch_font_set(port, "Arial", 0, 255, 12);
  CGrafPtr current = nullptr;
  GetPort(&current);
  EXPECT_EQ(current, other);
  KorvelPortRelease(other);
}

// ---- Measures ----

TEST_F(Fonts, MeasuresAreThoseOfTheCurrentPort) {  // Kept: the port argument is not used.
  CGrafPtr other = KorvelImagePort(10, 10);
  ch_font_set(port, "Arial", 0, 255, 12);
  ch_font_set(other, "Arial", 0, 255, 24);
  SetPort(other);
  int height = -1;
  int widest = -1;
  int leading = -1;
  EXPECT_EQ(ch_font_metrics(port, &height, &widest, &leading), 0);
  EXPECT_EQ(height, 24);
  EXPECT_EQ(widest, 24);
  EXPECT_EQ(leading, 4);
  SetPort(port);
  EXPECT_EQ(ch_font_metrics(nullptr, &height, &widest, &leading), 0);
  EXPECT_EQ(height, 12);
  EXPECT_EQ(widest, 12);
  EXPECT_EQ(leading, 2);
  KorvelPortRelease(other);
}

TEST_F(Fonts, WithoutACurrentPortTheOutputsStay) {
  int height = -1;
  int widest = -2;
  int leading = -3;
  EXPECT_EQ(ch_font_metrics(port, &height, &widest, &leading), 0);
  EXPECT_EQ(height, -1);
  EXPECT_EQ(widest, -2);
  EXPECT_EQ(leading, -3);
}

TEST_F(Fonts, MeasuresThatNobodyWantsAreSkipped) {
  SetPort(port);
  EXPECT_EQ(ch_font_metrics(port, nullptr, nullptr, nullptr), 0);
  int leading = -1;
  EXPECT_EQ(ch_font_metrics(port, nullptr, nullptr, &leading), 0);
  EXPECT_EQ(leading, 2);
}

TEST_F(Fonts, MeasuringAFontLeavesTheOffsetAlone) {
  SetPort(port);
  char_dy = 44;
  int height = 0;
  ch_font_metrics(port, &height, nullptr, nullptr);
  EXPECT_EQ(char_dy, 44);
}

}  // namespace
}  // namespace korvel::test
