// SPDX-License-Identifier: MIT
// A line for each vaccine: a mark for each dose, a band from a dose to the day that the next one
// is due, in red from there to today.
#include "timeline.h"

#include <algorithm>

#include <korvel/draw.h>

#include "fitted.h"
#include "vaccines.h"

namespace registry {
namespace {

constexpr int kHead = 22, kRow = 26, kKey = 30, kLabels = 190, kMark = 10;
constexpr char kFont[] = "Arial";

// The vaccines of a person, the one that was given first in front.
QStringList vaccinesOf(const Person &person) {
  QStringList codes;
  for (auto dose = person.vaccinations.rbegin(); dose != person.vaccinations.rend(); ++dose)
    if (!codes.contains(dose->vaccine)) codes.append(dose->vaccine);
  return codes;
}

// Days to pixels, from the beginning of a year to the beginning of another one.
class Scale {
 public:
  Scale(const Person &person, int left, int width) : left_(left), width_(width) {
    const int today = QDate::currentDate().year();
    int first = today, last = today;
    for (const Vaccination &dose : person.vaccinations) {
      first = std::min(first, dose.day.year());
      last = std::max({last, dose.day.year(), dueAfter(person, dose).year()});
    }
    first_ = first;
    years_ = std::max(last + 1 - first, kFewest);
  }

  int at(QDate day) const {
    const double years = day.year() - first_ + (day.dayOfYear() - 1) / 366.0;
    return left_ + static_cast<int>(years * width_ / years_);
  }
  int atYear(int year) const { return left_ + (year - first_) * width_ / years_; }
  int first() const { return first_; }
  int last() const { return first_ + years_; }
  // Years from one number to the next, so that numbers do not touch.
  int step() const {
    constexpr int kSteps[] = {1, 2, 5, 10, 20, 50, 100}, kNumber = 44;
    return *std::find_if(std::begin(kSteps), std::end(kSteps) - 1,
                         [&](int step) { return step * width_ / years_ >= kNumber; });
  }

 private:
  static constexpr int kFewest = 4;

  int left_, width_;
  int first_, years_;
};

int drawNote(CGrafPtr port, int x, int y, const QString &text) {
  constexpr int kWidth = 200;
  ch_font_set(port, kFont, KorvelGrey, KorvelTransparent, 11);
  return drawFitted(port, x, y, kWidth, text);
}

void drawYears(CGrafPtr port, const Scale &scale, int y, int height) {
  const int step = scale.step();
  for (int year = (scale.first() + step - 1) / step * step; year <= scale.last(); year += step) {
    const int x = scale.atYear(year);
    Line_Ex(port, x, y + kHead - 4, x, y + height, KorvelSilver, 1);
    if (year < scale.last()) drawNote(port, x + 3, y, QString::number(year));
  }
}

void drawBand(CGrafPtr port, int from, int to, int y, int colour) {
  constexpr int kWidth = 4;
  if (to - kWidth > from)
    Line_Ex(port, from, y - kWidth / 2, to - kWidth, y - kWidth / 2, colour, kWidth);
}

void drawDose(CGrafPtr port, const Person &person, const Vaccination &dose, const Scale &scale,
              int y) {
  const QDate due = dueAfter(person, dose), today = QDate::currentDate();
  if (due.isValid()) {
    drawBand(port, scale.at(dose.day), scale.at(due), y, KorvelTeal);
    drawBand(port, scale.at(due), scale.at(today), y, KorvelRed);
    Rectangle_Ex(port, scale.at(due) - kMark / 2, y - kMark / 2, kMark, kMark, KorvelWhite);
  }
  Rectangle_Ex(port, scale.at(dose.day) - kMark / 2, y - kMark / 2, kMark, kMark, KorvelTeal);
}

void drawVaccine(CGrafPtr port, const Person &person, const QString &code, const Scale &scale,
                 int x, int y) {
  ch_font_set(port, kFont, KorvelBlack, KorvelTransparent, 12);
  drawFitted(port, x, y + 5, kLabels - 10, vaccineLabel(code));
  for (const Vaccination &dose : person.vaccinations)
    if (dose.vaccine == code) drawDose(port, person, dose, scale, y + kRow / 2);
}

void drawKey(CGrafPtr port, int x, int y) {
  const auto name = [&](const char *text) {
    x += kMark + 6 + drawNote(port, x + kMark + 6, y, text) + 18;
  };
  Rectangle_Ex(port, x, y + 2, kMark, kMark, KorvelTeal);
  name("dose administrée");
  Rectangle_Ex(port, x, y + 2, kMark, kMark, KorvelWhite);
  name("prochaine dose");
  drawBand(port, x - kMark / 2, x + kMark, y + 7, KorvelRed);
  name("retard");
  Line_Ex(port, x + kMark / 2, y, x + kMark / 2, y + 14, KorvelNavy, 1);
  name("aujourd’hui");
}

}  // namespace

int drawTimeline(CGrafPtr port, const Person &person, int x, int y, int width) {
  const QStringList codes = vaccinesOf(person);
  if (codes.isEmpty()) return 0;
  const Scale scale(person, x + kLabels, width - kLabels);
  const int height = kHead + kRow * static_cast<int>(codes.size());
  drawYears(port, scale, y, height);
  const int today = scale.at(QDate::currentDate());
  Line_Ex(port, today, y + kHead - 4, today, y + height, KorvelNavy, 1);
  int top = y + kHead;
  for (const QString &code : codes) {
    drawVaccine(port, person, code, scale, x, top);
    top += kRow;
  }
  drawKey(port, x, y + height + 12);
  return height + kKey;
}

}  // namespace registry
