// SPDX-License-Identifier: MIT
// Painted on the widget's own painter, which is lent to the library for each paint.
#include "booklet.h"

#include <QPainter>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "common/richline.h"
#include "text.h"
#include "timeline.h"

namespace registry {
namespace {

constexpr int kMargin = 12, kTimelineTop = 64;

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

void drawHeading(CGrafPtr port, const Person &person) {
  const State state = stateOf(person);
  const QString age = ageOn(QDate::currentDate(), person.birth);
  const QString words = state.text + shown(nextDue(person));
  RichLine line;
  lineStart(&line);
  lineEscape(&line, state.folder);
  lineText(&line, toBytes(u' ' + fullName(person) + ", " + age).c_str());
  ch_font_set_ext(port, "Arial", KorvelNavy, KorvelTransparent, 18, KorvelBold);
  lineDraw(&line, port, kMargin, 8);
  ch_font_set(port, "Arial", KorvelGrey, KorvelTransparent, 12);
  drawFitted(port, kMargin, 36, 600, words);
}

}  // namespace

void Booklet::setPerson(const Person *person) {
  person_ = person != nullptr ? *person : Person();
  setMinimumHeight(kTimelineTop + timelineHeight(person_) + kMargin);
  update();
}

void Booklet::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  if (person_.number == 0) return;
  const CGrafPtr port = KorvelPainterPort(&painter);
  drawHeading(port, person_);
  drawTimeline(port, person_, kMargin, kTimelineTop, width() - 2 * kMargin);
  KorvelPortRelease(port);
}

}  // namespace registry
