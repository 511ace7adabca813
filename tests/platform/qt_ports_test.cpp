// SPDX-License-Identifier: MIT
// Ports of the Qt module: pixels read back from images, from a host's painter and from windows.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <tuple>

#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include "platform/desktop.h"
#include "tests/platform/qt_person.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::platform {

std::ostream &operator<<(std::ostream &out, const Rect &rect) {
  return out << rect.left << ' ' << rect.top << ' ' << rect.right << ' ' << rect.bottom;
}

namespace {

using test::qtDesktop;
using test::widgetOf;

constexpr RGBColor kBlack{0, 0, 0};
constexpr RGBColor kWhite{0xFFFF, 0xFFFF, 0xFFFF};
constexpr RGBColor kRed{0xFFFF, 0, 0};
constexpr RGBColor kBlue{0, 0, 0xFFFF};

bool same(const std::optional<RGBColor> &a, const RGBColor &b) {
  return a && a->red == b.red && a->green == b.green && a->blue == b.blue;
}

std::unique_ptr<Port> newImage(int width, int height) {
  auto image = qtDesktop().newImage(width, height);
  EXPECT_NE(image, nullptr);
  return image;
}

constexpr int kWidth = 60;
constexpr int kHeight = 40;

// The bounds of what is not white in an image of kWidth x kHeight.
Rect inkOf(const Port &image, int width = kWidth, int height = kHeight) {
  Rect ink{width, height, 0, 0};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (!same(image.pixel(x, y), kWhite))
        ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
               std::max(ink.bottom, y + 1)};
  return ink.right == 0 ? Rect() : ink;
}

int countOf(const Port &image, const RGBColor &colour, int width = kWidth, int height = kHeight) {
  int count = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) count += same(image.pixel(x, y), colour) ? 1 : 0;
  return count;
}

QImage saved(const Port &port) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path() + "/port.png";
  EXPECT_TRUE(port.save(path));
  return QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_ARGB32);
}

// The largest difference of a component between two pictures of one size.
int difference(const QImage &a, const QImage &b) {
  if (a.size() != b.size()) return 256;
  int largest = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) {
      const QRgb left = a.pixel(x, y), right = b.pixel(x, y);
      largest =
          std::max({largest, std::abs(qRed(left) - qRed(right)),
                    std::abs(qGreen(left) - qGreen(right)), std::abs(qBlue(left) - qBlue(right))});
    }
  return largest;
}

// ---- Images ----

TEST(QtImage, IsWhiteAndEndsAtItsSides) {
  const auto image = newImage(3, 2);
  EXPECT_EQ(countOf(*image, kWhite, 3, 2), 6);
  const int kOutside[][2] = {{-1, 0},           {0, -1}, {3, 0}, {0, 2}, {INT_MIN, INT_MIN},
                             {INT_MAX, INT_MAX}};
  for (const auto &[x, y] : kOutside) EXPECT_EQ(image->pixel(x, y), std::nullopt) << x << ' ' << y;
}

TEST(QtImage, HasSidesFrom1To32767) {
  const struct {
    int width, height;
    bool exists;
  } kCases[] = {
      {1, 1, true},
      {0, 1, false},
      {1, 0, false},
      {-1, 5, false},
      {INT_MIN, 5, false},
      {32767, 1, true},
      {1, 32767, true},
      {32768, 1, false},
      {1, 32768, false},
      {INT_MAX, 1, false},
      {INT_MAX, INT_MAX, false},
      // More pixels than any screen has: 4 GB.
      {32767, 32767, false},
  };
  for (const auto &[width, height, exists] : kCases)
    EXPECT_EQ(qtDesktop().newImage(width, height) != nullptr, exists) << width << ' ' << height;
}

TEST(QtImage, ColoursOfThePaletteReadBackAsTheyAre) {
  const unsigned short kComponents[] = {0, 0x8000, 0xC000, 0xFFFF};
  const auto image = newImage(2, 2);
  for (const unsigned short red : kComponents)
    for (const unsigned short green : kComponents)
      for (const unsigned short blue : kComponents) {
        const RGBColor colour{red, green, blue};
        image->setForeground(colour);
        image->fillRect({0, 0, 2, 2});
        EXPECT_EQ(countOf(*image, colour, 2, 2), 4) << red << ' ' << green << ' ' << blue;
      }
}

TEST(QtImage, IsSavedAsPng) {
  const auto image = newImage(5, 4);
  image->setForeground(kRed);
  image->fillRect({1, 1, 3, 2});
  const QImage read = saved(*image);
  EXPECT_EQ(read.size(), QSize(5, 4));
  EXPECT_EQ(read.pixelColor(1, 1), QColor(Qt::red));
  EXPECT_EQ(read.pixelColor(3, 1), QColor(Qt::white));
  EXPECT_FALSE(image->save("/nowhere/port.png"));
  EXPECT_FALSE(image->save(""));
  EXPECT_FALSE(image->save("/dev/full"));
}

TEST(QtImage, LeavesNoFileOpenWhenItIsSavedOrCannotBe) {
  const test::TemporaryFolder folder;
  const auto image = newImage(5, 4);
  const auto openFiles = [] {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
  };
  const auto before = openFiles();
  EXPECT_TRUE(image->save(folder.path() + "/port.png"));
  EXPECT_FALSE(image->save("/dev/full"));
  EXPECT_FALSE(image->save(folder.path()));
  EXPECT_EQ(openFiles(), before);
}

TEST(QtImage, IsSavedUnderTheBytesOfItsPath) {
  const test::TemporaryFolder folder;
  for (const char *name : {"/\xC3\xA9t\xC3\xA9.png", "/\xE9t\xE9.png"}) {
    const std::string path = folder.path() + name;
    EXPECT_TRUE(newImage(5, 4)->save(path));
    EXPECT_EQ(access(path.c_str(), F_OK), 0) << name;
  }
}

// ---- Rectangles ----

