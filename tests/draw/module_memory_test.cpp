// SPDX-License-Identifier: MIT
// Drawing on the desktop module where memory runs out at each allocation in turn.
#include <functional>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include "tests/draw/module_fixture.h"
#include "tests/faults/requests.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {
namespace {

using faults::FailingMemory;

class ModuleMemory : public ModuleTest {
 protected:
  // Makes the call once for each of its allocations, which then fails, and once without a failure.
  // `prepare` makes the call allocate again each time. Returns the number of failures.
  static int expect(int good, int without, const std::function<void(int n)> &prepare,
                    const std::function<int()> &call) {
    for (int n = 1;; ++n) {
      prepare(n);
      int result = 0;
      bool hasFailed = false;
      {
        const FailingMemory memory(n);
        result = call();
        hasFailed = memory.hasFailed();
      }
      if (!hasFailed) {
        EXPECT_EQ(result, good);
        return n - 1;
      }
      EXPECT_EQ(result, without) << "allocation " << n;
      EXPECT_EQ(call(), good) << "after a failure of allocation " << n;
    }
  }

  static void forget(int) { draw::forgetPictures(); }
};

// Each time in a process of its own: a desktop comes up once, and has not come up before.
TEST_F(ModuleMemory, WithoutItNoDesktopComesUp) {
  constexpr int kNone = 0;
  constexpr int kImage = 1;
  constexpr int kImageInSpiteOf = 2;
  int failures = 0;
  for (int status = kNone; status == kNone; failures += status == kNone ? 1 : 0) {
    const pid_t child = fork();
    if (child == 0) {
      const FailingMemory memory(failures + 1);
      const bool isThere = KorvelImagePort(20, 10) != nullptr;
      _exit(!isThere ? kNone : memory.hasFailed() ? kImageInSpiteOf : kImage);
    }
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status))
        << "allocation " << failures + 1 << ", signal " << WTERMSIG(status);
    status = WEXITSTATUS(status);
    EXPECT_TRUE(status == kNone || status == kImage) << "allocation " << failures + 1;
  }
  EXPECT_GE(failures, 10);
}

void askForAWindowAfterDrawingRanOut() {
  const EnvironmentGuard nowhere("KORVEL_DESKTOP", "/nowhere/korvel-qt.so");
  KorvelImagePort(20, 10);  // says why there is no desktop, once
  {
    const FailingMemory memory(1);
    KorvelImagePort(20, 10);
    if (!memory.hasFailed()) std::_Exit(2);
  }
  testing::internal::CaptureStderr();
  int widget = 0;
  KorvelWidgetWindow(&widget);
  std::_Exit(testing::internal::GetCapturedStderr().empty() ? 1 : 0);
}

// In a program started anew: this one may have a desktop already.
TEST_F(ModuleMemory, WithoutItWhileDrawingItIsStillSaidThatThereIsNoDesktop) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(askForAWindowAfterDrawingRanOut(), testing::ExitedWithCode(0), "nowhere");
}

TEST_F(ModuleMemory, WithoutItThereIsNoImage) {
  const auto prepare = [](int) {};
  const auto call = [] {
    CGrafPtr port = KorvelImagePort(20, 10);
    const int result = port != nullptr ? 1 : 0;
    KorvelPortRelease(port);
    return result;
  };
  call();  // the desktop is there
  EXPECT_GE(expect(1, 0, prepare, call), 2);
}

TEST_F(ModuleMemory, WithoutItAPictureIsNotThere) {
  int cx = -1;
  const auto measure = [&] { return BMP_affic_dimfond0("puceb", &cx, nullptr); };
  EXPECT_GE(expect(0, 1, forget, measure), 5);
  EXPECT_EQ(cx, 16);
  const Image image(60, 60);
  const auto draw = [&] { return BMP_affic_desfond0("puceb", image.port(), 10, 10); };
  EXPECT_GE(expect(0, 1, forget, draw), 5);
}

