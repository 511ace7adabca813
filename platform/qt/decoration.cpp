// SPDX-License-Identifier: MIT
// Paints group boxes, static texts and icons in the classic way, which the toolkit's own widgets
// lack.
#include "platform/qt/decoration.h"

#include <algorithm>

#include <QFontMetrics>
#include <QPainter>

#include "platform/qt/outline.h"
#include "platform/qt/picture.h"
#include "platform/qt/text.h"

namespace korvel::platform::qt {
namespace {

// Of a group box: from its left edge to the title, beside the title, and of its corners.
constexpr int kTitleIndent = 8;
constexpr int kTitleGap = 4;
constexpr double kCornerRadius = 3;

// No icon is shown larger, whatever room it has.
constexpr QSize kLargestIcon(2048, 2048);

QPixmap readPicture(const std::string &path, const QSize &room, qreal pixelRatio) {
  const auto read = QtPicture::read(path);
  if (read->width() == 0) return {};
  const QSize size = read->sizeAt(1).scaled(room * pixelRatio, Qt::KeepAspectRatio);
  QPixmap picture = QPixmap::fromImage(read->rendered(size));
  picture.setDevicePixelRatio(pixelRatio);
  return picture;
}

}  // namespace

QColor lineColor(const QPalette &palette) {
  QColor color = palette.color(QPalette::WindowText);
  color.setAlphaF(0.25F);
  return color;
}

GroupBox::GroupBox(QWidget *window, const Appearance &appearance, const Rect &rect,
                   std::string_view title)
    : QGroupBox(window), title_(toQt(title)), titleTop_(appearance.overhang) {
  setAccessibleName(title_);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setGeometry(toQt(rect));
  lower();
}

void GroupBox::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  const QFontMetrics metrics(font());
  const QRect titleRect(kTitleIndent, titleTop_, metrics.horizontalAdvance(title_),
                        metrics.height());
  const QRect frame = rect().adjusted(0, titleRect.center().y(), 0, 0);

  if (!title_.isEmpty())
    painter.setClipRegion(QRegion(rect()) - titleRect.adjusted(-kTitleGap, 0, kTitleGap, 0));
  PixelFrame(painter, frame).drawRounded(kCornerRadius, lineColor(palette()));
  painter.setClipping(false);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(titleRect, Qt::AlignLeft | Qt::TextSingleLine | Qt::TextDontClip, title_);
}

StaticText::StaticText(QWidget *window, const Appearance &appearance, const Rect &rect,
                       std::string_view text)
    : QLabel(window) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignLeft | Qt::AlignTop);
  setIndent(0);
  setContentsMargins(0, appearance.overhang, 0, appearance.overhang);
  setText(toQt(text));
  setWordWrap(appearance.hasSeveralLines(rect));
  QRect place = appearance.staticText(rect);
  if (!wordWrap()) place.setWidth(std::max(place.width(), sizeHint().width()));
  setGeometry(place);
  lower();
}

// A label would cut off accents above its first line.
void StaticText::paintEvent(QPaintEvent *) {
  const int wrapping = wordWrap() ? Qt::TextWordWrap : Qt::TextSingleLine;
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(contentsRect(), static_cast<int>(alignment()) | wrapping | Qt::TextDontClip,
                   text());
}

Icon::Icon(QWidget *window, const Rect &rect, const std::string &path)
    : QWidget(window), path_(path) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setGeometry(toQt(rect));
}

void Icon::paintEvent(QPaintEvent *) {
  const qreal pixelRatio = devicePixelRatioF();
  if (readFor_ != pixelRatio) {
    picture_ = readPicture(path_, size().boundedTo(kLargestIcon), pixelRatio);
    readFor_ = pixelRatio;
  }
  QPainter painter(this);
  const PixelGrid grid = PixelGrid::of(painter);
  const QRect room = grid.rect({0, 0, width(), height()});
  QRect pixels = picture_.rect();
  pixels.moveTo(room.topLeft() +
                QPoint((room.width() - pixels.width()) / 2, (room.height() - pixels.height()) / 2));
  painter.drawPixmap(grid.fromPixels(pixels), picture_, picture_.rect());
}

}  // namespace korvel::platform::qt