TEST(QtImage, RectanglesAreFilledInside) {
  const struct {
    Rect rect, ink;
  } kCases[] = {
      {{5, 6, 15, 9}, {5, 6, 15, 9}},
      {{5, 6, 6, 7}, {5, 6, 6, 7}},
      // Empty and reversed rectangles show nothing.
      {{5, 6, 5, 9}, {}},
      {{5, 6, 15, 6}, {}},
      {{15, 9, 5, 6}, {}},
      // Beyond the sides.
      {{-5, -5, 3, 2}, {0, 0, 3, 2}},
      {{50, 30, 100, 100}, {50, 30, 60, 40}},
      {{-20, 0, -10, 5}, {}},
      {{INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {0, 0, 60, 40}},
      {{INT_MAX, INT_MAX, INT_MIN, INT_MIN}, {}},
      {{INT_MIN, 10, INT_MIN + 5, 20}, {}},
      {{INT_MAX - 5, 10, INT_MAX, 20}, {}},
  };
  for (const auto &[rect, ink] : kCases) {
    const auto image = newImage(kWidth, kHeight);
    image->fillRect(rect);
    EXPECT_EQ(inkOf(*image), ink) << rect;
    EXPECT_EQ(countOf(*image, kBlack), ink.width() * ink.height()) << rect;
  }
}

TEST(QtImage, FramesAreOnePixelWide) {
  const struct {
    Rect rect, ink;
    int pixels;
  } kCases[] = {
      {{5, 6, 15, 12}, {5, 6, 15, 12}, 28},
      {{5, 6, 8, 9}, {5, 6, 8, 9}, 8},
      {{5, 6, 7, 8}, {5, 6, 7, 8}, 4},
      {{5, 6, 6, 7}, {5, 6, 6, 7}, 1},
      {{5, 6, 6, 12}, {5, 6, 6, 12}, 6},
      {{5, 6, 15, 7}, {5, 6, 15, 7}, 10},
      {{5, 6, 5, 9}, {}, 0},
      {{15, 12, 5, 6}, {}, 0},
      {{-1, -1, 20, 10}, {0, 0, 20, 10}, 29},
      {{INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {}, 0},
      {{INT_MIN, 3, INT_MAX, INT_MAX}, {0, 3, 60, 4}, 60},
  };
  for (const auto &[rect, ink, pixels] : kCases) {
    const auto image = newImage(kWidth, kHeight);
    image->frameRect(rect);
    EXPECT_EQ(inkOf(*image), ink) << rect;
    EXPECT_EQ(countOf(*image, kBlack), pixels) << rect;
  }
}

// ---- Lines ----

TEST(QtImage, StraightLinesAreSharp) {
  const struct {
    int x1, y1, x2, y2, width;
    Rect ink;
  } kCases[] = {
      {5, 6, 15, 6, 1, {5, 6, 16, 7}},
      {15, 6, 5, 6, 1, {5, 6, 16, 7}},
      {5, 6, 5, 16, 1, {5, 6, 6, 17}},
      {5, 16, 5, 6, 1, {5, 6, 6, 17}},
      {5, 6, 5, 6, 1, {5, 6, 6, 7}},
      {5, 6, 15, 6, 2, {5, 6, 17, 8}},
      {5, 6, 5, 16, 3, {5, 6, 8, 19}},
      {5, 6, 5, 6, 4, {5, 6, 9, 10}},
      // No pen.
      {5, 6, 15, 6, 0, {}},
      {5, 6, 15, 6, -1, {}},
      {5, 6, 15, 6, INT_MIN, {}},
      // Beyond the sides.
      {INT_MIN, 6, INT_MAX, 6, 1, {0, 6, 60, 7}},
      {INT_MAX, 6, INT_MIN, 6, 2, {0, 6, 60, 8}},
      {5, INT_MIN, 5, INT_MAX, 1, {5, 0, 6, 40}},
      {5, 6, 15, 6, INT_MAX, {5, 6, 60, 40}},
      {INT_MIN, 6, INT_MIN, 6, INT_MAX, {}},
      {-1, -1, -1, -1, INT_MAX, {0, 0, 60, 40}},
      {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, {}},
  };
  for (const auto &[x1, y1, x2, y2, width, ink] : kCases) {
    const auto image = newImage(kWidth, kHeight);
    image->drawLine(x1, y1, x2, y2, width);
    EXPECT_EQ(inkOf(*image), ink) << x1 << ' ' << y1 << ' ' << x2 << ' ' << y2 << ' ' << width;
    EXPECT_EQ(countOf(*image, kBlack), ink.width() * ink.height());
  }
}

// How much of a pixel is inked, from 0 to 1.
double inkAt(const Port &image, int x, int y) {
  const std::optional<RGBColor> colour = image.pixel(x, y);
  return colour ? 1 - (colour->green >> 8) / 255.0 : 0;
}

TEST(QtImage, SlantedLinesReachFromPointToPoint) {
  constexpr int kEnds[][4] = {{5, 5, 45, 30}, {45, 30, 5, 5},  {5, 30, 45, 5}, {45, 5, 5, 30},
                              {5, 5, 30, 30}, {10, 2, 14, 33}, {2, 10, 50, 13}};
  for (const auto &[x1, y1, x2, y2] : kEnds)
    for (const int width : {1, 2, 3, 5}) {
      const auto image = newImage(kWidth, kHeight);
      image->drawLine(x1, y1, x2, y2, width);
      EXPECT_EQ(inkOf(*image), (Rect{std::min(x1, x2), std::min(y1, y2), std::max(x1, x2) + width,
                                     std::max(y1, y2) + width}));
      double ink = 0;
      for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) ink += inkAt(*image, x, y);
      const double length = std::hypot(x2 - x1, y2 - y1);
      EXPECT_GT(ink, length * width) << x1 << ' ' << y1 << ' ' << width;
      EXPECT_LT(ink, (length + 2 * width) * width * 1.42) << x1 << ' ' << y1 << ' ' << width;
      const int middle = width / 2;
      EXPECT_GT(inkAt(*image, x1 + middle, y1 + middle), 0.6);
      EXPECT_GT(inkAt(*image, x2 + middle, y2 + middle), 0.6);
    }
}

TEST(QtImage, SlantedLinesFromFarAwayPassWhereTheyShould) {
  const struct {
    int x1, y1, x2, y2, x, y;
  } kCases[] = {
      {INT_MIN, INT_MIN, INT_MAX, INT_MAX, 20, 20}, {INT_MAX, INT_MAX, INT_MIN, INT_MIN, 35, 35},
      {-100000, -100000, 100000, 100000, 7, 7},     {-1000000, 20, 1000000, 21, 30, 20},
      {INT_MIN, 20, INT_MAX, 22, 30, 21},           {30, INT_MIN, 31, INT_MAX, 30, 20},
  };
  for (const auto &[x1, y1, x2, y2, x, y] : kCases) {
    const auto image = newImage(kWidth, kHeight);
    image->drawLine(x1, y1, x2, y2, 3);
    EXPECT_GT(inkAt(*image, x + 1, y + 1), 0.9) << x1 << ' ' << y1 << ' ' << x2 << ' ' << y2;
    EXPECT_EQ(inkAt(*image, 0, 39) + inkAt(*image, 59, 0), 0);
  }
}

TEST(QtImage, SlantedLinesThatPassByShowNothing) {
  const int kCases[][4] = {{INT_MIN, 0, 0, INT_MIN},   {INT_MAX, 0, 100, INT_MAX},
                           {-10, 10, -5, 30},          {10, -30, 20, -10},
                           {INT_MIN, -9, INT_MAX, -8}, {100, 200, 300, 400}};
  for (const auto &[x1, y1, x2, y2] : kCases) {
    const auto image = newImage(kWidth, kHeight);
    image->drawLine(x1, y1, x2, y2, 2);
    EXPECT_EQ(inkOf(*image), Rect()) << x1 << ' ' << y1 << ' ' << x2 << ' ' << y2;
  }
}

TEST(QtImage, AGiantPenInksEverything) {
  const auto image = newImage(kWidth, kHeight);
  image->drawLine(-20, -10, 30, 20, INT_MAX);
  EXPECT_EQ(inkOf(*image), (Rect{0, 0, kWidth, kHeight}));
}

// ---- Fonts ----

TEST(QtFonts, AreKnownByTheirFamilyOrOneOfTheSameMeasures) {
  const auto image = newImage(kWidth, kHeight);
  for (const char *name : {"Arial", "Helvetica", "Times New Roman", "Times", "Courier New",
                           "Courier", "Liberation Sans", "liberation SERIF", "ARIAL"})
    EXPECT_TRUE(image->setFont(name, 0)) << name;
  // A name that would only fall back to another family is unknown.
  for (const char *name : {"Zorglub", "", " ", "Sans", "sans-serif", "Georgia Ref", "Verdana Pro",
                           "Arial,Helvetica", "\xE9\xE8"})
    EXPECT_FALSE(image->setFont(name, 0)) << name;
}

TEST(QtFonts, OfTheSameMeasuresAdvanceAlike) {
  const auto image = newImage(kWidth, kHeight);
  const struct {
    const char *name, *answer;
  } kCases[] = {{"Arial", "Liberation Sans"},
                {"Times New Roman", "Liberation Serif"},
                {"Courier New", "Liberation Mono"}};
  for (const auto &[name, answer] : kCases) {
    if (QFontDatabase::hasFamily(name)) continue;  // installed: its hints may round otherwise
    image->setFont(name, 0);
    const int width = image->textWidth("Ordonnance du 14 juillet");
    image->setFont(answer, 0);
    EXPECT_EQ(image->textWidth("Ordonnance du 14 juillet"), width) << name;
  }
}

TEST(QtFonts, AnUnknownOneLeavesTheFontAsItWas) {
  const auto image = newImage(kWidth, kHeight);
  image->setFont("Courier New", kBold);
  image->setFontSize(17);
  const FontMetrics before = image->fontMetrics();
  EXPECT_FALSE(image->setFont("Zorglub", kItalic | kExtend));
  EXPECT_EQ(image->fontMetrics().widest, before.widest);
  EXPECT_EQ(image->fontMetrics().ascent, before.ascent);
  EXPECT_TRUE(image->setFont("Courier New", kBold));
  EXPECT_EQ(image->fontMetrics().widest, before.widest) << "the size stays with the family";
}

TEST(QtFonts, SizesAreFrom1To1000AndElse12) {
  const auto image = newImage(kWidth, kHeight);
  image->setFont("Arial", 0);
  const auto widthAt = [&](int size) {
    image->setFontSize(size);
    return image->textWidth("Mesure");
  };
  const int usual = widthAt(12);
  for (const int size : {0, -1, -1000, INT_MIN}) {
    widthAt(30);
    EXPECT_EQ(widthAt(size), usual) << size;
  }
  const int largest = widthAt(1000);
  EXPECT_GT(largest, widthAt(999));
  EXPECT_EQ(widthAt(1001), largest);
  EXPECT_EQ(widthAt(INT_MAX), largest);
  EXPECT_GE(widthAt(1), 6) << "no letter without a width";
}

TEST(QtFonts, ANewPortHasAFontOf12Points) {
  const auto image = newImage(kWidth, kHeight);
  const int width = image->textWidth("Mesure");
  EXPECT_GT(width, 20);
  image->setFontSize(24);
  EXPECT_GT(image->textWidth("Mesure"), width);
  image->setFontSize(12);
  EXPECT_EQ(image->textWidth("Mesure"), width);
}

TEST(QtFonts, MetricsHoldForEveryCharacter) {
  const auto image = newImage(kWidth, kHeight);
  for (const char *family : {"Arial", "Times New Roman", "Courier New"})
    for (int size = 1; size <= 72; ++size) {
      image->setFont(family, 0);
      image->setFontSize(size);
      int widest = 0;
      for (int byte = 0; byte < 256; ++byte)
        widest = std::max(widest, image->textWidth(std::string(1, static_cast<char>(byte))));
      const FontMetrics metrics = image->fontMetrics();
      EXPECT_EQ(metrics.widest, widest) << family << size;
      EXPECT_GT(metrics.ascent, 0);
      EXPECT_GT(metrics.descent, 0);
      EXPECT_GE(metrics.leading, 0);
      EXPECT_NEAR(metrics.ascent + metrics.descent, 1.15 * size, 0.1 * size + 2) << family << size;
    }
}

TEST(QtFonts, FacesDifferAsTheySay) {
  const auto image = newImage(300, kHeight);
  const auto drawnWith = [&](unsigned face) {
    image->setForeground(kWhite);
    image->fillRect({0, 0, 300, kHeight});
    image->setForeground(kBlack);
    EXPECT_TRUE(image->setFont("Arial", face));
    image->setFontSize(16);
    const int width = image->drawText(10, 25, "Illumination");
    double ink = 0;
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < 300; ++x) ink += inkAt(*image, x, y);
    return std::pair(width, ink);
  };
  const auto [width, ink] = drawnWith(0);
  EXPECT_GT(drawnWith(kBold).second, 1.2 * ink);
  EXPECT_NEAR(drawnWith(kCondense).first, 0.75 * width, 6);
  EXPECT_NEAR(drawnWith(kExtend).first, 1.25 * width, 6);
  EXPECT_EQ(drawnWith(kUnderline).first, width);
  EXPECT_NEAR(drawnWith(kUnderline).second, ink + width, 3) << "a line of one pixel";
  EXPECT_EQ(drawnWith(8 | 16 | 128), (std::pair(width, ink))) << "bits that are no face";
  const double upright = inkAt(*image, 11, 14);
  drawnWith(kItalic);
  EXPECT_LT(inkAt(*image, 11, 14), upright) << "the top of the I leans away";
}

