// SPDX-License-Identifier: MIT
// The scripted port itself: it keeps the contract of the seam with the promised measures, and
// records the operations.
#include "tests/platform/scripted_port.h"

#include <memory>

#include <gtest/gtest.h>

#include "tests/platform/scripted_desktop.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {
namespace {

constexpr RGBColor kRed{0xFFFF, 0, 0};
constexpr RGBColor kYellow{0xFFFF, 0xFFFF, 0};

class ScriptedPorts : public testing::Test {
 protected:
  void TearDown() override { desk.finish(); }

  ScriptedDesktop desk;
  std::unique_ptr<platform::Port> port = desk.newImage(100, 50);
};

TEST_F(ScriptedPorts, MeasureAsTheyPromise) {
  const struct {
    int size;
    unsigned face;
    const char *text;
    int width;
  } kRows[] = {
      {12, 0, "", 0},      {12, 0, "abc", 18},      {12, 0, "il.", 9},
      {12, 0, "\x8E", 7},  {13, 0, "a\x8E", 6 + 7}, {12, platform::kBold, "ai", 7 + 4},
      {0, 0, "a", 6},      {-5, 0, "a", 6},         {1000, 0, "a", 500},
      {1001, 0, "a", 500},
  };
  for (const auto &row : kRows) {
    port->setFont("Arial", row.face);
    port->setFontSize(row.size);
    EXPECT_EQ(port->textWidth(row.text), row.width) << row.text;
    EXPECT_EQ(port->drawText(0, 0, row.text), row.width) << row.text;
  }
  port->setFontSize(24);
  const platform::FontMetrics metrics = port->fontMetrics();
  EXPECT_EQ(metrics.ascent, 18);
  EXPECT_EQ(metrics.descent, 6);
  EXPECT_EQ(metrics.leading, 4);
  EXPECT_EQ(metrics.widest, 24);
}

TEST_F(ScriptedPorts, KnowTheFontsOfTheirDesktop) {
  EXPECT_TRUE(port->setFont("Arial", 0));
  EXPECT_FALSE(port->setFont("Nimbus", platform::kBold));
  port->drawText(0, 0, "a");
  desk.setFonts({"Nimbus"});
  EXPECT_TRUE(port->setFont("Nimbus", platform::kItalic));
  EXPECT_FALSE(port->setFont("Arial", 0));
  port->drawText(0, 0, "a");
  EXPECT_EQ(desk.drawn().takeLines(),
            "text (0,0) \"a\" black, Arial 12\n"
            "text (0,0) \"a\" black, Nimbus 12 italic\n");
}

TEST_F(ScriptedPorts, RecordWhatIsDrawn) {
  port->setForeground(kRed);
  port->drawLine(1, 2, 3, 4, 5);
  port->drawLine(1, 2, 3, 4, 0);
  port->fillRect({1, 2, 3, 4});
  port->frameRect({5, 6, 7, 8});
  port->fillRect({3, 2, 3, 4});
  port->frameRect({1, 4, 3, 4});
  port->setBackground(kYellow);
  port->drawText(9, 8, "\x8Et\x8E");
  port->setOpaqueText(true);
  port->drawText(9, 8, "a");
  port->drawPicture(ScriptedPicture("coeur", 3, 4), 7, 8);
  EXPECT_EQ(desk.drawn().takeLines(),
            "line (1,2)-(3,4) 5 red\n"
            "fill (1,2)-(3,4) red\n"
            "frame (5,6)-(7,8) red\n"
            "text (9,8) \"été\" red, system 12\n"
            "text (9,8) \"a\" red on yellow, system 12\n"
            "picture (7,8) coeur\n");
  EXPECT_EQ(desk.drawn().takeLines(), "");
}

TEST_F(ScriptedPorts, ReadBackWhatWasFilledLast) {
  port->setForeground(kRed);
  port->fillRect({0, 0, 10, 10});
  port->setForeground(kYellow);
  port->fillRect({5, 5, 10, 10});
  EXPECT_EQ(port->pixel(4, 4)->green, 0);
  EXPECT_EQ(port->pixel(5, 5)->green, 0xFFFF);
  EXPECT_EQ(port->pixel(10, 10)->blue, 0xFFFF);
  EXPECT_FALSE(port->pixel(100, 0));
  EXPECT_FALSE(port->pixel(0, -1));
}

TEST_F(ScriptedPorts, StandOnImagesPaintersAndWindows) {
  EXPECT_EQ(desk.newImage(0, 5), nullptr);
  EXPECT_EQ(desk.newImage(5, 32768), nullptr);
  int painter = 0;
  EXPECT_EQ(desk.painterPort(nullptr), nullptr);
  const auto lent = desk.painterPort(&painter);
  EXPECT_FALSE(lent->save("x.png"));
  EXPECT_FALSE(lent->pixel(0, 0));
  const WindowRef window = desk.addWindow({0, 0, 10, 10});
  platform::Port *const onWindow = desk.windowPort(window);
  EXPECT_EQ(desk.windowPort(window), onWindow);
  EXPECT_FALSE(onWindow->pixel(0, 0));
  onWindow->fillRect({0, 0, 1, 1});
  EXPECT_TRUE(onWindow->pixel(0, 0));
  desk.closeWindow(window);
  EXPECT_EQ(desk.windowPort(window), nullptr);
  EXPECT_EQ(desk.windowPort(nullptr), nullptr);
  EXPECT_FALSE(desk.drawn().isOpen);
  EXPECT_TRUE(desk.drawn(0).isOpen);
}

TEST_F(ScriptedPorts, PicturesAreFilesThatHoldTheirSize) {
  const TemporaryFolder folder;
  const auto picture = desk.loadPicture(folder.add("coeur.svg", "20x10"));
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->width(), 20);
  EXPECT_EQ(picture->height(), 10);
  EXPECT_EQ(desk.loadPicture(folder.add("broken.svg", "no size"))->width(), 0);
  EXPECT_EQ(desk.loadPicture(folder.path() + "/none.svg")->width(), 0);
  EXPECT_EQ(desk.picturesRead().size(), 3u);
}

}  // namespace
}  // namespace korvel::test
