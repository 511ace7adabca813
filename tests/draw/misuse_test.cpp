// SPDX-License-Identifier: MIT
// What is told of ports that are gone, of texts, colours and pictures.
#include "draw/misuse.h"

#include <string>

#include "tests/draw/drawing_fixture.h"
#include "tests/support/told.h"

namespace korvel::test {
namespace {

class DrawMisuse : public DrawTest {
 protected:
  int cx_ = 0, cy_ = 0;
};

TEST_F(DrawMisuse, APortThatIsNull) {
  EXPECT_TOLD(ch_font_set(nullptr, "Arial", 0, 15, 12),
              "ch_font_set(null, \"Arial\", 0, 15, 12): argument 1 is null");
  EXPECT_TOLD(ch_font_set_ext(nullptr, "Arial", 0, 15, 12, 1),
              "ch_font_set_ext(null, \"Arial\", 0, 15, 12, 1): argument 1 is null");
  EXPECT_FAILS(TextOut_0(nullptr, 0, 0, "a", 1), 0,
               "TextOut_0(null, 0, 0, \"a\", 1): argument 1 is null");
  EXPECT_FAILS(GetTextExtent_0(nullptr, "a", 1, &cx_, &cy_), 0,
               "GetTextExtent_0(null, \"a\", 1, ..., ...): argument 1 is null");
  EXPECT_TOLD(TextOut_Ext(nullptr, 0, 0, 0, 0, "a", 1),
              "TextOut_Ext(null, 0, 0, 0, 0, \"a\", 1): argument 1 is null");
  EXPECT_FAILS(GetTextExtent_Ext(nullptr, 0, 0, "a", 1, &cx_, &cy_), 0,
               "GetTextExtent_Ext(null, 0, 0, \"a\", 1, ..., ...): argument 1 is null");
  EXPECT_FAILS(ch_font_printstr(nullptr, 0, 0, 9, 0, 15, 12, "a"), 0,
               "ch_font_printstr(null, 0, 0, 9, 0, 15, 12, \"a\"): argument 1 is null");
  EXPECT_TOLD(Line_Ex(nullptr, 0, 0, 1, 1, 0, 1),
              "Line_Ex(null, 0, 0, 1, 1, 0, 1): argument 1 is null");
  EXPECT_TOLD(LineC_Ex(nullptr, 0, 0, 1, 1, RGBColor{}, 1),
              "LineC_Ex(null, 0, 0, 1, 1, ..., 1): argument 1 is null");
  EXPECT_TOLD(Rectangle_Ex(nullptr, 0, 0, 1, 1, 0),
              "Rectangle_Ex(null, 0, 0, 1, 1, 0): argument 1 is null");
  EXPECT_FAILS(BMP_affic_desfond0("a", nullptr, 0, 0), 1,
               "BMP_affic_desfond0(\"a\", null, 0, 0): argument 2 is null");
  EXPECT_TOLD(KorvelPortRelease(nullptr), "KorvelPortRelease(null): argument 1 is null");
  EXPECT_FAILS(KorvelPortSave(nullptr, "/tmp/a.png"), 0,
               "KorvelPortSave(null, \"/tmp/a.png\"): argument 1 is null");
  EXPECT_FAILS(KorvelPortPixel(nullptr, 0, 0, nullptr), 0,
               "KorvelPortPixel(null, 0, 0, null): argument 1 is null");
  EXPECT_TOLD(GetPort(nullptr), "GetPort(null): argument 1 is null");
  EXPECT_TOLD(SetPort(nullptr), "");
  EXPECT_TOLD(vga_col(nullptr, 0), "vga_col(null, 0): argument 1 is null");
}

TEST_F(DrawMisuse, APortThatIsGone) {
  const CGrafPtr gone = KorvelImagePort(5, 5);
  KorvelPortRelease(gone);
  EXPECT_FAILS(TextOut_0(gone, 0, 0, "a", 1), 0,
               "TextOut_0(..., 0, 0, \"a\", 1): the port is given back, or gone with its window");
  EXPECT_TOLD(KorvelPortRelease(gone),
              "KorvelPortRelease(...): the port is given back, or gone with its window");
  EXPECT_TOLD(SetPort(gone), "SetPort(...): the port is given back, or gone with its window");
  EXPECT_TOLD(ch_font_metrics(port, &cx_, &cx_, &cx_),
              "ch_font_metrics(..., ..., ..., ...): no port is current: SetPort makes one so");
  SetPort(port);
  EXPECT_TOLD(ch_font_metrics(nullptr, &cx_, nullptr, nullptr), "");
}

TEST_F(DrawMisuse, APortThatCannotBeHad) {
  EXPECT_FAILS(KorvelImagePort(0, 5), nullptr,
               "KorvelImagePort(0, 5): an image has no side of 0 pixels: 1 to 32767");
  EXPECT_TOLD(KorvelImagePort(32767, 32767),
              "KorvelImagePort(32767, 32767): an image has at most 268435456 pixels, and not "
              "1073676289");
  EXPECT_FAILS(KorvelPainterPort(nullptr), nullptr, "KorvelPainterPort(null): argument 1 is null");
  EXPECT_FAILS(KorvelWidgetWindow(nullptr), nullptr,
               "KorvelWidgetWindow(null): argument 1 is null");
  EXPECT_FAILS(GetWindowPort(nullptr), nullptr, "GetWindowPort(null): argument 1 is null");
  int noWindow = 0;
  EXPECT_FAILS(GetWindowPort(reinterpret_cast<WindowRef>(&noWindow)), nullptr,
               "GetWindowPort(...): there is no such window, or no desktop");
}

TEST_F(DrawMisuse, APortOfAWindow) {
  const CGrafPtr ofWindow = GetWindowPort(desk.addWindow({0, 0, 10, 10}));
  ASSERT_NE(ofWindow, nullptr);
  EXPECT_TOLD(KorvelPortRelease(ofWindow),
              "KorvelPortRelease(...): a window's port belongs to its window");
}

TEST_F(DrawMisuse, ATextThatIsNotDrawn) {
  const std::string longest(256, 'a');
  EXPECT_FAILS(TextOut_0(port, 0, 0, longest.c_str(), 256), 0,
               "TextOut_0(..., 0, 0, \"" + longest.substr(0, 60) +
                   "\"..., 256): a text of 256 bytes is not drawn: at most 255 are");
  EXPECT_FAILS(GetTextExtent_0(port, "a", -1, &cx_, &cy_), 0,
               "GetTextExtent_0(..., ..., -1, ..., ...): there is no length -1");
  EXPECT_TOLD(TextOut_Ext(port, 0, 0, 0, 0, "\xC3\xA9", 2),
              "TextOut_Ext(..., 0, 0, 0, 0, \"Ã©\", 2): the text looks like UTF-8: texts are "
              "CP1252");
  EXPECT_FAILS(GetTextExtent_Ext(port, 0, 0, nullptr, 1, &cx_, &cy_), 0,
               "GetTextExtent_Ext(..., 0, 0, null, 1, ..., ...): argument 4 is null");
  EXPECT_FAILS(ch_font_printstr(port, 0, 0, 9, 0, 15, 12, nullptr), 0,
               "ch_font_printstr(..., 0, 0, 9, 0, 15, 12, null): argument 8 is null");
  EXPECT_TOLD(TextOut_0(port, 0, 0, "a", 1), "");
}

TEST_F(DrawMisuse, AColourOrSizeThatThereIsNot) {
  EXPECT_TOLD(ch_font_set(port, "Arial", 16, 15, 12),
              "ch_font_set(..., \"Arial\", 16, 15, 12): there is no colour 16: 0 to 15");
  EXPECT_TOLD(ch_font_set(port, "Arial", 0, -1, 12),
              "ch_font_set(..., \"Arial\", 0, -1, 12): there is no colour -1: 0 to 15");
  EXPECT_TOLD(ch_font_set(port, "Arial", 0, 255, 0),
              "ch_font_set(..., \"Arial\", 0, 255, 0): a size of 0 points counts as 12");
  EXPECT_TOLD(ch_font_set(port, "Arial", 0, 255, 1001),
              "ch_font_set(..., \"Arial\", 0, 255, 1001): a size of 1001 points counts as 1000");
  EXPECT_TOLD(ch_font_set(port, nullptr, 0, 255, 12),
              "ch_font_set(..., null, 0, 255, 12): argument 2 is null");
  EXPECT_TOLD(ch_font_set(port, "", 99, 255, 12), "");
  EXPECT_TOLD(ch_font_set(port, "Arial", 0, 255, 12), "");
  const std::string longest(80, 'a');
  EXPECT_NE(told([&] {
              ch_font_set_ext(port, longest.c_str(), 0, 255, 12, 0);
            }).find("the name has 80 characters and is cut to 79"),
            std::string::npos);
  EXPECT_TOLD(Line_Ex(port, 0, 0, 1, 1, 16, 1),
              "Line_Ex(..., 0, 0, 1, 1, 16, 1): there is no colour 16: 0 to 15");
  EXPECT_TOLD(LineC_Ex(port, 0, 0, 1, 1, RGBColor{}, 0),
              "LineC_Ex(..., 0, 0, 1, 1, ..., 0): a line of 0 pixels shows nothing");
  EXPECT_TOLD(Rectangle_Ex(port, 0, 0, 0, 5, 0),
              "Rectangle_Ex(..., 0, 0, 0, 5, 0): a rectangle of 0 by 5 pixels shows nothing");
}

TEST_F(DrawMisuse, AFileOrPixel) {
  RGBColor colour;
  EXPECT_TOLD(KorvelPortSave(port, "Data:a.png"),
              "KorvelPortSave(..., \"Data:a.png\"): \"Data:a.png\" is a colon path, and a path of "
              "the system is meant: \"/folder/file\"");
  int painter = 0;
  const CGrafPtr borrowed = KorvelPainterPort(&painter);
  EXPECT_FAILS(
      KorvelPortSave(borrowed, "/tmp/a.png"), 0,
      "KorvelPortSave(..., \"/tmp/a.png\"): nothing is saved: the file cannot be written, or "
      "it is a painter's port");
  KorvelPortRelease(borrowed);
  EXPECT_FAILS(KorvelPortPixel(port, 200, 0, &colour), 0,
               "KorvelPortPixel(..., 200, 0, ...): the port has no pixel at 200, 0, or it is a "
               "painter's: nothing is read");
}

TEST_F(DrawMisuse, APictureThatThereIsNot) {
  EXPECT_FAILS(BMP_affic_dimfond0("none", &cx_, &cy_), 1,
               "BMP_affic_dimfond0(\"none\", ..., ...): there is no picture \"none\" in the folder "
               "pictures of the resources");
  EXPECT_FAILS(
      BMP_affic_desfond0("none", port, 0, 0), 1,
      "BMP_affic_desfond0(\"none\", ..., 0, 0): there is no picture \"none\" in the folder "
      "pictures of the resources");
  EXPECT_FAILS(BMP_affic_dimfond0(nullptr, &cx_, &cy_), 1,
               "BMP_affic_dimfond0(null, ..., ...): argument 1 is null");
  const std::string longest(256, 'a');
  const std::string shown(60, 'a');
  EXPECT_FAILS(BMP_affic_dimfond0(longest.c_str(), nullptr, nullptr), 0,
               "BMP_affic_dimfond0(\"" + shown +
                   "\"..., null, null): a picture's name has at most 255 characters");
  EXPECT_FAILS(BMP_affic_desfond0(longest.c_str(), port, 0, 0), 0,
               "BMP_affic_desfond0(\"" + shown +
                   "\"..., ..., 0, 0): a picture's name has at most 255 characters");
}

}  // namespace
}  // namespace korvel::test