TEST(QtFonts, TheLineUnderATextIsAsLongAsTheText) {
  const auto image = newImage(200, kHeight);
  image->setFont("Arial", kUnderline);
  const int width = image->drawText(10, 20, "a b ");
  int row = 21;
  while (row < kHeight && inkAt(*image, 10 + width - 1, row) < 1) ++row;
  ASSERT_LT(row, kHeight);
  for (int x = 0; x < 200; ++x)
    EXPECT_EQ(inkAt(*image, x, row), x >= 10 && x < 10 + width ? 1 : 0) << x;
}

// ---- Text ----

constexpr const char *kText =
    "Gr\xFC\xDF"
    "e: \x8Et\x8E \xE9t\xE9 \x80 \x9C~W@ fi AV";

TEST(QtText, MeasuresWhatDrawingAdvancesAtEverySize) {
  const auto image = newImage(kWidth, kHeight);
  for (const char *family : {"Arial", "Times New Roman", "Courier New", "DejaVu Sans"})
    for (const unsigned face : {0u, kBold | kItalic, kCondense, kExtend | kUnderline})
      for (int size = 1; size <= 100; ++size) {
        image->setFont(family, face);
        image->setFontSize(size);
        int sum = 0;
        for (const char *byte = kText; *byte != '\0'; ++byte)
          sum += image->textWidth(std::string_view(byte, 1));
        EXPECT_EQ(image->textWidth(kText), sum) << family << size;
        EXPECT_EQ(image->drawText(0, 20, kText), sum) << family << size;
      }
}

// Draws a text whole, and letter by letter at the measured places.
void expectInkToAdvance(Port &whole, Port &parts, int x, int y, std::string_view text) {
  whole.drawText(x, y, text);
  for (std::size_t i = 0; i < text.size(); ++i) {
    parts.drawText(x + parts.textWidth(text.substr(0, i)), y, text.substr(i, 1));
  }
}

TEST(QtText, TheInkOfALetterStandsWhereTheMeasurePutsIt) {
  for (const char *family : {"Arial", "Times New Roman", "Courier New"})
    for (const int size : {5, 9, 12, 13, 24, 64, 65, 90}) {
      const auto whole = newImage(700, 150), parts = newImage(700, 150);
      for (Port *port : {whole.get(), parts.get()}) {
        port->setFont(family, 0);
        port->setFontSize(size);
      }
      expectInkToAdvance(*whole, *parts, 3, 100, kText);
      EXPECT_EQ(difference(saved(*whole), saved(*parts)), 0) << family << size;
      EXPECT_NE(inkOf(*whole, 700, 150), Rect());
    }
}

TEST(QtText, IsSmoothedInGreys) {
  const auto image = newImage(200, kHeight);
  image->setFont("Arial", 0);
  image->setFontSize(20);
  image->drawText(5, 25, "Sauge");
  int greys = 0;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < 200; ++x) {
      const RGBColor colour = *image->pixel(x, y);
      EXPECT_TRUE(colour.red == colour.green && colour.green == colour.blue);
      greys += colour.red != 0 && colour.red != 0xFFFF ? 1 : 0;
    }
  EXPECT_GT(greys, 30);
}

TEST(QtText, EmptyTextIsNothing) {
  const auto image = newImage(kWidth, kHeight);
  image->setOpaqueText(true);
  image->setBackground(kRed);
  EXPECT_EQ(image->drawText(5, 20, ""), 0);
  EXPECT_EQ(image->textWidth(""), 0);
  EXPECT_EQ(inkOf(*image), Rect());
}

TEST(QtText, ControlCharactersShowNothingAndHaveNoWidth) {
  const auto image = newImage(kWidth, kHeight);
  for (const int byte : {0, 1, 9, 10, 13, 31, 127, 0x81, 0x9D}) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(image->drawText(5, 20, text), 0) << byte;
    EXPECT_EQ(image->textWidth(text), 0) << byte;
  }
  EXPECT_EQ(inkOf(*image), Rect());
  EXPECT_EQ(image->textWidth(std::string_view("a\0b", 3)), image->textWidth("ab"));
}

TEST(QtText, BytesShowTheCharactersOfTheScreenSet) {
  const struct {
    const char *bytes;
    const char16_t *character;
  } kCases[] = {{"\x88\xE0", u"à"}, {"\x8D\xE7", u"ç"}, {"\x8E\xE9", u"é"}, {"\x8F\xE8", u"è"},
                {"\xA1\xB0", u"°"}, {"\x90\xEA", u"ê"}, {"\x95\xEF", u"ï"}, {"\x80", u"€"},
                {"\x9C", u"œ"},     {"\x92", u"’"},     {"\xFF", u"ÿ"},     {"~", u"~"}};
  QFont font("Liberation Sans");
  font.setPixelSize(20);
  font.setHintingPreference(QFont::PreferFullHinting);
  font.setStyleStrategy(QFont::NoSubpixelAntialias);
  for (const auto &[bytes, character] : kCases)
    for (const char *byte = bytes; *byte != '\0'; ++byte) {
      const auto image = newImage(kWidth, kHeight);
      image->setFont("Liberation Sans", 0);
      image->setFontSize(20);
      image->drawText(5, 25, std::string_view(byte, 1));
      QImage expected(kWidth, kHeight, QImage::Format_RGB32);
      expected.fill(Qt::white);
      QPainter painter(&expected);
      painter.setFont(font);
      painter.drawText(5, 25, QString::fromUtf16(character));
      painter.end();
      EXPECT_LE(difference(saved(*image), expected), 1) << static_cast<int>(*byte);
    }
}

TEST(QtText, OpaqueTextFillsItsOwnBoxAndTransparentTextNothing) {
  const auto image = newImage(kWidth, kHeight);
  image->setFont("Arial", 0);
  image->setForeground(kBlue);
  image->setBackground(kRed);
  const FontMetrics metrics = image->fontMetrics();
  image->setOpaqueText(true);
  const int width = image->drawText(5, 20, "  ");
  const Rect box{5, 20 - metrics.ascent, 5 + width, 20 + metrics.descent};
  EXPECT_EQ(inkOf(*image), box);
  EXPECT_EQ(countOf(*image, kRed), box.width() * box.height());
  image->drawText(5, 20, "H");
  EXPECT_GT(countOf(*image, kBlue), 5);
  EXPECT_GT(countOf(*image, kRed), 5);
  EXPECT_EQ(countOf(*image, kBlack), 0);

  const auto clear = newImage(kWidth, kHeight);
  clear->setFont("Arial", 0);
  clear->setBackground(kRed);
  clear->drawText(5, 20, " H ");
  EXPECT_EQ(countOf(*clear, kRed), 0);
  EXPECT_GT(countOf(*clear, kBlack), 5);
}

