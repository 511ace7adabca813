// SPDX-License-Identifier: MIT
// Random rich texts, drawn and measured beside the model: the same operations, the same results.
// State that outlasts a text passes on to the next one in both.
#include <memory>
#include <string>

#include "tests/draw/drawing_fixture.h"
#include "tests/draw/literal_text.h"
#include "tests/draw/random_texts.h"
#include "tests/platform/scripted_port.h"
#include "tests/support/sanitizer.h"

namespace korvel::test {
namespace {

constexpr int kTexts = test::rounds(240000);

class RandomText : public DrawTest {
 protected:
  RandomText() {
    // Some pictures are missing.
    for (const char *name : {"repferb", "puceb", "repouvl"}) {
      folder_.add(std::string(name) + ".svg", "16x16");
    }
    model_.setFont("Arial", 0);
  }

  void chooseFont(RandomTexts &random) {
    static constexpr int kSizes[] = {12, 16, 18, 23, 37};
    const int size = kSizes[random.number(0, 4)];
    ch_font_set(port, "Arial", 9, 255, size);
    model_.setFontSize(size);
    model_.setForeground({0xFFFF, 0, 0});
    char_dy = random.number(-3, 40);
  }

  // False when the two differ.
  bool drawsAlike(RandomTexts &random, const std::string &text) {
    const int x = random.number(-300, 300);
    const int y = random.number(-50, 50);
    const int x0 = random.number(-1000, 1000);
    const int y0 = random.number(-1000, 1000);
    const int advance = TextOut_Ext(port, x, y, x0, y0, text.data(), static_cast<int>(text.size()));
    EXPECT_EQ(advance, literal_.draw(model_, char_dy, x, y, x0, y0, text));
    EXPECT_EQ(desk.drawn(0).operations, record_->operations);
    const bool areAlike = !HasFailure();
    drawn_ += record_->operations.size();
    desk.drawn(0).operations.clear();
    record_->operations.clear();
    return areAlike;
  }
  bool measuresAlike(RandomTexts &random, const std::string &text) {
    const int x = random.number(-300, 300);
    int cx = -1;
    int cy = -1;
    const int result =
        GetTextExtent_Ext(port, x, 0, text.data(), static_cast<int>(text.size()), &cx, &cy);
    const LiteralText::Extent expected = literal_.measure(model_, x, text);
    EXPECT_EQ(result, expected.result);
    EXPECT_EQ(cx, expected.cx);
    EXPECT_EQ(cy, expected.cy);
    EXPECT_TRUE(desk.drawn(0).operations.empty());
    desk.drawn(0).measured.clear();
    record_->measured.clear();
    return !HasFailure();
  }

  std::size_t drawn_ = 0;

 private:
  PictureFolder folder_;
  std::shared_ptr<PortRecord> record_ = std::make_shared<PortRecord>();
  ScriptedPort model_{record_, std::make_shared<FontNames>(FontNames{"Arial"}),
                      ScriptedPort::Surface::Image, 100, 100};
  LiteralText literal_{[](const std::string &name) { return draw::findPicture(name); }};
};

TEST_F(RandomText, IsDrawnAndMeasuredAsTheModelDoes) {
  RandomTexts random(20260711);
  for (int n = 0; n < kTexts; ++n) {
    if (n % 50 == 0) chooseFont(random);
    const std::string text = random.text();
    const bool areAlike = drawsAlike(random, text) && measuresAlike(random, text);
    ASSERT_TRUE(areAlike) << described(n, text);
  }
  EXPECT_GT(drawn_, std::size_t{kTexts}) << "the texts hold too little";
}

}  // namespace
}  // namespace korvel::test
