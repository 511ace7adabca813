// SPDX-License-Identifier: MIT
// Fits the desktop's font into classic rectangles, and places the widgets around these.
#include "platform/qt/appearance.h"

#include <algorithm>

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QStyle>
#include <QStyleOptionFrame>

namespace korvel::platform::qt {
namespace {

// Between a classic rectangle and the outside of its frame.
constexpr int kFrame = 3;
// The blank space that a line edit leaves beside its text.
constexpr int kLineEditPadding = 2;

// Room above and below a field's classic rectangle, for accents that rise above the line.
constexpr int kFieldMargin = 1;

constexpr int kLargestFont = 12;
constexpr int kSmallestFont = 9;
// Of the text in a field, which alone has room for more: 11 points on a common desktop.
constexpr int kLargestFieldFont = 15;
// Between the outlines of a one-line field.
constexpr int kFieldRoom = 19;
constexpr int kFieldHeight = 15;
constexpr int kYearWidth = 40;
constexpr int kDayWidth = 20;

constexpr int kButtonHeight = 22;
constexpr int kCheckBoxHeight = 18;

// A font's own metrics leave out accents on capitals. Measured without antialiasing: hinted pixels
// count, a faint shade beyond them does not.
QRect tallestInk(QFont font) {
  font.setStyleStrategy(QFont::NoAntialias);
  return QFontMetrics(font).tightBoundingRect(QStringLiteral("ÉÀÇÎÖgjpq"));
}

int overhangOf(const QFont &font) {
  const QRect ink = tallestInk(font);
  const QFontMetrics metrics(font);
  return std::max({0, -ink.top() - metrics.ascent(), ink.top() + ink.height() - metrics.descent()});
}

bool datesFit(const QFontMetrics &metrics) {
  return metrics.horizontalAdvance("00") < kDayWidth &&
         metrics.horizontalAdvance("0000") < kYearWidth;
}

// A family with tall lines fits only in a smaller size.
bool fits(const QFont &font) {
  const QFontMetrics metrics(font);
  return metrics.height() <= kFieldHeight &&
         metrics.height() + 2 * overhangOf(font) <= kFieldHeight + 2 * kFieldMargin &&
         datesFit(metrics);
}

// A line edit centres the line in its room, one that is too high begins at the top, and cuts ink
// outside of the room. A blank line may be higher than its ink.
bool fitsField(const QFont &font) {
  const QFontMetrics metrics(font);
  const QRect ink = tallestInk(font);
  const int baseline = std::max(0, (kFieldRoom - metrics.height() + 1) / 2) + metrics.ascent();
  return baseline + ink.top() >= 0 && baseline + ink.bottom() < kFieldRoom && datesFit(metrics);
}

// Cached until the desktop's font changes, as measuring it draws glyphs.
struct Fitting {
  QString desktopFont;
  int pixelSize = 0;
  int fieldSize = 0;
  int overhang = 0;
};

QFont inSize(QFont font, int pixelSize) {
  font.setPixelSize(pixelSize);
  return font;
}

const Fitting &fitting(const QFont &desktopFont) {
  static Fitting kept;
  const QString key = desktopFont.key();
  if (key == kept.desktopFont) return kept;
  int size = kLargestFont;
  while (size > kSmallestFont && !fits(inSize(desktopFont, size))) --size;
  int fieldSize = std::min(QFontInfo(desktopFont).pixelSize(), kLargestFieldFont);
  while (fieldSize > kLargestFont && !fitsField(inSize(desktopFont, fieldSize))) --fieldSize;
  if (fieldSize <= kLargestFont) fieldSize = size;
  kept = {key, size, fieldSize, overhangOf(inSize(desktopFont, size))};
  return kept;
}

// The difference between where the style puts the text and where it belongs.
QMargins marginsIntoRectangle(const QFont &font) {
  QStyleOptionFrame option;
  option.rect = QRect(0, 0, kYearWidth + 2 * kFrame, kFieldHeight + 2 * kFrame);
  option.fontMetrics = QFontMetrics(font);
  option.lineWidth = QApplication::style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option);
  option.state = QStyle::State_Enabled | QStyle::State_Sunken;
  const QRect contents =
      QApplication::style()->subElementRect(QStyle::SE_LineEditContents, &option);
  const int margin = fits(font) ? kFieldMargin : (kFieldRoom - kFieldHeight) / 2;
  const QRect wanted = option.rect.adjusted(kFrame - kLineEditPadding, kFrame - margin,
                                            kLineEditPadding - kFrame, margin - kFrame);
  return {wanted.left() - contents.left(), wanted.top() - contents.top(),
          contents.right() - wanted.right(), contents.bottom() - wanted.bottom()};
}

QRect grown(const Rect &rect, int pixels) {
  return toQt(rect).adjusted(-pixels, -pixels, pixels, pixels);
}

// At least `height` pixels high, around the same middle.
QRect atLeast(int height, QRect rect) {
  const int missing = std::max(0, height - rect.height());
  return rect.adjusted(0, -(missing / 2), 0, missing - missing / 2);
}

}  // namespace

QRect toQt(const Rect &rect) { return {rect.left, rect.top, rect.width(), rect.height()}; }

QFont narrowedToFit(const QFont &font, const QString &text, int width) {
  constexpr int kNarrowest = 70;  // percent; below that it is harder to read than a cut text
  const int needed = QFontMetrics(font).horizontalAdvance(text);
  if (needed <= width || needed == 0) return font;
  QFont narrow = font;
  narrow.setStretch(std::max(kNarrowest, 100 * width / needed));
  return narrow;
}

Appearance Appearance::ofDesktop() {
  Appearance appearance;
  const QFont desktopFont = QApplication::font();
  const Fitting &found = fitting(desktopFont);
  appearance.font = inSize(desktopFont, found.pixelSize);
  appearance.fieldFont = inSize(desktopFont, found.fieldSize);
  appearance.lineHeight = QFontMetrics(appearance.font).height();
  appearance.fieldLineHeight = QFontMetrics(appearance.fieldFont).height();
  appearance.overhang = found.overhang;
  appearance.textMargins = marginsIntoRectangle(appearance.fieldFont);
  return appearance;
}

QRect Appearance::editText(const Rect &rect) const { return grown(rect, kFrame); }

// As high as a one-line field, with which it shares its row.
QRect Appearance::popUp(const Rect &rect) const {
  QRect outside = grown(rect, kFrame);
  outside.setHeight(std::max(outside.height(), kFieldHeight + 2 * kFrame));
  return outside;
}

QRect Appearance::pushButton(const Rect &rect) const { return atLeast(kButtonHeight, toQt(rect)); }

QRect Appearance::checkBox(const Rect &rect) const { return atLeast(kCheckBoxHeight, toQt(rect)); }

QRect Appearance::listBox(const Rect &rect) const {
  return grown(rect, QApplication::style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
}

QRect Appearance::staticText(const Rect &rect) const {
  QRect lines = toQt(rect);
  lines.setHeight(std::max(lines.height(), lineHeight));
  return lines.adjusted(0, -overhang, 0, overhang);
}

}  // namespace korvel::platform::qt
