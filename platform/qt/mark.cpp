// Paints the mark, and has screen readers tell it.
#include "platform/qt/mark.h"

#include <QPainter>
#include <QWidget>

namespace korvel::platform::qt {
namespace {

// A field has three pixels around its text; one stays free between bar and text.
constexpr int kBarWidth = 2;
// From the edge, where the style draws the field's frame, to the mark's frame.
constexpr int kInset = 1;
constexpr float kFrameStrength = 0.6F;

}  // namespace

QColor markColor() { return {0xC2, 0x78, 0x03}; }

QString markDescription() { return QStringLiteral("À compléter ou à corriger"); }

void Mark::show(bool isShown) {
  if (isShown == isShown_) return;
  isShown_ = isShown;
  if (isShown) description_ = field_.accessibleDescription();
  field_.setAccessibleDescription(isShown ? markDescription() : description_);
  surface_.update();
}

void Mark::paint() const {
  if (!isShown_) return;
  QColor frame = markColor();
  frame.setAlphaF(kFrameStrength);
  const QRect outside = surface_.rect().adjusted(kInset, kInset, -kInset, -kInset);
  const int right = outside.right(), bottom = outside.bottom();
  // Filled side by side: it is painted at every key, and a stroke costs far more.
  QPainter painter(&surface_);
  painter.fillRect(outside.left(), outside.top(), outside.width(), 1, frame);
  painter.fillRect(outside.left(), bottom, outside.width(), 1, frame);
  painter.fillRect(right, outside.top() + 1, 1, outside.height() - 2, frame);
  painter.fillRect(0, outside.top(), kBarWidth, outside.height(), markColor());
}

}  // namespace korvel::platform::qt
