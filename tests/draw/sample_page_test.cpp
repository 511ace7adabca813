// SPDX-License-Identifier: MIT
// The sample page beside its picture, which a person has looked at. After an intended change of the
// page, sample_page_program draws the picture again.
#include "tests/draw/sample_page.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "tests/draw/module_fixture.h"

// Versions of the font library smooth letters a little differently, so the two are compared by the
// mean colours of overlapping cells as large as a short word.

namespace korvel::test {
namespace {

constexpr int kCell = 12;
constexpr int kTolerated = 9;  // of 255, in a component

class SamplePage : public ModuleTest {
 protected:
  // The pixels of a page, row by row.
  using Pixels = std::vector<int>;
  static Pixels pixelsOf(const Image &image) {
    Pixels pixels;
    for (int y = 0; y < kPageHeight; ++y) {
      for (int x = 0; x < kPageWidth; ++x) pixels.push_back(image.pixel(x, y));
    }
    return pixels;
  }
  // The difference of a cell's mean colours, in the component that differs most.
  static int difference(const Pixels &a, const Pixels &b, int left, int top) {
    int largest = 0;
    for (const int shift : {0, 8, 16}) {
      int sum = 0;
      for (int y = top; y < top + kCell; ++y) {
        for (int x = left; x < left + kCell; ++x) {
          const auto at = static_cast<std::size_t>(y * kPageWidth + x);
          sum += (a[at] >> shift & 0xFF) - (b[at] >> shift & 0xFF);
        }
      }
      largest = std::max(largest, std::abs(sum) / (kCell * kCell));
    }
    return largest;
  }
  // The largest difference, and its cell.
  struct Difference {
    int size = 0;
    int left = 0;
    int top = 0;
  };
  static Difference largestDifference(const Image &page, const Image &other) {
    const Pixels a = pixelsOf(page);
    const Pixels b = pixelsOf(other);
    Difference largest;
    for (int top = 0; top + kCell <= kPageHeight; top += kCell / 2) {
      for (int left = 0; left + kCell <= kPageWidth; left += kCell / 2) {
        const int size = difference(a, b, left, top);
        if (size > largest.size) largest = {size, left, top};
      }
    }
    return largest;
  }
  // Draws the checked-in picture onto an image.
  static void drawReference(const Image &image) {
    useResources(KORVEL_TEST_REFERENCES);
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
  const Difference different = largestDifference(page, reference);
  EXPECT_LE(different.size, kTolerated) << "at " << different.left << ' ' << different.top;
  if (different.size <= kTolerated) return;
  KorvelPortSave(page.port(), "sample_page_now.png");
  std::printf("the page as it is now: sample_page_now.png\n");
}

// A missing word or bullet is beyond the tolerance.
TEST_F(SamplePage, WouldBeSeenToMissAWordOrABullet) {
  const Image page(kPageWidth, kPageHeight);
  const Image reference(kPageWidth, kPageHeight);
  drawReference(reference);
  constexpr struct {
    const char *what;
    int left, top, right, bottom, ground;
  } kParts[] = {
      {"a colour", 71, 6, 90, 20, 15},
      {"the bullet", 10, 109, 22, 120, 15},
      {"the bullet's picture", 234, 88, 247, 102, 15},
      {"an icon", 90, 88, 106, 103, 15},
      {"gras", 188, 26, 218, 40, 15},
      {"37,5", 115, 26, 139, 38, 15},
      {"a degree sign", 139, 26, 148, 38, 15},
      {"Times", 8, 43, 42, 56, 15},
      {"et", 35, 62, 45, 74, 15},
      {"un", 8, 125, 22, 136, 15},
      {"trois", 159, 124, 185, 136, 15},
      {"7,50", 135, 141, 162, 153, 15},
      {"EUR", 163, 155, 189, 166, 15},
      {"a line of a frame", 190, 185, 274, 189, 15},
      {"a thin line", 10, 188, 64, 191, 15},
      {"au", 236, 197, 252, 211, 8},
      {"fond", 138, 234, 166, 249, 14},
  };
  for (const auto &[what, left, top, right, bottom, ground] : kParts) {
    drawReference(page);
    EXPECT_EQ(largestDifference(page, reference).size, 0);
    for (int x = left; x < right; ++x) Line_Ex(page.port(), x, top, x, bottom - 1, ground, 1);
    EXPECT_GT(largestDifference(page, reference).size, kTolerated) << what;
  }
}

}  // namespace
}  // namespace korvel::test
