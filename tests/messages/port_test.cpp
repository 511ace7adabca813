// SPDX-License-Identifier: MIT
// The current port and font while a box is shown, and afterwards.
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include <korvel/desktop.h>
#include <korvel/draw.h>
#include <korvel/messages.h>

#include "tests/platform/scripted_desktop.h"

namespace korvel::test {
namespace {

// Gives everything that the boxes change its first value, before and after.
class DrawingGuard {
 public:
  DrawingGuard() { reset(); }
  ~DrawingGuard() { reset(); }
  DrawingGuard(const DrawingGuard &) = delete;
  DrawingGuard &operator=(const DrawingGuard &) = delete;

 private:
  static void reset() {
    std::memset(ch_font_FontName, 0, sizeof ch_font_FontName);
    char_dy = 0;
    SetPort(nullptr);
  }
};

CGrafPtr currentPort() {
  CGrafPtr port = nullptr;
  GetPort(&port);
  return port;
}

char g_caption[] = "T", g_text[] = "x";

using Ask = int (*)(WindowRef owner);
constexpr struct {
  const char *name;
  Ask ask;
} kBoxes[] = {
    {"question", [](WindowRef owner) { return MessageBox(owner, "x", "T", 0x10); }},
    {"note", [](WindowRef owner) { return MessageBox(owner, "x", "T", 0); }},
    {"question alone",
     [](WindowRef owner) { return QuestionDialog(owner, g_caption, g_text, 2, 0); }},
    {"note alone", [](WindowRef owner) { return NoteDialog(owner, g_caption, g_text, 2, 0); }},
};

TEST(BoxPort, TheBoxesPortIsTheCurrentOneInTheFontOfItsText) {
  for (const auto &box : kBoxes) {
    const DrawingGuard guard;
    ScriptedDesktop desk;
    desk.setFonts({"Lucida Grande"});
    const WindowRef owner = desk.addWindow({100, 100, 900, 700});
    SetPort(GetWindowPort(owner));
    std::string drawn;
    desk.expectDialog("T")
        .check([&] {
          EXPECT_NE(currentPort(), nullptr);
          EXPECT_NE(currentPort(), GetWindowPort(owner));
          TextOut_0(currentPort(), 0, 0, "a", 1);
          drawn = desk.drawn().takeLines();
        })
        .press(1);
    box.ask(owner);
    // The baseline: three quarters of 13, and 1.
    EXPECT_EQ(drawn, "text (0,10) \"a\" black, Lucida Grande 13\n") << box.name;
    EXPECT_EQ(char_dy, 10) << box.name;
    EXPECT_STREQ(ch_font_FontName, "Lucida Grande") << box.name;
    desk.finish();
  }
}

TEST(BoxPort, AnUnknownFontLeavesTheBoxesOwn) {
  const DrawingGuard guard;
  ScriptedDesktop desk;
  desk.setFonts({});
  std::string drawn;
  desk.expectDialog("T")
      .check([&] {
        TextOut_0(currentPort(), 0, 0, "a", 1);
        drawn = desk.drawn().takeLines();
      })
      .press(1);
  MessageBox(nullptr, "x", "T", 0);
  EXPECT_NE(drawn.find("system"), std::string::npos) << drawn;
  EXPECT_STREQ(ch_font_FontName, "Lucida Grande");
  desk.finish();
}

TEST(BoxPort, AfterAMessageItsOwnersPortIsCurrent) {
  const DrawingGuard guard;
  ScriptedDesktop desk;
  const WindowRef owner = desk.addWindow({100, 100, 900, 700});
  const WindowRef other = desk.addWindow({0, 0, 50, 50});
  SetPort(GetWindowPort(other));
  desk.setFrontWindow(other);
  desk.expectDialog("T").press(1);
  MessageBox(owner, "x", "T", 0);
  EXPECT_EQ(currentPort(), GetWindowPort(owner));
  EXPECT_NE(currentPort(), nullptr);
  desk.finish();
}

TEST(BoxPort, OrTheFrontWindowsWhereNoneIsGiven) {
  const DrawingGuard guard;
  ScriptedDesktop desk;
  const WindowRef front = desk.addWindow({100, 100, 900, 700});
  desk.setFrontWindow(front);
  desk.expectDialog("T").press(1);
  MessageBox(nullptr, "x", "T", 0x10);
  EXPECT_EQ(currentPort(), GetWindowPort(front));
  desk.finish();
}

TEST(BoxPort, AnOwnerThatGoesWhileItIsAskedLeavesNoPort) {
  const DrawingGuard guard;
  ScriptedDesktop desk;
  const WindowRef owner = desk.addWindow({100, 100, 900, 700});
  desk.expectDialog("T").check([&] { desk.closeWindow(owner); }).press(1);
  MessageBox(owner, "x", "T", 0);
  EXPECT_EQ(currentPort(), nullptr);
  desk.finish();
}

TEST(BoxPort, WithoutAnOwnerNoPortIsCurrentAfterwards) {
  for (const auto &box : kBoxes) {
    const DrawingGuard guard;
    ScriptedDesktop desk;
    const WindowRef window = desk.addWindow({100, 100, 900, 700});
    SetPort(GetWindowPort(window));
    desk.expectDialog("T").press(1);
    box.ask(nullptr);
    EXPECT_EQ(currentPort(), nullptr) << box.name;
    desk.finish();
  }
}

TEST(BoxPort, AQuestionAloneLeavesItsOwnersPortToTheCaller) {
  const DrawingGuard guard;
  ScriptedDesktop desk;
  const WindowRef owner = desk.addWindow({100, 100, 900, 700});
  SetPort(GetWindowPort(owner));
  desk.expectDialog("T").press(1);
  QuestionDialog(owner, g_caption, g_text, 2, 0);
  EXPECT_EQ(currentPort(), nullptr);
  desk.finish();
}

// A desktop on which every window has the address of the one before.
class OneAddress final : public ScriptedDesktop {
 public:
  platform::Port *windowPort(WindowRef) override { return port_.get(); }

