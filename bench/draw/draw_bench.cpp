// SPDX-License-Identifier: MIT
// Text drawn into an image and measured, beside the same made by hand with the toolkit, in one
// process, on the toolkit's platform without a screen. The toolkit's painter stays open on its
// image, its fonts, glyphs and pictures are prepared, and it is told where everything stands.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <QApplication>
#include <QFontMetrics>
#include <QGlyphRun>
#include <QImage>
#include <QPainter>
#include <QRawFont>
#include <QString>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "bench/support/ratios.h"

namespace {

using benchmark::DoNotOptimize;
using benchmark::State;
using korvel::bench::goal;

constexpr int kWidth = 800;
constexpr int kHeight = 40;
constexpr int kSize = 12;
constexpr int kX = 10;
constexpr int kTop = 10;
constexpr int kBaseline = 24;

// CP1252, which QString::fromLatin1 reads as well here.
constexpr std::string_view kRun = "Dupont Marie, 42 ans, n\xE9";
static_assert(kRun.size() == 24);
constexpr std::string_view kFirst = "Ordonnances";
constexpr std::string_view kSecond = "du 14 juillet 2026";
constexpr std::string_view kThird = "\xE0 renouveler";

// Folder, run, tab to a position, bullet, run, tab to a stop, icon, run.
std::string richLine() {
  std::string line = "\xFF\x94";
  line.append(kFirst).append("\xFF\x80\x50\xFF\x8A").append(kSecond);
  return line.append("\xFF\x81\x30\xFF\xA8").append(kThird);
}

int lengthOf(std::string_view text) { return static_cast<int>(text.size()); }
QString toQt(std::string_view text) { return QString::fromLatin1(text.data(), lengthOf(text)); }

// ---- The library ----

// An image with text of 12 points.
class Image {
 public:
  Image() {
    if (port_ == nullptr) {
      std::fprintf(stderr, "there is no image to draw on\n");
      std::exit(1);
    }
    ch_font_set(port_, "Arial", 0, 255, kSize);
  }
  ~Image() { KorvelPortRelease(port_); }
  Image(const Image &) = delete;
  Image &operator=(const Image &) = delete;

  CGrafPtr port() const { return port_; }

 private:
  const CGrafPtr port_ = KorvelImagePort(kWidth, kHeight);
};

void libraryDrawsRun(State &state) {
  const Image image;
  for (auto _ : state) {
    DoNotOptimize(TextOut_0(image.port(), kX, kTop, kRun.data(), lengthOf(kRun)));
  }
}

void libraryMeasuresRun(State &state) {
  const Image image;
  for (auto _ : state) {
    int cx = 0;
    int cy = 0;
    DoNotOptimize(GetTextExtent_0(image.port(), kRun.data(), lengthOf(kRun), &cx, &cy));
    DoNotOptimize(cx);
  }
}

void libraryDrawsRichLine(State &state) {
  const Image image;
  const std::string line = richLine();
  for (auto _ : state) {
    DoNotOptimize(TextOut_Ext(image.port(), kX, kTop, 0, 0, line.data(), lengthOf(line)));
  }
}

void libraryMeasuresRichLine(State &state) {
  const Image image;
  const std::string line = richLine();
  for (auto _ : state) {
    int cx = 0;
    int cy = 0;
    DoNotOptimize(GetTextExtent_Ext(image.port(), kX, kTop, line.data(), lengthOf(line), &cx, &cy));
    DoNotOptimize(cx);
  }
}

// ---- The toolkit ----

QFont font() {
  QFont arial(QStringLiteral("Arial"));
  arial.setPixelSize(kSize);
  return arial;
}

// A painter open on an image of its own.
class Canvas {
 public:
  Canvas() : image_(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied) {
    image_.fill(Qt::white);
    painter_.begin(&image_);
    painter_.setFont(font());
  }
  QPainter &painter() { return painter_; }

