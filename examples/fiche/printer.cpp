// SPDX-License-Identifier: MIT
// Printing through the library's drawing functions: a painter of the toolkit is lent to them. The
// library has started the toolkit at the first dialog.
#include "printer.h"

#include <algorithm>

#include <QFile>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include <korvel/desktop.h>
#include <korvel/strings.h>

namespace {

// The note is laid out in pixels of this many an inch, whatever the printer has.
constexpr int kPixels = 96;

// Letters and lines are sharp in print, and pictures not too large.
constexpr int kResolution = 600;

constexpr double kLeastRoom = 60;  // mm

QPageLayout layoutOf(const PageSetup &setup) {
  constexpr QPageSize::PageSizeId kPapers[] = {QPageSize::A4, QPageSize::A5, QPageSize::Letter};
  const QMarginsF margins(setup.marginX, setup.marginY, setup.marginX, setup.marginY);
  return {QPageSize(kPapers[setup.paper]),
          setup.isLandscape != 0 ? QPageLayout::Landscape : QPageLayout::Portrait, margins,
          QPageLayout::Millimeter};
}

QString fromCp1252(const char *text) {
  char utf8[1024];
  return KorvelToUtf8(text, utf8, sizeof utf8) < 0 ? QString() : QString::fromUtf8(utf8);
}

bool toCp1252(const QString &text, char *out, int size) {
  return KorvelFromUtf8(text.toUtf8().constData(), out, size) == 0;
}

// As a choice of a pop-up, whose choices and columns these divide.
bool isUsable(const QString &name) {
  char cp1252[sizeof PageSetup::printer];
  return !name.contains(u'+') && !name.contains(u',') && toCp1252(name, cp1252, sizeof cp1252);
}

// A note must not leave by another printer than the one that was chosen.
bool isThere(const char *printer) {
  return *printer == '\0' || QPrinterInfo::availablePrinterNames().contains(fromCp1252(printer));
}

void toNextPage(void *printer) { static_cast<QPrinter *>(printer)->newPage(); }

// A printer may have margins of its own, which are wider.
void setUp(QPrinter &printer, const PageSetup &setup, const char *title, const char *pdfPath) {
  if (*setup.printer != '\0') {
    printer.setPrinterName(fromCp1252(setup.printer));
  } else {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QFile::decodeName(pdfPath));
  }
  printer.setDocName(fromCp1252(title));
  printer.setResolution(kResolution);
  printer.setPageLayout(layoutOf(setup));
}

}  // namespace

void printerNames(char *names, int size) {
  QStringList usable;
  for (const QString &name : QPrinterInfo::availablePrinterNames())
    if (isUsable(name)) usable.append(name);
  if (!toCp1252(usable.join(QLatin1Char('+')), names, size)) *names = '\0';
}

int hasRoom(const PageSetup *setup) {
  const QRectF room = layoutOf(*setup).paintRect(QPageLayout::Millimeter);
  return std::min(room.width(), room.height()) >= kLeastRoom ? 1 : 0;
}

int printPages(const PageSetup *setup, const char *title, const char *pdfPath,
               void (*draw)(const Sheet *sheet)) {
  if (!isThere(setup->printer)) return 0;
  QPrinter printer;
  setUp(printer, *setup, title, pdfPath);
  QPainter painter;
  if (!painter.begin(&printer)) return 0;
  const QRect room = printer.pageLayout().paintRectPixels(kPixels);
  painter.scale(1.0 * printer.resolution() / kPixels, 1.0 * printer.resolution() / kPixels);
  const Sheet sheet = {
      KorvelPainterPort(&painter), 0, 0, room.width(), room.height(), toNextPage, &printer};
  draw(&sheet);
  KorvelPortRelease(sheet.port);
  return painter.end() && printer.printerState() != QPrinter::Error ? 1 : 0;
}