TEST(QtText, ALetterThatTheFontLacksIsAnotherFonts) {
  const auto drawn = [](const char *letter) {
    const auto image = newImage(kWidth, kHeight);
    EXPECT_TRUE(image->setFont("Noto Sans Armenian", 0));
    image->setFontSize(20);
    EXPECT_GT(image->drawText(5, 25, letter), 4);
    return saved(*image);
  };
  EXPECT_NE(drawn("\x8E"), drawn("\x8D"))
      << "each would be the sign for a letter that is not there";
  EXPECT_NE(drawn("\x8E"), drawn(" "));
}

TEST(QtText, FarAwayIsClipped) {
  const auto image = newImage(kWidth, kHeight);
  image->setOpaqueText(true);
  image->setBackground(kRed);
  image->setFont("Arial", kUnderline);
  const int kFar[] = {INT_MIN, -2000000000, -100000, -32768, 32768, 100000, 2000000000, INT_MAX};
  for (const int size : {12, 100})
    for (const int far : kFar) {
      image->setFontSize(size);
      const int width = image->textWidth("Loin");
      EXPECT_EQ(image->drawText(far, 20, "Loin"), width);
      EXPECT_EQ(image->drawText(20, far, "Loin"), width);
      EXPECT_EQ(image->drawText(far, far, "Loin"), width);
    }
  EXPECT_EQ(inkOf(*image), Rect());
}

TEST(QtText, TheEndOfALongTextShowsWhenItsBeginningIsFarAway) {
  for (const int size : {40, 100}) {
    const std::string text = std::string(5000, 'M');
    const auto image = newImage(200, 150);
    image->setFont("Arial", 0);
    image->setFontSize(size);
    const int width = image->textWidth(text);
    ASSERT_GT(width, 100000);
    EXPECT_EQ(image->drawText(100 - width, 120, text), width);
    const Rect ink = inkOf(*image, 200, 150);
    EXPECT_LT(ink.left, 10);
    EXPECT_NEAR(ink.right, 100, size / 5);
  }
}

TEST(QtText, IsCutAtTheSidesOfTheImage) {
  const auto large = newImage(kWidth + 40, kHeight + 40);
  large->setFont("Arial", kItalic);
  large->setFontSize(30);
  for (int step = 0; step < 40; ++step) {
    const int x = -25 + 3 * step, y = -5 + 2 * step;
    const auto cut = newImage(kWidth, kHeight);
    cut->setFont("Arial", kItalic);
    cut->setFontSize(30);
    large->setForeground(kWhite);
    large->fillRect({0, 0, kWidth + 40, kHeight + 40});
    large->setForeground(kBlack);
    large->drawText(x + 20, y + 20, "fjW");
    cut->drawText(x, y, "fjW");
    EXPECT_EQ(difference(saved(*large).copy(20, 20, kWidth, kHeight), saved(*cut)), 0) << step;
  }
}

TEST(QtText, AnyBytesAnywhereMeasureWhatTheyAdvance) {
  std::mt19937 random(5);
  const auto image = newImage(kWidth, kHeight);
  image->setOpaqueText(true);
  for (int n = 0; n < 4000; ++n) {
    std::string text(random() % 300, '\0');
    for (char &byte : text) byte = static_cast<char>(random());
    if (n % 50 == 0)
      image->setFont(n % 100 == 0 ? "Arial" : "Courier New", static_cast<unsigned>(random()));
    if (n % 20 == 0) image->setFontSize(static_cast<int>(random() % 30));
    const int x = static_cast<int>(random() % 400) - 300;
    const int y = static_cast<int>(random() % 80) - 20;
    EXPECT_EQ(image->drawText(x, y, text), image->textWidth(text));
  }
}

// ---- A host's painter ----

class QtPainterPort : public testing::Test {
 protected:
  QtPainterPort() : surface_(300, 120, QImage::Format_RGB32) {
    qtDesktop();
    surface_.fill(Qt::white);
    painter_.begin(&surface_);
    port_ = qtDesktop().painterPort(&painter_);
  }
  void drawSomethingOfEverything(Port &port) {
    port.setForeground(kBlue);
    port.setBackground(kRed);
    port.setOpaqueText(true);
    port.setFont("Arial", kBold | kUnderline);
    port.setFontSize(15);
    port.drawText(10, 20, kText);
    port.setOpaqueText(false);
    port.setFont("Times New Roman", kItalic);
    port.setFontSize(70);
    port.drawText(100, 100, "gW");
    port.drawLine(10, 30, 80, 30, 2);
    port.drawLine(10, 40, 80, 70, 3);
    port.fillRect({10, 80, 30, 90});
    port.frameRect({40, 80, 60, 90});
    port.drawPicture(*picture_, 70, 80);
  }

  QImage surface_;
  QPainter painter_;
  std::unique_ptr<Port> port_;
  const std::unique_ptr<Picture> picture_ =
      qtDesktop().loadPicture(KORVEL_TEST_RESOURCES "/pictures/repferb.svg");
};

TEST_F(QtPainterPort, DrawsWhatAnImageShows) {
  ASSERT_NE(port_, nullptr);
  ASSERT_NE(picture_, nullptr);
  drawSomethingOfEverything(*port_);
  const auto image = newImage(300, 120);
  drawSomethingOfEverything(*image);
  painter_.end();
  EXPECT_LE(difference(saved(*image), surface_), 1);
  EXPECT_GT(countOf(*image, kBlue, 300, 120), 500);
}

// ---- Rules at any scale ----

// The lengths of the black runs along a row or a column of a picture.
std::vector<int> blackStretches(const QImage &image, Qt::Orientation way, double scale, int at) {
  const int place = static_cast<int>(at * scale);
  const int length = way == Qt::Horizontal ? image.width() : image.height();
  std::vector<int> stretches;
  bool wasBlack = false;
  for (int i = 0; i < length; ++i) {
    const QRgb pixel = way == Qt::Horizontal ? image.pixel(i, place) : image.pixel(place, i);
    const bool isBlack = pixel == qRgb(0, 0, 0);
    if (isBlack && !wasBlack) stretches.push_back(0);
    if (isBlack) ++stretches.back();
    wasBlack = isBlack;
  }
  return stretches;
}

// On a port of at least 100 x 100, wherever on the finer pixels the rules lie. `shown` tells what
// was drawn, in finer pixels.
void expectRulesOfOneThickness(Port &port, double scale, const std::function<QImage()> &shown) {
  constexpr int kPlaces = 8;
  constexpr int kPitch = 11;
  const auto clear = [&] {
    port.setForeground(kWhite);
    port.fillRect({0, 0, 100, 100});
    port.setForeground(kBlack);
  };
  const auto thick = [&](int width, std::size_t count) {
    return std::vector<int>(count, std::max(1, static_cast<int>(std::lround(width * scale))));
  };
  clear();
  for (int i = 0; i < kPlaces; ++i)
    port.frameRect({3 + kPitch * i, 10 + i, 10 + kPitch * i, 40 + i});
  const QImage frames = shown();
  EXPECT_EQ(blackStretches(frames, Qt::Horizontal, scale, 25), thick(1, 2 * kPlaces)) << scale;
  for (int i = 0; i < kPlaces; ++i)
    EXPECT_EQ(blackStretches(frames, Qt::Vertical, scale, 7 + kPitch * i), thick(1, 2)) << scale;
  for (int width = 1; width <= 4; ++width) {
    clear();
    for (int i = 0; i < kPlaces; ++i) port.drawLine(3 + kPitch * i, 10, 3 + kPitch * i, 40, width);
    EXPECT_EQ(blackStretches(shown(), Qt::Horizontal, scale, 25), thick(width, kPlaces)) << scale;
    clear();
    for (int i = 0; i < kPlaces; ++i) port.drawLine(10, 3 + kPitch * i, 40, 3 + kPitch * i, width);
    EXPECT_EQ(blackStretches(shown(), Qt::Vertical, scale, 25), thick(width, kPlaces)) << scale;
  }
  clear();
  port.setFont("Arial", kUnderline);
  for (int i = 0; i < kPlaces; ++i) port.drawText(10, 3 + kPitch * i, std::string(20, ' '));
  EXPECT_EQ(blackStretches(shown(), Qt::Vertical, scale, 25), thick(1, kPlaces)) << scale;
}

TEST(QtImage, RulesAreOfOneThickness) {
  const auto image = newImage(100, 100);
  expectRulesOfOneThickness(*image, 1, [&] { return saved(*image); });
}

TEST(QtPainterPorts, RulesAreOfOneThicknessAtAnyScale) {
  qtDesktop();
  for (const double scale : {1.0, 1.25, 1.5, 2.0, 2.75, 0.5}) {
    QImage surface(300, 300, QImage::Format_RGB32);
    surface.fill(Qt::white);
    QPainter painter(&surface);
    painter.scale(scale, scale);
    const auto port = qtDesktop().painterPort(&painter);
    expectRulesOfOneThickness(*port, scale, [&] { return surface; });
  }
}

