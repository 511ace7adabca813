// SPDX-License-Identifier: MIT
// Painted on the widget's own painter, which is lent to the library for each paint.
#include "booklet.h"

#include <QPainter>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "common/richline.h"
#include "fitted.h"
#include "text.h"
#include "timeline.h"

namespace registry {
namespace {

constexpr int kMargin = 12;
constexpr char kFont[] = "Arial";

// A folder, and in words what its colour says.
struct State {
  int folder;
  const char *text;
};

State stateOf(const Person &person) {
  switch (urgencyOf(nextDue(person))) {
    case Urgency::kOverdue:
      return {KorvelRedFolderEscape, "dose en retard depuis le "};
    case Urgency::kSoon:
      return {KorvelOrangeFolderEscape, "prochaine dose le "};
    case Urgency::kLater:
      return {KorvelGreenFolderEscape, "prochaine dose le "};
    case Urgency::kNone:
      break;
  }
  return {KorvelBlueFolderEscape, "aucune dose prévue"};
}

// Returns the height of it all.
int draw(CGrafPtr port, const Person &person, int width) {
  if (person.number == 0) return 0;
  const State state = stateOf(person);
  const QString age = ageOn(QDate::currentDate(), person.birth);
  RichLine line;
  lineStart(&line);
  lineEscape(&line, state.folder);
  lineText(&line, toBytes(u' ' + fullName(person) + ", " + age).c_str());
  ch_font_set_ext(port, kFont, KorvelNavy, KorvelTransparent, 18, KorvelBold);
  lineDraw(&line, port, kMargin, 8);
  ch_font_set(port, kFont, KorvelGrey, KorvelTransparent, 12);
  drawFitted(port, kMargin, 36, width, state.text + shown(nextDue(person)));
  ch_font_set(port, kFont, KorvelBlack, KorvelTransparent, 12);
  const int y = 64 + drawWrapped(port, kMargin, 56, width, shownRemarks(person));
  return y + drawTimeline(port, person, kMargin, y, width) + kMargin;
}

}  // namespace

Booklet::Booklet() {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void Booklet::setPerson(const Person *person) {
  person_ = person != nullptr ? *person : Person();
  updateGeometry();
  update();
}

// As high as it will be drawn: off screen the same texts have the same widths.
int Booklet::heightForWidth(int width) const {
  const CGrafPtr port = KorvelImagePort(1, 1);
  const int height = draw(port, person_, width - 2 * kMargin);
  KorvelPortRelease(port);
  return height;
}

void Booklet::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  const CGrafPtr port = KorvelPainterPort(&painter);
  draw(port, person_, width() - 2 * kMargin);
  KorvelPortRelease(port);
}

}  // namespace registry
