// SPDX-License-Identifier: MIT
// Computes what to paint, in the port's coordinates, and leaves the painting to each kind of port.
#include "platform/qt/qtport.h"

#include <algorithm>

#include "base/guard.h"
#include "base/numbers.h"

namespace korvel::platform::qt {

using base::asFarAsMemoryAllows;
using base::clampToInt;

namespace {

constexpr int kUsualSize = 12;
constexpr int kLargestSize = 1000;

constexpr unsigned kFaceBits = kBold | kItalic | kUnderline | kCondense | kExtend;

Rect clampedRect(long long left, long long top, long long right, long long bottom) {
  return {clampToInt(left), clampToInt(top), clampToInt(right), clampToInt(bottom)};
}

bool isEmpty(const Rect &rect) { return rect.left >= rect.right || rect.top >= rect.bottom; }

unsigned short fullComponent(int component) {
  return static_cast<unsigned short>(component == 0xFF ? 0xFFFF : component << 8);
}

}  // namespace

QRgb toQt(const RGBColor &colour) {
  return qRgb(colour.red >> 8, colour.green >> 8, colour.blue >> 8);
}

RGBColor fromQt(QRgb colour) {
  return {fullComponent(qRed(colour)), fullComponent(qGreen(colour)), fullComponent(qBlue(colour))};
}

QtPort::QtPort()
    : size_(kUsualSize),
      font_(&screenFont(nullptr, 0, kUsualSize)),
      foreground_(qRgb(0, 0, 0)),
      background_(qRgb(255, 255, 255)) {}

void QtPort::select(const QString *family, unsigned face, int size) {
  if (canHaveFonts()) font_ = &screenFont(family, face, size);
  family_ = family;
  face_ = face;
  size_ = size;
}

bool QtPort::setFont(std::string_view family, unsigned face) {
  return base::guarded(false, [&] {
    const QString *answer = canHaveFonts() ? familyAnswering(family) : nullptr;
    if (answer != nullptr) select(answer, face & kFaceBits, size_);
    return answer != nullptr;
  });
}

void QtPort::setFontSize(int points) {
  const int size = points < 1 ? kUsualSize : std::min(points, kLargestSize);
  if (size == size_) return;
  asFarAsMemoryAllows([&] { select(family_, face_, size); });
}

int QtPort::drawText(int x, int y, std::string_view text) {
  const int width = textWidth(text);
  if (width == 0) return 0;
  return base::guarded(0, [&] {
    paintText(x, y, text, width);
    return width;
  });
}

void QtPort::paintText(int x, int y, std::string_view text, int width) {
  const long long left = x;
  const long long baseline = y;
  const long long right = left + width;
  const auto &[ascent, descent, leading, widest] = font_->metrics();
  if (isOpaque_)
    paintIfAny(grid().rect(clampedRect(left, baseline - ascent, right, baseline + descent)),
               background_);
  // Slanted letters and accents on capitals reach beyond the text's own box.
  const int height = ascent + descent;
  paintGlyphs(x, y, text,
              clampedRect(left - height, baseline - ascent - height, right + height,
                          baseline + descent + height));
  if (font_->isUnderlined()) {
    const auto &[top, thickness] = font_->underline();
    const int level = clampToInt(baseline + top);
    paintIfAny(grid().stroke({x, level, clampToInt(right - thickness), level, thickness}),
               foreground_);
  }
}

void QtPort::setForeground(const RGBColor &colour) { foreground_ = toQt(colour); }

void QtPort::setBackground(const RGBColor &colour) { background_ = toQt(colour); }

void QtPort::drawLine(int x1, int y1, int x2, int y2, int width) {
  if (width < 1) return;
  const Stroke stroke{x1, y1, x2, y2, width};
  asFarAsMemoryAllows([&] {
    if (stroke.isStraight()) {
      paintIfAny(grid().stroke(stroke), foreground_);
    } else {
      paintSlantedStroke(stroke);
    }
  });
}

void QtPort::paintIfAny(const QRect &pixels, QRgb colour) {
  if (!pixels.isEmpty()) paintPixels(pixels, colour);
}

void QtPort::fillRect(const Rect &rect) {
  if (isEmpty(rect)) return;
  asFarAsMemoryAllows([&] { paintIfAny(grid().rect(rect), foreground_); });
}

void QtPort::frameRect(const Rect &rect) {
  if (isEmpty(rect)) return;
  asFarAsMemoryAllows([&] {
    for (const QRect &side : grid().frame(rect)) paintIfAny(side, foreground_);
  });
}

// A port gets pictures of its own desktop only.
bool QtPort::drawPicture(const Picture &picture, int x, int y) {
  return base::guarded(false, [&] {
    paintPicture(static_cast<const QtPicture &>(picture), x, y);
    return true;
  });
}

}  // namespace korvel::platform::qt