TEST(QtPainterPorts, RulesAreOfOneThicknessOnAFineSurface) {
  qtDesktop();
  QImage surface(150, 150, QImage::Format_RGB32);
  surface.setDevicePixelRatio(1.5);
  QPainter painter(&surface);
  const auto port = qtDesktop().painterPort(&painter);
  expectRulesOfOneThickness(*port, 1.5, [&] { return surface; });
}

TEST(QtPainterPorts, AFrameIsOfOneShadeWhereThePainterIsTranslucent) {
  qtDesktop();
  QImage surface(20, 20, QImage::Format_RGB32);
  surface.fill(Qt::white);
  QPainter painter(&surface);
  painter.setOpacity(0.5);
  qtDesktop().painterPort(&painter)->frameRect({2, 2, 18, 18});
  painter.end();
  for (const QPoint place : {QPoint(2, 2), QPoint(17, 17), QPoint(2, 17), QPoint(2, 10)})
    EXPECT_EQ(surface.pixel(place), surface.pixel(10, 2)) << place.x() << ' ' << place.y();
}

TEST_F(QtPainterPort, LeavesTheSettingsAsTheyWere) {
  const QPen pen(Qt::green, 3);
  const QBrush brush(Qt::yellow, Qt::Dense3Pattern);
  const QFont font("Liberation Mono", 7);
  painter_.setPen(pen);
  painter_.setBrush(brush);
  painter_.setFont(font);
  painter_.setRenderHints(QPainter::TextAntialiasing | QPainter::VerticalSubpixelPositioning);
  painter_.setOpacity(0.5);
  painter_.translate(3, 4);
  painter_.setClipRect(0, 0, 50, 50);
  painter_.setBackgroundMode(Qt::OpaqueMode);
  const QTransform transform = painter_.transform();
  const QPainter::RenderHints hints = painter_.renderHints();
  drawSomethingOfEverything(*port_);
  EXPECT_EQ(painter_.pen(), pen);
  EXPECT_EQ(painter_.brush(), brush);
  EXPECT_EQ(painter_.font(), font);
  EXPECT_EQ(painter_.renderHints(), hints);
  EXPECT_EQ(painter_.opacity(), 0.5);
  EXPECT_EQ(painter_.transform(), transform);
  EXPECT_EQ(painter_.clipRegion(), QRegion(0, 0, 50, 50));
  EXPECT_EQ(painter_.backgroundMode(), Qt::OpaqueMode);
}

TEST_F(QtPainterPort, DrawsWhereThePainterDraws) {
  painter_.translate(100, 50);
  port_->fillRect({0, 0, 10, 10});
  painter_.resetTransform();
  painter_.setClipRect(0, 0, 20, 20);
  port_->fillRect({10, 10, 40, 40});
  painter_.end();
  EXPECT_EQ(surface_.pixelColor(100, 50), QColor(Qt::black));
  EXPECT_EQ(surface_.pixelColor(99, 50), QColor(Qt::white));
  EXPECT_EQ(surface_.pixelColor(19, 19), QColor(Qt::black));
  EXPECT_EQ(surface_.pixelColor(20, 20), QColor(Qt::white));
}

TEST_F(QtPainterPort, DrawsAlsoWhereThePainterRotates) {
  painter_.translate(100, 50);
  painter_.rotate(90);
  port_->fillRect({0, 0, 20, 10});
  painter_.end();
  for (const auto &[x, y, isInked] :
       {std::tuple(95, 60, true), std::tuple(95, 68, true), std::tuple(95, 72, false),
        std::tuple(88, 60, false), std::tuple(102, 60, false), std::tuple(95, 48, false)})
    EXPECT_EQ(surface_.pixelColor(x, y) == QColor(Qt::black), isInked) << x << ' ' << y;
}

TEST_F(QtPainterPort, KeepsRectanglesSharpWhenTheHostSmooths) {
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.translate(0.4, 0.4);
  port_->fillRect({10, 10, 20, 20});
  painter_.end();
  for (int x = 0; x < 40; ++x) {
    const QColor colour = surface_.pixelColor(x, 15);
    EXPECT_TRUE(colour == QColor(Qt::black) || colour == QColor(Qt::white)) << x;
  }
}

TEST_F(QtPainterPort, WildPlacesAreClipped) {
  const int kFar[] = {INT_MIN, -40000, 40000, INT_MAX};
  for (const int x : kFar)
    for (const int y : kFar) {
      port_->drawText(x, y, "Loin");
      port_->drawPicture(*picture_, x, y);
      port_->frameRect({x, y, INT_MAX, INT_MAX});
      port_->drawLine(x, y, y, x, 2);
      port_->drawLine(x, y, x, y, INT_MAX);
    }
  port_->fillRect({INT_MIN, 5, INT_MAX, 6});
  painter_.end();
  EXPECT_EQ(surface_.pixelColor(0, 5), QColor(Qt::black));
  EXPECT_EQ(surface_.pixelColor(299, 5), QColor(Qt::black));
}

TEST_F(QtPainterPort, DrawsNothingOnceThePainterHasEnded) {
  painter_.end();
  drawSomethingOfEverything(*port_);
  EXPECT_EQ(surface_.pixelColor(15, 85), QColor(Qt::white));
  EXPECT_GT(port_->textWidth("Mesure"), 0);
}

TEST_F(QtPainterPort, CanBeNeitherSavedNorReadBack) {
  port_->fillRect({0, 0, 10, 10});
  const test::TemporaryFolder folder;
  EXPECT_FALSE(port_->save(folder.path() + "/port.png"));
  EXPECT_EQ(port_->pixel(5, 5), std::nullopt);
}

TEST_F(QtPainterPort, NeedsAPainter) { EXPECT_EQ(qtDesktop().painterPort(nullptr), nullptr); }

// ---- Pictures ----

TEST(QtPictures, HaveTheirOwnSize) {
  qtDesktop();
  const test::TemporaryFolder folder;
  QImage image(7, 3, QImage::Format_RGB32);
  image.fill(Qt::red);
  const std::string png = folder.path() + "/rouge.png";
  ASSERT_TRUE(image.save(QString::fromStdString(png)));
  const std::string svg = folder.add(
      "bleu.svg",
      R"(<svg xmlns="http://www.w3.org/2000/svg" width="5" height="9" viewBox="0 0 50 90">)"
      R"(<rect width="50" height="90" fill="#0000ff"/></svg>)");
  const auto red = qtDesktop().loadPicture(png);
  ASSERT_NE(red, nullptr);
  EXPECT_EQ(std::pair(red->width(), red->height()), std::pair(7, 3));
  const auto blue = qtDesktop().loadPicture(svg);
  ASSERT_NE(blue, nullptr);
  EXPECT_EQ(std::pair(blue->width(), blue->height()), std::pair(5, 9));

  const auto port = newImage(kWidth, kHeight);
  port->drawPicture(*red, 10, 20);
  EXPECT_EQ(inkOf(*port), (Rect{10, 20, 17, 23}));
  EXPECT_EQ(countOf(*port, kRed), 21);
  port->drawPicture(*blue, 0, 0);
  EXPECT_EQ(countOf(*port, kBlue), 45);
  port->drawPicture(*blue, -3, 36);
  EXPECT_EQ(countOf(*port, kBlue), 45 + 8);
  for (const int far : {INT_MIN, -100, 60, INT_MAX}) {
    port->drawPicture(*blue, far, 10);
    port->drawPicture(*blue, 10, far);
  }
  EXPECT_EQ(countOf(*port, kBlue), 45 + 8);
}

TEST(QtPictures, AnSvgMayBeginWithADocumentTypeOrWithEmptyLines) {
  const test::TemporaryFolder folder;
  const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='7'></svg>";
  const std::string type =
      "<!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" "
      "\"http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd\">";
  for (const std::string &prologue :
       {type, "<?xml version=\"1.0\"?>\n" + type, std::string(40, '\n'),
        "<?xml version=\"1.0\"?>" + std::string(40, '\n') + "<!-- dessin -->"}) {
    const auto picture = qtDesktop().loadPicture(folder.add("dessin.svg", prologue + svg));
    EXPECT_EQ(std::pair(picture->width(), picture->height()), std::pair(4, 7)) << prologue;
  }
}

TEST(QtPictures, ThatCannotBeReadAreNone) {
  const test::TemporaryFolder folder;
  for (const std::string &path :
       {folder.path() + "/rien.svg", folder.path(), std::string(),
        folder.add("texte.png", "Ordonnance"), folder.add("vide.svg"),
        folder.add("coupe.png", "\x89PNG\r\n\x1A\n"), folder.add("faux.svg", "<svg")})
    EXPECT_EQ(qtDesktop().loadPicture(path)->width(), 0) << path;
}

TEST(QtPictures, ThatCannotBeReadAreNoneInSilence) {
  const test::TemporaryFolder folder;
  qtDesktop();
  const std::string kBroken[] = {
      folder.add("faux.svg", "<svg"),
      folder.add("sans.svg", "<svg xmlns='http://www.w3.org/2000/svg'><rect fill='url(#rien)'/>"),
      folder.add("lien.svg",
                 "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'>"
                 "<use href='#rien'/><g transform='zorglub'/></svg>"),
      folder.add("coupe.png", "\x89PNG\r\n\x1A\n" + std::string("\0\0\0\rIHDR", 8)),
  };
  testing::internal::CaptureStderr();
  for (const std::string &path : kBroken) qtDesktop().loadPicture(path);
  qWarning("encore");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "encore\n") << "and later words are heard";
}

