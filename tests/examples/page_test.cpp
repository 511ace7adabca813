// The showcase's page beside its picture of reference: what is drawn stays as it was judged good.
// After a change that was meant, tests/examples/renew-page writes the picture anew.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QString>
#include <algorithm>
#include <cstdlib>
#include <string>

#include <korvel/desktop.h>
#include "examples/vitrine/page.h"

namespace korvel::test {
namespace {

// Versions of the font renderer differ in the shade of a letter's edge, never in what is where: the
// page is compared block by block, and in no block may the mean of a colour be off by more than
// this (of 255). One letter that is missing or a pixel lower is off by more.
constexpr int kBlock = 12;
constexpr int kTolerance = 10;

QImage drawnPage() {
  const char *renewed = std::getenv("KORVEL_RENEW_PAGE");
  const std::string path = renewed != nullptr ? renewed : testing::TempDir() + "korvel-page.png";
  const CGrafPtr port = KorvelImagePort(kPageWidth, kPageHeight);
  EXPECT_NE(port, nullptr);
  drawPage(port);
  EXPECT_EQ(KorvelPortSave(port, path.c_str()), 1);
  KorvelPortRelease(port);
  return QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_RGB32);
}

QImage reference() {
  return QImage(QString::fromUtf8(KORVEL_TEST_PAGE)).convertToFormat(QImage::Format_RGB32);
}

struct Sum {
  int red = 0, green = 0, blue = 0;

  void add(QRgb pixel) {
    red += qRed(pixel);
    green += qGreen(pixel);
    blue += qBlue(pixel);
  }
};

Sum sumOfBlock(const QImage &page, int left, int top) {
  Sum sum;
  for (int y = top; y < std::min(top + kBlock, page.height()); ++y)
    for (int x = left; x < std::min(left + kBlock, page.width()); ++x) sum.add(page.pixel(x, y));
  return sum;
}

// Where the first block is that differs; empty when none does.
std::string firstDifference(const QImage &a, const QImage &b) {
  constexpr int kMost = kTolerance * kBlock * kBlock;
  for (int y = 0; y < a.height(); y += kBlock) {
    for (int x = 0; x < a.width(); x += kBlock) {
      const Sum one = sumOfBlock(a, x, y);
      const Sum other = sumOfBlock(b, x, y);
      const int most = std::max({std::abs(one.red - other.red), std::abs(one.green - other.green),
                                 std::abs(one.blue - other.blue)});
      if (most > kMost) return "at (" + std::to_string(x) + "," + std::to_string(y) + ")";
    }
  }
  return "";
}

TEST(Page, LooksLikeItsReference) {
  const QImage drawn = drawnPage();
  ASSERT_FALSE(drawn.isNull());
  ASSERT_EQ(drawn.size(), reference().size());
  EXPECT_EQ(firstDifference(drawn, reference()), "");
}

// What the tolerance lets through is less than a letter.
TEST(Page, AMissingLetterIsADifference) {
  QImage without = reference();
  ASSERT_FALSE(without.isNull());
  QPainter(&without).fillRect(16, 14, 9, 14, Qt::white);  // the first letter of the page
  EXPECT_EQ(firstDifference(without, reference()), "at (12,12)");
}

}  // namespace
}  // namespace korvel::test
