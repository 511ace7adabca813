// Draws the icons in a square of 32, scaled to whatever pixels the widget has.
#include "platform/qt/alerticon.h"

#include <QPainter>

#include "platform/qt/appearance.h"

namespace korvel::platform::qt {
namespace {

// In a square of 32.
constexpr qreal kSide = 32;
constexpr qreal kStroke = 3.6;

const QColor kRed(0xCC, 0x22, 0x2A), kBlue(0x2B, 0x6C, 0xB0), kYellow(0xF5, 0xB8, 0x00),
    kDark(0x33, 0x2B, 0x00);

QPen roundPen(const QColor &color) {
  return {color, kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void drawDisc(QPainter &painter, const QColor &color) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawEllipse(QRectF(1.5, 1.5, 29, 29));
}

void drawStop(QPainter &painter) {
  drawDisc(painter, kRed);
  painter.setPen(roundPen(Qt::white));
  painter.drawLine(QPointF(10.8, 10.8), QPointF(21.2, 21.2));
  painter.drawLine(QPointF(21.2, 10.8), QPointF(10.8, 21.2));
}

void drawNote(QPainter &painter) {
  drawDisc(painter, kBlue);
  painter.setPen(roundPen(Qt::white));
  painter.drawPoint(QPointF(16, 9.6));
  painter.drawLine(QPointF(16, 15.6), QPointF(16, 22.8));
}

void drawCaution(QPainter &painter) {
  const QPolygonF triangle({{16, 4.2}, {28.8, 27}, {3.2, 27}});
  painter.setPen(roundPen(kYellow));
  painter.setBrush(kYellow);
  painter.drawPolygon(triangle);
  painter.setPen(roundPen(kDark));
  painter.drawLine(QPointF(16, 12), QPointF(16, 18.2));
  painter.drawPoint(QPointF(16, 23.8));
}

void draw(QPainter &painter, AlertIcon icon, const QSize &size) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size.width() / kSide, size.height() / kSide);
  switch (icon) {
    case AlertIcon::Stop:
      drawStop(painter);
      break;
    case AlertIcon::Note:
      drawNote(painter);
      break;
    case AlertIcon::Caution:
      drawCaution(painter);
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
  draw(painter, icon_, size());
}

}  // namespace korvel::platform::qt