TEST(QtPictures, APipeIsNone) {
  const test::TemporaryFolder folder;
  const std::string pipe = folder.path() + "/pipe.svg";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  alarm(20);  // to end what would wait for ever
  EXPECT_EQ(qtDesktop().loadPicture(pipe)->width(), 0);
  EXPECT_EQ(qtDesktop().loadPicture("/dev/zero")->width(), 0);
  alarm(0);
}

TEST(QtPictures, AreReadUnderTheBytesOfTheirPath) {
  const test::TemporaryFolder folder;
  const std::string path = folder.add(
      "\xE9t\xE9.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='7'></svg>");
  EXPECT_EQ(qtDesktop().loadPicture(path)->height(), 7);
}

TEST(QtPictures, StayAsTheyWereReadAtEveryScale) {
  const test::TemporaryFolder folder;
  const auto svg = [](const char *colour) {
    return std::string(
               "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'>"
               "<rect width='4' height='4' fill='") +
           colour + "'/></svg>";
  };
  const auto picture = qtDesktop().loadPicture(folder.add("a.svg", svg("#ff0000")));
  folder.add("a.svg", svg("#0000ff"));
  QImage surface(20, 20, QImage::Format_RGB32);
  surface.fill(Qt::white);
  QPainter painter(&surface);
  painter.scale(3, 3);
  EXPECT_TRUE(qtDesktop().painterPort(&painter)->drawPicture(*picture, 0, 0));
  EXPECT_EQ(surface.pixelColor(6, 6), QColor(Qt::red));
}

bool saveBlank(const std::string &path, int width, int height, QImage::Format format) {
  QImage image(width, height, format);
  image.fill(0);
  return image.save(QString::fromStdString(path));
}

TEST(QtPictures, HaveAtMost2To28Pixels) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path() + "/grand.png";
  ASSERT_TRUE(saveBlank(path, 16385, 16384, QImage::Format_Mono));
  testing::internal::CaptureStderr();
  EXPECT_EQ(qtDesktop().loadPicture(path)->width(), 0);
  ASSERT_TRUE(saveBlank(path, 16384, 16384, QImage::Format_Mono));
  EXPECT_EQ(qtDesktop().loadPicture(path)->width(), 16384);
  // Larger in memory than the toolkit's own limit.
  ASSERT_TRUE(saveBlank(path, 5800, 5800, QImage::Format_RGBX64));
  EXPECT_EQ(qtDesktop().loadPicture(path)->width(), 5800);
  const auto svg = [&](const char *side) {
    return qtDesktop().loadPicture(
        folder.add("grand.svg", std::string("<svg xmlns='http://www.w3.org/2000/svg' width='") +
                                    side + "' height='" + side + "'></svg>"));
  };
  EXPECT_EQ(svg("16385")->width(), 0);
  EXPECT_EQ(svg("9000")->width(), 9000);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(QtPictures, AnSvgBringsInNoOtherFile) {
  qtDesktop();
  const test::TemporaryFolder folder;
  QImage image(8, 8, QImage::Format_RGB32);
  image.fill(Qt::red);
  const std::string red = folder.path() + "/rouge.png";
  ASSERT_TRUE(image.save(QString::fromStdString(red)));
  const std::string style = folder.add("style.css", ".a { fill: #ff0000 }");
  const QString before = QDir::currentPath();
  QDir::setCurrent(QString::fromStdString(folder.path()));
  folder.add("data/rouge.png");
  ASSERT_TRUE(image.save(QString::fromStdString(folder.path() + "/data/rouge.png")));

  const auto svg = [](const std::string &prologue, const std::string &link,
                      const std::string &name = "xlink:href") {
    return prologue +
           "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
           "width='20' height='20'><rect class='a' x='10' width='10' height='20' fill='#0000ff'/>"
           "<image width='8' height='8' " +
           name + "=\"" + link + "\"/></svg>";
  };
  const auto data = [](const QByteArray &content, const std::string &type) {
    return "data:image/" + type + ";base64," + content.toBase64().toStdString();
  };
  QFile file(QString::fromStdString(red));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const std::string kept = data(file.readAll(), "png");
  const struct {
    const char *what;
    std::string text;
    int red;
  } kCases[] = {
      {"a path", svg("", red), 0},
      {"a path by its new name", svg("", red, "href"), 0},
      {"an address", svg("", "file://" + red), 0},
      {"a name beside it", svg("", "rouge.png"), 0},
      {"a name that begins like data", svg("", "data/rouge.png"), 0},
      {"an entity", svg("<!DOCTYPE svg [<!ENTITY f \"" + red + "\">]>", "&f;"), 0},
      {"a resource of the program", svg("", ":/qt-project.org/styles/commonstyle/images/up-32.png"),
       0},
      {"an SVG inside", svg("", data(QByteArray::fromStdString(svg("", red)), "svg+xml")), 0},
      {"a style sheet", svg("<?xml-stylesheet type='text/css' href='" + style + "'?>", ""), 0},
      {"a picture inside", svg("", kept), 64},
  };
  for (const auto &[what, text, reds] : kCases) {
    const auto picture = qtDesktop().loadPicture(folder.add("lien.svg", text));
    ASSERT_EQ(picture->width(), 20) << what;
    const auto port = newImage(kWidth, kHeight);
    port->drawPicture(*picture, 0, 0);
    EXPECT_EQ(countOf(*port, kRed), reds) << what;
    EXPECT_EQ(countOf(*port, kBlue), 200) << what << ": the rest shows";
  }
  QDir::setCurrent(before);
}

TEST(QtPictures, OfRichTextAreInstalledAndAllDifferent) {
  std::vector<QImage> seen;
  for (const char *name :
       {"repferb", "repouvb", "repferr", "repouvr", "repferv", "repouvv", "repferj", "repouvj",
        "repfero", "repouvo", "repfebb", "repfebr", "repferl", "repouvl", "puceb"}) {
    const auto picture =
        qtDesktop().loadPicture(std::string(KORVEL_TEST_RESOURCES "/pictures/") + name + ".svg");
    ASSERT_NE(picture, nullptr) << name;
    EXPECT_EQ(std::pair(picture->width(), picture->height()), std::pair(16, 16)) << name;
    const auto image = newImage(kWidth, kHeight);
    image->drawPicture(*picture, 10, 10);
    const Rect ink = inkOf(*image);
    EXPECT_GE(ink.width(), 10) << name;
    EXPECT_TRUE(ink.left >= 10 && ink.top >= 10 && ink.right <= 26 && ink.bottom <= 26) << name;
    for (const QImage &other : seen) EXPECT_GT(difference(saved(*image), other), 40) << name;
    seen.push_back(saved(*image));
  }
}

// ---- Windows ----

QColor shownAt(QWidget &window, int x, int y) {
  const QImage image = window.grab().toImage();
  return image.pixelColor(static_cast<int>(x * image.devicePixelRatio()),
                          static_cast<int>(y * image.devicePixelRatio()));
}

class QtWindowPort : public testing::Test {
 protected:
  QtWindowPort() {
    qtDesktop();
    window_ = std::make_unique<QWidget>();
    window_->setGeometry(40, 40, 200, 100);
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::green);
    window_->setPalette(palette);
    button_ = new QPushButton(window_.get());
    button_->setGeometry(100, 10, 50, 30);
    button_->setStyleSheet("background: yellow; border: none");
    window_->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    reference_ = qtDesktop().hostWindow(window_.get());
    port_ = qtDesktop().windowPort(reference_);
  }

  std::unique_ptr<QWidget> window_;
  QPushButton *button_;
  WindowRef reference_;
  Port *port_;
};

