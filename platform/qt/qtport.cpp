#include "platform/qt/qtport.h"

#include <algorithm>
#include <limits>

#include "platform/qt/text.h"

namespace korvel::platform::qt {
namespace {

constexpr int kUsualSize = 12;
constexpr int kLargestSize = 1000;

constexpr unsigned kFaceBits = kBold | kItalic | kUnderline | kCondense | kExtend;

int saturated(long long value) {
  return static_cast<int>(std::clamp<long long>(value, std::numeric_limits<int>::min(),
                                                std::numeric_limits<int>::max()));
}

Rect spanOf(int x, int y, int width, int above, int below) {
  return {x, saturated(static_cast<long long>(y) - above),
          saturated(static_cast<long long>(x) + width),
          saturated(static_cast<long long>(y) + below)};
}

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
      font_(&screenFont(QString(), 0, kUsualSize)),
      foreground_(qRgb(0, 0, 0)),
      background_(qRgb(255, 255, 255)) {}

void QtPort::selectFont() { font_ = &screenFont(family_, face_, size_); }

bool QtPort::setFont(std::string_view family, unsigned face) {
  face &= kFaceBits;
  const bool isSameFamily = !familyName_.empty() && family == familyName_;
  if (isSameFamily && face == face_) return true;
  if (!isSameFamily) {
    const std::optional<QString> answer = familyAnswering(toQt(family));
    if (!answer) return false;
    family_ = *answer;
    familyName_ = family;
  }
  face_ = face;
  selectFont();
  return true;
}

void QtPort::setFontSize(int points) {
  const int size = points < 1 ? kUsualSize : std::min(points, kLargestSize);
  if (size == size_) return;
  size_ = size;
  selectFont();
}

int QtPort::drawText(int x, int y, std::string_view text) {
  const int width = textWidth(text);
  if (width == 0) return 0;
  const FontMetrics &metrics = font_->metrics();
  if (isOpaque_) paintIfAny(spanOf(x, y, width, metrics.ascent, metrics.descent), background_);
  paintGlyphs(x, y, text, width);
  if (font_->isUnderlined()) {
    const auto [top, thickness] = font_->underline();
    paintIfAny(spanOf(x, y, width, -top, top + thickness), foreground_);
  }
  return width;
}

void QtPort::setForeground(const RGBColor &colour) { foreground_ = toQt(colour); }

void QtPort::setBackground(const RGBColor &colour) { background_ = toQt(colour); }

void QtPort::drawLine(int x1, int y1, int x2, int y2, int width) {
  if (width < 1) return;
  const Stroke stroke{x1, y1, x2, y2, width};
  if (stroke.isStraight())
    paintIfAny(straightStroke(stroke), foreground_);
  else
    paintSlantedStroke(stroke);
}

void QtPort::paintIfAny(const Rect &rect, QRgb colour) {
  if (rect.left < rect.right && rect.top < rect.bottom) paintRect(rect, colour);
}

void QtPort::fillRect(const Rect &rect) { paintIfAny(rect, foreground_); }

void QtPort::frameRect(const Rect &rect) {
  if (rect.left >= rect.right || rect.top >= rect.bottom) return;
  const int innerTop = rect.top + 1;
  const int innerBottom = rect.bottom - 1;
  paintRect({rect.left, rect.top, rect.right, innerTop}, foreground_);
  paintIfAny({rect.left, std::max(innerTop, innerBottom), rect.right, rect.bottom}, foreground_);
  paintIfAny({rect.left, innerTop, rect.left + 1, innerBottom}, foreground_);
  paintIfAny({rect.right - 1, innerTop, rect.right, innerBottom}, foreground_);
}

// Ports and pictures of a desktop go together.
void QtPort::drawPicture(const Picture &picture, int x, int y) {
  paintPicture(static_cast<const QtPicture &>(picture), x, y);
}

}  // namespace korvel::platform::qt