// Texts of ever new sizes: their letters were not drawn before.
TEST_F(ModuleMemory, WithoutItATextHasNoWidth) {
  const Image image(300, 100);
  int wanted = 0;
  const auto prepare = [&](int n) {
    ch_font_set(image.port(), "Arial", 0, 255, 20 + n);
    GetTextExtent_0(image.port(), "Mesure", 6, &wanted, nullptr);
  };
  int failures = 0;
  for (int n = 1;; ++n) {
    prepare(n);
    int drawn = 0;
    bool hasFailed = false;
    {
      const FailingMemory memory(n);
      drawn = TextOut_0(image.port(), 5, 5, "Mesure", 6);
      hasFailed = memory.hasFailed();
    }
    if (!hasFailed) break;
    ++failures;
    EXPECT_EQ(drawn, 0) << "allocation " << n;
    EXPECT_EQ(TextOut_0(image.port(), 5, 5, "Mesure", 6), wanted) << "allocation " << n;
  }
  EXPECT_GE(failures, 5);
}

TEST_F(ModuleMemory, WithoutItTheFontStaysAndTheNameIsTaken) {
  const Image image(300, 100);
  int failures = 0;
  for (int n = 1; failures == n - 1; ++n) {
    ch_font_set(image.port(), "Arial", 0, 255, 12);
    int before = 0;
    int after = 0;
    GetTextExtent_0(image.port(), "Mesure", 6, &before, nullptr);
    {
      const FailingMemory memory(n);
      EXPECT_EQ(ch_font_set_ext(image.port(), "Times New Roman", 9, 255, 100 + n, 1), 0);
      failures += memory.hasFailed() ? 1 : 0;
    }
    GetTextExtent_0(image.port(), "Mesure", 6, &after, nullptr);
    EXPECT_STREQ(ch_font_FontName, "Times New Roman");
    if (failures < n) {
      EXPECT_GT(after, 5 * before);
    }
    ch_font_set_ext(image.port(), "Times New Roman", 9, 255, 100 + n, 1);
    GetTextExtent_0(image.port(), "Mesure", 6, &after, nullptr);
    EXPECT_GT(after, 5 * before) << "after a failure of allocation " << n;
  }
  EXPECT_GE(failures, 3);
}

TEST_F(ModuleMemory, WithoutItRichTextEndsAsItCan) {
  const Image image(300, 100);
  const std::string text = "\xFF\x8A puce \xFF\xA8\xFF\xC8\x22\x20\xFF\xD5\x2C\x28\xFF\xCA\x30\x30";
  const auto draw = [&] {
    return ch_font_printstr(image.port(), 5, 5, 0, 0, 255, 20, text.c_str());
  };
  ch_font_set(image.port(), "Arial", 0, 255, 20);
  const int good = draw();
  int failures = 0;
  for (int n = 1; failures == n - 1; ++n) {
    draw::forgetPictures();
    ch_font_set(image.port(), "Arial", 0, 255, 120 + n);
    {
      const FailingMemory memory(n);
      const int end = draw();
      EXPECT_TRUE(end >= 0 && end <= 100 * good) << end;
      failures += memory.hasFailed() ? 1 : 0;
    }
    EXPECT_EQ(draw(), good) << "after a failure of allocation " << n;
    Rectangle_Ex(image.port(), 0, 0, 300, 100, 15);
    EXPECT_EQ(image.pixel(0, 0), 0) << "the foreground is black again";
  }
  EXPECT_GE(failures, 5);
}

// They allocate nothing: the first allocation would fail.
TEST_F(ModuleMemory, WithoutItLinesAndRectanglesAreDrawn) {
  const Image image(60, 60);
  {
    const FailingMemory memory(1);
    Line_Ex(image.port(), 5, 5, 50, 40, KorvelRed, 3);
    Rectangle_Ex(image.port(), 40, 5, 10, 10, KorvelBlue);
    EXPECT_FALSE(memory.hasFailed());
  }
  EXPECT_NE(image.pixel(28, 23), 0xFFFFFF);
  EXPECT_EQ(image.pixel(45, 10), 0x0000FF);
}

TEST_F(ModuleMemory, WithoutItAnImageIsNotSaved) {
  const TemporaryFolder folder;
  const Image image(60, 60);
  const std::string path = folder.path() + "/image.png";
  const auto save = [&] { return KorvelPortSave(image.port(), path.c_str()); };
  EXPECT_GE(expect(
                1, 0, [](int) {}, save),
            1);
}

}  // namespace
}  // namespace korvel::test
