// SPDX-License-Identifier: MIT
// Prints a receipt: a painter on a printer is lent to the library, whose functions draw as they
// draw anywhere. Here the printer is a PDF file.
#include <cstdio>
#include <cstring>
#include <string>

#include <QApplication>
#include <QFile>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>

#include <korvel/korvel.h>

#include "french.h"

namespace {

// The page is laid out in pixels of this many an inch, whatever the printer has.
constexpr int kPixels = 96;

void text(CGrafPtr port, int x, int y, const char *utf8) {
  const char *bytes = french(utf8);
  TextOut_0(port, x, y, bytes, static_cast<int>(std::strlen(bytes)));
}

void amount(CGrafPtr port, int y, const char *name, const char *euros) {
  int width = 0, height = 0;
  text(port, 0, y, name);
  const std::string right = french(euros);
  GetTextExtent_0(port, right.data(), static_cast<int>(right.size()), &width, &height);
  TextOut_0(port, 420 - width, y, right.data(), static_cast<int>(right.size()));
}

void drawReceipt(CGrafPtr port) {
  ch_font_set_ext(port, "Arial", KorvelNavy, KorvelTransparent, 20, KorvelBold);
  text(port, 0, 0, "Cabinet des Tilleuls");
  Line_Ex(port, 0, 32, 420, 32, KorvelNavy, 2);
  ch_font_set(port, "Arial", KorvelBlack, KorvelTransparent, 13);
  text(port, 0, 50, "Reçu de Mme Lefèvre, le 4 mars 2026");
  amount(port, 90, "Consultation", "26,50 €");
  amount(port, 112, "Tracé", "14,26 €");
  Line_Ex(port, 0, 134, 420, 134, KorvelBlack, 1);
  ch_font_set_ext(port, "Arial", KorvelBlack, KorvelTransparent, 13, KorvelBold);
  amount(port, 140, "Total", "40,76 €");
}

// Qt does not say when a disk was full: then the end of the file is missing.
bool isWhole(const char *path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) && file.seek(file.size() - 6) && file.read(6) == "%%EOF\n";
}

int failed(const char *why) {
  std::fprintf(stderr, "receipt.pdf: %s\n", why);
  return 1;
}

}  // namespace

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName("receipt.pdf");
  printer.setResolution(600);
  printer.setPageLayout(
      {QPageSize(QPageSize::A5), QPageLayout::Portrait, {15, 15, 15, 15}, QPageLayout::Millimeter});

  QPainter painter;
  if (!painter.begin(&printer)) return failed("cannot be written");
  const double scale = double(printer.resolution()) / kPixels;
  painter.scale(scale, scale);
  CGrafPtr port = KorvelPainterPort(&painter);
  if (port == nullptr) return failed("there is no desktop module");
  drawReceipt(port);
  KorvelPortRelease(port);
  if (!painter.end() || !isWhole("receipt.pdf")) return failed("is not whole");
  std::puts("receipt.pdf");
  return 0;
}
