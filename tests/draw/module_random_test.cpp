// SPDX-License-Identifier: MIT
// Random rich texts on images of the desktop module, drawn and measured beside the model: the same
// results and, compared from time to time, the same pixels.
#include <memory>
#include <string>

#include "platform/desktop.h"
#include "platform/loader.h"
#include "tests/draw/literal_text.h"
#include "tests/draw/module_fixture.h"
#include "tests/draw/random_texts.h"
#include "tests/support/sanitizer.h"

namespace korvel::test {
namespace {

constexpr int kTexts = test::rounds(200000);
constexpr int kTextsOnAnImage = 250;
constexpr int kWidth = 120;
constexpr int kHeight = 60;

// An image of the library beside one that the model draws on.
class Pair {
 public:
  Pair(RandomTexts &random, int size)
      : random_(random), model_(platform::desktop()->newImage(kWidth, kHeight)) {
    static constexpr const char *kFonts[] = {"Arial", "Times New Roman"};
    const char *const font = kFonts[random.number(0, 1)];
    const int back = random.number(0, 3) == 0 ? 14 : 255;
    const int style = random.number(0, 31);
    ch_font_set_ext(image_.port(), font, 9, back, size, style);
    model_->setFont(font, faceOf(style));
    model_->setFontSize(size);
    model_->setForeground({0xFFFF, 0, 0});
    model_->setBackground({0, 0xFFFF, 0xFFFF});
    model_->setOpaqueText(back != 255);
  }

  void expectSameText(LiteralText &literal, const std::string &text) {
    const int len = static_cast<int>(text.size());
    const int x = random_.number(-60, kWidth);
    const int y = random_.number(-20, kHeight);
    const int x0 = random_.number(-60, 60);
    const int y0 = random_.number(-20, 20);
    const int advance = TextOut_Ext(image_.port(), x, y, x0, y0, text.data(), len);
    EXPECT_EQ(advance, literal.draw(*model_, char_dy, x, y, x0, y0, text));
    int cx = -1;
    int cy = -1;
    const int result = GetTextExtent_Ext(image_.port(), x, y, text.data(), len, &cx, &cy);
    const LiteralText::Extent expected = literal.measure(*model_, x, text);
    EXPECT_EQ(result, expected.result);
    EXPECT_EQ(cx, expected.cx);
    EXPECT_EQ(cy, expected.cy);
  }

  int countOfDifferentPixels() const {
    int different = 0;
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x) {
        const std::optional<RGBColor> pixel = model_->pixel(x, y);
        const int wanted = (pixel->red >> 8) << 16 | (pixel->green >> 8) << 8 | pixel->blue >> 8;
        different += image_.pixel(x, y) == wanted ? 0 : 1;
      }
    }
    return different;
  }

 private:
  static unsigned faceOf(int style) {
    return ((style & 1) != 0 ? platform::kBold : 0) |
           ((style & 2) != 0 ? platform::kUnderline : 0) |
           ((style & 4) != 0 ? platform::kItalic : 0) |
           ((style & 8) != 0 ? platform::kCondense : 0) |
           ((style & 16) != 0 ? platform::kExtend : 0);
  }

  RandomTexts &random_;
  const Image image_{kWidth, kHeight};
  const std::unique_ptr<platform::Port> model_;
};

using ModuleRandomText = ModuleTest;

TEST_F(ModuleRandomText, IsDrawnAndMeasuredAsTheModelDoes) {
  RandomTexts random(20260712);
  LiteralText literal([](const std::string &name) { return draw::findPicture(name); });
  resetTextState(Image(10, 10).port());
  static constexpr int kSizes[] = {9, 12, 13, 16, 24};
  for (int first = 0; first < kTexts; first += kTextsOnAnImage) {
    Pair pair(random, kSizes[random.number(0, 4)]);
    for (int n = first; n < first + kTextsOnAnImage; ++n) {
      const std::string text = random.text();
      pair.expectSameText(literal, text);
      ASSERT_FALSE(HasFailure()) << described(n, text);
    }
    ASSERT_EQ(pair.countOfDifferentPixels(), 0) << "texts from " << first;
  }
  resetTextState(Image(10, 10).port());
}

}  // namespace
}  // namespace korvel::test