TEST_F(QtWindowPort, IsTheSameAtEachCall) {
  ASSERT_NE(port_, nullptr);
  EXPECT_EQ(qtDesktop().windowPort(reference_), port_);
  EXPECT_EQ(qtDesktop().windowPort(qtDesktop().hostWindow(button_)), port_);
  QWidget other;
  EXPECT_NE(qtDesktop().windowPort(qtDesktop().hostWindow(&other)), port_);
  EXPECT_EQ(qtDesktop().windowPort(nullptr), nullptr);
  EXPECT_EQ(qtDesktop().windowPort(reinterpret_cast<WindowRef>(this)), nullptr);
}

TEST_F(QtWindowPort, LiesOverTheGroundAndUnderTheItems) {
  port_->setForeground(kRed);
  port_->fillRect({90, 0, 200, 100});
  EXPECT_EQ(shownAt(*window_, 50, 50), QColor(Qt::green));
  EXPECT_EQ(shownAt(*window_, 95, 50), QColor(Qt::red));
  EXPECT_EQ(shownAt(*window_, 105, 15), QColor(Qt::yellow));
}

TEST_F(QtWindowPort, LiesUnderWhatIsAddedOrLoweredLater) {
  port_->setForeground(kRed);
  port_->fillRect({0, 0, 200, 100});
  QWidget later(window_.get());
  later.setAutoFillBackground(true);
  later.setPalette(Qt::blue);
  later.setGeometry(10, 60, 30, 30);
  later.show();
  later.lower();
  EXPECT_EQ(shownAt(*window_, 20, 70), QColor(Qt::blue));
  EXPECT_EQ(shownAt(*window_, 50, 70), QColor(Qt::red));
}

TEST_F(QtWindowPort, StaysWhenTheWindowIsHiddenAndShownAgain) {
  port_->setForeground(kRed);
  port_->fillRect({10, 10, 20, 20});
  window_->hide();
  port_->fillRect({30, 10, 40, 20});
  window_->show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
  EXPECT_EQ(shownAt(*window_, 15, 15), QColor(Qt::red));
  EXPECT_EQ(shownAt(*window_, 35, 15), QColor(Qt::red));
  EXPECT_EQ(shownAt(*window_, 25, 15), QColor(Qt::green));
}

TEST_F(QtWindowPort, GrowsWithTheWindowAndKeepsWhatWasDrawn) {
  port_->setForeground(kRed);
  port_->fillRect({150, 70, 500, 500});
  EXPECT_EQ(port_->pixel(199, 99).has_value(), true);
  EXPECT_EQ(port_->pixel(200, 99), std::nullopt);
  window_->resize(300, 200);
  EXPECT_EQ(shownAt(*window_, 160, 80), QColor(Qt::red));
  EXPECT_EQ(shownAt(*window_, 250, 150), QColor(Qt::green)) << "it was not there to be drawn on";
  port_->fillRect({240, 140, 260, 160});
  EXPECT_EQ(shownAt(*window_, 250, 150), QColor(Qt::red));
  EXPECT_EQ(shownAt(*window_, 160, 80), QColor(Qt::red));
  window_->resize(100, 50);
  port_->fillRect({0, 0, 10, 10});
  window_->resize(300, 200);
  EXPECT_EQ(shownAt(*window_, 250, 150), QColor(Qt::red)) << "a small window forgets nothing";
}

TEST_F(QtWindowPort, TellsOnlyWhatWasDrawn) {
  EXPECT_EQ(port_->pixel(15, 15), std::nullopt);
  port_->setForeground({0x8000, 0xC000, 0xFFFF});
  port_->fillRect({10, 10, 20, 20});
  EXPECT_TRUE(same(port_->pixel(15, 15), {0x8000, 0xC000, 0xFFFF}));
  EXPECT_EQ(port_->pixel(25, 15), std::nullopt);
  EXPECT_EQ(port_->pixel(-1, 15), std::nullopt);
}

TEST_F(QtWindowPort, TextAndPicturesBlendWithTheGround) {
  const auto picture = qtDesktop().loadPicture(KORVEL_TEST_RESOURCES "/pictures/puceb.svg");
  port_->setFont("Arial", 0);
  port_->setFontSize(30);
  port_->drawText(10, 60, "S");
  port_->drawPicture(*picture, 60, 60);
  const QImage shown = window_->grab().toImage();
  QImage expected(shown.size(), QImage::Format_RGB32);
  expected.fill(Qt::green);
  QPainter painter(&expected);
  const auto direct = qtDesktop().painterPort(&painter);
  direct->setFont("Arial", 0);
  direct->setFontSize(30);
  direct->drawText(10, 60, "S");
  direct->drawPicture(*picture, 60, 60);
  painter.end();
  const QRect kPart(0, 40, 90, 60);
  EXPECT_LE(difference(shown.copy(kPart), expected.copy(kPart)), 2);
  EXPECT_NE(shown.pixelColor(68, 68), QColor(Qt::green));
}

// The region of a window that was repainted.
class PaintedRegion final : public QObject {
 public:
  explicit PaintedRegion(QWidget *window) { window->installEventFilter(this); }
  QRegion region;

 protected:
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent *>(event)->region();
    return false;
  }
};

TEST_F(QtWindowPort, ShowsByItselfWhatIsDrawnAndNoMore) {
  QTest::qWait(50);
  PaintedRegion painted(window_.get());
  port_->fillRect({10, 10, 20, 20});
  QTest::qWait(50);
  EXPECT_EQ(painted.region, QRegion(10, 10, 10, 10));
  painted.region = {};
  port_->drawLine(10, 50, 60, 50, 2);
  QTest::qWait(50);
  EXPECT_EQ(painted.region, QRegion(10, 50, 52, 2));
  painted.region = {};
  port_->setFont("Arial", kItalic);
  const int width = port_->drawText(40, 80, "fjord");
  QTest::qWait(50);
  const QRect touched = painted.region.boundingRect();
  EXPECT_TRUE(touched.contains(QRect(40, 70, width, 12)));
  EXPECT_TRUE(QRect(40, 70, width, 12).adjusted(-20, -30, 20, 20).contains(touched));
}

// A window that draws on its own port whenever it paints itself.
class DrawingWindow final : public QWidget {
 public:
  Port *port = nullptr;
  int paints = 0;

 protected:
  void paintEvent(QPaintEvent *) override {
    ++paints;
    if (port != nullptr) port->fillRect({10, 10, 20, 20});
  }
};

TEST(QtWindowPorts, DrawnOnInAPaintShowWithThatPaintAndAskForNoOther) {
  qtDesktop();
  DrawingWindow window;
  window.setGeometry(40, 40, 200, 100);
  window.port = qtDesktop().windowPort(qtDesktop().hostWindow(&window));
  window.port->setForeground(kRed);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  EXPECT_EQ(shownAt(window, 15, 15), QColor(Qt::red));
  QTest::qWait(50);
  window.paints = 0;
  QTest::qWait(50);
  EXPECT_EQ(window.paints, 0);
  window.update();
  QTest::qWait(50);
  EXPECT_EQ(window.paints, 1);
}

TEST_F(QtWindowPort, AddsNothingToTheWindow) {
  port_->fillRect({0, 0, 200, 100});
  EXPECT_EQ(window_->children().size(), 1);
  test::clickOn(window_.get(), {5, 5});
  int clicks = 0;
  QObject::connect(button_, &QPushButton::clicked, [&] { ++clicks; });
  test::clickOn(button_, {5, 5});
  EXPECT_EQ(clicks, 1);
}

TEST_F(QtWindowPort, IsNoMoreWhenTheWindowIsGone) {
  port_->fillRect({10, 10, 20, 20});
  window_.reset();
  EXPECT_EQ(qtDesktop().windowPort(reference_), nullptr);
}

TEST_F(QtWindowPort, AnOldReferenceMeansNoNewWindowInItsPlace) {
  alignas(QWidget) unsigned char place[sizeof(QWidget)];
  auto *before = new (place) QWidget;
  const WindowRef reference = qtDesktop().hostWindow(before);
  ASSERT_NE(qtDesktop().windowPort(reference), nullptr);
  before->~QWidget();
  auto *after = new (place) QWidget;
  after->show();
  EXPECT_EQ(qtDesktop().windowPort(reference), nullptr);
  EXPECT_EQ(qtDesktop().windowBounds(reference), std::nullopt);
  EXPECT_EQ(qtDesktop().hostWindow(after), reference);
  EXPECT_NE(qtDesktop().windowPort(reference), nullptr);
  EXPECT_NE(qtDesktop().windowBounds(reference), std::nullopt);
  after->~QWidget();
}

TEST_F(QtWindowPort, ANewWindowInItsPlaceIsEmpty) {
  alignas(QWidget) unsigned char place[sizeof(QWidget)];
  auto *before = new (place) QWidget;
  const WindowRef reference = qtDesktop().hostWindow(before);
  qtDesktop().windowPort(reference)->fillRect({0, 0, 20, 20});
  ASSERT_TRUE(qtDesktop().windowPort(reference)->pixel(5, 5).has_value());
  before->~QWidget();
  auto *after = new (place) QWidget;
  ASSERT_EQ(qtDesktop().hostWindow(after), reference);
  EXPECT_EQ(qtDesktop().windowPort(reference)->pixel(5, 5), std::nullopt);
  after->~QWidget();
}