 private:
  QImage image_;
  QPainter painter_;
};

QGlyphRun glyphRun(std::string_view text) {
  const QRawFont raw = QRawFont::fromFont(font());
  const QList<quint32> indexes = raw.glyphIndexesForString(toQt(text));
  const QList<QPointF> advances = raw.advancesForGlyphIndexes(indexes);
  QList<QPointF> positions;
  QPointF at;
  for (const QPointF &advance : advances) {
    positions.append(at);
    at += advance;
  }
  QGlyphRun run;
  run.setRawFont(raw);
  run.setGlyphIndexes(indexes);
  run.setPositions(positions);
  return run;
}

void toolkitDrawsGlyphs(State &state) {
  Canvas canvas;
  const QGlyphRun run = glyphRun(kRun);
  for (auto _ : state) canvas.painter().drawGlyphRun(QPointF(kX, kBaseline), run);
}

void toolkitDrawsText(State &state) {
  Canvas canvas;
  const QString text = toQt(kRun);
  for (auto _ : state) canvas.painter().drawText(QPointF(kX, kBaseline), text);
}

void toolkitMeasuresRun(State &state) {
  const QFontMetrics metrics(font());
  const QString text = toQt(kRun);
  for (auto _ : state) DoNotOptimize(metrics.horizontalAdvance(text));
}

QImage icon() {
  QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::yellow);
  painter.drawRoundedRect(1, 3, 13, 10, 2, 2);
  return image;
}

void toolkitDrawsRichLine(State &state) {
  Canvas canvas;
  QPainter &painter = canvas.painter();
  const QImage folder = icon();
  const QImage mark = icon();
  const QString runs[] = {toQt(kFirst), toQt(kSecond), toQt(kThird)};
  for (auto _ : state) {
    painter.drawImage(QPoint(kX, kTop + 1), folder);
    painter.drawText(QPointF(26, kBaseline), runs[0]);
    painter.fillRect(QRect(196, 14, 8, 8), Qt::red);
    painter.setPen(Qt::black);
    painter.drawRect(QRect(196, 14, 7, 7));
    painter.drawText(QPointF(208, kBaseline), runs[1]);
    painter.drawImage(QPoint(320, kTop + 1), mark);
    painter.drawText(QPointF(336, kBaseline), runs[2]);
  }
}

void toolkitMeasuresRuns(State &state) {
  const QFontMetrics metrics(font());
  const QString runs[] = {toQt(kFirst), toQt(kSecond), toQt(kThird)};
  for (auto _ : state) {
    for (const QString &run : runs) DoNotOptimize(metrics.horizontalAdvance(run));
  }
}

BENCHMARK(libraryDrawsRun)->Name("draw a run of 24 characters/korvel");
BENCHMARK(toolkitDrawsGlyphs)->Name("draw a run of 24 characters/prepared glyph run");
BENCHMARK(toolkitDrawsText)->Name("draw a run of 24 characters/drawText");
BENCHMARK(libraryMeasuresRun)->Name("measure a run of 24 characters/korvel");
BENCHMARK(toolkitMeasuresRun)->Name("measure a run of 24 characters/horizontalAdvance");
BENCHMARK(libraryDrawsRichLine)->Name("draw a rich line/korvel");
BENCHMARK(toolkitDrawsRichLine)->Name("draw a rich line/painter calls");
BENCHMARK(libraryMeasuresRichLine)->Name("measure a rich line/korvel");
BENCHMARK(toolkitMeasuresRuns)->Name("measure a rich line/3 horizontalAdvance");

[[maybe_unused]] const bool kGoals[] = {
    goal("draw a run of 24 characters", "prepared glyph run", 1.05),
    goal("draw a run of 24 characters", "drawText", 0.6),
    goal("measure a run of 24 characters", "horizontalAdvance", 0.03),
    goal("draw a rich line", "painter calls", 0.55),
    goal("measure a rich line", "3 horizontalAdvance", 0.02),
};

}  // namespace

int main(int argc, char **argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  setenv("KORVEL_UNSEEN", "1", 1);
  int count = 1;
  QApplication application(count, argv);
  return korvel::bench::runAndPrintRatios(argc, argv);
}
