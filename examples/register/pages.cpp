// SPDX-License-Identifier: MIT
// Pages of A4 drawn by the library on a painter of the toolkit: texts stay texts in the file.
#include "pages.h"

#include <QFileInfo>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "fitted.h"
#include "text.h"
#include "timeline.h"
#include "vaccines.h"

namespace registry {
namespace {

// Everything is placed in pixels of this many an inch, and as sharp as the resolution.
constexpr int kPixelsPerInch = 96, kResolution = 600;

constexpr int kLeft = 60, kRight = 734, kTop = 60, kBottom = 1030, kFoot = 1068, kRow = 22;
constexpr char kFont[] = "Arial";

struct Column {
  int x, width;
  const char *title;
};
constexpr Column kColumns[] = {{60, 76, "Date"},
                               {140, 172, "Vaccin"},
                               {318, 152, "Lot"},
                               {476, 158, "Praticien"},
                               {640, 94, "Prochaine dose"}};

class Pages {
 public:
  Pages(QPdfWriter &pdf, CGrafPtr port, const Person &person)
      : pdf_(pdf), person_(person), port_(port) {}

  void draw() {
    drawFoot();
    drawPerson();
    y_ += drawTimeline(port_, person_, kLeft, y_, kRight - kLeft) + kRow;
    drawTitles();
    for (const Vaccination &dose : person_.vaccinations) drawDose(dose);
  }

 private:
  void font(int size, int colour, int style = KorvelPlain) {
    ch_font_set_ext(port_, kFont, colour, KorvelTransparent, size, style);
  }
  void write(int x, int width, const QString &text) { drawFitted(port_, x, y_, width, text); }

  void drawPerson() {
    font(22, KorvelNavy, KorvelBold);
    write(kLeft, kRight - kLeft, "Carnet de vaccination");
    y_ += 38;
    font(15, KorvelBlack, KorvelBold);
    write(kLeft, kRight - kLeft, fullName(person_));
    y_ += 24;
    font(12, KorvelBlack);
    const QString sex = person_.sex.isEmpty() ? QString() : ", " + person_.sex.toLower();
    write(kLeft, kRight - kLeft, "Né(e) le " + shown(person_.birth) + sex);
    y_ += 18;
    y_ += drawWrapped(port_, kLeft, y_, kRight - kLeft, shownRemarks(person_)) + 18;
  }

  void drawTitles() {
    font(12, KorvelNavy, KorvelBold);
    for (const Column &column : kColumns) write(column.x, column.width, column.title);
    y_ += kRow;
    Line_Ex(port_, kLeft, y_ - 4, kRight, y_ - 4, KorvelNavy, 1);
  }

  void drawDose(const Vaccination &dose) {
    if (y_ > kBottom) newPage();
    font(12, KorvelBlack);
    const QString texts[] = {shown(dose.day), vaccineLabel(dose.vaccine), dose.lot,
                             dose.practitioner, shown(dueAfter(person_, dose))};
    for (std::size_t i = 0; i < std::size(kColumns); ++i)
      write(kColumns[i].x, kColumns[i].width, texts[i]);
    y_ += kRow;
    Line_Ex(port_, kLeft, y_ - 4, kRight, y_ - 4, KorvelSilver, 1);
  }

  void newPage() {
    pdf_.newPage();
    ++page_;
    drawFoot();
    y_ = kTop;
    drawTitles();
  }

  void drawFoot() {
    font(11, KorvelGrey);
    y_ = kFoot;
    write(kLeft, kRight - kLeft,
          QString("%1, carnet du %2, page %3")
              .arg(fullName(person_), shown(QDate::currentDate()))
              .arg(page_));
    y_ = kTop;
  }

  QPdfWriter &pdf_;
  const Person &person_;
  const CGrafPtr port_;
  int page_ = 1;
  int y_ = kTop;
};

void setUp(QPdfWriter &pdf, const Person &person) {
  pdf.setResolution(kResolution);
  pdf.setPageSize(QPageSize(QPageSize::A4));
  pdf.setPageMargins(QMarginsF());
  pdf.setTitle(QString("Carnet de vaccination\u00A0: %1").arg(fullName(person)));
}

bool draw(QSaveFile &file, const Person &person) {
  QPdfWriter pdf(&file);
  setUp(pdf, person);
  QPainter painter;
  if (!painter.begin(&pdf)) return false;
  painter.scale(1.0 * kResolution / kPixelsPerInch, 1.0 * kResolution / kPixelsPerInch);
  const CGrafPtr port = KorvelPainterPort(&painter);
  if (port == nullptr) return false;
  Pages(pdf, port, person).draw();
  KorvelPortRelease(port);
  return painter.end();
}

}  // namespace

// A device or a pipe would be replaced by a file of its name.
bool writePages(const Person &person, const QString &path) {
  const QFileInfo before(path);
  if (before.exists() && !before.isFile()) return false;
  QSaveFile file(path);
  return file.open(QIODevice::WriteOnly) && draw(file, person) && file.commit();
}

}  // namespace registry