TEST(QtWindowPorts, OfADialogLieUnderItsItems) {
  auto dialog = qtDesktop().newDialog({200, 150, 500, 350}, nullptr, "Fiche");
  dialog->addItem(ItemKind::PushButton, {50, 160, 130, 180}, "OK");
  Port *port = qtDesktop().windowPort(dialog->window());
  ASSERT_NE(port, nullptr);
  port->setForeground(kRed);
  port->fillRect({0, 0, 300, 200});
  dialog->addStaticText({10, 10, 100, 30}, "Dessin");
  QWidget &window = *widgetOf(dialog->window());
  EXPECT_EQ(shownAt(window, 200, 100), QColor(Qt::red));
  EXPECT_NE(shownAt(window, 90, 163), QColor(Qt::red));
  const WindowRef reference = dialog->window();
  dialog.reset();
  EXPECT_EQ(qtDesktop().windowPort(reference), nullptr);
}

// ---- A screen of scale 2 ----
// A process has one scale: these need a process to themselves, which CTest gives every test.

class QtScaledScreen : public testing::Test {
 protected:
  explicit QtScaledScreen(double scale) : scale_(scale) {}

  void SetUp() override {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    setenv("QT_SCALE_FACTOR", std::to_string(scale_).c_str(), 1);
    qtDesktop();
    window_ = std::make_unique<QWidget>();
    window_->setGeometry(40, 40, 300, 100);
    window_->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    ASSERT_EQ(window_->devicePixelRatioF(), scale_);
    port_ = qtDesktop().windowPort(qtDesktop().hostWindow(window_.get()));
  }

  void expectInkToAdvanceInWindows() {
    QWidget other;
    other.setGeometry(40, 40, 300, 100);
    other.show();
    Port *parts = qtDesktop().windowPort(qtDesktop().hostWindow(&other));
    for (const int size : {12, 31, 40}) {
      for (Port *port : {port_, parts}) {
        port->setFont("Times New Roman", 0);
        port->setFontSize(size);
      }
      expectInkToAdvance(*port_, *parts, 3, 20 + size, kText);
      EXPECT_EQ(difference(saved(*port_), saved(*parts)), 0) << size;
    }
  }

  const double scale_;
  std::unique_ptr<QWidget> window_;
  Port *port_ = nullptr;
};

class QtFineScreen : public QtScaledScreen {
 protected:
  QtFineScreen() : QtScaledScreen(2) {}
};

class QtBrokenScaleScreen : public QtScaledScreen {
 protected:
  QtBrokenScaleScreen() : QtScaledScreen(1.5) {}
};

class QtSlightScaleScreen : public QtScaledScreen {
 protected:
  QtSlightScaleScreen() : QtScaledScreen(1.25) {}
};

TEST_F(QtFineScreen, RulesAreOfOneThickness) {
  expectRulesOfOneThickness(*port_, 2, [&] { return saved(*port_); });
}

TEST_F(QtBrokenScaleScreen, RulesAreOfOneThickness) {
  expectRulesOfOneThickness(*port_, 1.5, [&] { return saved(*port_); });
}

TEST_F(QtSlightScaleScreen, RulesAreOfOneThickness) {
  expectRulesOfOneThickness(*port_, 1.25, [&] { return saved(*port_); });
}

TEST_F(QtFineScreen, AWindowIsDrawnInItsFinePixels) {
  port_->setForeground(kRed);
  port_->drawLine(10, 20, 30, 20, 1);
  const QImage shown = window_->grab().toImage();
  ASSERT_EQ(shown.size(), QSize(600, 200));
  for (int y = 30; y < 50; ++y)
    for (int x = 10; x < 80; ++x) {
      const bool isInked = x >= 20 && x < 62 && y >= 40 && y < 42;
      EXPECT_EQ(shown.pixelColor(x, y) == QColor(Qt::red), isInked) << x << ' ' << y;
    }
  EXPECT_TRUE(same(port_->pixel(30, 20), kRed));
  EXPECT_EQ(port_->pixel(31, 20), std::nullopt);
}

TEST_F(QtFineScreen, TextAdvancesAsAtScale1) {
  const auto image = newImage(10, 10);
  for (int size = 5; size < 60; ++size) {
    for (Port *port : {port_, image.get()}) {
      port->setFont("Arial", 0);
      port->setFontSize(size);
    }
    EXPECT_EQ(port_->textWidth(kText), image->textWidth(kText)) << size;
    EXPECT_EQ(port_->drawText(0, 50, kText), image->textWidth(kText)) << size;
    EXPECT_EQ(port_->fontMetrics().ascent, image->fontMetrics().ascent) << size;
  }
}

TEST_F(QtFineScreen, TheInkOfALetterStandsWhereTheMeasurePutsIt) { expectInkToAdvanceInWindows(); }

TEST_F(QtBrokenScaleScreen, TheInkOfALetterStandsWhereTheMeasurePutsIt) {
  expectInkToAdvanceInWindows();
}

TEST_F(QtBrokenScaleScreen, EdgesAreSharp) {
  port_->setForeground(kRed);
  port_->fillRect({11, 21, 31, 24});
  port_->drawLine(11, 40, 31, 40, 1);
  const QImage drawn = saved(*port_);
  for (int y = 0; y < drawn.height(); ++y)
    for (int x = 0; x < drawn.width(); ++x) {
      const QRgb colour = drawn.pixel(x, y);
      EXPECT_TRUE(colour == 0 || colour == qRgb(255, 0, 0)) << x << ' ' << y;
    }
  EXPECT_TRUE(same(port_->pixel(30, 40), kRed));
}

TEST_F(QtFineScreen, PicturesAreRenderedFine) {
  const test::TemporaryFolder folder;
  const auto picture = qtDesktop().loadPicture(
      folder.add("trait.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="4" height="4">)"
                              R"(<rect x="1.5" width=".5" height="4" fill="#ff0000"/></svg>)"));
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->width(), 4);
  port_->drawPicture(*picture, 10, 10);
  const QImage shown = window_->grab().toImage();
  EXPECT_EQ(shown.pixelColor(23, 22), QColor(Qt::red));
  EXPECT_NE(shown.pixelColor(22, 22), QColor(Qt::red));
  EXPECT_NE(shown.pixelColor(24, 22), QColor(Qt::red));
}

TEST_F(QtFineScreen, AnImageHasOnePixelForEach) {
  const auto image = newImage(20, 10);
  image->fillRect({1, 1, 3, 3});
  EXPECT_EQ(saved(*image).size(), QSize(20, 10));
  EXPECT_EQ(inkOf(*image, 20, 10), (Rect{1, 1, 3, 3}));
}

// ---- Two screens, the second of scale 2 ----

TEST(QtTwoScreens, AWindowKeepsWhatWasDrawnWhenItGoesToTheOther) {
  const test::TemporaryFolder folder;
  const std::string screens = folder.add("screens.json", R"({"screens": [
    {"name": "a", "x": 0, "y": 0, "width": 800, "height": 600},
    {"name": "b", "x": 800, "y": 0, "width": 800, "height": 600, "dpr": 2}]})");
  const std::string platform = "offscreen:configfile=" + screens;
  const test::EnvironmentGuard chosen("QT_QPA_PLATFORM", platform.c_str());
  qtDesktop();
  QWidget window;
  window.setGeometry(40, 40, 100, 60);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  Port *port = qtDesktop().windowPort(qtDesktop().hostWindow(&window));
  port->setForeground(kRed);
  port->fillRect({10, 20, 30, 40});

  ASSERT_EQ(QGuiApplication::screens().size(), 2);
  window.windowHandle()->setScreen(QGuiApplication::screens().last());
  window.show();
  ASSERT_EQ(window.devicePixelRatioF(), 2);
  EXPECT_TRUE(same(port->pixel(12, 22), kRed));
  EXPECT_EQ(port->pixel(8, 22), std::nullopt);
  const QImage shown = window.grab().toImage();
  ASSERT_EQ(shown.size(), QSize(200, 120));
  EXPECT_EQ(shown.pixelColor(30, 50), QColor(Qt::red));
  EXPECT_EQ(shown.pixelColor(50, 70), QColor(Qt::red));
  EXPECT_NE(shown.pixelColor(64, 50), QColor(Qt::red));
  port->drawLine(0, 0, 10, 0, 1);
  EXPECT_EQ(saved(*port).size(), QSize(200, 120));
}

}  // namespace
}  // namespace korvel::platform
