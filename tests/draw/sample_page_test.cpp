// The sample page beside the picture of it that was looked at and checked in. Where the page is
// meant to change, sample_page_program draws the picture anew.
//
// Another version of the font library smooths letters a little differently, so a pixel counts as
// different only from 64 of 255 in a component on, and one pixel in 100 may be.
#include "tests/draw/sample_page.h"
#include "tests/draw/module_fixture.h"

#include <algorithm>
#include <cstdlib>

namespace korvel::test {
namespace {

constexpr int kDifference = 64;
constexpr int kTolerated = kPageWidth * kPageHeight / 100;

class SamplePage : public ModuleTest {
 protected:
  static bool differ(int a, int b) {
    int largest = 0;
    for (const int shift : {0, 8, 16}) {
      largest = std::max(largest, std::abs((a >> shift & 0xFF) - (b >> shift & 0xFF)));
    }
    return largest >= kDifference;
  }
  static int differences(const Image &a, const Image &b) {
    int count = 0;
    for (int y = 0; y < kPageHeight; ++y) {
      for (int x = 0; x < kPageWidth; ++x) count += differ(a.pixel(x, y), b.pixel(x, y)) ? 1 : 0;
    }
    return count;
  }
  // Puts the checked-in picture onto an image.
  static void drawReference(const Image &image) {
    standOn(KORVEL_TEST_REFERENCES);
    int width = 0;
    int height = 0;
    ASSERT_EQ(BMP_affic_dimfond0("sample_page", &width, &height), 0);
    EXPECT_EQ(width, kPageWidth);
    EXPECT_EQ(height, kPageHeight);
    ASSERT_EQ(BMP_affic_desfond0("sample_page", image.port(), 0, 0), 0);
  }
};

TEST_F(SamplePage, LooksAsItDid) {
  const Image page(kPageWidth, kPageHeight);
  resetTextState(page.port());
  drawSamplePage(page.port());
  const Image reference(kPageWidth, kPageHeight);
  drawReference(reference);
  const int different = differences(page, reference);
  EXPECT_LE(different, kTolerated);
  if (different <= kTolerated) return;
  KorvelPortSave(page.port(), "sample_page_now.png");
  std::printf("the page as it is now: sample_page_now.png\n");
}

// What the tolerance lets through is less than a word.
TEST_F(SamplePage, WouldBeSeenToMissAPart) {
  const Image page(kPageWidth, kPageHeight);
  const Image reference(kPageWidth, kPageHeight);
  drawReference(page);
  drawReference(reference);
  EXPECT_EQ(differences(page, reference), 0);
  Rectangle_Ex(page.port(), 0, 86, kPageWidth, 18, 15);  // over the line of icons
  EXPECT_GT(differences(page, reference), kTolerated);
}

}  // namespace
}  // namespace korvel::test
