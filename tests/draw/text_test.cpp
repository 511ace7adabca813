// SPDX-License-Identifier: MIT
// Plain text: runs drawn and measured.
#include <climits>
#include <memory>

#include <korvel/strings.h>

#include "platform/screentext.h"
#include "tests/draw/drawing_fixture.h"

namespace korvel::test {
namespace {

using PlainText = DrawTest;

int extent(CGrafPtr port, std::string_view text) {
  return GetTextExtent_0(port, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
}

// Bytes without a terminator.
std::unique_ptr<char[]> unterminated(std::string_view text) {
  auto bytes = std::make_unique<char[]>(text.size());
  text.copy(bytes.get(), text.size());
  return bytes;
}

// ---- Drawing ----

TEST_F(PlainText, IsDrawnWithItsBaselineBelowThePosition) {
  ch_font_set(port, "Arial", 9, 255, 12);  // ascent 9
  EXPECT_EQ(TextOut_0(port, 3, 4, "abc", 3), 18);
  EXPECT_EQ(drawn(), "text (3,14) \"abc\" red, Arial 12\n");
}

TEST_F(PlainText, TheOffsetIsReadAtEachDraw) {
  TextOut_0(port, 0, 0, "a", 1);
  char_dy = 33;
  TextOut_0(port, 0, 0, "b", 1);
  char_dy = -5;
  TextOut_0(port, 0, 0, "c", 1);
  EXPECT_EQ(drawn(),
            "text (0,0) \"a\" black, system 12\n"
            "text (0,33) \"b\" black, system 12\n"
            "text (0,-5) \"c\" black, system 12\n");
}

TEST_F(PlainText, GoesToTheScreenInItsSet) {
  TextOut_0(port, 0, 0, "\xE0\xE7\xE8\xE9\xEA\xEF\xB0\xC9", 8);
  ASSERT_EQ(desk.drawn().operations.size(), 1u);
  EXPECT_EQ(desk.drawn().operations[0].text, "\x88\x8D\x8F\x8E\x90\x95\xA1\xC9");
  EXPECT_EQ(drawn(), "text (0,0) \"àçèéêï°É\" black, system 12\n");
}

// So measuring needs no conversion.
TEST_F(PlainText, ConvertedOrNotABytesCharacterIsTheSame) {
  for (int byte = 1; byte < 256; ++byte) {
    char text[] = {static_cast<char>(byte), '\0'};
    w2mstr(text);
    EXPECT_EQ(platform::characterOf(static_cast<unsigned char>(text[0])),
              platform::characterOf(static_cast<unsigned char>(byte)))
        << byte;
  }
}

TEST_F(PlainText, NeedsNoTerminatorAndIsNotChanged) {
  const auto text = unterminated("\xE9t\xE9");
  EXPECT_EQ(TextOut_0(port, 0, 0, text.get(), 3), 20);
  EXPECT_EQ(GetTextExtent_0(port, text.get(), 3, nullptr, nullptr), 20);
  EXPECT_EQ(std::string_view(text.get(), 3), "\xE9t\xE9");
}

TEST_F(PlainText, EndsAtANul) {
  EXPECT_EQ(TextOut_0(port, 0, 0, "ab\0cd", 5), 12);
  EXPECT_EQ(drawn(), "text (0,0) \"ab\" black, system 12\n");
  EXPECT_EQ(extent(port, std::string_view("ab\0cd", 5)), 12);
}

TEST_F(PlainText, OfNoLengthDrawsNothingAndHasNoWidth) {
  EXPECT_EQ(TextOut_0(port, 0, 0, "abc", 0), 0);
  EXPECT_EQ(TextOut_0(port, 0, 0, nullptr, 0), 0);
  EXPECT_EQ(drawn(), "");
}

TEST_F(PlainText, Of255BytesIsTheLongest) {
  const std::string text(256, 'x');
  EXPECT_EQ(TextOut_0(port, 0, 0, text.data(), 254), 254 * 6);
  EXPECT_EQ(TextOut_0(port, 0, 0, text.data(), 255), 255 * 6);
  EXPECT_EQ(desk.drawn().operations.size(), 2u);
  EXPECT_EQ(TextOut_0(port, 0, 0, text.data(), 256), 0);
  EXPECT_EQ(TextOut_0(port, 0, 0, text.data(), INT_MAX), 0);
  EXPECT_EQ(desk.drawn().operations.size(), 2u);
}

TEST_F(PlainText, OfANegativeLengthDrawsNothing) {
  EXPECT_EQ(TextOut_0(port, 0, 0, "abc", -1), 0);
  EXPECT_EQ(TextOut_0(port, 0, 0, "abc", INT_MIN), 0);
  EXPECT_EQ(TextOut_0(port, 0, 0, nullptr, 3), 0);
  EXPECT_EQ(drawn(), "");
}

TEST_F(PlainText, FarOutsideIsClamped) {
  char_dy = 100;
  TextOut_0(port, INT_MAX, INT_MAX, "a", 1);
  char_dy = -100;
  TextOut_0(port, INT_MIN, INT_MIN, "a", 1);
  EXPECT_EQ(drawn(),
            "text (2147483647,2147483647) \"a\" black, system 12\n"
            "text (-2147483648,-2147483648) \"a\" black, system 12\n");
}

// ---- Measuring ----

TEST_F(PlainText, IsMeasuredAsItIsDrawn) {
  int cx = -1;
  int cy = -1;
  EXPECT_EQ(GetTextExtent_0(port, "abil", 4, &cx, &cy), 18);
  EXPECT_EQ(cx, 18);
  EXPECT_EQ(TextOut_0(port, 0, 0, "abil", 4), cx);
}

TEST_F(PlainText, HasNoHeight) {  // Kept: a run has no height.
  int cx = -1;
  int cy = -1;
  GetTextExtent_0(port, "abc", 3, &cx, &cy);
  EXPECT_EQ(cy, 0);
}

TEST_F(PlainText, OfNoLengthMeasuresNothing) {
  int cx = -1;
  int cy = -1;
  EXPECT_EQ(GetTextExtent_0(port, nullptr, 0, &cx, &cy), 0);
  EXPECT_EQ(cx, 0);
  EXPECT_EQ(cy, 0);
}

TEST_F(PlainText, ThatCannotBeMeasuredLeavesTheOutputs) {
  const std::string text(256, 'x');
  int cx = -1;
  int cy = -2;
  EXPECT_EQ(GetTextExtent_0(port, text.data(), 256, &cx, &cy), 0);
  EXPECT_EQ(GetTextExtent_0(port, text.data(), -1, &cx, &cy), 0);
  EXPECT_EQ(GetTextExtent_0(port, text.data(), INT_MIN, &cx, &cy), 0);
  EXPECT_EQ(GetTextExtent_0(port, nullptr, 3, &cx, &cy), 0);
  EXPECT_EQ(GetTextExtent_0(nullptr, "abc", 3, &cx, &cy), 0);
  EXPECT_EQ(cx, -1);
  EXPECT_EQ(cy, -2);
  EXPECT_EQ(GetTextExtent_0(port, text.data(), 255, &cx, &cy), 255 * 6);
  EXPECT_EQ(cx, 255 * 6);
}

TEST_F(PlainText, MeasuringDrawsNothing) {
  extent(port, "abc");
  EXPECT_EQ(drawn(), "");
}

// ---- Ports ----

TEST_F(PlainText, GoesToThePortGivenAndLeavesTheCurrentOneAlone) {
  CGrafPtr other = KorvelImagePort(10, 10);
  SetPort(other);
  TextOut_0(port, 0, 0, "a", 1);
  extent(port, "a");
  CGrafPtr current = nullptr;
  GetPort(&current);
  EXPECT_EQ(current, other);
  EXPECT_EQ(drawn(), "text (0,0) \"a\" black, system 12\n");
  EXPECT_EQ(desk.drawn(1).takeLines(), "");
  EXPECT_EQ(TextOut_0(nullptr, 0, 0, "a", 1), 0);
  KorvelPortRelease(other);
}

}  // namespace
}  // namespace korvel::test
