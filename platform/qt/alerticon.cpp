// SPDX-License-Identifier: MIT
// Draws the icons in a square of 32, scaled to whatever pixels the widget has.
#include "platform/qt/alerticon.h"

#include <QPainter>

#include "platform/qt/appearance.h"
#include "platform/qt/contrast.h"

namespace korvel::platform::qt {
namespace {

// In a square of 32.
constexpr qreal kSide = 32;
constexpr qreal kStroke = 3.6;

const QColor kRed(0xCC, 0x22, 0x2A), kBlue(0x2B, 0x6C, 0xB0), kYellow(0xF5, 0xB8, 0x00),
    kDark(0x33, 0x2B, 0x00);

QPen roundPen(const QColor &color, qreal width = kStroke) {
  return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

// An icon that does not stand out from its ground has a rim of the colour of its sign.
constexpr qreal kRim = 1.6;

bool needsRim(const QColor &color, const QColor &ground) {
  return contrast(color, ground) < kLineContrast;
}

void drawDisc(QPainter &painter, const QColor &color, const QColor &ground) {
  const bool hasRim = needsRim(color, ground);
  const qreal edge = hasRim ? 1.5 + kRim / 2 : 1.5;
  painter.setPen(hasRim ? QPen(Qt::white, kRim) : QPen(Qt::NoPen));
  painter.setBrush(color);
  painter.drawEllipse(QRectF(edge, edge, kSide - 2 * edge, kSide - 2 * edge));
}

void drawStop(QPainter &painter, const QColor &ground) {
  drawDisc(painter, kRed, ground);
  painter.setPen(roundPen(Qt::white));
  painter.drawLine(QPointF(10.8, 10.8), QPointF(21.2, 21.2));
  painter.drawLine(QPointF(21.2, 10.8), QPointF(10.8, 21.2));
}

void drawNote(QPainter &painter, const QColor &ground) {
  drawDisc(painter, kBlue, ground);
  painter.setPen(roundPen(Qt::white));
  painter.drawPoint(QPointF(16, 9.6));
  painter.drawLine(QPointF(16, 15.6), QPointF(16, 22.8));
}

void drawCaution(QPainter &painter, const QColor &ground) {
  const QPolygonF triangle({{16, 4.2}, {28.8, 27}, {3.2, 27}});
  if (needsRim(kYellow, ground)) {
    painter.setPen(roundPen(kDark, kStroke + kRim));
    painter.drawPolygon(triangle);
    painter.setPen(roundPen(kYellow, kStroke - kRim));
  } else {
    painter.setPen(roundPen(kYellow));
  }
  painter.setBrush(kYellow);
  painter.drawPolygon(triangle);
  painter.setPen(roundPen(kDark));
  painter.drawLine(QPointF(16, 12), QPointF(16, 18.2));
  painter.drawPoint(QPointF(16, 23.8));
}

void draw(QPainter &painter, AlertIcon icon, const QSize &size, const QColor &ground) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size.width() / kSide, size.height() / kSide);
  switch (icon) {
    case AlertIcon::Stop:
      drawStop(painter, ground);
      break;
    case AlertIcon::Note:
      drawNote(painter, ground);
      break;
    case AlertIcon::Caution:
      drawCaution(painter, ground);
      break;
  }
}

}  // namespace

AlertIconWidget::AlertIconWidget(QWidget *window, const Rect &rect, AlertIcon icon)
    : QWidget(window), icon_(icon) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setGeometry(toQt(rect));
}

void AlertIconWidget::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  draw(painter, icon_, size(), palette().color(QPalette::Window));
}

}  // namespace korvel::platform::qt