 private:
  const std::unique_ptr<platform::Port> port_ = newImage(10, 10);
};

TEST(BoxPort, AWindowWhereTheBoxWasDoesNotBecomeCurrent) {
  const DrawingGuard guard;
  OneAddress desk;
  desk.expectDialog("T").check([] { EXPECT_NE(currentPort(), nullptr); }).press(1);
  QuestionDialog(nullptr, g_caption, g_text, 2, 0);
  EXPECT_EQ(currentPort(), nullptr);
  desk.finish();
}

// A desktop on which memory runs out while a box is made.
class WithoutMemory final : public ScriptedDesktop {
 public:
  std::unique_ptr<platform::Dialog> newDialog(const platform::Rect &, WindowRef,
                                              std::string_view) override {
    throw std::bad_alloc();
  }
};

TEST(BoxPort, WithoutMemoryForTheBoxTheOwnersPortIsCurrentAllTheSame) {
  const DrawingGuard guard;
  WithoutMemory desk;
  const WindowRef owner = desk.addWindow({100, 100, 900, 700});
  EXPECT_EQ(MessageBox(owner, "x", "T", KorvelQuestion), KorvelNonAnswer);
  EXPECT_EQ(currentPort(), GetWindowPort(owner));
  EXPECT_NE(currentPort(), nullptr);
  desk.finish();
}

TEST(BoxPort, APortChosenMeanwhileStaysCurrent) {
  const DrawingGuard guard;
  ScriptedDesktop desk;
  const CGrafPtr image = KorvelImagePort(10, 10);
  desk.expectDialog("T").check([&] { SetPort(image); }).press(1);
  QuestionDialog(nullptr, g_caption, g_text, 2, 0);
  EXPECT_EQ(currentPort(), image);
  KorvelPortRelease(image);
  desk.finish();
}

TEST(BoxPort, WithoutAScreenPortAndFontStay) {
  for (const auto &box : kBoxes) {
    const DrawingGuard guard;
    ScriptedDesktop desk;
    const CGrafPtr image = KorvelImagePort(10, 10);
    SetPort(image);
    desk.takeScreenAway("unplugged");
    testing::internal::CaptureStderr();
    box.ask(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "korvel: unplugged\n");
    EXPECT_EQ(currentPort(), image) << box.name;
    EXPECT_STREQ(ch_font_FontName, "") << box.name;
    KorvelPortRelease(image);
    desk.finish();
  }
}

}  // namespace
}  // namespace korvel::test
