// Fits the desktop's font into classic rectangles, and places the widgets around these.
#include "platform/qt/appearance.h"

#include <algorithm>

#include <QApplication>
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
constexpr int kFieldHeight = 15;
constexpr int kYearWidth = 40;
constexpr int kDayWidth = 20;

constexpr int kButtonHeight = 22;
constexpr int kCheckBoxHeight = 18;

// A font's own metrics leave out accents on capitals. Measured without antialiasing: hinted pixels
// count, a faint shade beyond them does not.
int overhangOf(const QFont &font) {
  QFont sharp = font;
  sharp.setStyleStrategy(QFont::NoAntialias);
  const QRect ink = QFontMetrics(sharp).tightBoundingRect(QStringLiteral("ÉÀÇÎÖgjpq"));
  const QFontMetrics metrics(font);
  return std::max({0, -ink.top() - metrics.ascent(), ink.top() + ink.height() - metrics.descent()});
}

// A family with tall lines fits only in a smaller size.
bool fits(const QFont &font) {
  const QFontMetrics metrics(font);
  return metrics.height() <= kFieldHeight &&
         metrics.height() + 2 * overhangOf(font) <= kFieldHeight + 2 * kFieldMargin &&
         metrics.horizontalAdvance("00") < kDayWidth &&
         metrics.horizontalAdvance("0000") < kYearWidth;
}

// Cached until the desktop's font changes, as measuring it draws glyphs.
struct Fitting {
  QString desktopFont;
  int pixelSize = 0;
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
  kept = {key, size, overhangOf(inSize(desktopFont, size))};
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
  const QRect wanted = option.rect.adjusted(kFrame - kLineEditPadding, kFrame - kFieldMargin,
                                            kLineEditPadding - kFrame, kFieldMargin - kFrame);
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
  appearance.lineHeight = QFontMetrics(appearance.font).height();
  appearance.overhang = found.overhang;
  appearance.textMargins = marginsIntoRectangle(appearance.font);
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
